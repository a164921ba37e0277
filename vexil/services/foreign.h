// Foreign handles: a module's data as a value of the host. Entry point: dispose_of.
// Tests: tests/unit/services_test.cpp.
#pragma once

#include "vexil/values/values.h"

namespace vexil {

/// Calls the disposer of a handle that nothing refers to any more; what it raises is dropped.
void dispose_of(Object handle);

}  // namespace vexil
