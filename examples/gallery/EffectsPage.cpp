#include "examples/gallery/EffectsPage.h"

#include <algorithm>

#include "examples/gallery/CurveButton.h"
#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/windows/Window.h"

namespace {

constexpr int margin = 16;
constexpr int contentWidth = 328;
constexpr int lastEasing = 31;
constexpr int curvesInARow = 8;
constexpr int curveAcross = 41;
constexpr int curveDown = 36;

enum NumberIndex { Duration, QuadSize, AlphaBegin, AlphaEnd };

std::wstring getCurveName(gui::EasingType type) {
    static constexpr wchar_t const* families[] = {L"Back", L"Bounce", L"Circ",  L"Cubic", L"Elastic",
                                                  L"Expo", L"Quad",   L"Quart", L"Quint", L"Sine"};
    static constexpr wchar_t const* ways[] = {L" in", L" out", L" in and out"};
    if (type < 2)
        return type == 1 ? L"1: Linear" : L"0: none";
    return std::to_wstring(type) + L": " + families[(type - 2) / 3] + ways[(type - 2) % 3];
}

void center(gui::Static* label) {
    gui::skin::Data* const data = label->getWidgetSkin()->getSkinData();
    if (gui::Text::Info const* const look = data->getText(gui::skin::InteractiveStateReleased, 1)) {
        gui::Text::Info centered = *look;
        centered.align = gui::Align2({gui::Align::Center, 0}, {gui::Align::Center, 0});
        data->setText(&centered, gui::skin::InteractiveStateReleased, 1);
    }
}

}  // namespace

EffectsPage::EffectsPage()
    : window_(new gui::Window),
      numbers_{{L"Seconds", "duration", 1.0f, 0.25f, 0.25f, 4.0f},
               {L"Quads", "quadSize", 24.0f, 4.0f, 4.0f, 64.0f},
               {L"Alpha", "alphaBegin", 0.0f, 0.25f, 0.0f, 1.0f},
               {L"to", "alphaEnd", 1.0f, 0.25f, 0.0f, 1.0f}} {
    gui::Window* const window = window_.get();
    window->setName(L"effects");
    window->setText(L"Effects");
    addSample_();
    addKinds_();
    addNumbers_();
    addCurves_();
    addGuest_();
    fitWindow(window, {2 * margin + contentWidth, 508});
    chooseCurve_(easing_);
    gui::UpdateManager::get().addTarget(this);
}

EffectsPage::~EffectsPage() {
    gui::UpdateManager::get().removeTarget(this);
    gui::Widget::destroy(guest_.get());
    gui::Widget::destroy(window_.get());
}

gui::Window* EffectsPage::getWindow() const { return window_.get(); }

// --- Building ---

void EffectsPage::addSample_() {
    auto* const panel = place(window_.get(), new gui::Panel, {margin, 12, contentWidth, 104});
    placeHeading(panel, {16, 12, 200, 24}, L"A panel under an effect");
    place(panel, new gui::CheckBox(1), {16, 40, 160, 24}, L"Ready");
    place(panel, new gui::Button, {208, 60, 104, 32}, L"Press");
    placeNote(panel, {16, 68, 176, 24}, L"Its children go with it.");
    sample_ = panel;
}

void EffectsPage::addKinds_() {
    std::pair<wchar_t const*, char const*> const kinds[] = {
        {L"Fade", "alpha"}, {L"Pop in", "showMsg"}, {L"Appear", "appearQuads"}, {L"Flicker", "flickerQuads"}};
    int x = margin;
    for (auto const& [caption, name] : kinds) {
        auto* const button = place(window_.get(), new gui::Button, {x, 128, 76, 32}, caption);
        qor::wstring hint;
        button->setTooltipText(hint.format(L"The effect \"%s\".", name));
        button->setTabOrder(1 + (x - margin) / 84);
        on(button, gui::Widget::changeCallbackName, [this, effect = name] { play_(effect); });
        x += 84;
    }
}

void EffectsPage::addNumbers_() {
    for (std::size_t i = 0; i < numbers_.size(); ++i)
        addNumber_(i, {margin + static_cast<int>(i % 2) * 168, 172 + static_cast<int>(i / 2) * 36, 160, 28});
}

