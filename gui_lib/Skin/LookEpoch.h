#pragma once

namespace gui::skin {

/// A number that changes whenever a look of any `Data` is written or ends, and whenever a picture file may stand for
/// another texture. Whoever keeps what it made from a look, known by its address, compares the number.
class LookEpoch {
public:
    static unsigned now();
    /// The same for what is found in a `Data`, whatever pictures it names.
    static unsigned ofLooks() { return changes_; }
    static void advance() { ++changes_; }

private:
    static inline unsigned changes_ = 0;
};

}  // namespace gui::skin
