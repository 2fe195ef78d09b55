#include "tests/skins/SkinDocument.h"

#include <fstream>

#include <gtest/gtest.h>

namespace skintest {

namespace {

std::string trim(std::string const& text) {
    size_t const first = text.find_first_not_of(" `");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" `") - first + 1);
}

/// The cells of a row "| a | b |".
std::vector<std::string> splitRow(std::string const& line) {
    std::vector<std::string> cells;
    for (size_t start = 1, end = line.find('|', 1); end != std::string::npos; end = line.find('|', start)) {
        cells.push_back(trim(line.substr(start, end - start)));
        start = end + 1;
    }
    return cells;
}

}  // namespace

SkinDocument::SkinDocument() {
    std::ifstream file("docs/skins.md");
    std::string heading;
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, 3, "## ") == 0) {
            heading = line.substr(3);
            keys_[heading];
        } else if (line.compare(0, 3, "| `") == 0 && !heading.empty()) {
            std::vector<std::string> const cells = splitRow(line);
            if (cells.size() == 4)
                keys_[heading][cells[0]] = {cells[1], cells[2], cells[3]};
        }
    }
    EXPECT_FALSE(keys_.empty()) << "docs/skins.md has no tables";
}

SkinDocument::Keys const& SkinDocument::getKeys(std::string const& heading) const {
    auto const found = keys_.find(heading);
    EXPECT_TRUE(found != keys_.end()) << "docs/skins.md does not describe " << heading;
    return found == keys_.end() ? none_ : found->second;
}

std::vector<std::string> SkinDocument::getSkinNames() const {
    std::vector<std::string> names;
    for (auto const& [heading, keys] : keys_)
        if (heading.size() > 4 && heading.compare(heading.size() - 4, 4, "Skin") == 0)
            names.push_back(heading);
    return names;
}

std::string SkinDocument::findPartHeading(std::string const& heading, std::string const& name) const {
    auto const& keys = getKeys(heading);
    auto const found = keys.find("skins." + name);
    if (found != keys.end() && found->second.meaning.compare(0, 4, "As `") == 0)
        return found->second.meaning.substr(4, found->second.meaning.find('`', 4) - 4);
    return heading + "." + name;
}

}  // namespace skintest
