// Arrays: a block of elements of one type with bounds for each dimension. Entry points:
// make_rtable, rtable_data. Tests: tests/unit/values_test.cpp, tests/transcripts/vexil/services.vt.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vexil/values/values.h"
#include "vstring/kernel_vector.h"

namespace vexil {

/// A new Array with all elements 0. `bounds` has a lower and an upper one for each dimension.
/// Raises when the settings are not those of an Array.
Object make_rtable(const HostRTableSettings& settings, const std::int32_t* bounds);
/// Settings and bounds of an Array.
HostRTableSettings rtable_settings(Object array);
void* rtable_data(Object array);
std::size_t rtable_size(Object array);  // elements in all dimensions together
/// Element i of all, from 0; a byte or a float becomes an object.
Object rtable_element(Object array, std::size_t i);

}  // namespace vexil
