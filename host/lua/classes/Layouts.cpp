#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/BorderLayout.h"
#include "gui_lib/layouts/FormLayout.h"
#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/VertLayout.h"
#include "host/lua/ClassList.h"

namespace host::lua {

namespace {

using gui::FormLayout;
using gui::Layout;

template <class LayoutClass>
ClassBinding& add(ClassList& list, char const* word, char const* constructor) {
    ClassBinding& binding =
        list.emplace_back(Define<LayoutClass>::binding(word, "layout", [] { return new LayoutClass; }));
    binding.constructor = constructor;
    return binding;
}

template <class LineClass>
void addLine(ClassList& list, char const* word, char const* constructor) {
    using D = Define<LineClass>;
    add<LineClass>(list, word, constructor).properties = {
        D::template property<&LineClass::getGap, &LineClass::setGap>("gap"),
        D::template property<&LineClass::getHorzAlign, &LineClass::setHorzAlign>("horzAlign"),
        D::template property<&LineClass::getVertAlign, &LineClass::setVertAlign>("vertAlign"),
    };
}

template <class GapClass>
qor::vector<Property> gaps() {
    using D = Define<GapClass>;
    return {D::template property<&GapClass::getHorzGap, &GapClass::setHorzGap>("horzGap"),
            D::template property<&GapClass::getVertGap, &GapClass::setVertGap>("vertGap")};
}

}  // namespace

void addLayouts(ClassList& list) {
    using D = Define<Layout>;
    ClassBinding& layout = list.emplace_back(D::binding("layout", ""));
    layout.constructor = "Layout";
    layout.properties = {D::readOnly("type", [](Layout& self) { return qor::string(self.getType()); })};

    addLine<gui::HorzLayout>(list, "horz", "HorzLayout");
    addLine<gui::VertLayout>(list, "vert", "VertLayout");
    add<gui::AnchorLayout>(list, "anchor", "AnchorLayout");
    add<gui::BorderLayout>(list, "border", "BorderLayout").properties = gaps<gui::BorderLayout>();

    ClassBinding& form = add<FormLayout>(list, "form", "FormLayout");
    form.properties = gaps<FormLayout>();
    using F = Define<FormLayout>;
    form.properties.push_back(F::property(
        "captionsAlign", [](FormLayout& self) { return self.getCaptionsAlign(); },
        [](FormLayout& self, gui::Align2 const& align) {
            self.setCaptionsAlign(align.getHorzAlign(), align.getVertAlign());
        }));
    form.properties.push_back(F::property(
        "fieldsAlign", [](FormLayout& self) { return self.getFieldsAlign(); },
        [](FormLayout& self, gui::Align2 const& align) {
            self.setFieldsAlign(align.getHorzAlign(), align.getVertAlign());
        }));
}

}  // namespace host::lua
