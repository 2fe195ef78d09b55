#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "tests/support/Attach.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::Widget;
using gui::WidgetHandler;

/// Ends what a test made, when the test ends.
template <class T>
class Owned {
public:
    template <class... Args>
    explicit Owned(Args&&... args) : widget_(new T(std::forward<Args>(args)...)), handler_(widget_->getHandler()) {}
    ~Owned() { Widget::destroy(WidgetHandler::get(handler_)); }
    T* operator->() const { return widget_; }
    T* get() const { return widget_; }

private:
    T* widget_;
    WidgetHandler* handler_;
};

struct SizeRule {
    osg::Vec2i min, max;
    float zoom;
    osg::Vec2i wanted, result;
};

TEST(SizeRules, LimitsAndZoomDecideWhatBecomesOfASize) {
    int const most = std::numeric_limits<int>::max();
    SizeRule const rules[] = {
        {at(0, 0), at(0, 0), 1.0f, at(-5, 10), at(0, 10)},
        {at(20, 0), at(0, 30), 1.0f, at(10, 40), at(20, 30)},
        {at(100, 100), at(50, 50), 1.0f, at(70, 200), at(50, 50)},
        {at(20, 20), at(40, 40), 1.5f, at(5, 50), at(20, 40)},
        {at(20, 20), at(40, 40), 2.0f, at(5, 100), at(40, 80)},
        {at(20, 20), at(40, 40), 0.5f, at(5, 100), at(5, 100)},
        {at(most, 0), at(0, most), 3.0f, at(5, most), at(most, most)},
    };
    for (SizeRule const& rule : rules) {
        Owned<WidgetProbe> widget;
        auto* const skin = new gui::skin::Skin(widget.get(), true);
        skin->getSkinData()->setMinSize(rule.min);
        skin->getSkinData()->setMaxSize(rule.max);
        widget->setOwnSkin(skin);
        widget->setZoom(rule.zoom);
        widget->setSize(rule.wanted);
        EXPECT_EQ(widget->getSize(), rule.result) << rule.wanted.x() << " at zoom " << rule.zoom;
    }
}

TEST(SizeRules, AContainerTakesTheStricterLimitOfItsOwnAndItsLayout) {
    Owned<Box> box;
    box->setSize(at(30, 40));
    EXPECT_EQ(box->getPrefSize(), at(30, 40)) << "without a natural size it keeps the one it has";
    auto* const skin = new gui::skin::Skin(box.get(), true);
    skin->getSkinData()->setMinSize(at(10, 50));
    skin->getSkinData()->setMaxSize(at(100, 0));
    skin->getSkinData()->setInsets(gui::Insets{1, 2, 3, 4});
    box->setOwnSkin(skin);
    auto* const layout = new WideLayout;
    layout->minSize = at(20, 20);
    layout->maxSize = at(80, 90);
    layout->prefSize = at(30, 60);
    box->setLayout(layout->handler());
    EXPECT_EQ(box->getMinSize(), at(20, 50));
    EXPECT_EQ(box->getMaxSize(), at(80, 90));
    EXPECT_EQ(box->getPrefSize(), at(34, 66));
    box->setZoom(2.0f);
    EXPECT_EQ(box->getMinSize(), at(40, 100));
    EXPECT_EQ(box->getMaxSize(), at(160, 180));
}

TEST(WidgetState, ValuesOutOfRangeAreDropped) {
    Owned<WidgetProbe> widget;
    for (float zoom : {0.0f, -1.0f, std::nanf("")})
        widget->setZoom(zoom);
    EXPECT_EQ(widget->getZoom(), 1.0f);
    widget->setOpacity(0.5f);
    for (float opacity : {1.5f, -0.1f, std::nanf("")})
        widget->setOpacity(opacity);
    EXPECT_EQ(widget->getOpacity(), 0.5f);
    widget->setTabOrder(3);
    EXPECT_EQ(widget->getTabOrder(), 0);
    widget->setFocusableFlag(true);
    widget->setTabOrder(3);
    EXPECT_EQ(widget->getTabOrder(), 3);
}

TEST(WidgetState, OnlyCrossingFullOpacityMarks) {
    Owned<WidgetProbe> widget;
    Widget::redrawAll();
    widget->setOpacity(0.5f);
    EXPECT_TRUE(widget->isDirty());
    Widget::redrawAll();
    widget->setOpacity(0.6f);
    EXPECT_FALSE(widget->isDirty());
    widget->setOpacity(1.0f);
    EXPECT_TRUE(widget->isDirty());
    Widget::redrawAll();
    widget->setPosition(at(3, 3));
    EXPECT_FALSE(widget->isDirty());
}

TEST(WidgetState, AncestorsDecideVisibilityAndEnablement) {
    Owned<Box> outer;
    auto* const inner = new Box;
    outer->insert(inner);
    auto* const child = inner->add("", 0, 0, 5, 5);
    outer->setVisible(false);
    outer->setEnabled(false);
    EXPECT_TRUE(child->getVisible(false));
    EXPECT_FALSE(child->getVisible(true));
    EXPECT_FALSE(child->getEnabled());
    EXPECT_EQ(child->getInteractiveState(), gui::skin::InteractiveStateDisabled);

    // A copy takes the own flags, so that it does not stay disabled when it leaves.
    Widget* const copy = child->clone();
    EXPECT_TRUE(copy->getEnabled());
    Widget::destroy(copy);
}

