#pragma once

#include <functional>
#include <string>
#include <vector>

#include "examples/gallery/Place.h"
#include "gui_lib/base/UpdateTarget.h"
#include "gui_lib/base/easing/EasingType.h"

namespace gui {
class Panel;
class Window;
}  // namespace gui

class CurveButton;

/// A page with the shader effects: a panel to try them on, their parameters, every easing curve to choose from, and a
/// window that comes and goes by effect.
class EffectsPage final : public gui::UpdateTarget {
public:
    EffectsPage();
    /// Ends its windows; before GUI ends.
    ~EffectsPage() override;
    EffectsPage(EffectsPage const&) = delete;
    EffectsPage& operator=(EffectsPage const&) = delete;

    gui::Window* getWindow() const;

    // gui::UpdateTarget:
    /// Hides the window when it has faded out.
    void update(double time) override;

private:
    /// A number that two buttons change.
    struct Number {
        wchar_t const* caption;
        char const* key;
        float value;
        float step;
        float least;
        float most;
        Held<gui::Static> label = {};
    };

    void addSample_();
    void addKinds_();
    void addNumbers_();
    void addNumber_(std::size_t index, Box const& box);
    void addCurves_();
    void addGuest_();
    void step_(std::size_t index, float direction);
    void showNumber_(Number const& number);
    void chooseCurve_(gui::EasingType type);
    void play_(std::string const& kind);
    /// Starts an effect with the numbers of the page, from one alpha to another.
    void start_(gui::Widget* widget, char const* name, float alphaBegin, float alphaEnd);
    void toggleGuest_();

    Held<gui::Window> window_;
    Held<gui::Panel> sample_;
    Held<gui::Window> guest_;
    Held<gui::Static> curveName_;
    std::vector<Held<CurveButton>> curves_;
    std::vector<Number> numbers_;
    std::string kind_ = "showMsg";
    gui::EasingType easing_ = 1;
    bool leaving_ = false;
};
