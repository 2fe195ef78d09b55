#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "gui_lib/layouts/Layout.h"
#include "gui_lib/widget/Container.h"

namespace widget_test {

/// Freed objects are filled with rubbish and kept, so that a use after the death crashes instead of passing by luck.
void* allocateTracked(std::size_t size);
void freeTracked(void* memory);

/// The words that probes write, in order; a test reads them with `takeEvents`.
void noteEvent(std::string const& event);
std::vector<std::string> takeEvents();

/// A widget, or a class derived from it, that notes how the mouse comes, moves and goes as "name event" and opens what
/// is protected.
template <class Base>
class Probe : public Base {
public:
    template <class... Args>
    explicit Probe(std::string label = {}, Args&&... args)
        : Base(std::forward<Args>(args)...), label_(std::move(label)) {}

    static void* operator new(std::size_t size) { return allocateTracked(size); }
    static void operator delete(void* memory) { freeTracked(memory); }

    bool isDirty() const { return this->dirty; }
    void setOwnSkin(gui::skin::Skin* newSkin) { this->skin = newSkin; }
    osg::RectImpl<osg::Vec2i> clipRect() const { return this->getClipRect_(); }
    void change() { this->onChange_(); }
    /// The clip rectangle when the widget was drawn last.
    osg::RectImpl<osg::Vec2i> drawnClip() const { return drawnClip_; }
    void setFocusableFlag(bool focusable) { focusable_ = focusable; }

    bool getFocusable() const override { return focusable_ || Base::getFocusable(); }
    void onMouseEnter(osg::Vec2i const& point) override {
        note_("enter");
        Base::onMouseEnter(point);
    }
    void onMouseLeave(osg::Vec2i const& point) override {
        note_("leave");
        Base::onMouseLeave(point);
    }
    void onMouseMove(osg::Vec2i const& point) override {
        note_("move");
        Base::onMouseMove(point);
    }

protected:
    void draw_() override {
        drawnClip_ = this->getClipRect_();
        Base::draw_();
    }

private:
    void note_(char const* event) const {
        if (!label_.empty())
            noteEvent(label_ + " " + event);
    }

    std::string label_;
    bool focusable_ = false;
    osg::RectImpl<osg::Vec2i> drawnClip_;
};

using WidgetProbe = Probe<gui::Widget>;

/// A container that shows its child operations.
class Box : public Probe<gui::Container> {
public:
    using Probe::Probe;

    void insert(gui::Widget* widget, int index = -1) { insertWidget_(widget, index); }
    void remove(gui::Widget* widget) { removeWidget_(widget); }
    int indexOf(gui::Widget const* widget) const { return getWidgetIndex_(widget); }
    /// A new child with a place; focusable, so that presses move the focus.
    WidgetProbe* add(std::string label, int x, int y, int width, int height);
};

/// Gives every child the container's width and counts its runs.
class WideLayout : public gui::Layout {
public:
    ~WideLayout() override;

    gui::Layout* clone() const override { return new WideLayout; }
    char const* getType() const override { return "wide"; }
    osg::Vec2i getMinSize() const override { return minSize; }
    osg::Vec2i getMaxSize() const override { return maxSize; }
    osg::Vec2i getPrefSize() const override { return prefSize; }
    void updateSize() override;

    int runs = 0;
    int* deaths = nullptr;
    osg::Vec2i minSize, maxSize, prefSize;
};

/// Rows of places that a hit test or a click needs.
inline osg::Vec2i at(int x, int y) { return osg::Vec2i(x, y); }

}  // namespace widget_test
