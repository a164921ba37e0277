// Arithmetic and comparison of values. Entry points: combine, negate, index_value. Tests:
// tests/transcripts/vexil/language.vt.
#pragma once

#include <span>

#include "vexil/language/ast.h"
#include "vexil/values/values.h"

namespace vexil {

/// Integers and floats.
bool is_number(Object object);
/// a operator b. Raises an error when the values do not allow it.
Object combine(Operator code, Object a, Object b);
Object negate(Object object);
/// object[indices...].
Object index_value(Object object, std::span<const Object> indices);
/// 1 true, 0 false, -1 FAIL; an equation is true when its sides are structurally equal. Raises an
/// error for anything else.
int truth_of(Object object);

}  // namespace vexil
