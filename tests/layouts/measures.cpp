#include <algorithm>
#include <functional>
#include <random>
#include <sstream>
#include <vector>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/TextMeasure.h"
#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/layouts/VertLayout.h"
#include "tests/layouts/Blocks.h"
#include "tests/support/SkinText.h"

namespace layout_test {
namespace {

using gui::HorzLayout;
using gui::LineLayout;
using gui::MeasurePass;
using gui::VertLayout;

std::string makeSkins() {
    std::string const font = "text = {font = '" + std::string(support::fontFile) + "', fontSize = 12}";
    return "Skin = {staticSkin = " + support::skinFunction("", font) + "}";
}

class KeepingScope {
public:
    explicit KeepingScope(bool keeping) { MeasurePass::setKeeping(keeping); }
    ~KeepingScope() { MeasurePass::setKeeping(true); }
};

// --- A tree of rows and columns under random changes, some of them inside its callbacks ---

class Play {
public:
    Play(unsigned seed, bool keeping) : keeping_(keeping), host_(makeSkins()), random_(seed) {
        root_ = new gui::Panel;
        adopt_(root_);
        root_->setLayout(makeLayout_()->handler());
        for (int i = 0; i < 12; ++i)
            grow_();
    }

    std::string run() {
        for (int i = 0; i < 60; ++i) {
            told_ << "\n" << i << ":";
            change_();
            if (draw_(3) == 0)
                host_.update();
        }
        return told_.str();
    }

private:
    int draw_(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    Vec2i drawSize_(int below) {
        int const width = draw_(below);
        return {width, draw_(below)};
    }
    Align drawAlign_() {
        auto const type = static_cast<Align::Type>(draw_(4));
        return {type, draw_(4)};
    }
    template <class Choice>
    Choice* pick_() {
        std::vector<Choice*> choices;
        for (WidgetHandler* const handler : all_)
            if (auto* const widget = dynamic_cast<Choice*>(WidgetHandler::get(handler)))
                choices.push_back(widget);
        return choices[static_cast<std::size_t>(draw_(static_cast<int>(choices.size())))];
    }
    Layout* makeLayout_() {
        LineLayout* layout = nullptr;
        if (draw_(2))
            layout = new HorzLayout(draw_(5));
        else
            layout = new VertLayout(draw_(5));
        layout->setHorzAlign(drawAlign_());
        layout->setVertAlign(drawAlign_());
        return layout;
    }
    void adopt_(Widget* widget) {
        int const id = static_cast<int>(all_.size());
        all_.push_back(widget->getHandler());
        for (char const* const event : {Widget::sizeCallbackName, Widget::positionCallbackName})
            support::onEvent(*widget, event, [this, widget, event, id] {
                told_ << ' ' << id << event[7] << describe(*widget);
                if (depth_ < 2 && draw_(24) == 0)
                    change_();
            });
    }
    void grow_() {
        auto* const parent = pick_<gui::Panel>();
        Widget* child = nullptr;
        if (draw_(3) == 0) {
            auto* const panel = new gui::Panel;
            if (draw_(5))
                panel->setLayout(makeLayout_()->handler());
            child = panel;
        } else {
            child = new gui::Static;
            child->setText(L"some words of text");
        }
        adopt_(child);
        parent->insertWidget(child, draw_(4));
    }
    void change_() {
        ++depth_;
        // Asked before, so that much is remembered while it changes.
        tellSizes_(*root_);
        changeOne_();
        tellSizes_(*root_);
        tellSizes_(*pick_<Widget>());
        --depth_;
    }
    void changeOne_() {
        Widget* const any = pick_<Widget>();
        gui::skin::Data* const data = any->getWidgetSkin()->getSkinData();
        auto* const panel = pick_<gui::Panel>();
        auto* const line = dynamic_cast<LineLayout*>(LayoutHandler::get(panel->getLayout()));
        std::function<void()> const changes[] = {
            [&] { root_->setSize(drawSize_(400)); },
            [&] { root_->setSize(drawSize_(400)); },
            [&] { any->setSize(drawSize_(150)); },
            [&] { any->setPosition(drawSize_(150)); },
            [&] { any->setText(std::wstring(static_cast<std::size_t>(draw_(12)), L'm') + L" and on"); },
            [&] { grow_(); },
            [&] { any != root_&& all_.size() > 4 ? Widget::destroy(any) : grow_(); },
            [&] { within_(*panel, *any) ? grow_() : panel->insertWidget(any, draw_(4)); },
            [&] { line ? line->setGap(draw_(9)) : grow_(); },
            [&] { line ? line->setHorzAlign(drawAlign_()) : grow_(); },
            [&] { line ? line->setVertAlign(drawAlign_()) : grow_(); },
            [&] { replaceLayout_(*panel); },
            [&] { any->setZoom(draw_(2) ? 1.0f : 2.0f); },
            [&] { any->setVisible(draw_(2) != 0); },
            [&] { data->setMinSize(drawSize_(40)); },
            [&] { data->setMaxSize(draw_(2) ? Vec2i() : drawSize_(200)); },
            [&] {
                data->setInsets({draw_(5), draw_(5), draw_(5), draw_(5)});
            },
            [&] { data->setTextWrapping(draw_(2) != 0), data->setUseEllipsis(draw_(2) != 0); },
            [&] { changeFont_(*data); },
        };
        changes[draw_(static_cast<int>(std::size(changes)))]();
    }
    void tellSizes_(Widget const& widget) {
        for (Vec2i const& size : {widget.getPrefSize(), widget.getMinSize(), widget.getMaxSize(), widget.calcMaxSize()})
            told_ << ' ' << size.x() << 'x' << size.y();
    }
    void replaceLayout_(gui::Panel& panel) {
        Layout* const made = draw_(3) ? makeLayout_() : nullptr;
        tellSizes_(*root_);
        panel.setLayout(made ? made->handler() : nullptr);
    }
    static bool within_(Widget const& inner, Widget const& outer) {
        for (Widget const* up = &inner; up; up = WidgetHandler::get(up->getParent()))
            if (up == &outer)
                return true;
        return false;
    }
    void changeFont_(gui::skin::Data& data) {
        gui::Text::Info info;
        info.font = support::fontFile;
        info.fontSize = 8 + draw_(10);
        info.align = gui::Align2({Align::Min, draw_(4)}, {Align::Min, draw_(4)});
        data.setText(&info, gui::skin::InteractiveStateReleased, 1);
    }

    KeepingScope keeping_;
    support::TestHost host_;
    std::mt19937 random_;
    std::ostringstream told_;
    gui::Panel* root_ = nullptr;
    std::vector<WidgetHandler*> all_;
    int depth_ = 0;
};

TEST(Measures, WhatIsRememberedChangesNeitherPlacesNorTheOrderOfCallbacks) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        std::string const remembered = Play(seed, true).run();
        std::string const anew = Play(seed, false).run();
        if (remembered == anew)
            continue;
        auto const [at, other] = std::mismatch(remembered.begin(), remembered.end(), anew.begin(), anew.end());
        auto const from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(at - remembered.begin() - 400, 0));
        FAIL() << "seed " << seed << "\nremembered: " << remembered.substr(from, 500)
               << "\nanew:       " << anew.substr(from, 500);
    }
}

