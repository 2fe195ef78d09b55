#pragma once

#include <cstdint>

namespace gui {

/// The time within which what layouts answer to size questions is kept, so that a tree is measured once and not once
/// for each level above a widget. The outermost one begins with nothing known. Whatever changes a size meanwhile tells
/// so: `Widget::forgetMeasures_` for the place and size of one widget, `forgetAll` for anything rarer. GUI thread only.
class MeasurePass {
public:
    MeasurePass() {
        if (depth_++ == 0)
            ++stamp_;
    }
    ~MeasurePass() { --depth_; }
    MeasurePass(MeasurePass const&) = delete;
    MeasurePass& operator=(MeasurePass const&) = delete;

    static bool isOpen() { return depth_ > 0; }
    /// Marks what is known now; what carries another stamp is known no longer.
    static std::uint64_t getStamp() { return stamp_; }
    static void forgetAll() { ++stamp_; }

    /// For tests, which compare both ways: false measures anew for each question, texts too.
    static void setKeeping(bool keeping) { keeping_ = keeping; }
    static bool isKeeping() { return keeping_; }

private:
    static inline int depth_ = 0;
    static inline std::uint64_t stamp_ = 1;
    static inline bool keeping_ = true;
};

}  // namespace gui
