// Values and outcomes as JSON. Entry points: json_of, json_string. Tests:
// tests/shell/shell_test.py.
#pragma once

#include <string>
#include <string_view>

#include "vexil/values/values.h"

namespace vexil {

/// Appends a value.
void append_json(std::string& out, Object value);
/// Appends a text: each byte is one code point from U+0000 to U+00FF.
void append_json_string(std::string& out, std::string_view text);

}  // namespace vexil
