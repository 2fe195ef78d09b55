#pragma once

#include <gtest/gtest.h>

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/platform/PaintDevice.h"

#include <filesystem>
#include <functional>
#include <string_view>

/// A renderer that paints into `canvas`, the shipped fonts without the system's, and a folder of its own as the second
/// asset root. Misuse of the contract fails the test.
class RendererFixture : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    vtxTextureManager& textures() { return *vtxRenderer::get()->getTextureManager(); }
    vtxFontManager& fonts() { return *vtxRenderer::get()->getFontManager(); }
    vtxShader* shader() { return vtxRenderer::get()->getShader(); }
    std::shared_ptr<vtxFont> font(char const* name, int size, vtxFont::Blur blur = vtxFont::BlurNone) {
        return fonts().getFont(name, size, blur);
    }

    /// One pass over the whole canvas, painted white first, one GUI unit being `scale` pixels.
    void paint(std::function<void()> const& draw);
    /// Writes a file into the fixture's asset root.
    void write(std::string_view name, std::string_view bytes);
    void remove(std::string_view name) { std::filesystem::remove(folder_ / name); }

    PaintCanvas canvas;

private:
    std::filesystem::path folder_;
    qor::vector<qor::string> rootsBefore_;
};

/// Files for tests. Colours are 0xRRGGBBAA.
std::string makePng(int width, int height, std::function<unsigned(int x, int y)> const& color);
std::string makePng(int width, int height, unsigned color);
std::string makeJpeg(int width, int height, unsigned color);
