#include "tests/support/MonkeySteps.h"

#include <random>

namespace support {

namespace {

using Event = MonkeyEvent;

/// The event byte picks from here, so that common events come often from any bytes.
constexpr std::array<Event, 64> eventTable = {
    Event::Move,       Event::Move,        Event::Move,        Event::Move,        Event::Move,        Event::Move,
    Event::Move,       Event::Move,        Event::Move,        Event::Move,        Event::Move,        Event::Move,
    Event::Click,      Event::Click,       Event::Click,       Event::Click,       Event::Click,       Event::Click,
    Event::Click,      Event::Click,       Event::Click,       Event::DoubleClick, Event::DoubleClick, Event::Press,
    Event::Press,      Event::Press,       Event::Press,       Event::Release,     Event::Release,     Event::Release,
    Event::Release,    Event::Drag,        Event::Drag,        Event::Drag,        Event::Wheel,       Event::Wheel,
    Event::Key,        Event::Key,         Event::Key,         Event::Key,         Event::Key,         Event::HoldKey,
    Event::LetKeysGo,  Event::Char,        Event::Char,        Event::Clock,       Event::Clock,       Event::Frame,
    Event::Frame,      Event::Frame,       Event::Frame,       Event::Resize,      Event::Rescale,     Event::LoseFocus,
    Event::ShowOrHide, Event::CloseWindow, Event::CloseWindow, Event::MakeAnimal,  Event::MakeModal,   Event::Change,
    Event::Change,     Event::RawInput,    Event::UserMessage, Event::Quit};

constexpr std::array<char const*, std::size_t(Event::Count)> eventNames = {
    "move",         "click",        "double click", "press",      "release", "drag",      "wheel",        "key",
    "hold key",     "let keys go",  "char",         "clock",      "frame",   "resize",    "rescale",      "lose focus",
    "show or hide", "close window", "make animal",  "make modal", "change",  "raw input", "user message", "quit"};

constexpr std::array<char const*, monkeyVerbCount> verbNames = {
    "end self",  "end parent", "end sibling", "end focused", "end captured",
    "end modal", "move",       "load skin",   "post input",  "nested frame"};

}  // namespace

MonkeyStep::MonkeyStep(uint8_t const* bytes)
    : event(eventTable[bytes[0] % eventTable.size()]),
      a(bytes[1]),
      b(bytes[2]),
      c(bytes[3]),
      gap(bytes[4]),
      verbs{bytes[5], bytes[6]},
      pick(bytes[7]) {}

char const* getName(MonkeyEvent event) { return eventNames[std::size_t(event)]; }

char const* getName(MonkeyVerb verb) { return verbNames[std::size_t(verb)]; }

std::vector<uint8_t> makeMonkeyBytes(uint64_t seed, std::size_t steps) {
    // The engine gives the same numbers everywhere; the standard distributions do not.
    std::mt19937_64 engine(seed);
    std::vector<uint8_t> bytes;
    bytes.reserve(steps * MonkeyStep::size);
    for (std::size_t i = 0; i < steps; ++i) {
        uint64_t random = engine();
        std::array<uint8_t, MonkeyStep::size> step;
        for (uint8_t& byte : step) {
            byte = uint8_t(random);
            random >>= 8;
        }
        // Every second step acts, often in one of its first callbacks.
        uint64_t const gap = engine();
        bool const early = gap & 4;
        step[4] = (gap & 1) != 0 ? 255 : uint8_t((gap >> 8) % (early ? 6 : 60));
        step[5] = step[6] = 0;
        bytes.insert(bytes.end(), step.begin(), step.end());
    }
    return bytes;
}

}  // namespace support
