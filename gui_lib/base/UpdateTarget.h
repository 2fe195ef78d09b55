#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// Something that UpdateManager ticks. It must leave the manager before it dies.
class VORLEX_API UpdateTarget {
public:
    virtual ~UpdateTarget();
    /// `time` is seconds since the manager started.
    virtual void update(double time) = 0;
};

}  // namespace gui
