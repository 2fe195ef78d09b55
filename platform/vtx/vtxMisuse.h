#pragma once

class vtxDevice;

/// Internal: wrong uses of the contract that the front half notices.
enum class vtxMisuse {
    NoPass,            ///< drawing while no pass is open
    PassOpen,          ///< beginDraw inside a pass
    PassNotOpen,       ///< endDraw without beginDraw
    EmptyStack,        ///< a pop without its push
    UnbalancedPass,    ///< pushes left over, or popped too often, at endDraw
    UnbalancedTarget,  ///< the same at the end of a target
    DeadTexture,       ///< a texture that was released or whose target ended
    DeadGeometry,      ///< a geometry that was ended
    BadGeometry,       ///< indices past the vertices
    BadNumber,         ///< a coordinate or matrix that is not finite
    TargetIntoItself,  ///< a target that shows itself, or is rendered while it is rendered
    EffectPass,        ///< drawEffect outside beginPass and endPass, or these not in pairs
    Count
};

/// Logs each kind once, with cause and remedy, and tells the device of every case.
class vtxMisuseLog {
public:
    explicit vtxMisuseLog(vtxDevice& device) : device_(device) {}
    void report(vtxMisuse misuse, char const* detail);

private:
    vtxDevice& device_;
    bool logged_[static_cast<int>(vtxMisuse::Count)] = {};
};
