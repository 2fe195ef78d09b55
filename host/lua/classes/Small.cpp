#include <functional>
#include <memory>

#include "gui_lib/Skin/luautil.h"
#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "host/lua/Bindings.h"
#include "host/lua/ClassList.h"
#include "platform/qor/Lua.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"

#include <lua.hpp>

namespace host::lua {

using gui::TabGroupItem;
using gui::TextureView;

/// As a skin describes a picture.
template <>
struct Value<gui::Image::Info> {
    static constexpr char const* wants = "a table, as for a picture in a skin";
    static void push(lua_State* L, gui::Image::Info const& value) { luautil::setValue(L, value); }
    static bool read(lua_State* L, int index, gui::Image::Info& value) {
        qor::LuaStackGuard const guard(L);
        pushPlain(L, index);
        return luautil::getValue(L, -1, value);
    }
};

namespace {

/// A picture file that a view shows. The view holds it, in a callback that nothing calls: it is given back when the
/// view dies or shows another one.
struct ShownPicture {
    ShownPicture(qor::string const& newFile, vtxTexture* newTexture) : file(newFile), texture(newTexture) {}
    ~ShownPicture() {
        if (vtxRenderer* const renderer = vtxRenderer::get())
            renderer->getTextureManager()->releaseTexture(texture);
    }
    ShownPicture(ShownPicture const&) = delete;
    ShownPicture& operator=(ShownPicture const&) = delete;

    qor::string file;
    vtxTexture* texture;
};

struct HeldPicture {
    std::shared_ptr<ShownPicture> picture;
    void operator()() const {}
};

void pushPicture(lua_State* L, Object object) {
    auto const& view = as<TextureView>(object);
    auto const entry = Bindings::open(L).pictureOf(view.getHandler()).lock();
    auto const* const held = entry ? entry->target<HeldPicture>() : nullptr;
    // The program may have given it another texture since.
    if (held && held->picture->texture == view.getTexture())
        Value<qor::string>::push(L, held->picture->file);
    else
        lua_pushnil(L);
}

bool assignPicture(lua_State* L, int index, Object object) {
    auto& view = as<TextureView>(object);
    qor::string file;
    bool const named = Value<qor::string>::read(L, index, file);
    vtxTexture* const texture =
        named ? vtxRenderer::get()->getTextureManager()->getTexture(file, {}, nullptr) : nullptr;
    if (!texture && lua_toboolean(L, index))
        return false;
    view.setTexture(texture);
    static int const type = gui::getWidgetCallbackType("window file picture");
    auto& entry = Bindings::open(L).pictureOf(view.getHandler());
    view.removeWidgetCallback(type, entry.lock());
    if (!texture)
        return true;
    auto const holder =
        std::make_shared<std::function<void()>>(HeldPicture{std::make_shared<ShownPicture>(file, texture)});
    view.addWidgetCallback(type, holder);
    entry = holder;
    return true;
}

}  // namespace

void addSmall(ClassList& list) {
    using T = Define<TabGroupItem>;
    ClassBinding& tab = list.emplace_back(T::binding("TabGroupItem", "Widget", [] { return new TabGroupItem; }));
    tab.properties = {T::property<&TabGroupItem::getState, &TabGroupItem::setState>("state", Stage::Late)};
    tab.events = {
        {"onShow", EventKind::Widget, TabGroupItem::showCallbackName},
        {"onHide", EventKind::Widget, TabGroupItem::hideCallbackName},
    };

    using V = Define<TextureView>;
    ClassBinding& view = list.emplace_back(V::binding("TextureView", "Widget", [] { return new TextureView; }));
    view.properties = {
        V::property<&TextureView::getAngle, &TextureView::setAngle>("angle"),
        V::property<&TextureView::getPivotPoint, &TextureView::setPivotPoint>("pivotPoint"),
        V::property<&TextureView::getImageInfo, &TextureView::setImageInfo>("imageInfo"),
        {"picture", "a picture file that can be read, or false for none", pushPicture, assignPicture},
    };

    // Made by the windows manager alone.
    list.push_back(Define<gui::Tooltip>::binding("Tooltip", "Widget"));
}

}  // namespace host::lua
