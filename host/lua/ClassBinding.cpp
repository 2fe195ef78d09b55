#include "host/lua/ClassBinding.h"

#include <algorithm>

namespace host::lua {

namespace {

/// The member of that name in the binding or, if it has none, in its bases.
template <class Member>
Member const* findMember(ClassBinding const* binding, qor::vector<Member> ClassBinding::*list, std::string_view name) {
    for (; binding; binding = binding->getBase())
        for (Member const& member : binding->*list)
            if (name == member.name)
                return &member;
    return nullptr;
}

/// How many letters must be changed, left out, put in or swapped with the next; small and capital letters count as one.
int getDistance(std::string_view a, std::string_view b) {
    qor::vector<int> before(b.size() + 1);
    qor::vector<int> previous(b.size() + 1);
    qor::vector<int> current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        previous[j] = static_cast<int>(j);
    auto const same = [](char x, char y) { return (x | 0x20) == (y | 0x20); };
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            int const change = previous[j - 1] + (same(a[i - 1], b[j - 1]) ? 0 : 1);
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, change});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1]))
                current[j] = std::min(current[j], before[j - 2] + 1);
        }
        std::swap(before, previous);
        std::swap(previous, current);
    }
    return previous[b.size()];
}

}  // namespace

bool ClassBinding::isLayout() const {
    ClassBinding const* root = this;
    while (ClassBinding const* const up = root->getBase())
        root = up;
    return std::string_view(root->word) == "layout";
}

ClassBinding const* ClassBinding::getBase() const { return *base ? findClass(base) : nullptr; }

Property const* ClassBinding::findProperty(std::string_view name) const {
    return findMember(this, &ClassBinding::properties, name);
}

Event const* ClassBinding::findEvent(std::string_view name) const {
    return findMember(this, &ClassBinding::events, name);
}

Method const* ClassBinding::findMethod(std::string_view name) const {
    return findMember(this, &ClassBinding::methods, name);
}

ClassBinding const* ClassBinding::findInserter() const {
    ClassBinding const* binding = this;
    while (binding && !binding->insert)
        binding = binding->getBase();
    return binding;
}

ClassBinding const* findClass(std::string_view word) {
    for (ClassBinding const& binding : getClassBindings())
        if (word == binding.word)
            return &binding;
    return nullptr;
}

ClassBinding const* findClassOf(Object const& object) {
    if (!object.widget && !object.layout)
        return nullptr;
    ClassBinding const* const byWord =
        findClass(object.widget ? object.widget->getWidgetType() : object.layout->getType());
    if (byWord && byWord->matches(object))
        return byWord;
    // A class of the host's own: what derives comes after its base, so the last one that matches is the nearest.
    ClassBinding const* nearest = nullptr;
    for (ClassBinding const& binding : getClassBindings())
        if (binding.matches(object))
            nearest = &binding;
    return nearest;
}

qor::string findSimilar(std::string_view wrong, qor::vector<std::string_view> const& names) {
    constexpr std::size_t longest = 40;
    if (wrong.size() > longest)
        return {};
    int best = std::min(2, static_cast<int>(wrong.size()) / 2) + 1;
    std::string_view found;
    for (std::string_view const name : names) {
        int const distance = getDistance(wrong, name);
        if (distance < best) {
            best = distance;
            found = name;
        }
    }
    return qor::string(found);
}

qor::vector<std::string_view> getMemberNames(ClassBinding const& binding) {
    qor::vector<std::string_view> names;
    for (ClassBinding const* step = &binding; step; step = step->getBase()) {
        for (Property const& property : step->properties)
            names.push_back(property.name);
        for (Event const& event : step->events)
            names.push_back(event.name);
        for (Method const& method : step->methods)
            names.push_back(method.name);
    }
    return names;
}

}  // namespace host::lua