TEST(Measures, WhateverChangesAnAnswerWithinAPassIsSeenAtOnce) {
    support::TestHost host(makeSkins());
    auto* const box = new Box(Vec2i(100, 60));
    auto* const rowBox = new Box;
    box->insertWidget(rowBox, -1);
    box->setLayout((new HorzLayout(1))->handler());
    rowBox->setLayout((new HorzLayout(2))->handler());
    auto* const label = new gui::Static;
    label->setText(L"a\tb");
    // Sized as a host's program likes.
    struct Own : Block {
        Vec2i calcSize() const override {
            return {pref.x() + (getEnabled() ? 3 : 0) + (getFocused() ? 5 : 0), pref.y()};
        }
        bool getFocusable() const override { return true; }
    };
    auto* const own = new Own;
    auto* const stray = new gui::Container;
    auto* const elsewhere = new Box;
    for (Widget* const child : {static_cast<Widget*>(label), static_cast<Widget*>(own), static_cast<Widget*>(stray)})
        rowBox->insertWidget(child, -1);
    auto* const data = new gui::skin::Data(nullptr);
    data->setMinSize(Vec2i(70, 20));
    auto* const borrower = new gui::Panel;
    borrower->getWidgetSkin()->setSkinData(data, false);
    rowBox->insertWidget(borrower, -1);
    stray->setParent(elsewhere->getHandler());

    auto const ask = [box] {
        return std::vector<Vec2i>{box->getMinSize(), box->getMaxSize(), box->getPrefSize(), box->calcMaxSize()};
    };
    std::pair<char const*, std::function<void()>> const changes[] = {
        {"spaces of a tab", [] { gui::GUI::get()->setTabSpacesCount(9); }},
        {"enabled", [&] { own->setEnabled(false); }},
        {"focus", [&] { own->setFocused(true); }},
        {"told by a program", [&] { own->pref = Vec2i(40, 40), own->setDirtySize(true); }},
        {"a child whose parent is another", [&] { stray->setSize(Vec2i(50, 70)); }},
        {"end of borrowed data", [&] { delete data; }},
        {"layout taken away", [&] { LayoutHandler::get(rowBox->getLayout())->setContainer(nullptr); }},
    };
    for (auto const& [name, change] : changes) {
        MeasurePass const pass;
        std::vector<Vec2i> const before = ask();
        change();
        std::vector<Vec2i> const after = ask();
        KeepingScope const measuredAnew(false);
        EXPECT_EQ(after, ask()) << name;
        EXPECT_NE(after, before) << name << " changes nothing";
    }
}

