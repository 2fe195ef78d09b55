#include "gui_lib/layouts/Layout.h"

#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/layouts/LayoutRun.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"

#include <algorithm>

namespace gui {

Layout::Layout() : handler_(LayoutHandler::create(this)) {}

Layout::~Layout() {
    // First: the container asks the handler whether there is a layout to destroy.
    LayoutHandler::release(handler_);
    if (Container* const owner = getLiveContainer_())
        owner->setLayout(nullptr);
}

void Layout::destroy(Layout* layout) {
    if (layout)
        layout->destroy_();
}

void Layout::destroy_() { delete this; }

Layout* Layout::clone() const { return nullptr; }

void Layout::setContainer(WidgetHandler* newContainer) {
    container = newContainer;
    MeasurePass::forgetAll();
}

WidgetHandler* Layout::getContainer() const { return container; }

osg::Vec2i Layout::getMinSize() const { return osg::Vec2i(0, 0); }

osg::Vec2i Layout::getMaxSize() const { return osg::Vec2i(0, 0); }

osg::Vec2i Layout::getPrefSize() const { return osg::Vec2i(0, 0); }

osg::Vec2i Layout::calcMaxSize() const {
    osg::Vec2i result(0, 0);
    visitChildren(getLiveContainer_(), [&result](int, Widget const& child) {
        osg::Vec2i const most = child.getMaxSize();
        result.set(std::max(result.x(), most.x()), std::max(result.y(), most.y()));
    });
    return result;
}

void Layout::updateSize() {}

void Layout::updatePrefSizes_() {
    prefSizes.clear();
    Container const* const owner = getLiveContainer_();
    if (!owner)
        return;
    prefSizes.resize(std::max(owner->getWidgetCount(), 0));
    visitChildren(owner, [this](int i, Widget const& child) { prefSizes[i] = child.getPrefSize(); });
}

Container* Layout::getLiveContainer_() const { return Widget::asContainer_(WidgetHandler::get(container)); }

void Layout::changed_() {
    MeasurePass::forgetAll();
    updateSize();
}

// --- Answers ---

osg::Vec2i Layout::ask_(SizeQuestion question) {
    if (!MeasurePass::isKeeping())
        return answer_(question);
    MeasurePass const pass;
    Answer& known = answers_[question];
    std::uint64_t const fleeting = MeasurePass::getStamp();
    std::uint64_t const lasting = MeasurePass::getLastingStamp();
    if (known.stamp == lasting || known.stamp == fleeting)
        return known.size;
    bool const lasts = answersLast_();
    osg::Vec2i const size = answer_(question);
    // Under the stamp from before: what changes while it is asked makes it void.
    known = Answer{lasts ? lasting : fleeting, size};
    if (!lasts)
        MeasurePass::noteFleeting();
    return size;
}

bool Layout::measureLasting_() { return false; }

bool Layout::sizesLast_(Container const& owner, Widget const& child) {
    // What another container shows too is not told there of changes.
    return child.parent == owner.handler && child.containerLinks == 1 && child.sizesLast_();
}

bool Layout::isPlacedPlainly_(Widget const& child) { return child.isPlacedPlainly_(); }

bool Layout::answersLast_() {
    if (knowsLasting_())
        return true;
    std::uint64_t const lasting = MeasurePass::getLastingStamp();
    if (fleetingStamp_ == MeasurePass::getStamp() || !MeasurePass::isKeeping())
        return false;
    Container const* const owner = getLiveContainer_();
    if (owner && owner->showsAllChildren_() && measureLasting_()) {
        lastingStamp_ = lasting;
        return true;
    }
    fleetingStamp_ = MeasurePass::getStamp();
    return false;
}

bool Layout::forgetLastingAnswers_() {
    bool const known = knowsLasting_();
    lastingStamp_ = 0;
    forgetAnswers_();
    return known;
}

osg::Vec2i Layout::answer_(SizeQuestion question) const {
    switch (question) {
        case AskMin:
            return getMinSize();
        case AskMax:
            return getMaxSize();
        case AskPref:
            return getPrefSize();
        case AskCalcMax:
            return calcMaxSize();
        case QuestionCount:
            break;
    }
    return osg::Vec2i(0, 0);
}

void Layout::forgetAnswers_() {
    for (Answer& answer : answers_)
        answer.stamp = 0;
}

}  // namespace gui