void EffectsPage::addNumber_(std::size_t index, Box const& box) {
    place(window_.get(), new gui::Static, {box.x, box.y + 2, 72, 24}, numbers_[index].caption);
    auto const addStep = [&](int x, wchar_t const* caption, float direction) {
        auto* const button = place(window_.get(), new gui::Button, {x, box.y, 24, box.height}, caption);
        on(button, gui::Widget::changeCallbackName, [this, index, direction] { step_(index, direction); });
    };
    addStep(box.x + 72, L"\u2212", -1.0f);
    numbers_[index].label = place(window_.get(), new gui::Static, {box.x + 100, box.y + 2, 36, 24});
    center(numbers_[index].label.get());
    addStep(box.x + 136, L"+", 1.0f);
    showNumber_(numbers_[index]);
}

void EffectsPage::addCurves_() {
    placeHeading(window_.get(), {margin, 250, 160, 24}, L"Easing");
    curveName_ = place(window_.get(), new gui::Static, {margin + 168, 250, 160, 24});
    for (gui::EasingType type = 0; type <= lastEasing; ++type) {
        Box const box{margin + type % curvesInARow * curveAcross, 278 + type / curvesInARow * curveDown,
                      curveAcross - 4, curveDown - 4};
        auto* const button = place(window_.get(), new CurveButton(type), box);
        button->setTooltipText(getCurveName(type));
        on(button, gui::Widget::changeCallbackName, [this, type] {
            chooseCurve_(type);
            play_(kind_);
        });
        curves_.emplace_back(button);
    }
}

void EffectsPage::addGuest_() {
    placeHeading(window_.get(), {margin, 432, contentWidth, 24}, L"A window comes and goes by effect");
    auto* const button = place(window_.get(), new gui::Button, {margin, 460, 160, 32}, L"Show or hide");
    on(button, gui::Widget::changeCallbackName, [this] { toggleGuest_(); });

    auto* const guest = new gui::Window;
    guest->setName(L"guest");
    guest->setText(L"A guest");
    removeCloseButton(guest);
    placeNote(guest, {margin, 12, 200, 40}, L"It comes by the effect chosen last, and fades away.");
    fitWindow(guest, {2 * margin + 200, 68});
    guest->centerWindow();
    guest_ = guest;
}

// --- Numbers and curves ---

void EffectsPage::step_(std::size_t index, float direction) {
    Number& number = numbers_[index];
    number.value = std::clamp(number.value + direction * number.step, number.least, number.most);
    showNumber_(number);
    play_(kind_);
}

void EffectsPage::showNumber_(Number const& number) {
    qor::wstring text;
    say(number.label, text.format(L"%g", static_cast<double>(number.value)));
}

void EffectsPage::chooseCurve_(gui::EasingType type) {
    easing_ = type;
    for (std::size_t i = 0; i < curves_.size(); ++i)
        if (CurveButton* const button = curves_[i].get())
            button->setState(static_cast<int>(i) == type);
    say(curveName_, getCurveName(type));
}

// --- Effects ---

void EffectsPage::play_(std::string const& kind) {
    kind_ = kind;
    if (gui::Panel* const sample = sample_.get())
        start_(sample, kind_.c_str(), numbers_[AlphaBegin].value, numbers_[AlphaEnd].value);
}

void EffectsPage::start_(gui::Widget* widget, char const* name, float alphaBegin, float alphaEnd) {
    gui::skin::ShaderEffectParams params;
    for (NumberIndex const index : {Duration, QuadSize})
        params[numbers_[index].key] = numbers_[index].value;
    params[numbers_[AlphaBegin].key] = alphaBegin;
    params[numbers_[AlphaEnd].key] = alphaEnd;
    for (char const* key : {"easing", "easingAlpha", "easingSize"})
        params[key] = static_cast<float>(easing_);
    widget->setShaderEffect(name, &params);
}

void EffectsPage::toggleGuest_() {
    gui::Window* const guest = guest_.get();
    if (!guest)
        return;
    leaving_ = guest->getVisible(false) && !leaving_;
    if (leaving_) {
        start_(guest, "alpha", 1.0f, 0.0f);
        return;
    }
    guest->setVisible(true);
    start_(guest, kind_.c_str(), 0.0f, 1.0f);
}

// The effects are ticked first, so one that has ended does so in this tick: the window is not seen again.
void EffectsPage::update(double) {
    gui::Window* const guest = guest_.get();
    if (!leaving_ || !guest || guest->getWidgetSkin()->getShaderEffect())
        return;
    leaving_ = false;
    guest->setVisible(false);
}
