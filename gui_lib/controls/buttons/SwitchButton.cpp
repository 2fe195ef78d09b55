#include "gui_lib/controls/buttons/SwitchButton.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/controls/buttons/ParentGroups.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

namespace {

ParentGroups<SwitchButton>& groups() {
    // Never destroyed: a switch may outlive static destruction.
    static auto* const instance = new ParentGroups<SwitchButton>;
    return *instance;
}

/// The groups whose rule is being applied: what the rule sets must not apply it again, or an undefined button and
/// another one would set each other without end.
class RuleScope {
public:
    explicit RuleScope(WidgetHandler* group) : outer_(innermost_), group_(group) { innermost_ = this; }
    ~RuleScope() { innermost_ = outer_; }
    RuleScope(RuleScope const&) = delete;
    RuleScope& operator=(RuleScope const&) = delete;

    static bool isRunning(WidgetHandler* group) {
        for (RuleScope const* scope = innermost_; scope; scope = scope->outer_)
            if (scope->group_ == group)
                return true;
        return false;
    }

private:
    static inline RuleScope* innermost_ = nullptr;

    RuleScope* outer_;
    WidgetHandler* group_;
};

}  // namespace

SwitchButton::SwitchButton(bool noSkin) : ToggleButton(0, true) {
    groups().join(nullptr, this);
    if (noSkin)
        return;
    skin = new skin::ToggleButtonSkin(this);
    skin->load("switchButtonSkin");
}

SwitchButton::~SwitchButton() { groups().leave(getParent(), this); }

Widget* SwitchButton::clone() const {
    auto* const copy = new SwitchButton(false);
    if (skin)
        skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* SwitchButton::getWidgetType() const { return "SwitchButton"; }

void SwitchButton::resetParent() {
    groups().leave(getParent(), this);
    ToggleButton::resetParent();
}

void SwitchButton::onParentChanged_(WidgetHandler* newParent) {
    groups().leave(getParent(), this);
    ToggleButton::onParentChanged_(newParent);
    joinGroup_();
}

void SwitchButton::joinGroup_() {
    AliveGuard const guard(this);
    if (state != 0)
        applyGroupRule_();
    if (guard.alive())
        groups().join(getParent(), this);
}

void SwitchButton::changeState_() {
    AliveGuard const guard(this);
    applyGroupRule_();
    if (guard.dead() || state > 0)
        return;
    state = 1;
    onChange_();
}

void SwitchButton::onStateChanged_(int newState) {
    AliveGuard const guard(this);
    applyGroupRule_();
    if (guard.alive())
        ToggleButton::onStateChanged_(newState);
}

void SwitchButton::applyGroupRule_() {
    WidgetHandler* const group = getParent();
    if (RuleScope::isRunning(group))
        return;
    RuleScope const scope(group);
    // By the state before the change: a button that leaves the undefined state marks the whole group undefined.
    int const others = state == -1 ? -1 : 0;
    auto const members = groups().getMembers(group);
    for (WidgetHandler* member : members) {
        auto* const other = static_cast<SwitchButton*>(WidgetHandler::get(member));
        if (other && other != this)
            other->setState(others);
    }
}

}  // namespace gui
