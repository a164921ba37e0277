// One function for each row of the service table; a row without one does not link. They are defined
// in table.cpp (the table, errors, output), objects.cpp, calls.cpp, rtables.cpp and foreign.cpp.
#pragma once

#include "vstring/kernel_vector.h"

namespace vexil::service {

#define SERVICE(result, name, parameters) result name parameters;
#include "vstring/kernel_services.def"
#undef SERVICE

}  // namespace vexil::service
