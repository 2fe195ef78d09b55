#include "examples/gallery/ScreenSurface.h"

#include <osg/Matrixd>

#include <cstdio>
#include <string>

#include "examples/gallery/Place.h"
#include "examples/gallery/Scene.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Truncate.h"

namespace {

/// Of the surface, units: the screen's proportions.
constexpr int surfaceWidth = 400;
constexpr int surfaceHeight = 250;
/// Nothing of the surface is here.
constexpr int outside = -10000;

}  // namespace

ScreenSurface::ScreenSurface() : surfaceId_(gui::GUI::get()->createSurface()), picture_({surfaceWidth, surfaceHeight}) {
    gui::GUI::get()->setSurfaceMouseFunc(surfaceId_, [this](int x, int y) { return map_(x, y); });

    window_ = new gui::Window;
    window_->setSurfaceId(surfaceId_);
    window_->setName(L"screen");
    window_->setText(L"In the scene");
    window_->setPosition({7, 7});
    window_->setSize({surfaceWidth - 14, surfaceHeight - 14});
    auto* const label = place(window_, new gui::Static, {16, 12, 280, 24}, L"A surface on a turning screen.");
    label->setName(L"screen status");
    auto* const button = place(window_, new gui::Button, {16, 40, 120, 32}, L"Click me");
    button->setName(L"screen button");
    on(button, gui::Widget::changeCallbackName, [label = Held(label), count = 0]() mutable {
        ++count;
        say(label, L"Clicked " + std::to_wstring(count) + (count == 1 ? L" time." : L" times."));
    });
    place(window_, new gui::CheckBox(1), {152, 44, 130, 24}, L"Enabled");
    int const width = window_->getView()->getSize().x() - 32;
    int const height = window_->getView()->getSize().y() - 84 - 16;
    auto* const panel = place(window_, new gui::Panel, {16, 84, width, height});
    placeNote(panel, {16, 8, width - 32, height - 16},
              L"This window lies on an object of the scene, and the mouse finds its way here.");
    window_->setVisible(true);
}

ScreenSurface::~ScreenSurface() {
    if (gui::GUI* const gui = gui::GUI::get())
        gui->setSurfaceMouseFunc(surfaceId_, {});
}

void ScreenSurface::draw() {
    picture_.render([this](osg::Vec2i const& pixels, osg::Vec2f const& scale) {
        gui::GUI::get()->drawToSurface(surfaceId_, pixels, scale, 1.0f, 1.0f);
    });
}

osg::Vec2i ScreenSurface::map_(int x, int y) const {
    gui::GUI const& gui = *gui::GUI::get();
    osg::Vec2i const raw = gui.convertToRawScreenPosition(x, y);
    double const u = 2.0 * raw.x() / viewSize_.x() - 1.0;
    double const v = 1.0 - 2.0 * raw.y() / viewSize_.y();
    osg::Matrixd const toClip =
        osg::Matrixd(Scene::getScreenModel(angle_) * Scene::getView() * Scene::getProjection(viewSize_));
    osg::Matrixd const toScreen = osg::Matrixd::inverse(toClip);
    osg::Vec3d const from = osg::Vec3d(u, v, -1.0) * toScreen;
    osg::Vec3d const to = osg::Vec3d(u, v, 1.0) * toScreen;
    // Only the front takes the mouse: the ray must come from +z and meet the plane z = 0.
    if (!(from.z() > 0.0) || from.z() == to.z())
        return {outside, outside};
    osg::Vec3d const hit = from + (to - from) * (from.z() / (from.z() - to.z()));
    osg::Vec2f const half = Scene::getScreenHalfSize();
    return {qor::truncateToInt((hit.x() / half.x() * 0.5 + 0.5) * surfaceWidth),
            qor::truncateToInt((0.5 - hit.y() / half.y() * 0.5) * surfaceHeight)};
}

void ScreenSurface::printCorners() const {
    std::printf("surface %d %dx%d in the window", surfaceId_, surfaceWidth, surfaceHeight);
    for (int const y : {0, surfaceHeight})
        for (int const x : {0, surfaceWidth}) {
            osg::Vec2i const point = project({x, y});
            std::printf(" %d,%d", point.x(), point.y());
        }
    std::printf("\n");
    std::fflush(stdout);
}

osg::Vec2i ScreenSurface::project(osg::Vec2i const& point) const {
    osg::Vec2f const half = Scene::getScreenHalfSize();
    osg::Vec3d const place((2.0 * point.x() / surfaceWidth - 1.0) * half.x(),
                           (1.0 - 2.0 * point.y() / surfaceHeight) * half.y(), 0.0);
    osg::Vec3d const clip =
        place * osg::Matrixd(Scene::getScreenModel(angle_) * Scene::getView() * Scene::getProjection(viewSize_));
    return {qor::truncateToInt((clip.x() * 0.5 + 0.5) * viewSize_.x()),
            qor::truncateToInt((0.5 - clip.y() * 0.5) * viewSize_.y())};
}