TEST(Measures, AnOverrideIsAskedInEveryResize) {
    support::TestHost host(makeSkins());
    auto* const box = new Box(Vec2i(100, 60));
    auto* const inner = new gui::Panel;
    auto* const label = new gui::Static;
    auto* const own = new Block(Vec2i(10, 10));
    box->insertWidget(inner, -1);
    inner->insertWidget(label, -1);
    inner->insertWidget(own, -1);
    for (gui::Container* const container : {static_cast<gui::Container*>(box), static_cast<gui::Container*>(inner)}) {
        auto* const row = new HorzLayout(0);
        row->setHorzAlign({Align::Stretch, 0});
        row->setVertAlign({Align::Stretch, 0});
        container->setLayout(row->handler());
    }
    own->least = Vec2i(70, 0);
    box->setSize(Vec2i(120, 60));
    EXPECT_EQ(describeChildren(*inner), "0,0 50x60 | 50,0 70x60");
    // It tells nobody.
    own->least = Vec2i(80, 0);
    box->setSize(Vec2i(130, 60));
    EXPECT_EQ(describeChildren(*inner), "0,0 50x60 | 50,0 80x60");
    inner->removeWidget(own);
    Widget::destroy(own);
    inner->insertWidget(new gui::Static, -1);
    box->setSize(Vec2i(140, 60));
    EXPECT_EQ(describeChildren(*inner), "0,0 70x60 | 70,0 70x60");
}

/// Hears of itself without a callback.
struct Hearing : gui::Static {
    void callWidgetCallbacks_(int type) override { told.push_back(type), gui::Static::callWidgetCallbacks_(type); }

    std::vector<int> told;
};

