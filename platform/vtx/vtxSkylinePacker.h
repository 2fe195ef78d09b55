#pragma once

#include "platform/qor/Containers.h"

/// Places rectangles into a square page, lowest place first, keeping only the upper outline of what stands there.
/// Nothing placed ever moves, and single rectangles are not given back.
class vtxSkylinePacker {
public:
    explicit vtxSkylinePacker(int side);

    /// False if there is no room; the page is then as before.
    bool add(int width, int height, int& x, int& y);
    /// Forgets everything placed.
    void reset();

private:
    struct Step {
        int x;
        int y;
        int width;
    };

    /// Lowest y at which `width` fits when it starts at step `index`; -1 if it sticks out.
    int fit_(size_t index, int width, int height) const;
    void cover_(size_t index, Step const& step);

    int side_;
    qor::vector<Step> outline_;
};
