#include "platform/gl/vtxGLShaderText.h"

#include "platform/gl/vtxGLProgram.h"

namespace vtxGLShaderText {

namespace {

constexpr char const* desktopHeader = "#version 330 core\n";
constexpr char const* esHeader =
    "#version 300 es\n"
    "precision highp float;\n"
    "precision highp int;\n"
    "precision highp sampler2D;\n"
    "precision highp sampler2DArray;\n";

constexpr char const* effectCommon = R"(
uniform mat4 projection;
uniform mat4 modelView;
uniform vec2 viewportSize;
uniform float opacity;
uniform float scale;
uniform vec2 imageScale;
uniform sampler2D image;
)";

constexpr char const* effectVertexPrelude = R"(
layout(location = 0) in vec3 vtxPosition;
layout(location = 1) in vec4 colour;
layout(location = 2) in vec2 vtxUv;
uniform float vtxMirror;
vec3 position;
vec2 uv;
)";

constexpr char const* effectVertexMain = R"(
void main()
{
    position = vec3(vtxPosition.xy * scale, vtxPosition.z);
    uv = vtxUv * imageScale;
    gl_PointSize = 1.0;
    effectVertex();
    gl_Position.y *= vtxMirror;
}
)";

constexpr char const* effectFragmentPrelude = "layout(location = 0) out vec4 result;\n";

constexpr char const* effectFragmentMain = R"(
void main()
{
    effectFragment();
    result = vtxApplyTone(result) * opacity;
}
)";

void addParameters(qor::string& text, vtxEffectFile const& file) {
    qor::string line;
    for (vtxEffectFile::Parameter const& parameter : file.parameters) {
        if (parameter.array)
            line.format("uniform float %s[%d];\n", parameter.name.c_str(), parameter.count);
        else
            line.format("uniform float %s;\n", parameter.name.c_str());
        text += line;
    }
}

/// What is ours is numbered from far away, whatever stands around it; the file's lines keep their numbers. (The number
/// of the source string would tell them apart too, but not all drivers repeat it.)
void beginOwnLines(qor::string& text) {
    qor::string line;
    text += line.format("#line %d\n", vtxGLProgram::firstOwnLine);
}

void addSection(qor::string& text, vtxEffectFile::Section const& section) {
    qor::string line;
    text += line.format("#line %d\n", section.line);
    text += section.text;
    beginOwnLines(text);
}

}  // namespace

// Gamma and intensity work on straight colour.
char const* const toneFunction = R"(
uniform vec2 vtxTone;
vec4 vtxApplyTone(vec4 premultiplied)
{
    if (vtxTone == vec2(1.0) || premultiplied.a <= 0.0)
        return premultiplied;
    vec3 straight = pow(premultiplied.rgb / premultiplied.a, vec3(vtxTone.x)) * vtxTone.y;
    return vec4(straight * premultiplied.a, premultiplied.a);
}
)";

qor::string getHeader(bool es) { return es ? esHeader : desktopHeader; }

char const* const quadVertex = R"(
layout(location = 0) in vec2 vtxCorner;
layout(location = 1) in vec4 vtxEdges;
layout(location = 2) in vec4 vtxTexture;
layout(location = 3) in vec4 vtxClamp;
layout(location = 4) in vec4 vtxColour;
layout(location = 5) in uvec2 vtxSource;
uniform mat4 vtxProjection;
out vec2 quadUv;
out vec2 quadPlace;
flat out vec2 quadCorner;
flat out vec4 quadTurn;
flat out vec4 quadTexture;
flat out vec4 quadClamp;
flat out vec4 quadColour;
flat out uint quadSource;
flat out float quadLayer;
void main()
{
    vec2 part = vec2(float(gl_VertexID & 1), float(gl_VertexID >> 1));
    vec2 point = vtxCorner + vtxEdges.xy * part.x + vtxEdges.zw * part.y;
    gl_Position = vtxProjection * vec4(point, 0.0, 1.0);
    quadUv = mix(vtxTexture.xy, vtxTexture.zw, part);
    quadPlace = point;
    quadCorner = vtxCorner;
    quadTexture = vtxTexture;
    // From a way in the quad's space to parts of its edges; zero for upright quads.
    float area = vtxEdges.x * vtxEdges.w - vtxEdges.y * vtxEdges.z;
    bool turned = area != 0.0 && (vtxEdges.y != 0.0 || vtxEdges.z != 0.0);
    quadTurn = turned ? vec4(vtxEdges.w, -vtxEdges.z, -vtxEdges.y, vtxEdges.x) / area : vec4(0.0);
    quadClamp = vec4(min(vtxClamp.xy, vtxClamp.zw), max(vtxClamp.xy, vtxClamp.zw));
    quadColour = vec4(vtxColour.rgb * vtxColour.a, vtxColour.a);
    quadSource = vtxSource.x;
    quadLayer = float(vtxSource.y);
}
)";

