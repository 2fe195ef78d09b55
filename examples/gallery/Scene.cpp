#include "examples/gallery/Scene.h"

#include <epoxy/gl.h>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

char const* const vertexBody =
    "layout(location = 0) in vec3 position;\n"
    "layout(location = 1) in vec3 normal;\n"
    "layout(location = 2) in vec2 uv;\n"
    "uniform mat4 model;\n"
    "uniform mat4 viewProjection;\n"
    "out vec3 worldNormal;\n"
    "out vec3 worldPosition;\n"
    "out vec2 textureUv;\n"
    "void main() {\n"
    "    vec4 world = model * vec4(position, 1.0);\n"
    "    worldPosition = world.xyz;\n"
    "    worldNormal = mat3(model) * normal;\n"
    "    textureUv = uv;\n"
    "    gl_Position = viewProjection * world;\n"
    "}\n";

char const* const fragmentBody =
    "in vec3 worldNormal;\n"
    "in vec3 worldPosition;\n"
    "in vec2 textureUv;\n"
    "uniform vec4 color;\n"
    "uniform float textured;\n"
    "uniform sampler2D picture;\n"
    "out vec4 result;\n"
    "void main() {\n"
    "    vec3 n = normalize(worldNormal);\n"
    "    float light = 0.35 + 0.65 * max(dot(n, normalize(vec3(0.4, 0.8, 0.6))), 0.0);\n"
    "    vec3 base = color.rgb * light;\n"
    "    float grid = 0.0;\n"
    "    if (color.a < 0.5) {\n"
    "        vec2 cell = abs(fract(worldPosition.xz) - 0.5);\n"
    "        grid = smoothstep(0.46, 0.49, max(cell.x, cell.y));\n"
    "    }\n"
    "    base = mix(base, base * 1.25, grid);\n"
    "    vec4 top = texture(picture, textureUv) * textured;\n"
    "    base = base * (1.0 - top.a) + top.rgb * min(light + 0.3, 1.0);\n"
    "    float fog = clamp((length(worldPosition) - 6.0) / 18.0, 0.0, 1.0);\n"
    "    result = vec4(mix(base, vec3(0.19, 0.23, 0.30), fog), 1.0);\n"
    "}\n";

unsigned compile(unsigned type, char const* body) {
    char const* const version =
        epoxy_is_desktop_gl() ? "#version 330 core\n" : "#version 300 es\nprecision highp float;\n";
    char const* const sources[] = {version, body};
    unsigned const shader = glCreateShader(type);
    glShaderSource(shader, 2, sources, nullptr);
    glCompileShader(shader);
    int compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (!compiled) {
        char log[1024] = "";
        glGetShaderInfoLog(shader, sizeof(log), nullptr, log);
        std::fprintf(stderr, "The scene's shader does not compile: %s\n", log);
    }
    return shader;
}

struct Vertex {
    float position[3];
    float normal[3];
    float uv[2];
};

void addFace(std::vector<Vertex>& vertices, osg::Vec3f const& centre, osg::Vec3f const& right, osg::Vec3f const& up) {
    osg::Vec3f normal = right ^ up;
    normal.normalize();
    constexpr float corners[6][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, -1}, {1, 1}, {-1, 1}};
    for (auto const& corner : corners) {
        osg::Vec3f const p = centre + right * corner[0] + up * corner[1];
        // Row 0 of the picture is its top.
        vertices.push_back({{p.x(), p.y(), p.z()},
                            {normal.x(), normal.y(), normal.z()},
                            {corner[0] * 0.5f + 0.5f, 0.5f - corner[1] * 0.5f}});
    }
}

void upload(std::vector<Vertex> const& vertices, unsigned& vertexArray, unsigned& vertexBuffer) {
    glGenVertexArrays(1, &vertexArray);
    glGenBuffers(1, &vertexBuffer);
    glBindVertexArray(vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(Vertex)), vertices.data(),
                 GL_STATIC_DRAW);
    constexpr int sizes[] = {3, 3, 2};
    std::size_t offset = 0;
    for (unsigned i = 0; i < 3; ++i) {
        glEnableVertexAttribArray(i);
        glVertexAttribPointer(i, sizes[i], GL_FLOAT, GL_FALSE, sizeof(Vertex), reinterpret_cast<void*>(offset));
        offset += sizeof(float) * static_cast<std::size_t>(sizes[i]);
    }
    glBindVertexArray(0);
}

}  // namespace

Scene::Scene() {
    program_ = glCreateProgram();
    unsigned const vertex = compile(GL_VERTEX_SHADER, vertexBody);
    unsigned const fragment = compile(GL_FRAGMENT_SHADER, fragmentBody);
    glAttachShader(program_, vertex);
    glAttachShader(program_, fragment);
    glLinkProgram(program_);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    box_ = makeBox(1.0f, 1.0f, 1.0f);
    screen_ = makeScreen();
}

Scene::~Scene() {
    for (Mesh const* mesh : {&box_, &screen_}) {
        glDeleteVertexArrays(1, &mesh->vertexArray);
        glDeleteBuffers(1, &mesh->vertexBuffer);
    }
    glDeleteProgram(program_);
}

