#pragma once

#include "platform/qor/Api.h"

namespace gui {

class Layout;

/// A stable handle of a layout, as `WidgetHandler` is of a widget: it answers null after the layout's death and is
/// never used again.
class VORLEX_API LayoutHandler {
public:
    /// A new record for `layout`; its index is the number of records plus one.
    static LayoutHandler* create(Layout* layout);
    /// The layout, or null for a null handler and after `release`.
    static Layout* get(LayoutHandler const* handler) { return handler ? handler->layout : nullptr; }
    /// The layout has died; null is ignored.
    static void release(LayoutHandler* handler);
    /// Deletes every layout that is still alive and empties the table.
    static void shutdown();

    int getIndex() const { return index; }

private:
    int index = 0;
    Layout* layout = nullptr;
};

}  // namespace gui
