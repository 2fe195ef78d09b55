#include <cstring>
#include <fstream>
#include <sstream>

#include "platform/gl/vtxGLProgram.h"
#include "platform/vtx/vtxEffectFile.h"
#include "tests/gl/DeviceFixture.h"
#include "tests/support/SkinText.h"

namespace {

char const* const fadeEffect = R"(# Shows the picture, with some alpha and a tint for each third.
[parameters]
float strength = 0.5   # of everything
float[3] tints = 1.0

[vertex]
out vec2 imageUv;
out float third;
void effectVertex()
{
    gl_Position = projection * modelView * vec4(position.xy, 0.0, 1.0);
    imageUv = uv;
    third = colour.g;
}

[fragment]
in vec2 imageUv;
in float third;
void effectFragment()
{
    result = texture(image, imageUv) * strength;
    result.b *= tints[int(third * 3.0)];
}
)";

}  // namespace

class GLEffects : public GLDevice {
protected:
    /// A rectangle of 12 x 8 with the share of its width in the vertices' green.
    GLEffects() {
        qor::vector<vtxVertex> vertices;
        for (auto const& [x, y] : {std::pair(0.0, 0.0), {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}})
            vertices.push_back({x * 12, y * 8, 0, 1.0f, float(x), 1.0f, 0.5f, x, y});
        qor::vector<int> const indices = {0, 1, 2, 0, 2, 3};
        draw.geometry = gl.device->createGeometry();
        gl.device->updateGeometry(draw.geometry, vertices, &indices);
        draw.state = gl.makeState(gl.size);
        draw.modelView.makeTranslate(4.0, 2.0, 0.0);
        draw.count = 2;
    }
    vtxDeviceHandle loadEffect(std::string_view text) {
        support::SkinText const file(text);
        path = file.getPath();
        return gl.device->createEffect(path.c_str(), error);
    }

    vtxGeometryDraw draw;
    std::string path;  ///< of the last effect
    qor::string error;
};
INSTANTIATE_ON_BOTH_CONTEXTS(GLEffects);

TEST_P(GLEffects, GeometryIsMovedScaledColouredTexturedAndMadeTransparent) {
    draw.positionScale = 2.0f;
    draw.opacity = 0.5f;
    gl.device->drawGeometry(draw);
    Picture picture = gl.readHost();
    EXPECT_TRUE(isNear(picture.at(4, 2), {64, 1, 64, 255}));  // alpha 0.5 times opacity 0.5
    EXPECT_TRUE(isNear(picture.at(27, 17), {64, 62, 64, 255}, 3));
    EXPECT_EQ(picture.at(28, 17), blackPixel);
    EXPECT_EQ(picture.at(3, 2), blackPixel);

    draw.positionScale = draw.opacity = 1.0f;
    draw.texture = gl.makeTexture(1, 4, {255, 0, 0, 255, 0, 0, 255, 255, 0, 255, 0, 255, 0, 255, 0, 255});
    draw.sampler = 1;
    draw.textureScaleV = 0.5f;  // the upper half of the texture
    gl.context->clear(0.0f, 0.0f, 0.0f, 1.0f);
    gl.device->drawGeometry(draw);
    picture = gl.readHost();
    EXPECT_TRUE(isNear(picture.at(5, 5), {128, 0, 0, 255}));
    EXPECT_TRUE(isNear(picture.at(5, 6), {0, 0, 128, 255}));
    EXPECT_TRUE(isNear(picture.at(5, 9), {0, 0, 128, 255}));
}

TEST_P(GLEffects, PrimitivesAreDrawnByKindAndNeverBeyondTheirIndices) {
    qor::vector<vtxVertex> vertices;
    for (int i = 0; i < 4; ++i)
        vertices.push_back({i * 4 + 0.5, 0.5, 0, 1.0f, 1.0f, 1.0f, 1.0f, 0, 0});
    qor::vector<int> indices = {0, 1, 2, 3};
    gl.device->updateGeometry(draw.geometry, vertices, &indices);
    draw.modelView.makeIdentity();
    draw.primitive = vtxGeometry::PrimitivePoints;
    draw.count = 100;
    draw.first = 1;
    gl.device->drawGeometry(draw);
    EXPECT_EQ(gl.readHost().at(0, 0), blackPixel) << "first skips an index";
    EXPECT_EQ(gl.readHost().at(4, 0), whitePixel);
    EXPECT_EQ(gl.readHost().at(12, 0), whitePixel);
    EXPECT_EQ(gl.readHost().at(5, 0), blackPixel);

    draw.primitive = vtxGeometry::PrimitiveLines;
    draw.first = 0;
    draw.count = 2;
    gl.device->drawGeometry(draw);
    EXPECT_EQ(gl.readHost().at(2, 0), whitePixel);
    EXPECT_EQ(gl.readHost().at(6, 0), blackPixel) << "between the two lines";

    draw.primitive = vtxGeometry::PrimitiveLineStrip;
    draw.count = 100;
    gl.device->drawGeometry(draw);
    EXPECT_EQ(gl.readHost().at(6, 0), whitePixel);

    // Indices that point behind new, fewer vertices draw nothing.
    vertices.resize(2);
    gl.device->updateGeometry(draw.geometry, vertices, nullptr);
    gl.context->clear(0.0f, 0.0f, 0.0f, 1.0f);
    gl.device->drawGeometry(draw);
    EXPECT_EQ(gl.readHost().at(2, 0), blackPixel);
}

