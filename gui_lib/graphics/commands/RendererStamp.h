#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// Remembers for which renderer something was recorded or made. What belongs to one that has gone must not be drawn:
/// its textures and geometry went with it.
class VORLEX_API RendererStamp {
public:
    void take();
    bool isCurrent() const;

private:
    unsigned generation_ = 0;  ///< 0: no renderer
};

}  // namespace gui