char const* const quadFragment = R"(
in vec2 quadUv;
in vec2 quadPlace;
flat in vec2 quadCorner;
flat in vec4 quadTurn;
flat in vec4 quadTexture;
flat in vec4 quadClamp;
flat in vec4 quadColour;
flat in uint quadSource;
flat in float quadLayer;
uniform sampler2DArray vtxPictureLinear;
uniform sampler2DArray vtxPictureNearest;
uniform sampler2DArray vtxGlyph;
uniform sampler2D vtxLone0;
uniform sampler2D vtxLone1;
uniform sampler2D vtxLone2;
uniform sampler2D vtxLone3;
uniform sampler2D vtxLone4;
uniform sampler2D vtxLone5;
uniform sampler2D vtxLone6;
uniform sampler2D vtxLone7;
layout(location = 0) out vec4 result;
)"
                                 R"(
void main()
{
    vec2 coordinates = quadUv;
    vec2 steps = fwidth(quadPlace);
    if (quadTurn != vec4(0.0))
    {
        // Interpolation rounds otherwise at other places of a target. From the middle of the pixel, which is known
        // where a step of the quad's space is one, the coordinates are the same wherever the quad lies by whole pixels.
        vec2 middle = floor(quadPlace) + 0.5;
        bool near = all(lessThan(abs(quadPlace - middle), vec2(0.01))) && all(lessThan(abs(steps - 1.0), vec2(0.01)));
        vec2 place = near ? middle : quadPlace;
        vec2 way = place - quadCorner;
        coordinates = mix(quadTexture.xy, quadTexture.zw, vec2(dot(quadTurn.xy, way), dot(quadTurn.zw, way)));
    }
    // Derivatives exist only outside of the switch.
    vec2 dx = dFdx(coordinates);
    vec2 dy = dFdy(coordinates);
    vec2 uv = clamp(coordinates, quadClamp.xy, quadClamp.zw);
    vec3 layered = vec3(uv, quadLayer);
    vec4 texel = vec4(1.0);
    switch (quadSource)
    {
    case 1u: texel = textureLod(vtxPictureLinear, layered, 0.0); break;
    case 2u: texel = textureLod(vtxPictureNearest, layered, 0.0); break;
    case 3u: texel = vec4(textureLod(vtxGlyph, layered, 0.0).r); break;
    case 4u: texel = textureGrad(vtxLone0, uv, dx, dy); break;
    case 5u: texel = textureGrad(vtxLone1, uv, dx, dy); break;
    case 6u: texel = textureGrad(vtxLone2, uv, dx, dy); break;
    case 7u: texel = textureGrad(vtxLone3, uv, dx, dy); break;
    case 8u: texel = textureGrad(vtxLone4, uv, dx, dy); break;
    case 9u: texel = textureGrad(vtxLone5, uv, dx, dy); break;
    case 10u: texel = textureGrad(vtxLone6, uv, dx, dy); break;
    case 11u: texel = textureGrad(vtxLone7, uv, dx, dy); break;
    default: break;
    }
    result = vtxApplyTone(texel * quadColour);
}
)";

char const* const geometryEffect = R"([vertex]
out vec4 premultiplied;
out vec2 imageUv;
void effectVertex()
{
    gl_Position = projection * modelView * vec4(position, 1.0);
    premultiplied = vec4(colour.rgb * colour.a, colour.a);
    imageUv = uv;
}
[fragment]
in vec4 premultiplied;
in vec2 imageUv;
void effectFragment()
{
    result = texture(image, imageUv) * premultiplied;
}
)";

qor::string makeEffectVertex(vtxEffectFile const& file, bool es) {
    qor::string text = getHeader(es);
    beginOwnLines(text);
    text += effectCommon;
    text += effectVertexPrelude;
    addParameters(text, file);
    addSection(text, file.vertex);
    text += effectVertexMain;
    return text;
}

qor::string makeEffectFragment(vtxEffectFile const& file, bool es) {
    qor::string text = getHeader(es);
    beginOwnLines(text);
    text += effectCommon;
    text += toneFunction;
    text += effectFragmentPrelude;
    addParameters(text, file);
    addSection(text, file.fragment);
    text += effectFragmentMain;
    return text;
}

}  // namespace vtxGLShaderText
