#pragma once

#include "host/lua/ClassBinding.h"

namespace host::lua {

/// Each adds the classes of one file of host/lua/classes, bases first.
using ClassList = qor::vector<ClassBinding>;

void addWidget(ClassList& list);
void addContainer(ClassList& list);
void addButtons(ClassList& list);
void addLabels(ClassList& list);
void addSmall(ClassList& list);
void addScrolling(ClassList& list);
void addWindows(ClassList& list);
void addLayouts(ClassList& list);

}  // namespace host::lua