Scene::Mesh Scene::makeBox(float x, float y, float z) {
    std::vector<Vertex> vertices;
    addFace(vertices, {0, 0, z}, {x, 0, 0}, {0, y, 0});
    addFace(vertices, {0, 0, -z}, {-x, 0, 0}, {0, y, 0});
    addFace(vertices, {x, 0, 0}, {0, 0, -z}, {0, y, 0});
    addFace(vertices, {-x, 0, 0}, {0, 0, z}, {0, y, 0});
    addFace(vertices, {0, y, 0}, {x, 0, 0}, {0, 0, -z});
    addFace(vertices, {0, -y, 0}, {x, 0, 0}, {0, 0, z});
    Mesh mesh;
    upload(vertices, mesh.vertexArray, mesh.vertexBuffer);
    mesh.count = static_cast<int>(vertices.size());
    return mesh;
}

Scene::Mesh Scene::makeScreen() {
    std::vector<Vertex> vertices;
    osg::Vec2f const half = getScreenHalfSize();
    addFace(vertices, {0, 0, 0}, {half.x(), 0, 0}, {0, half.y(), 0});
    Mesh mesh;
    upload(vertices, mesh.vertexArray, mesh.vertexBuffer);
    mesh.count = static_cast<int>(vertices.size());
    return mesh;
}

osg::Matrixf Scene::getProjection(osg::Vec2i const& size) {
    double const aspect = size.y() > 0 ? static_cast<double>(size.x()) / size.y() : 1.0;
    return osg::Matrixf::perspective(45.0, aspect, 0.1, 100.0);
}

osg::Matrixf Scene::getView() {
    return osg::Matrixf::lookAt(osg::Vec3d(0.0, 1.4, 7.0), osg::Vec3d(0.0, 0.6, 0.0), osg::Vec3d(0.0, 1.0, 0.0));
}

osg::Matrixf Scene::getScreenModel(double angle) {
    return osg::Matrixf::rotate(angle, osg::Vec3d(0.0, 1.0, 0.0)) * osg::Matrixf::translate(2.25, -0.58, 1.4);
}

void Scene::drawMesh_(Mesh const& mesh, osg::Matrixf const& model, osg::Vec4f const& color, unsigned texture) const {
    // Row vectors stored by rows are GL's column vectors stored by columns.
    glUniformMatrix4fv(glGetUniformLocation(program_, "model"), 1, GL_FALSE, model.ptr());
    glUniform4f(glGetUniformLocation(program_, "color"), color.r(), color.g(), color.b(), color.a());
    glUniform1f(glGetUniformLocation(program_, "textured"), texture ? 1.0f : 0.0f);
    glBindTexture(GL_TEXTURE_2D, texture);
    if (texture) {
        // The toolkit samples by objects of its own and leaves the texture's parameters alone.
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    }
    glBindVertexArray(mesh.vertexArray);
    glDrawArrays(GL_TRIANGLES, 0, mesh.count);
}

void Scene::draw(osg::Vec2i const& size, Pictures const& pictures) {
    glViewport(0, 0, size.x(), size.y());
    glClearColor(0.19f, 0.23f, 0.30f, 1.0f);
    if (epoxy_is_desktop_gl())
        glClearDepth(1.0);
    else
        glClearDepthf(1.0f);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDisable(GL_BLEND);

    glUseProgram(program_);
    osg::Matrixf const viewProjection = getView() * getProjection(size);
    glUniformMatrix4fv(glGetUniformLocation(program_, "viewProjection"), 1, GL_FALSE, viewProjection.ptr());
    glUniform1i(glGetUniformLocation(program_, "picture"), 0);
    glActiveTexture(GL_TEXTURE0);

    using Matrix = osg::Matrixf;
    drawMesh_(box_, Matrix::scale(30.0, 0.05, 30.0) * Matrix::translate(0.0, -1.45, 0.0), {0.20f, 0.24f, 0.31f, 0.0f},
              0);
    constexpr float columns[][3] = {{-4.2f, 1.9f, -2.5f}, {-2.6f, 1.1f, -5.0f}, {0.2f, 1.5f, -4.0f},
                                    {3.4f, 1.2f, -3.0f},  {5.2f, 2.2f, -6.0f},  {-6.5f, 1.4f, -6.5f}};
    for (auto const& [x, height, z] : columns)
        drawMesh_(box_, Matrix::scale(0.45, height, 0.45) * Matrix::translate(x, height - 1.4, z),
                  {0.29f, 0.35f, 0.46f, 1.0f}, 0);
    Matrix const cube = Matrix::rotate(angle_ * 1.5, osg::Vec3d(0.3, 1.0, 0.2)) * Matrix::scale(0.5, 0.5, 0.5) *
                        Matrix::translate(0.05, -0.6, 1.6);
    drawMesh_(box_, cube, {0.36f, 0.45f, 0.62f, 1.0f}, pictures.cube);

    Matrix const screen = getScreenModel(angle_);
    osg::Vec2f const half = getScreenHalfSize();
    drawMesh_(box_, Matrix::scale(half.x() + 0.05, half.y() + 0.05, 0.06) * Matrix::translate(0.0, 0.0, -0.07) * screen,
              {0.13f, 0.15f, 0.19f, 1.0f}, 0);
    drawMesh_(screen_, screen, {0.10f, 0.12f, 0.16f, 1.0f}, pictures.screen);

    glBindVertexArray(0);
    glUseProgram(0);
    glDisable(GL_DEPTH_TEST);
}