TEST_P(GLEffects, AnEffectDrawsWithItsParametersAndTheirDefaults) {
    vtxDeviceHandle const effect = loadEffect(fadeEffect);
    ASSERT_NE(effect, 0u) << error;
    int const strength = gl.device->getEffectParameter(effect, "strength");
    int const tints = gl.device->getEffectParameter(effect, "tints");
    ASSERT_GE(strength, 0);
    ASSERT_GE(tints, 0);
    EXPECT_EQ(gl.device->getEffectParameter(effect, "Strength"), -1);
    EXPECT_EQ(gl.device->getEffectParameter(effect, ""), -1);

    vtxEffectDraw effectDraw;
    effectDraw.geometry = draw;
    effectDraw.geometry.texture = gl.makeTexture(1, 1, {255, 255, 255, 255});
    effectDraw.effect = effect;
    gl.device->drawEffect(effectDraw);
    EXPECT_TRUE(isNear(gl.readHost().at(9, 5), {128, 128, 128, 255})) << "the defaults";

    // A list shorter than the array leaves the rest at the default; a longer one is cut; an unknown handle is ignored.
    float const full = 1.0f, twoTints[2] = {0.0f, 0.5f}, many[5] = {0.0f, 0.5f, 0.25f, 9.0f, 9.0f};
    vtxEffectDraw::Parameter values[3] = {{strength, &full, 1}, {tints, twoTints, 2}, {-1, &full, 1}};
    effectDraw.parameters = values;
    effectDraw.parameterCount = 3;
    for (int lastBlue : {255, 64}) {
        gl.device->drawEffect(effectDraw);
        EXPECT_TRUE(isNear(gl.readHost().at(5, 5), {255, 255, 0, 255}));
        EXPECT_TRUE(isNear(gl.readHost().at(9, 5), {255, 255, 128, 255}));
        EXPECT_TRUE(isNear(gl.readHost().at(14, 5), {255, 255, lastBlue, 255}));
        values[1] = {tints, many, 5};
    }

    gl.context->clear(0.0f, 0.0f, 0.0f, 1.0f);
    effectDraw.parameterCount = 0;
    effectDraw.geometry.opacity = 0.5f;
    effectDraw.geometry.state.gamma = 2.0f;
    effectDraw.geometry.state.intensity = 0.5f;
    gl.device->drawEffect(effectDraw);
    EXPECT_TRUE(isNear(gl.readHost().at(9, 5), {32, 32, 32, 255})) << "white at alpha 0.25, at half the intensity";
}

TEST_P(GLEffects, AnEffectMayWorkInClipSpaceAndIsMirroredForATargetAllTheSame) {
    // Like an effect that places pieces of a grid by their share of the screen: upper left quarter, whatever is bound.
    vtxDeviceHandle const effect = loadEffect(
        "[vertex]\nvoid effectVertex() { gl_Position = vec4(uv.x - 1.0, 1.0 - uv.y, 0.0, 1.0); }\n"
        "[fragment]\nvoid effectFragment() { result = vec4(viewportSize.x / 255.0, 0.0, 0.0, 1.0); }\n");
    ASSERT_NE(effect, 0u) << error;
    vtxEffectDraw effectDraw;
    effectDraw.geometry = draw;
    effectDraw.effect = effect;
    gl.device->drawEffect(effectDraw);
    osg::Vec2i const targetSize(16, 8);
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 0, 1);
    effectDraw.geometry.state = gl.makeState(targetSize);
    gl.device->openPass();
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    gl.device->drawEffect(effectDraw);
    gl.device->closePass();
    Picture const host = gl.readHost(), picture = gl.read(target, targetSize);
    EXPECT_TRUE(isNear(host.at(31, 15), {64, 0, 0, 255}, 0));
    EXPECT_EQ(host.at(32, 15), blackPixel);
    EXPECT_EQ(host.at(31, 16), blackPixel);
    EXPECT_TRUE(isNear(picture.at(7, 3), {16, 0, 0, 255}, 0));
    EXPECT_EQ(picture.at(7, 4), clearPixel);
    EXPECT_EQ(picture.at(8, 3), clearPixel);
}

