// x[i]: elements of values, and indexed names; see operators.h.
#include "vexil/language/operators.h"
#include "vexil/services/services.h"

namespace vexil {

namespace {

// A position from 1 to size, counted from 0.
std::size_t position_in(Object index, std::size_t size) {
  if (!is_integer(index)) raise_error("an index must be an integer, but is %1", {index});
  if (!is_integer32(index) || integer32(index) < 1 ||
      static_cast<std::size_t>(integer32(index)) > size) {
    raise_error("index %1 is out of range", {index});
  }
  return static_cast<std::size_t>(integer32(index)) - 1;
}

Object index_array(Object array, std::span<const Object> indices) {
  HostRTableSettings settings{};
  kernel_vector().HostRTableGetSettings(&settings, array);
  const auto dimensions = static_cast<std::size_t>(settings.num_dimensions);
  if (indices.size() != dimensions) raise_error("an Array needs as many indices as dimensions");
  std::size_t position = 0;
  for (std::size_t i = 0; i < dimensions; ++i) {
    const std::int64_t lower = settings.bounds[2 * i];
    const std::int64_t upper = settings.bounds[2 * i + 1];
    if (!is_integer32(indices[i]) || integer32(indices[i]) < lower ||
        integer32(indices[i]) > upper) {
      raise_error("index %1 is out of range", {indices[i]});
    }
    position = position * static_cast<std::size_t>(upper - lower + 1) +
               static_cast<std::size_t>(integer32(indices[i]) - lower);
  }
  const void* data = kernel_vector().HostRTableData(array);
  switch (settings.data_type) {
    case HOST_RTABLE_INTEGER1:
      return make_integer(static_cast<const std::uint8_t*>(data)[position]);
    case HOST_RTABLE_FLOAT8:
      return make_float(static_cast<const double*>(data)[position]);
    default:
      return static_cast<const Object*>(data)[position];
  }
}

Object index_record(Object record, Object index) {
  const Kind kind = kind_of(index);
  if (kind == Kind::Name || kind == Kind::String) {
    for (const auto& [name, value] : fields(record)) {
      if (text(name) == text(index)) return value;
    }
  }
  raise_error("the record has no field %1", {index});
}

Object index_once(Object object, Object index) {
  switch (kind_of(object)) {
    case Kind::List:
    case Kind::Set:
    case Kind::Sequence:
      return elements(object)[position_in(index, elements(object).size())];
    case Kind::String:
      return make_string(text(object).substr(position_in(index, text(object).size()), 1));
    case Kind::Equation:
    case Kind::Range:
      return position_in(index, 2) == 0 ? sides(object).first : sides(object).second;
    case Kind::Record:
      return index_record(object, index);
    default:
      raise_error("%1 cannot be indexed", {object});
  }
}

}  // namespace

Object index_value(Object object, std::span<const Object> indices) {
  const Kind kind = kind_of(object);
  if (kind == Kind::Name || kind == Kind::IndexedName) return make_indexed_name(object, indices);
  if (kind == Kind::Array || kind == Kind::Bytes) return index_array(object, indices);
  if (indices.empty()) raise_error("an index is missing");
  for (Object index : indices) {
    object = kind_of(object) == Kind::Name ? make_indexed_name(object, {&index, 1})
                                           : index_once(object, index);
  }
  return object;
}

}  // namespace vexil
