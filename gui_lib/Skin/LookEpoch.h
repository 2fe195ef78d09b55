#pragma once

namespace gui::skin {

/// A number that changes whenever a look of any `Data` is written or ends, and whenever a picture file may stand for
/// another texture. Whoever keeps what it made from a look, known by its address, compares the number.
class LookEpoch {
public:
    static unsigned now();
    static void advance() { ++changes_; }

private:
    static inline unsigned changes_ = 0;
};

}  // namespace gui::skin
