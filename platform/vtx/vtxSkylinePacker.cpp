#include "platform/vtx/vtxSkylinePacker.h"

#include <algorithm>

vtxSkylinePacker::vtxSkylinePacker(int side) : side_(side) { reset(); }

void vtxSkylinePacker::reset() { outline_.assign(1, Step{0, 0, side_}); }

int vtxSkylinePacker::fit_(size_t index, int width, int height) const {
    int const x = outline_[index].x;
    if (x + width > side_)
        return -1;
    int y = 0;
    for (int left = width; left > 0; ++index) {
        y = std::max(y, outline_[index].y);
        if (y + height > side_)
            return -1;
        left -= outline_[index].width;
    }
    return y;
}

void vtxSkylinePacker::cover_(size_t index, Step const& step) {
    outline_.insert(outline_.begin() + static_cast<std::ptrdiff_t>(index), step);
    int const end = step.x + step.width;
    size_t const next = index + 1;
    while (next < outline_.size() && outline_[next].x < end) {
        int const covered = end - outline_[next].x;
        if (covered < outline_[next].width) {
            outline_[next].x += covered;
            outline_[next].width -= covered;
            break;
        }
        outline_.erase(outline_.begin() + static_cast<std::ptrdiff_t>(next));
    }
    for (size_t i = outline_.size(); i-- > 1;) {
        if (outline_[i].y != outline_[i - 1].y)
            continue;
        outline_[i - 1].width += outline_[i].width;
        outline_.erase(outline_.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

bool vtxSkylinePacker::add(int width, int height, int& x, int& y) {
    if (width < 1 || height < 1 || width > side_ || height > side_)
        return false;
    size_t best = outline_.size();
    int bestY = side_;
    for (size_t i = 0; i < outline_.size(); ++i) {
        int const at = fit_(i, width, height);
        if (at >= 0 && at < bestY) {
            best = i;
            bestY = at;
        }
    }
    if (best == outline_.size())
        return false;
    x = outline_[best].x;
    y = bestY;
    cover_(best, Step{x, bestY + height, width});
    return true;
}
