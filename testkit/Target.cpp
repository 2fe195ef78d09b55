#include "testkit/Target.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowHeader.h"
#include "platform/qor/Utf8.h"
#include "testkit/TreeDump.h"

namespace testkit {

namespace {

std::string toUtf8(qor::basic_string<wchar_t> const& text) { return qor::wchar_to_utf8(text).c_str(); }

std::vector<std::string> split(std::string_view path) {
    std::vector<std::string> names;
    for (std::size_t from = 0; from <= path.size();) {
        std::size_t const to = std::min(path.find('/', from), path.size());
        if (to > from)
            names.emplace_back(path.substr(from, to - from));
        from = to + 1;
    }
    return names;
}

std::string join(std::vector<std::string> const& names) {
    std::string path;
    for (std::string const& name : names)
        path += (path.empty() ? "" : "/") + name;
    return path;
}

/// The names of a widget and its ancestors from the outside in, those without a name left out.
std::vector<std::string> getNames(std::vector<TreeEntry> const& tree, int index) {
    std::vector<std::string> names;
    for (; index >= 0; index = tree[static_cast<std::size_t>(index)].parent)
        if (auto const& name = tree[static_cast<std::size_t>(index)].widget->getName(); !name.empty())
            names.push_back(toUtf8(name));
    std::reverse(names.begin(), names.end());
    return names;
}

/// Whether ancestors bear these names, in this order.
bool getBelow(std::vector<TreeEntry> const& tree, int parent, std::vector<std::string>::const_iterator first,
              std::vector<std::string>::const_iterator last) {
    for (; parent >= 0 && last != first; parent = tree[static_cast<std::size_t>(parent)].parent)
        if (toUtf8(tree[static_cast<std::size_t>(parent)].widget->getName()) == *(last - 1))
            --last;
    return first == last;
}

/// How many characters must be changed, added or left out, whatever their case.
std::size_t getDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            bool const same = std::tolower(static_cast<unsigned char>(a[i - 1])) ==
                              std::tolower(static_cast<unsigned char>(b[j - 1]));
            diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, diagonal + (same ? 0 : 1)}));
        }
    }
    return row.back();
}

/// What the user may have meant: up to five, the nearest first.
std::string suggest(std::string const& wanted, std::set<std::string> const& known) {
    std::vector<std::pair<std::size_t, std::string>> near;
    for (std::string const& word : known) {
        bool const part = !wanted.empty() && !word.empty() &&
                          (word.find(wanted) != std::string::npos || wanted.find(word) != std::string::npos);
        std::size_t const distance = getDistance(wanted, word);
        if (part || distance <= std::max<std::size_t>(2, wanted.size() / 3))
            near.emplace_back(distance, word);
    }
    std::sort(near.begin(), near.end());
    near.resize(std::min<std::size_t>(near.size(), 5));
    std::string words;
    for (auto const& [distance, word] : near)
        words += (words.empty() ? "; there is \"" : ", \"") + word + "\"";
    return words;
}

/// Picks the visible ones of several.
template <class Found>
std::vector<Found> preferVisible(std::vector<Found> const& found) {
    std::vector<Found> visible;
    std::copy_if(found.begin(), found.end(), std::back_inserter(visible),
                 [](Found const& one) { return one.widget->getVisible(true); });
    return visible.empty() ? found : visible;
}

}  // namespace

// --- Making ---

Target::Target(char const* path) : Target(std::string_view(path)) {}
Target::Target(std::string const& path) : Target(std::string_view(path)) {}
Target::Target(std::string_view path) : names_(split(path)), byName_(true) {}
Target::Target(gui::Widget& widget) : handler_(widget.getHandler()) {}
Target::Target(osg::Vec2i const& point) : point_(point) {}

Target byText(std::string_view type, std::string_view text) {
    Target target;
    target.type_ = type;
    target.text_ = text;
    return target;
}

Target Target::in(std::string_view path) const {
    Target result = *this;
    std::vector<std::string> const outer = split(path);
    result.names_.insert(result.names_.begin(), outer.begin(), outer.end());
    return result;
}

Target Target::at(osg::Vec2i const& place) const {
    Target result = *this;
    result.place_ = place;
    return result;
}

std::string Target::describe() const {
    std::string words;
    if (point_)
        words = std::to_string(point_->x()) + "," + std::to_string(point_->y());
    else if (handler_)
        words = gui::WidgetHandler::get(handler_) ? testkit::describe(*gui::WidgetHandler::get(handler_))
                                                  : "a widget that has died";
    else if (byName_)
        words = "\"" + join(names_) + "\"";
    else
        words = (type_.empty() ? "widget" : type_) + " with the text \"" + text_ + "\"" +
                (names_.empty() ? "" : " in \"" + join(names_) + "\"");
    if (place_)
        words += " at " + std::to_string(place_->x()) + "," + std::to_string(place_->y());
    return words;
}

// --- Finding ---

struct Target::Found {
    gui::Widget* widget;
    std::string path;
};

void Target::match_(std::vector<TreeEntry> const& tree, int index, std::vector<Found>& found,
                    std::set<std::string>& known) const {
    TreeEntry const& entry = tree[static_cast<std::size_t>(index)];
    std::string const word = toUtf8(byName_ ? entry.widget->getName() : entry.widget->getText());
    if (word != (byName_ ? names_.back() : text_)) {
        known.insert(word);
        return;
    }
    std::string const path = join(getNames(tree, index));
    bool const ofType = byName_ || (type_.empty() ? !dynamic_cast<gui::WindowHeader*>(entry.widget)
                                                  : type_ == entry.widget->getWidgetType());
    if (ofType && getBelow(tree, entry.parent, names_.begin(), names_.end() - (byName_ ? 1 : 0)))
        found.push_back({entry.widget, path});
    else
        known.insert(byName_ ? path : entry.widget->getWidgetType() + (" " + word));
}

gui::Widget* Target::find(std::string& error) const {
    if (!gui::GUI::get()) {
        error = "there is no GUI any more";
        return nullptr;
    }
    if (point_)
        return gui::WindowsManager::get(0)->findWidgetAtScreenPoint(*point_);
    if (handler_ || (byName_ && names_.empty())) {
        gui::Widget* const widget = gui::WidgetHandler::get(handler_);
        if (!widget)
            error = handler_ ? "the widget has died" : "the path has no name in it";
        return widget;
    }
    std::vector<Found> found;
    std::set<std::string> known;
    for (int surface = 0; gui::GUI::get()->getSurfaceIdValid(surface); ++surface) {
        std::vector<TreeEntry> const tree = listTree(surface);
        for (std::size_t i = 0; i < tree.size(); ++i)
            match_(tree, static_cast<int>(i), found, known);
    }
    found = preferVisible(found);
    if (found.size() == 1)
        return found.front().widget;
    if (found.empty()) {
        error = "nothing shown is that" + suggest(byName_ ? names_.back() : text_, known);
        return nullptr;
    }
    error = std::to_string(found.size()) + " widgets are that; say more of the path, or which one:";
    for (Found const& one : found)
        error += "\n  " + one.path + ": " + testkit::describe(*one.widget);
    return nullptr;
}

}  // namespace testkit
