#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "tests/support/WidgetZoo.h"

namespace gui {
class Window;
}

namespace support {

/// Plants wrong values in skins and looks at what is left of them. What keys a skin has is learnt by making every
/// animal of the zoo with skins that note each key that is looked up. Keeps the GUI's skin file for itself: while one
/// lives, other skins are those of the file.
class SkinShapes {
public:
    static constexpr size_t kindCount = 12;

    /// A skin and one animal that loads it by itself.
    struct Shape {
        std::string skin;
        ZooAnimal const* animal = nullptr;
        /// Each table and each key in it, as "buttonSkin/skinData/params/insets/left"; the first is the skin itself.
        std::vector<std::string> paths;
    };
    struct Plant {
        size_t path = 0;
        size_t kind = 0;
    };

    explicit SkinShapes(ZooHost& host);
    SkinShapes(SkinShapes const&) = delete;
    SkinShapes& operator=(SkinShapes const&) = delete;

    std::vector<Shape> const& getShapes() const { return shapes_; }
    static char const* getKindName(size_t kind);

    /// Makes the animal with the wrong values in its skin and draws it in the states that they belong to. Returns what
    /// is wrong then, empty if nothing: a key beside those planted that is read otherwise than without them, misuse of
    /// the renderer, a Lua stack of another height.
    std::string play(Shape const& shape, std::vector<Plant> const& plants);

private:
    void call_(char const* function, std::vector<std::string> const& arguments, int results);
    std::string takeText_();
    void learn_(ZooAnimal const& animal);
    gui::Widget* show_(ZooAnimal const& animal);
    void write_(gui::Widget& widget);
    void draw_(gui::Widget& widget, std::vector<std::string> const& paths);

    ZooHost& host_;
    gui::Window* window_;
    /// Of which the script knows what they should be.
    std::set<Shape const*> referenced_;
    std::vector<Shape> shapes_;
};

}  // namespace support
