#pragma once

#include <map>
#include <string>
#include <vector>

/// The key tables of docs/skins.md.
namespace skintest {

struct DocumentedKey {
    std::string form;
    std::string byDefault;
    std::string meaning;
};

class SkinDocument {
public:
    /// By key: "params.headerHeight", or for the drawables just "file".
    using Keys = std::map<std::string, DocumentedKey>;

    /// Reads the document; fails the running test if there is nothing in it.
    SkinDocument();

    /// Of one heading, empty where it has no table. A heading that is missing fails the running test.
    Keys const& getKeys(std::string const& heading) const;
    bool hasHeading(std::string const& heading) const { return keys_.count(heading) > 0; }
    /// The headings of the skins that widgets load, without their parts.
    std::vector<std::string> getSkinNames() const;
    /// The heading that describes the part `name` of the skin `heading`: its own, or the one it is said to be "As".
    std::string findPartHeading(std::string const& heading, std::string const& name) const;

private:
    std::map<std::string, Keys> keys_;
    Keys none_;
};

}  // namespace skintest