TEST_P(GLEffects, TheManualsExampleWorks) {
    std::stringstream manual;
    manual << std::ifstream("docs/renderer.md").rdbuf();
    std::string const text = manual.str(), fence = "```glsl\n";
    size_t const begin = text.find(fence) + fence.size();
    ASSERT_LT(begin, text.size());
    vtxDeviceHandle const effect = loadEffect(text.substr(begin, text.find("```", begin) - begin));
    EXPECT_NE(effect, 0u) << error;
    EXPECT_GE(gl.device->getEffectParameter(effect, "quadsAlpha"), 0);
}

TEST_P(GLEffects, AMistakeInTheShaderIsReportedWithPathAndLine) {
    struct Case {
        char const* right;
        char const* wrong;
        char const* line;
    };
    for (Case const& each : {Case{"imageUv = uv;", "imageUv = wrong;", ":12: "},
                             Case{"texture(image, imageUv)", "texture(image imageUv)", ":21: "}}) {
        std::string text = fadeEffect;
        text.replace(text.find(each.right), std::strlen(each.right), each.wrong);
        EXPECT_EQ(loadEffect(text), 0u);
        EXPECT_NE(error.find(path + each.line), qor::string::npos) << error;
    }
}

TEST(EffectFile, EachMistakeInTheFormNamesItsLine) {
    struct Case {
        char const* text;
        char const* expected;
    };
    Case const cases[] = {
        {"float a = 1\n", "x.fx:1: text before the first section"},
        {"[parameters]\nfloat a\n", "x.fx:2: the parameter \"a\" has no default"},
        {"[parameters]\nvec2 a = 1\n", "x.fx:2: a parameter reads"},
        {"[parameters]\nfloat[0] a = 1\n", "x.fx:2: 0 elements"},
        {"[parameters]\nfloat[9999] a = 1\n", "x.fx:2: 9999 elements"},
        {"[parameters]\nfloat[x] a = 1\n", "x.fx:2: the count"},
        {"[parameters]\nfloat = 1\n", "x.fx:2: the parameter has no name"},
        {"[parameters]\nfloat a = 1 2\n", "x.fx:2: unexpected \"2\""},
        {"[parameters]\nfloat a = nan\n", "x.fx:2: the parameter \"a\" has no default"},
        {"[parameters]\nfloat a = 1\nfloat a = 2\n", "x.fx:3: a second parameter \"a\""},
        {"[parameters]\nfloat projection = 1\n", "x.fx:2: the name \"projection\" is taken"},
        {"[parameters]\n[geometry]\n", "x.fx:2: unknown section [geometry]"},
        {"[vertex]\nvoid effectVertex() {}\n", "x.fx:2: the section [fragment] is missing"},
        {"[vertex]\nvoid effectVertex() {}\n[fragment]\nvoid main() {}\n", "x.fx:3: the section [fragment] defines no"},
        {"[vertex]\n[vertex]\n", "x.fx:2: a second section [vertex]"},
        {"", "x.fx:1: the section [vertex] is missing"},
    };
    qor::string error;
    for (Case const& entry : cases) {
        vtxEffectFile file;
        EXPECT_FALSE(file.parse("x.fx", entry.text, error)) << entry.text;
        EXPECT_EQ(error.find(entry.expected), 0u) << error << "\nexpected: " << entry.expected;
    }
    vtxEffectFile file;
    qor::string text =
        "[vertex]\nvoid effectVertex() {}\n[fragment]\nvoid effectFragment() {}\n[parameters]\n"  // 5 lines
        "\r\n# comment\r\n\tfloat[100]  quadsAlpha=-1.5e1 // all\r\nfloat b = .5";
    ASSERT_TRUE(file.parse("x.fx", text, error)) << error;
    ASSERT_EQ(file.parameters.size(), 2u);
    EXPECT_EQ(file.parameters[0].count, 100);
    EXPECT_EQ(file.parameters[0].defaultValue, -15.0f);
    EXPECT_EQ(file.findParameter("b"), 1);
    EXPECT_EQ(file.fragment.line, 4);
}

TEST(EffectFile, ThePlaceIsFoundInTheMessagesOfAllDrivers) {
    auto expect = [](char const* log, int line, char const* cause) {
        vtxGLProgram::Error const error = vtxGLProgram::readLog(log);
        EXPECT_EQ(error.line, line) << log;
        EXPECT_EQ(error.cause, cause) << log;
    };
    expect("0:12(5): error: `x' undeclared\n0:13(1): error: more", 12, "error: `x' undeclared");
    expect("0(12) : error C1008: undefined variable \"x\"", 12, "error C1008: undefined variable \"x\"");
    expect("WARNING: 0:3: odd\nERROR: 0:12: 'x' : undeclared identifier\n", 12, "'x' : undeclared identifier");
    expect("0:900012(5): error: in the prelude", 0, "0:900012(5): error: in the prelude");
    expect("error: unresolved reference", 0, "error: unresolved reference");
    expect("", 0, "the driver gives no cause");
}
