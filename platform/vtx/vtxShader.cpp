#include "platform/vtx/vtxShader.h"

#include "platform/vtx/vtxDrawSettings.h"
#include "platform/vtx/vtxRendererCore.h"

#include <algorithm>
#include <cmath>
#include <cstring>

void vtxShader::setColor(osg::Vec4f const& color) { core_.changeSettings().color = color; }

void vtxShader::setColors(float const* colors, int count) {
    vtxDrawSettings& settings = core_.changeSettings();
    settings.colorCount = colors ? std::clamp(count, 0, vtxDrawSettings::maxColors) : 0;
    if (settings.colorCount == 0)
        return;
    // Each equals the next one: mostly, and then one is enough.
    constexpr std::size_t colorSize = 4 * sizeof(float);
    std::size_t const others = static_cast<std::size_t>(settings.colorCount - 1);
    settings.colorsEqual = std::memcmp(colors, colors + 4, others * colorSize) == 0;
    std::memcpy(settings.colors[0].ptr(), colors, colorSize);
    if (!settings.colorsEqual)
        std::memcpy(settings.colors[1].ptr(), colors + 4, others * colorSize);
}

void vtxShader::setTexture(vtxTexture const* texture) { core_.changeSettings().texture = texture; }

void vtxShader::setTextureArray(vtxTextureArray const*) {}

// Each draw says by itself whether it is quads or geometry, so that the switch is nothing but an entry of the trace.
void vtxShader::turnOnDrawQuads() { core_.trace("turnOnDrawQuads", "%s", ""); }

void vtxShader::turnOffDrawQuads() { core_.trace("turnOffDrawQuads", "%s", ""); }

void vtxShader::shiftPosition(float x, float y, float scale) {
    float const factor = scale > 0.0f ? scale : core_.getScale();
    core_.trace("shiftPosition", "%g %g %g", x, y, factor);
    if (!std::isfinite(x * factor + y * factor)) {
        core_.report(vtxMisuse::BadNumber, "shiftPosition");
        return;
    }
    vtxDrawSettings& settings = core_.changeTransform();
    settings.shiftX += x * factor;
    settings.shiftY += y * factor;
}

void vtxShader::resetPositionShift() {
    vtxDrawSettings& settings = core_.changeTransform();
    settings.shiftX = settings.shiftY = 0.0f;
}

void vtxShader::setGamma(float gamma) {
    core_.trace("setGamma", "%g", gamma);
    if (gamma > 0.0f && std::isfinite(gamma))
        core_.changeView().gamma = gamma;
}

void vtxShader::setIntensity(float intensity) {
    core_.trace("setIntensity", "%g", intensity);
    if (intensity >= 0.0f && std::isfinite(intensity))
        core_.changeView().intensity = intensity;
}

void vtxShader::setUserTextureFiltering(vtxRenderer::TextureSampler sampler) {
    core_.trace("setUserTextureFiltering", "%d", sampler);
    if (sampler >= vtxRenderer::SamplerLinear && sampler <= vtxRenderer::SamplerRepeat)
        core_.changeSettings().sampler = sampler;
}

void vtxShader::resetTextureSampler() {
    core_.trace("resetTextureSampler", "%s", "");
    vtxDrawSettings& settings = core_.changeSettings();
    settings.sampler = settings.filtering;
}

void vtxShader::drawQuads(vtxShaderQuads const& quads, int batch) { core_.drawQuads(quads, batch); }

void vtxShader::drawBkgQuads(vtxShaderBkgQuads const& quads) { core_.drawBkgQuads(quads); }
