// Making values and taking them apart, but integers and names, which have files of their own.
#include "vexil/values/values.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

#include "vexil/values/integers.h"
#include "vexil/values/names.h"

namespace vexil {
namespace {

std::unique_ptr<Heap> the_heap;
Object empty_sequence = 0;

constexpr std::string_view kKindNames[] = {"integer", "float", "string",    "name",   "indexed",
                                           "list",    "set",   "sequence",  "range",  "equation",
                                           "array",   "bytes", "procedure", "record", "foreign"};

Object make_elements(int type, std::span<const Object> elements) {
  if (elements.size() > HOST_MAX_ELEMENTS) raise_out_of_memory();
  const Object object = heap().allocate(type, elements.size() + 1);
  std::copy(elements.begin(), elements.end(), host_words(object) + 1);
  return object;
}

Object make_pair(int type, Object first, Object second) {
  const Object both[] = {first, second};
  return make_elements(type, both);
}

// The sequence that a quoted one stands for; anything else as it is.
Object unquoted(Object object) {
  return host_type(object) == kTypeQuoted ? host_element(object, 1) : object;
}

}  // namespace

Heap& heap() { return *the_heap; }

void init_values(std::size_t heap_limit) {
  the_heap = std::make_unique<Heap>(heap_limit);
  empty_sequence = heap().allocate(HOST_TYPE_SEQUENCE, 1);
  heap().protect(empty_sequence);
  init_names();
}

void shut_values() {
  // Disposers may still use the heap: it must be in its place until they are through.
  heap().finalize_all();
  shut_names();
  the_heap.reset();
}

Kind kind_of(Object object) {
  if (host_is_immediate(object)) return Kind::Integer;
  switch (host_type(object)) {
    case kTypeBigInteger:
      return Kind::Integer;
    case kTypeFloat:
      return Kind::Float;
    case HOST_TYPE_INDEXED_NAME:
      return Kind::IndexedName;
    case kTypeProcedure:
      return Kind::Procedure;
    case kTypeRecord:
      return Kind::Record;
    case kTypeForeign:
      return Kind::Foreign;
    case HOST_TYPE_STRING:
      return Kind::String;
    case HOST_TYPE_NAME:
      return Kind::Name;
    case HOST_TYPE_EQUATION:
      return Kind::Equation;
    case HOST_TYPE_LIST:
      return Kind::List;
    case HOST_TYPE_RANGE:
      return Kind::Range;
    case HOST_TYPE_SET:
      return Kind::Set;
    case HOST_TYPE_ARRAY:
      return host_words(object)[kArrayDataType] == HOST_RTABLE_INTEGER1 ? Kind::Bytes : Kind::Array;
    default:
      return Kind::Sequence;  // a quoted one too
  }
}

std::string_view kind_name(Kind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }

Object make_float(double value) {
  const Object object = heap().allocate(kTypeFloat, 1 + sizeof value / 4);
  std::memcpy(host_words(object) + 1, &value, sizeof value);
  return object;
}

double float_value(Object object) {
  if (kind_of(object) == Kind::Integer) return nearest_double(big_integer(object));
  double value = 0;
  if (host_type(object) == kTypeFloat) std::memcpy(&value, host_words(object) + 1, sizeof value);
  return value;
}

Object make_text(int type, std::string_view text) {
  if (text.size() > HOST_MAX_TEXT) raise_out_of_memory();
  const Object object = heap().allocate_text(type, (HOST_TEXT_OFFSET + text.size()) / 4 + 1);
  std::copy(text.begin(), text.end(), host_text(object));
  return object;
}

Object make_string(std::string_view text) { return make_text(HOST_TYPE_STRING, text); }

std::string_view text(Object object) { return {host_text(object), host_text_length(object)}; }

Object make_sequence(std::span<const Object> elements) {
  return elements.empty() ? empty_sequence : make_elements(HOST_TYPE_SEQUENCE, elements);
}

Object make_list(std::span<const Object> elements) {
  return make_elements(HOST_TYPE_LIST, elements);
}

Object make_range(Object lower, Object upper) { return make_pair(HOST_TYPE_RANGE, lower, upper); }

Object make_equation(Object left, Object right) {
  return make_pair(HOST_TYPE_EQUATION, left, right);
}

std::pair<Object, Object> sides(Object object) {
  return {host_element(object, 1), host_element(object, 2)};
}

Object make_indexed_name(Object name, std::span<const Object> indices) {
  return make_pair(HOST_TYPE_INDEXED_NAME, name, make_sequence(indices));
}

Object indexed_base(Object object) { return host_element(object, 1); }

std::span<const Object> elements(Object object) {
  const bool is_indexed = host_type(object) == HOST_TYPE_INDEXED_NAME;
  const Object sequence = is_indexed ? host_element(object, 2) : unquoted(object);
  return {host_words(sequence) + 1, host_num_elements(sequence)};
}

Object make_procedure(std::uint32_t code, Object program, std::span<const Object> captured) {
  if (captured.size() > HOST_MAX_ELEMENTS - 2) raise_out_of_memory();
  const Object object = heap().allocate(kTypeProcedure, 3 + captured.size());
  host_words(object)[1] = code;
  host_words(object)[2] = program;
  std::copy(captured.begin(), captured.end(), host_words(object) + 3);
  return object;
}

std::span<const Object> captured_values(Object procedure) {
  return {host_words(procedure) + 3, host_length(procedure) - 3};
}

std::uint32_t procedure_code(Object object) { return host_words(object)[1]; }

Object make_record(std::span<const std::pair<std::string_view, Object>> fields) {
  if (fields.size() > HOST_MAX_ELEMENTS / 2) raise_out_of_memory();
  const Object object = heap().allocate(kTypeRecord, 1 + 2 * fields.size());
  std::uint32_t* next = host_words(object) + 1;
  for (const auto& [name, value] : fields) {
    *next++ = make_name(name);
    *next++ = value;
  }
  return object;
}

std::vector<std::pair<Object, Object>> fields(Object record) {
  std::vector<std::pair<Object, Object>> result;
  for (std::size_t i = 1; i + 1 < host_length(record); i += 2) {
    result.emplace_back(host_element(record, i), host_element(record, i + 1));
  }
  return result;
}

}  // namespace vexil
