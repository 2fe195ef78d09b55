#pragma once

#include "platform/qor/Api.h"

namespace gui {

class Widget;

/// A stable handle of a widget: it answers null after the widget's death, so whoever keeps a widget across a callback
/// or a frame keeps its handler and needs no notice. Lifetime: a record is never freed nor used again while the program
/// runs.
class VORLEX_API WidgetHandler {
public:
    /// A new record for `widget`; its index is the number of records plus one.
    static WidgetHandler* create(Widget* widget);
    /// The widget, or null for a null handler and after `release`.
    static Widget* get(WidgetHandler const* handler) { return handler ? handler->widget : nullptr; }
    /// The widget has died; null is ignored.
    static void release(WidgetHandler* handler);
    /// Deletes every widget that is still alive, those included that destructors make meanwhile, and empties the table.
    static void shutdown();

    // --- For tools that look at every widget ---
    /// Records made since the last `shutdown`, those of dead widgets included.
    static int getCount();
    /// The record of an index below the count.
    static WidgetHandler* getAt(int place);

    int getIndex() const { return index; }

private:
    int index = 0;
    Widget* widget = nullptr;
};

}  // namespace gui
