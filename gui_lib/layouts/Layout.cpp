#include "gui_lib/layouts/Layout.h"

#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"

#include <algorithm>

namespace gui {

Layout::Layout() : handler_(LayoutHandler::create(this)) {}

Layout::~Layout() {
    // First: the container asks the handler whether there is a layout to destroy.
    LayoutHandler::release(handler_);
    if (auto* const owner = dynamic_cast<Container*>(WidgetHandler::get(container)))
        owner->setLayout(nullptr);
}

void Layout::destroy(Layout* layout) {
    if (layout)
        layout->destroy_();
}

void Layout::destroy_() { delete this; }

Layout* Layout::clone() const { return nullptr; }

void Layout::setContainer(WidgetHandler* newContainer) { container = newContainer; }

WidgetHandler* Layout::getContainer() const { return container; }

osg::Vec2i Layout::getMinSize() const { return osg::Vec2i(0, 0); }

osg::Vec2i Layout::getMaxSize() const { return osg::Vec2i(0, 0); }

osg::Vec2i Layout::getPrefSize() const { return osg::Vec2i(0, 0); }

osg::Vec2i Layout::calcMaxSize() const {
    osg::Vec2i result(0, 0);
    auto const* const owner = dynamic_cast<Container*>(WidgetHandler::get(container));
    for (int i = 0; owner && i < owner->getWidgetCount(); ++i) {
        Widget const* const child = owner->getWidget(i);
        if (!child)
            continue;
        osg::Vec2i const most = child->getMaxSize();
        result.set(std::max(result.x(), most.x()), std::max(result.y(), most.y()));
    }
    return result;
}

void Layout::updateSize() {}

void Layout::updatePrefSizes_() {
    prefSizes.clear();
    auto const* const owner = dynamic_cast<Container*>(WidgetHandler::get(container));
    if (!owner)
        return;
    int const count = owner->getWidgetCount();
    prefSizes.reserve(count);
    for (int i = 0; i < count; ++i) {
        Widget const* const child = owner->getWidget(i);
        prefSizes.push_back(child ? child->getPrefSize() : osg::Vec2i(0, 0));
    }
}

}  // namespace gui
