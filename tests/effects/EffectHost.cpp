#include "tests/effects/EffectHost.h"

#include <cstdio>
#include <sstream>

#include "platform/qor/Paths.h"
#include "platform/qor/RandomObject.h"
#include "tests/support/SkinText.h"

std::string EffectHost::skins() {
    auto const ground = [](char const* name, char const* colour) {
        return std::string(name) + " = " +
               support::skinFunction("", "bkg = {center_center = '" + std::string(colour) + "'}");
    };
    return "Skin = {" + ground("red", "ff0000ff") + "," + ground("green", "00ff00ff") + "," +
           ground("grey", "808080ff") + "," + ground("faint", "0000ff80") + ", cut = " +
           support::skinFunction("clipInsets = {left = 5, top = 6, right = 7, bottom = 8}",
                                 "bkg = {center_center = 'ffff0060'}") +
           "}";
}

EffectHost::EffectHost(Settings const& settings) : TestHost(skins(), settings), rootsBefore_(qor::getAssetRoots()) {
    qor::addAssetRoot("assets");
    RandomObject::setProgramSeed(1);
    app().time = 5.0;
    box = new SkinBox("red");
    box->place(0, 0, 200, 150);
}

EffectHost::~EffectHost() { qor::setAssetRoots(rootsBefore_); }

gui::skin::ShaderEffect* EffectHost::start(char const* name, Params const& values) {
    gui::skin::ShaderEffectParams params;
    for (auto const& [key, value] : values)
        params[key] = value;
    box->setShaderEffect(name, &params);
    return box->look().getShaderEffect();
}

EffectDraw EffectHost::drawBox() {
    EffectDraw draw;
    std::istringstream lines(traceDraw(*box));
    for (std::string line; std::getline(lines, line);) {
        std::array<float, 3> vertex;
        if (std::sscanf(line.c_str(), "  vertex %f %f %f", &vertex[0], &vertex[1], &vertex[2]) == 3)
            draw.vertices.push_back(vertex);
        draw.effect = draw.effect || line.rfind("drawEffect", 0) == 0;
        if (!draw.effect)
            continue;
        std::sscanf(line.c_str(), "  geometry G%*u primitive 3 count %d", &draw.triangles);
        std::istringstream words(line);
        std::string name;
        words >> name;
        for (float value; words >> value;)
            draw.values[name].push_back(value);
    }
    return draw;
}