TEST(Measures, AnOverrideHearsOfPlacesAndSizes) {
    support::TestHost host(makeSkins());
    auto* const box = new Box(Vec2i(100, 60));
    auto* const row = new HorzLayout(0);
    row->setHorzAlign({Align::Stretch, 0});
    row->setVertAlign({Align::Stretch, 0});
    box->setLayout(row->handler());
    box->insertWidget(new gui::Static, -1);
    auto* const hearing = new Hearing;
    box->insertWidget(hearing, -1);
    hearing->told.clear();
    box->setSize(Vec2i(120, 60));
    EXPECT_EQ(hearing->told, (std::vector<int>{gui::getWidgetCallbackType(Widget::sizeCallbackName),
                                               gui::getWidgetCallbackType(Widget::positionCallbackName)}));
}

// --- Counts ---

struct Counts {
    int most() const { return *std::max_element(std::begin(asked), std::end(asked)); }

    mutable int asked[4] = {};
};

template <class Base>
struct Counted : Base, Counts {
    Vec2i getMinSize() const override { return ++this->asked[0], Base::getMinSize(); }
    Vec2i getMaxSize() const override { return ++this->asked[1], Base::getMaxSize(); }
    Vec2i getPrefSize() const override { return ++this->asked[2], Base::getPrefSize(); }
    Vec2i calcMaxSize() const override { return ++this->asked[3], Base::calcMaxSize(); }
};

class BigTree {
public:
    explicit BigTree(int depth) : root_(static_cast<gui::Panel*>(make_(depth, true))) {}

    /// The most that any container was asked one question.
    int resize(Vec2i const& size) {
        for (Counts* const counts : counts_)
            *counts = Counts();
        root_->setSize(size);
        int most = 0;
        for (Counts const* const counts : counts_)
            most = std::max(most, counts->most());
        return most;
    }

    int widgets = 0;
    std::vector<gui::Static*> leaves;

private:
    Widget* make_(int depth, bool row) {
        ++widgets;
        if (depth == 0) {
            leaves.push_back(new gui::Static);
            leaves.back()->setText(L"leaf " + std::to_wstring(leaves.size()));
            return leaves.back();
        }
        auto* const panel = new gui::Panel;
        for (int i = 0; i < 3; ++i)
            panel->insertWidget(make_(depth - 1, !row), -1);
        row ? stretch_<HorzLayout>(*panel) : stretch_<VertLayout>(*panel);
        return panel;
    }
    template <class LayoutType>
    void stretch_(gui::Panel& panel) {
        auto* const layout = new Counted<LayoutType>;
        layout->setHorzAlign({Align::Stretch, 0});
        layout->setVertAlign({Align::Stretch, 0});
        counts_.push_back(layout);
        panel.setLayout(layout->handler());
    }

    std::vector<Counts*> counts_;
    gui::Panel* root_;
};

TEST(Measures, OneResizeOfABigTreeAsksEachTextAndEachContainerOnce) {
    support::TestHost host(makeSkins());
    BigTree tree(8);
    ASSERT_EQ(tree.widgets, 9841);
    for (gui::Static* const leaf : tree.leaves)
        leaf->setText(leaf->getText() + L"!");
    unsigned long const before = gui::skin::TextMeasure::getMeasureCount();
    EXPECT_EQ(tree.resize(Vec2i(30000, 20000)), 1);
    unsigned long const after = gui::skin::TextMeasure::getMeasureCount();
    EXPECT_EQ(after - before, tree.leaves.size());
    // Texts are remembered from one resize to the next.
    EXPECT_EQ(tree.resize(Vec2i(31000, 21000)), 1);
    EXPECT_EQ(gui::skin::TextMeasure::getMeasureCount(), after);
    tree.leaves[5]->setText(L"another text");
    EXPECT_EQ(tree.resize(Vec2i(30000, 20000)), 1);
    EXPECT_EQ(gui::skin::TextMeasure::getMeasureCount(), after + 1);
    // A wrapped text depends on its width.
    tree.leaves[7]->getWidgetSkin()->getSkinData()->setTextWrapping(true);
    tree.resize(Vec2i(29000, 20000));
    tree.resize(Vec2i(25000, 20000));
    EXPECT_GT(gui::skin::TextMeasure::getMeasureCount(), after + 2);
}

}  // namespace
}  // namespace layout_test
