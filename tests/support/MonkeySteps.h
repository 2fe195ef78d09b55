#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace support {

/// What a monkey does to the host or to a widget. The order is the numbering of the bytes.
enum class MonkeyEvent : uint8_t {
    Move,
    Click,
    DoubleClick,
    Press,
    Release,
    Drag,
    Wheel,
    Key,
    HoldKey,
    LetKeysGo,
    Char,
    Clock,
    Frame,
    Resize,
    Rescale,
    LoseFocus,
    ShowOrHide,
    CloseWindow,
    MakeAnimal,
    MakeModal,
    Change,
    RawInput,
    UserMessage,
    Quit,
    Count
};

/// What a monkey does from inside a callback.
enum class MonkeyVerb : uint8_t {
    EndSelf,
    EndParent,
    EndSibling,
    EndFocused,
    EndCaptured,
    EndModal,
    Move,
    LoadSkin,  ///< or the skin file anew, or start an effect
    PostInput,
    NestedFrame,
    Count
};

inline constexpr std::size_t monkeyVerbCount = std::size_t(MonkeyVerb::Count);

/// One step of a run, as it stands in a file. A file of any bytes is a run; what is left over at its end counts for
/// nothing.
struct MonkeyStep {
    static constexpr std::size_t size = 8;
    /// How many callbacks of a step act at most, and which byte has the verb of the first.
    static constexpr std::size_t actCount = 2;
    static constexpr std::size_t firstVerb = 5;

    explicit MonkeyStep(uint8_t const* bytes);

    MonkeyEvent event;
    uint8_t a, b, c;
    /// How many callbacks of this step pass before one acts; 255 keeps all quiet.
    uint8_t gap;
    /// The verbs of the first and the second callback that acts, plus 1. 0 takes the verb that was used least in
    /// callbacks of the kind; the run writes its choice here, so that the file plays the same with fewer steps too.
    std::array<uint8_t, actCount> verbs;
    /// Which widget, which skin, and the like.
    uint8_t pick;
};

char const* getName(MonkeyEvent event);
char const* getName(MonkeyVerb verb);

/// The same bytes for the same seed, anywhere.
std::vector<uint8_t> makeMonkeyBytes(uint64_t seed, std::size_t steps);

}  // namespace support
