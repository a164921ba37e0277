// The table of names, and how texts become objects. Entry points: init_names, make_text.
// Tests: tests/unit/values_test.cpp.
#pragma once

#include <string_view>

#include "vexil/values/values.h"

namespace vexil {

void init_names();
void shut_names();

/// A new string or name object.
Object make_text(int type, std::string_view text);

}  // namespace vexil
