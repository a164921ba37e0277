// Services on Arrays.
#include <cstring>

#include "vexil/services/boundary.h"
#include "vexil/services/table.h"
#include "vexil/values/arrays.h"

namespace vexil::service {
namespace {

Object checked_array(Object object) {
  if (!IsHostRTable(object)) raise_error("not an Array");
  return object;
}

void fill(Object array, const void* data) {
  if (rtable_settings(array).data_type == HOST_RTABLE_ANY) {
    const auto* objects = static_cast<const Object*>(data);
    auto* elements = static_cast<Object*>(rtable_data(array));
    for (std::size_t i = 0; i < rtable_size(array); ++i)
      elements[i] = unquoted(checked(objects[i]));
  } else {
    std::memcpy(rtable_data(array), data, rtable_bytes(array));
  }
}

}  // namespace

int IsHostRTable(HostObject object) {
  return object != 0 && heap().contains(object) && host_type(object) == HOST_TYPE_ARRAY;
}

void HostRTableGetSettings(HostRTableSettings* settings, HostObject array) {
  serve([&] { *settings = rtable_settings(checked_array(array)); });
}

void HostRTableGetDefaults(HostRTableSettings* settings) {
  *settings = {HOST_RTABLE_ANY, HOST_RTABLE_RECTANGULAR, 1, {}};
}

HostObject HostRTableCreate(const HostRTableSettings* settings, const void* data,
                            const int32_t* bounds) {
  return serve([&] {
    if (settings == nullptr || bounds == nullptr) raise_error("an Array needs settings and bounds");
    const Object array = make_rtable(*settings, bounds);
    if (data != nullptr) fill(array, data);
    return array;
  });
}

void* HostRTableData(HostObject array) {
  return serve([&] { return rtable_data(checked_array(array)); });
}

int HostRTableNumElements(HostObject array) {
  return serve([&] { return static_cast<int>(rtable_size(checked_array(array))); });
}

}  // namespace vexil::service
