#include <algorithm>
#include <cstdlib>
#include <set>

#include "platform/qor/Paths.h"
#include "platform/vtx/vtxPicture.h"
#include "tests/skins/SkinDocument.h"
#include "tests/skins/SkinTree.h"

#include <gtest/gtest.h>

namespace skintest {

namespace {

using Kind = Value::Kind;

/// Whether a value has a form of docs/skins.md: "size", "colour", ...
bool hasForm(Value const& value, std::string const& form) {
    auto const hasNumbers = [&value](std::set<std::string> const& names) {
        return value.kind == Kind::Table &&
               std::all_of(value.fields.begin(), value.fields.end(), [&names](auto const& field) {
                   return names.count(field.first) > 0 && field.second.kind == Kind::Number;
               });
    };
    static std::map<std::string, Kind> const kinds = {
        {"boolean", Kind::Boolean}, {"number", Kind::Number}, {"string", Kind::String}, {"colour", Kind::String}};
    static std::map<std::string, std::set<std::string>> const tables = {{"size", {"horz", "vert"}},
                                                                        {"rectangle", {"x1", "y1", "x2", "y2"}},
                                                                        {"insets", {"left", "top", "right", "bottom"}}};
    if (auto const kind = kinds.find(form); kind != kinds.end())
        return value.kind == kind->second && (form != "colour" || isColor(value.text));
    if (auto const table = tables.find(form); table != tables.end())
        return hasNumbers(table->second);
    if (form == "align") {
        static std::set<std::string> const words = {"left",  "top",    "min", "center", "middle",
                                                    "right", "bottom", "max", "stretch"};
        Value const* const type = value.find("type");
        Value const* const offset = value.find("offset");
        return type != nullptr && words.count(type->text) > 0 && (offset == nullptr || offset->kind == Kind::Number);
    }
    return false;
}

bool readPictureSize(std::string const& name, osg::Vec2i& size) {
    qor::string bytes;
    qor::string error;
    return qor::readFile(name, bytes, error) && vtxReadPictureSize({bytes.data(), bytes.size()}, {}, size, error);
}

double getNumber(Value const* table, std::string const& key) {
    Value const* const field = table == nullptr ? nullptr : table->find(key);
    return field == nullptr ? 0 : field->number;
}

/// Walks a skin file along the document.
class SkinWalk {
public:
    void checkSkin(Value const& skin, std::string const& heading) {
        SCOPED_TRACE(heading);
        expectOnly_(skin, {"skinData"});
        Value const* const data = skin.find("skinData");
        ASSERT_NE(data, nullptr);
        expectOnly_(*data, {"params", "states", "skins"});
        auto const& keys = document_.getKeys(heading);
        if (Value const* const params = data->find("params"))
            checkParams_(*params, keys);
        if (Value const* const states = data->find("states"))
            checkStates_(*states, keys);
        Value const* const parts = data->find("skins");
        for (auto const& [key, documented] : keys) {
            if (key.compare(0, 6, "skins.") == 0) {
                std::string const part = key.substr(6);
                Value const* const value = parts == nullptr ? nullptr : parts->find(part);
                EXPECT_NE(value, nullptr) << "lacks its part " << part;
                if (value != nullptr)
                    checkSkin(*value, document_.findPartHeading(heading, part));
            }
        }
        for (auto const& [part, value] : parts == nullptr ? std::map<std::string, Value>() : parts->fields)
            EXPECT_GT(keys.count("skins." + part), 0u) << "no such part: " << part;
    }

    SkinDocument const& getDocument() const { return document_; }

private:
    void expectOnly_(Value const& table, std::set<std::string> const& names) {
        for (auto const& [name, value] : table.fields)
            EXPECT_GT(names.count(name), 0u) << "no such key: " << name;
    }

    void checkParams_(Value const& params, SkinDocument::Keys const& keys) {
        auto const& common = document_.getKeys("Every skin");
        for (auto const& [name, value] : params.fields) {
            auto const own = keys.find("params." + name);
            auto const shared = common.find("params." + name);
            bool const known = own != keys.end() || shared != common.end();
            EXPECT_TRUE(known) << "nothing reads params." << name;
            if (known) {
                EXPECT_TRUE(hasForm(value, own != keys.end() ? own->second.form : shared->second.form)) << name;
            }
        }
    }

