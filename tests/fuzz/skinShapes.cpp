// Bytes choose a skin, up to eight of its keys and what wrong value each gets: the other keys are read as before, and
// the widget is drawn.
#include "tests/support/SkinShapes.h"

#include "tests/fuzz/shared/FuzzHost.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    static auto* const shapes = new support::SkinShapes(fuzz::getHost());
    fuzz::FuzzInput input(data, size);
    auto const& shape = shapes->getShapes()[input.pick(shapes->getShapes().size())];
    std::vector<support::SkinShapes::Plant> plants;
    while (!input.isEmpty() && plants.size() < 8) {
        size_t const path = input.pick(65536) % shape.paths.size();
        plants.push_back({path, input.pick(support::SkinShapes::kindCount)});
    }
    fuzz::check(shapes->play(shape, plants).empty(), shapes->play(shape, plants).c_str());
    return 0;
}
