// Arrays in memory: data type, start of the elements, number of dimensions, number of elements,
// bounds, and from an 8-byte boundary on the elements, the last dimension's running fastest.
#include "vexil/values/arrays.h"

#include <algorithm>
#include <cstring>

namespace vexil {
namespace {

constexpr std::size_t kDimensions = 3;
constexpr std::size_t kCount = 4;
constexpr std::size_t kBounds = 5;

std::size_t bytes_of_element(std::int32_t data_type) {
  switch (data_type) {
    case HOST_RTABLE_ANY:
      return sizeof(Object);
    case HOST_RTABLE_INTEGER1:
      return 1;
    case HOST_RTABLE_FLOAT8:
      return sizeof(double);
    default:
      raise_error("unknown data type of an Array: %1", {make_integer(data_type)});
  }
}

void check_settings(const HostRTableSettings& settings) {
  if (settings.storage != HOST_RTABLE_RECTANGULAR) {
    raise_error("unknown storage of an Array: %1", {make_integer(settings.storage)});
  }
  if (settings.num_dimensions < 1 || settings.num_dimensions > HOST_RTABLE_MAX_DIMENSIONS) {
    raise_error("invalid number of dimensions: %1", {make_integer(settings.num_dimensions)});
  }
}

// The product of all extents. A dimension without an element makes the whole empty, but its
// neighbours' extents must be valid all the same.
std::size_t count_elements(const std::int32_t* bounds, std::int32_t dimensions) {
  std::uint64_t count = 1;
  for (std::int32_t d = 0; d < dimensions; ++d) {
    const std::int64_t extent = std::int64_t{bounds[2 * d + 1]} - bounds[2 * d] + 1;
    if (extent < 0) raise_error("invalid bounds of an Array");
    count *= static_cast<std::uint64_t>(extent);  // at most 2^28 * 2^32
    if (count > std::uint64_t{HOST_LENGTH_MASK} * 4) raise_out_of_memory();
  }
  return static_cast<std::size_t>(count);
}

// The list of the elements of dimension d, which start at element `first` and are `size` in all.
Object nested_list(Object array, const HostRTableSettings& settings, std::int32_t d,
                   std::size_t first, std::size_t size) {
  const bool is_last = d + 1 == settings.num_dimensions;
  const std::int64_t extent = std::int64_t{settings.bounds[2 * d + 1]} - settings.bounds[2 * d] + 1;
  const std::size_t rows = size == 0 ? 0 : static_cast<std::size_t>(extent);
  std::vector<Object> row(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    row[i] = is_last ? rtable_element(array, first + i)
                     : nested_list(array, settings, d + 1, first + i * (size / rows), size / rows);
  }
  return make_list(row);
}

}  // namespace

Object make_rtable(const HostRTableSettings& settings, const std::int32_t* bounds) {
  check_settings(settings);
  const std::size_t width = bytes_of_element(settings.data_type);
  const std::size_t count = count_elements(bounds, settings.num_dimensions);
  const auto num_bounds = static_cast<std::size_t>(2 * settings.num_dimensions);
  const std::size_t start = (kBounds + num_bounds + 1) / 2 * 2;
  if (count > (HOST_LENGTH_MASK - start) * 4 / width) raise_out_of_memory();
  const Object array = heap().allocate(HOST_TYPE_ARRAY, start + (count * width + 3) / 4);
  std::uint32_t* words = host_words(array);
  words[kArrayDataType] = static_cast<std::uint32_t>(settings.data_type);
  words[kArrayDataStart] = static_cast<std::uint32_t>(start);
  words[kDimensions] = static_cast<std::uint32_t>(settings.num_dimensions);
  words[kCount] = static_cast<std::uint32_t>(count);
  std::memcpy(words + kBounds, bounds, num_bounds * sizeof *bounds);
  if (settings.data_type == HOST_RTABLE_ANY) {
    std::fill_n(words + start, count, make_integer(0));
  }
  return array;
}

HostRTableSettings rtable_settings(Object array) {
  const std::uint32_t* words = host_words(array);
  HostRTableSettings settings{};
  settings.data_type = static_cast<std::int32_t>(words[kArrayDataType]);
  settings.storage = HOST_RTABLE_RECTANGULAR;
  settings.num_dimensions = static_cast<std::int32_t>(words[kDimensions]);
  std::memcpy(settings.bounds, words + kBounds, words[kDimensions] * 2 * sizeof(std::int32_t));
  return settings;
}

void* rtable_data(Object array) { return host_words(array) + host_words(array)[kArrayDataStart]; }

std::size_t rtable_size(Object array) { return host_words(array)[kCount]; }

Object rtable_element(Object array, std::size_t i) {
  switch (host_words(array)[kArrayDataType]) {
    case HOST_RTABLE_INTEGER1:
      return make_integer(std::int64_t{static_cast<const std::int8_t*>(rtable_data(array))[i]});
    case HOST_RTABLE_FLOAT8:
      return make_float(static_cast<const double*>(rtable_data(array))[i]);
    default:
      return static_cast<const Object*>(rtable_data(array))[i];
  }
}

Object make_array(std::span<const Object> elements) {
  if (elements.size() > HOST_MAX_ELEMENTS) raise_out_of_memory();
  const std::int32_t bounds[] = {1, static_cast<std::int32_t>(elements.size())};
  const Object array = make_rtable({HOST_RTABLE_ANY, HOST_RTABLE_RECTANGULAR, 1, {}}, bounds);
  std::copy(elements.begin(), elements.end(), static_cast<Object*>(rtable_data(array)));
  return array;
}

Object make_byte_array(std::span<const std::int8_t> bytes) {
  if (bytes.size() > HOST_MAX_TEXT) raise_out_of_memory();
  const std::int32_t bounds[] = {1, static_cast<std::int32_t>(bytes.size())};
  const Object array = make_rtable({HOST_RTABLE_INTEGER1, HOST_RTABLE_RECTANGULAR, 1, {}}, bounds);
  std::copy(bytes.begin(), bytes.end(), static_cast<std::int8_t*>(rtable_data(array)));
  return array;
}

Object array_contents(Object array) {
  const HostRTableSettings settings = rtable_settings(array);
  return nested_list(array, settings, 0, 0, rtable_size(array));
}

std::span<const std::int8_t> bytes(Object array) {
  return {static_cast<const std::int8_t*>(rtable_data(array)), rtable_size(array)};
}

}  // namespace vexil
