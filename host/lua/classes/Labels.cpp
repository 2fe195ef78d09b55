#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "host/lua/ClassList.h"
#include "host/lua/Objects.h"

#include <lua.hpp>

namespace host::lua {

namespace {

using gui::AnimatedColorStatic;
using gui::Static;

template <auto set>
int setColor(lua_State* L, AnimatedColorStatic& self) {
    osg::Vec4f color;
    if (!Value<osg::Vec4f>::read(L, 2, color))
        raise(L, qor::string("what is wanted here is ") + Value<osg::Vec4f>::wants);
    (self.*set)(color);
    return 0;
}

}  // namespace

void addLabels(ClassList& list) {
    using D = Define<Static>;
    ClassBinding& label = list.emplace_back(D::binding("Static", "Widget", [] { return new Static; }));
    label.properties = {
        D::property<&Static::getAngle, &Static::setAngle>("angle"),
        D::property<&Static::getPivotPoint, &Static::setPivotPoint>("pivotPoint"),
    };

    using A = Define<AnimatedColorStatic>;
    ClassBinding& animated =
        list.emplace_back(A::binding("AnimatedColorStatic", "Static", [] { return new AnimatedColorStatic; }));
    animated.methods = {
        A::method("setTextColor",
                  [](lua_State* L, AnimatedColorStatic& self) {
                      return setColor<&AnimatedColorStatic::setTextColor>(L, self);
                  }),
        A::method("setImageColor",
                  [](lua_State* L, AnimatedColorStatic& self) {
                      return setColor<&AnimatedColorStatic::setImageColor>(L, self);
                  }),
    };
}

}  // namespace host::lua
