#pragma once

#include <string>
#include <utility>

#include "gui_lib/widget/Widget.h"

namespace speed_test {

/// How often virtual operations of some widgets ran.
struct Touches {
    /// In the walks of `draw` and `parse` or the recording of a list.
    int drawn = 0;
    /// Laying out and building what is drawn.
    int redraws = 0;
    int doRedraws = 0;
    /// Whatever else.
    int others = 0;
    /// The last one that counted as another.
    std::string last;
};

/// A widget of class `Base` that counts what is called on it.
template <class Base>
class Watched : public Base {
public:
    template <class... Args>
    explicit Watched(Touches& touches, Args&&... args) : Base(std::forward<Args>(args)...), touches_(touches) {}

    // Widget:
    void draw() override { ++touches_.drawn, Base::draw(); }
    void drawChildren() override { ++touches_.drawn, Base::drawChildren(); }
    void parse() override { ++touches_.drawn, Base::parse(); }
    void make(gui::GraphicCommands* commands) override { ++touches_.drawn, Base::make(commands); }
    void redraw() override { ++touches_.redraws, Base::redraw(); }
    void doRedraw() override { ++touches_.doRedraws, Base::doRedraw(); }
    void redrawChildren() override { note_("redrawChildren"), Base::redrawChildren(); }
    void doRedrawChildren() override { note_("doRedrawChildren"), Base::doRedrawChildren(); }
    void setDirty(gui::Widget::DirtyFlag flag) override { note_("setDirty"), Base::setDirty(flag); }
    void setDirtySize(bool dirty) override { note_("setDirtySize"), Base::setDirtySize(dirty); }
    bool getDirtySize() const override { return note_("getDirtySize"), Base::getDirtySize(); }
    void updateSize() override { note_("updateSize"), Base::updateSize(); }
    osg::Vec2i getMinSize() const override { return note_("getMinSize"), Base::getMinSize(); }
    osg::Vec2i getMaxSize() const override { return note_("getMaxSize"), Base::getMaxSize(); }
    osg::Vec2i getPrefSize() const override { return note_("getPrefSize"), Base::getPrefSize(); }
    osg::Vec2i calcSize() const override { return note_("calcSize"), Base::calcSize(); }
    osg::Vec2i calcMaxSize() const override { return note_("calcMaxSize"), Base::calcMaxSize(); }
    osg::RectImpl<osg::Vec2i> getClientRect() const override { return note_("getClientRect"), Base::getClientRect(); }
    osg::Vec2i getSize() const override { return note_("getSize"), Base::getSize(); }
    osg::Vec2i getPosition() const override { return note_("getPosition"), Base::getPosition(); }
    bool getVisible(bool recursive) const override { return note_("getVisible"), Base::getVisible(recursive); }
    bool getEnabled() const override { return note_("getEnabled"), Base::getEnabled(); }
    bool getFocused() const override { return note_("getFocused"), Base::getFocused(); }
    float getZoom() const override { return note_("getZoom"), Base::getZoom(); }
    float getOpacity() const override { return note_("getOpacity"), Base::getOpacity(); }
    bool getDrawToTarget() const override { return note_("getDrawToTarget"), Base::getDrawToTarget(); }
    int getInnerState() const override { return note_("getInnerState"), Base::getInnerState(); }
    gui::skin::InteractiveState getInteractiveState() const override {
        return note_("getInteractiveState"), Base::getInteractiveState();
    }
    gui::skin::Skin* getWidgetSkin() const override { return note_("getWidgetSkin"), Base::getWidgetSkin(); }
    gui::WidgetHandler* getParent() const override { return note_("getParent"), Base::getParent(); }
    gui::Widget* getRoot() const override { return note_("getRoot"), Base::getRoot(); }
    qor::basic_string<wchar_t> const& getText() const override { return note_("getText"), Base::getText(); }

private:
    void note_(char const* name) const {
        ++touches_.others;
        touches_.last = name;
    }

    Touches& touches_;
};

}  // namespace speed_test
