#pragma once

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "gui_lib/effects/ShaderEffect.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "tests/skin/SkinBox.h"
#include "tests/support/TestHost.h"

/// The toolkit's effects, in the order in which they are ticked.
inline constexpr std::array effectNames = {"alpha", "showMsg", "flickerQuads", "appearQuads"};

/// Parameters as a test writes them down.
using Params = std::initializer_list<std::pair<char const*, float>>;

/// What a draw of a widget under an effect asked of the device.
struct EffectDraw {
    bool effect = false;  ///< an effect drew, not plain quads
    int triangles = 0;
    std::map<std::string, std::vector<float>> values;
    std::vector<std::array<float, 3>> vertices;  ///< sent anew for this draw

    float value(char const* name) const {
        auto const found = values.find(name);
        return found == values.end() || found->second.size() != 1 ? -1e9f : found->second[0];
    }
};

/// A host whose effect files are the toolkit's own, with one box on the screen of 800 x 600 that draws to a target.
class EffectHost : public support::TestHost {
public:
    static std::string skins();

    explicit EffectHost(Settings const& settings = {});
    ~EffectHost();

    /// Starts an effect of the box; a frame has not run yet.
    gui::skin::ShaderEffect* start(char const* name, Params const& values);
    EffectDraw drawBox();

    SkinBox* box;

private:
    qor::vector<qor::string> rootsBefore_;
};