TEST(WidgetState, AWidgetNeverSizedSaysItsSizeAtTheFirstRedraw) {
    Owned<WidgetProbe> widget;
    int calls = 0;
    support::onEvent(*widget.get(), Widget::sizeCallbackName, [&calls] { ++calls; });
    Widget::redrawAll();
    EXPECT_EQ(calls, 1);
    widget->setDirty(Widget::DirtySelf);
    Widget::redrawAll();
    EXPECT_EQ(calls, 1);
}

TEST(WidgetTexts, LocalizingReplacesKnownKeysOnly) {
    Owned<Box> box;
    auto* const known = box->add("", 0, 0, 1, 1);
    auto* const unknown = box->add("", 0, 0, 1, 1);
    Widget::LocalizationMap map;
    map[L"hello"] = L"Guten Tag";
    map[L""] = L"empty key";
    known->setText(L"$hello");
    known->setTooltipText(L"$hello");
    unknown->setText(L"$bye");
    unknown->setTooltipText(L"hello");
    box->setText(L"$");
    box->localize(map);
    EXPECT_EQ(known->getText(), L"Guten Tag");
    EXPECT_EQ(known->getTooltipText(), L"Guten Tag");
    EXPECT_EQ(unknown->getText(), L"$bye");
    EXPECT_EQ(unknown->getTooltipText(), L"hello");
    EXPECT_EQ(box->getText(), L"empty key");
}

TEST(WidgetTexts, ADirectChildWinsOverADeeperNamesake) {
    Owned<Box> box(std::string{});
    box->setName(L"root");
    auto* const first = new Box;
    box->insert(first);
    auto* const deep = first->add("", 0, 0, 1, 1);
    auto* const direct = box->add("", 0, 0, 1, 1);
    deep->setName(L"twin");
    direct->setName(L"twin");
    EXPECT_EQ(box->findWidgetByName(L"twin"), direct);
    box->remove(direct);
    EXPECT_EQ(box->findWidgetByName(L"twin"), deep);
    EXPECT_EQ(box->findWidgetByName(L"Twin"), nullptr);
    Widget::destroy(direct);
}

TEST(WidgetPoints, AllFourEdgesAreInside) {
    Owned<Box> box;
    box->setPosition(at(100, 50));
    box->setSize(at(200, 200));
    auto* const child = box->add("", 10, 20, 30, 40);
    EXPECT_EQ(child->screenToWidget(at(115, 75)), at(5, 5));
    EXPECT_EQ(child->widgetToScreen(at(5, 5)), at(115, 75));
    EXPECT_TRUE(child->getScreenPointInside(at(110, 70)));
    EXPECT_TRUE(child->getScreenPointInside(at(140, 110)));
    EXPECT_FALSE(child->getScreenPointInside(at(141, 110)));
    EXPECT_FALSE(child->getScreenPointInside(at(140, 69)));
}

TEST(WidgetPoints, OnlyAWidgetWithAMouseCallbackTakesTheMouse) {
    Owned<Box> box;
    box->setSize(at(100, 100));
    auto* const child = box->add("", 0, 0, 50, 50);
    auto const callback = std::make_shared<std::function<void(int, int, int)>>([](int, int, int) {});
    box->addMouseCallback(gui::MouseCallbackMove, callback);
    EXPECT_FALSE(box->getHasMouseInputAtScreenPoint(at(10, 10)));
    EXPECT_TRUE(box->getHasMouseInputAtScreenPoint(at(80, 80)));
    child->addMouseCallback(gui::MouseCallbackUp, callback);
    EXPECT_TRUE(box->getHasMouseInputAtScreenPoint(at(10, 10)));
    child->removeMouseCallback(gui::MouseCallbackUp, callback);
    EXPECT_FALSE(box->getHasMouseInputAtScreenPoint(at(10, 10)));
}

// --- Handlers ---

TEST(Handlers, AHandlerAnswersNullForEverAfterTheDeathOfItsWidget) {
    auto* const first = new WidgetProbe;
    WidgetHandler* const handler = first->getHandler();
    EXPECT_EQ(WidgetHandler::get(handler), first);
    Widget::destroy(first);
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
    // Also when a thousand others have been made, over the ends of several chunks.
    int index = 0;
    for (int i = 0; i < 1500; ++i) {
        auto* const widget = new WidgetProbe;
        EXPECT_GT(widget->getHandler()->getIndex(), index);
        index = widget->getHandler()->getIndex();
        Widget::destroy(widget);
    }
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
    EXPECT_EQ(WidgetHandler::get(nullptr), nullptr);
}

/// Makes another widget when it dies, as a host's destructor may.
class Phoenix : public WidgetProbe {
public:
    ~Phoenix() override {
        Widget* const child = new WidgetProbe;
        last = child->getHandler();
    }
    static inline WidgetHandler* last = nullptr;
};

TEST(Handlers, ShutdownEndsTreesLooseWidgetsAndWhatDestructorsMake) {
    auto* const box = new Box;
    WidgetHandler* const child = box->add("", 0, 0, 1, 1)->getHandler();
    WidgetHandler* const loose = (new WidgetProbe)->getHandler();
    new Phoenix;
    WidgetHandler::shutdown();
    EXPECT_EQ(WidgetHandler::get(child), nullptr);
    EXPECT_EQ(WidgetHandler::get(loose), nullptr);
    ASSERT_NE(Phoenix::last, nullptr);
    EXPECT_EQ(WidgetHandler::get(Phoenix::last), nullptr);
    auto* const next = new WidgetProbe;
    EXPECT_EQ(next->getHandler()->getIndex(), 1);
    EXPECT_NE(next->getHandler(), loose);
    Widget::destroy(next);
}

}  // namespace
}  // namespace widget_test
