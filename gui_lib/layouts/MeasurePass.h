#pragma once

#include <cstdint>

namespace gui {

/// For how long answers to size questions are known, so that a tree is measured once and not once for each level above
/// a widget. There are two kinds. Fleeting answers, in which a program's own code has a part, are kept while the
/// outermost pass runs and nothing changes that an answer could depend on, be it a place, a size or a state. Lasting
/// ones come from the toolkit's own functions alone and depend on neither place nor size nor state: they are kept until
/// what they depend on changes. GUI thread only.
class MeasurePass {
public:
    MeasurePass() {
        if (depth_++ == 0)
            begin();
    }
    ~MeasurePass() { --depth_; }
    MeasurePass(MeasurePass const&) = delete;
    MeasurePass& operator=(MeasurePass const&) = delete;

    static bool isOpen() { return depth_ > 0; }
    /// As if a pass began here: no fleeting answer is known, and no lasting one if fonts have changed.
    static void begin();

    /// Mark what is known now; what carries another stamp is known no longer. No fleeting stamp is a lasting one. How
    /// widgets are drawn, whether to a target, is known under the fleeting one too.
    static std::uint64_t getStamp() { return stamp_; }
    static std::uint64_t getLastingStamp() { return lastingStamp_; }

    static void forgetFleeting() {
        stamp_ = ++lastStamp_;
        hasFleeting_ = false;
    }
    static void forgetAll() {
        lastingStamp_ = ++lastStamp_;
        forgetFleeting();
    }

    /// A fleeting answer is kept. Until then there is none to forget.
    static void noteFleeting() { hasFleeting_ = true; }
    static bool hasFleeting() { return hasFleeting_; }

    /// For tests, which compare both ways: false measures anew for each question, texts too.
    static void setKeeping(bool keeping) {
        keeping_ = keeping;
        forgetAll();
    }
    static bool isKeeping() { return keeping_; }

private:
    static inline int depth_ = 0;
    static inline std::uint64_t stamp_ = 2;
    static inline std::uint64_t lastingStamp_ = 1;
    static inline std::uint64_t lastStamp_ = 2;
    static inline bool hasFleeting_ = false;
    static inline bool keeping_ = true;
};

}  // namespace gui