    void checkStates_(Value const& states, SkinDocument::Keys const& keys) {
        expectOnly_(states, {"released", "hover", "pressed", "disabled"});
        for (auto const& [state, looks] : states.fields) {
            for (auto const& [inner, look] : looks.fields) {
                SCOPED_TRACE(state + " " + inner);
                EXPECT_TRUE(inner == "1" || inner == "2" || inner == "3");
                for (auto const& [name, drawable] : look.fields) {
                    auto const own = keys.find("states." + name);
                    checkDrawable_(drawable, own != keys.end() ? own->second.form : name);
                }
            }
        }
    }

    void checkDrawable_(Value const& drawable, std::string const& form) {
        SCOPED_TRACE(form);
        auto const& keys = document_.getKeys(form);
        for (auto const& [name, value] : drawable.fields) {
            auto const known = keys.find(name);
            ASSERT_NE(known, keys.end()) << "no such key: " << name;
            EXPECT_TRUE(hasForm(value, known->second.form)) << name;
        }
        for (auto const& [name, key] : keys) {
            bool const wanted = key.form == "colour" && (form == "bkg" || name == "color");
            EXPECT_TRUE(!wanted || drawable.find(name) != nullptr) << name << " is not written out";
        }
        if (form == "text") {
            ASSERT_NE(drawable.find("font"), nullptr);
            EXPECT_FALSE(qor::findFile(drawable.find("font")->text).empty()) << drawable.find("font")->text;
            EXPECT_GE(getNumber(&drawable, "fontSize"), 12) << "too small to read";
        } else if (drawable.find("file") != nullptr) {
            checkPicture_(drawable);
        }
    }

    void checkPicture_(Value const& drawable) {
        std::string const file = drawable.find("file")->text;
        osg::Vec2i size;
        osg::Vec2i twice;
        ASSERT_TRUE(readPictureSize(file, size)) << file;
        ASSERT_TRUE(readPictureSize(file.substr(0, file.size() - 4) + "@2x.png", twice)) << file;
        EXPECT_EQ(twice, size * 2);
        Value const* const rect = drawable.find("rect");
        ASSERT_NE(rect, nullptr);
        double const width = getNumber(rect, "x2") - getNumber(rect, "x1");
        double const height = getNumber(rect, "y2") - getNumber(rect, "y1");
        EXPECT_TRUE(getNumber(rect, "x1") >= 0 && getNumber(rect, "y1") >= 0 && width > 0 && height > 0);
        EXPECT_TRUE(getNumber(rect, "x2") <= size.x() && getNumber(rect, "y2") <= size.y()) << "outside " << file;
        Value const* const insets = drawable.find("insets");
        if (insets != nullptr) {
            EXPECT_GE(width - getNumber(insets, "left") - getNumber(insets, "right"), 3) << "nothing left to stretch";
            EXPECT_GE(height - getNumber(insets, "top") - getNumber(insets, "bottom"), 3) << "nothing left to stretch";
        }
    }

    SkinDocument document_;
};

class DefaultSkin : public testing::TestWithParam<char const*> {};

TEST_P(DefaultSkin, HasEverySkinWithKnownKeysOfTheRightForm) {
    SkinFile const file = readSkinFile(GetParam());
    EXPECT_TRUE(file.constantTables);
    SkinWalk walk;
    for (std::string const& name : walk.getDocument().getSkinNames()) {
        auto const found = file.skins.find(name);
        ASSERT_NE(found, file.skins.end()) << "lacks " << name;
        walk.checkSkin(found->second, name);
    }
    for (auto const& [name, skin] : file.skins)
        EXPECT_TRUE(walk.getDocument().hasHeading(name)) << name << " is not in the document";
}

TEST(Atlas, IsThatOfItsDrawing) { EXPECT_EQ(std::system("tools/atlas/check.sh"), 0); }

INSTANTIATE_TEST_SUITE_P(Files, DefaultSkin, testing::Values("skins/dark.lua", "skins/light.lua"));

}  // namespace

}  // namespace skintest
