#include "benchmarks/BenchHost.h"
#include "benchmarks/Workload.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/VertLayout.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/windows/Window.h"

namespace {

using osg::Vec2i;

/// A container without a look.
class Group final : public gui::Container {
public:
    explicit Group(gui::Layout* newLayout) {
        skin = new gui::skin::Skin(this, true);
        setLayout(newLayout->handler());
    }
    void add(gui::Widget* widget) { insertWidget_(widget, -1); }
};

class LayoutTree final : public Workload {
public:
    explicit LayoutTree(int depth) : host_(Vec2i(8300, 4200)) {
        root_ = static_cast<Group*>(make_(depth, true));
        auto* const window = new gui::Window;
        window->setSize(Vec2i(8260, 4160));
        window->insertWidget(root_, -1);
        window->setVisible(true);
        root_->setSize(Vec2i(8100, 4000));
        host_.settle();
        operations_ = {
            {"W4a", "layout of the tree", [this] { resize_(); }, [this] { host_.settle(); }},
            {"W4b", "whole frame with that layout", [this] { resize_(), host_.frame(); }, {}},
            {"W4c", "frame in which nothing changed", [this] { host_.frame(); }, {}},
        };
    }

    std::vector<Operation> const& getOperations() const override { return operations_; }

private:
    gui::Widget* make_(int levels, bool row) {
        if (levels == 0) {
            auto* const leaf = new gui::Static;
            leaf->setText(L"Leaf " + std::to_wstring(leaves_++ % 100));
            return leaf;
        }
        gui::LineLayout* const line =
            row ? static_cast<gui::LineLayout*>(new gui::HorzLayout(1)) : new gui::VertLayout(1);
        line->setHorzAlign(gui::Align(gui::Align::Stretch, 0));
        line->setVertAlign(gui::Align(gui::Align::Stretch, 0));
        auto* const group = new Group(line);
        for (int i = 0; i < 3; ++i)
            group->add(make_(levels - 1, !row));
        return group;
    }

    void resize_() {
        wide_ = !wide_;
        root_->setSize(Vec2i(wide_ ? 8200 : 8100, 4000));
    }

    BenchHost host_;
    Group* root_;
    bool wide_ = false;
    int leaves_ = 0;
    std::vector<Operation> operations_;
};

}  // namespace

std::unique_ptr<Workload> makeLayoutTree(int size) { return std::make_unique<LayoutTree>(size); }
