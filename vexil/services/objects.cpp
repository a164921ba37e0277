// Services that test, read and make objects.
#include <algorithm>
#include <cstdarg>
#include <string_view>

#include "vexil/services/boundary.h"
#include "vexil/services/table.h"

namespace vexil::service {
namespace {

bool has_type(Object object, int type) {
  return object != 0 && heap().contains(object) && host_type(object) == type;
}

// What a module stores somewhere: a sequence that was quoted is stored as itself.
Object value(Object object) { return unquoted(checked(object)); }

// A sequence or list of n slots. They hold 0 until the module fills them, so that a module that
// leaves one empty does no harm.
Object new_slots(int type, int n) {
  if (n < 0) raise_error("a negative number of elements: %1", {make_integer(n)});
  const auto size = static_cast<std::size_t>(n);
  if (size > HOST_MAX_ELEMENTS) raise_out_of_memory();
  const Object object = heap().allocate(type, size + 1);
  std::fill_n(host_words(object) + 1, size, make_integer(0));
  return object;
}

// The services with a variable number of arguments read them here, in a frame that may be unwound.
// NOLINTBEGIN(clang-analyzer-valist.Uninitialized): it is, by the caller
Object read_sequence(int n, va_list* objects) {
  const Object sequence = HostNewExpSeq(n);
  for (int i = 1; i <= n; ++i) host_words(sequence)[i] = value(va_arg(*objects, HostObject));
  return sequence;
}

Object read_record(int n, va_list* arguments) {
  if (n < 0) raise_error("a negative number of fields: %1", {make_integer(n)});
  std::vector<std::pair<std::string_view, Object>> fields;
  fields.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    const char* name = va_arg(*arguments, const char*);
    fields.emplace_back(name, value(va_arg(*arguments, HostObject)));
  }
  return make_record(fields);
}
// NOLINTEND(clang-analyzer-valist.Uninitialized)

}  // namespace

int HostNumArgs(HostObject sequence) {
  return serve([&] {
    if (!has_type(sequence, HOST_TYPE_SEQUENCE)) raise_error("not an argument sequence");
    return static_cast<int>(host_num_elements(sequence));
  });
}

int IsHostInteger(HostObject object) {
  return host_is_immediate(object) || has_type(object, kTypeBigInteger);
}
int IsHostInteger32(HostObject object) { return IsHostInteger(object) && is_integer32(object); }
int32_t HostToInteger32(HostObject object) {
  return IsHostInteger32(object) ? integer32(object) : 0;
}
int IsHostString(HostObject object) { return has_type(object, HOST_TYPE_STRING); }
int IsHostName(HostObject object) { return has_type(object, HOST_TYPE_NAME); }

HostObject ToHostInteger32(int32_t number) {
  return serve([&] { return make_integer(number); });
}
HostObject ToHostFloat(double number) {
  return serve([&] { return make_float(number); });
}
HostObject ToHostBoolean(int truth) { return make_boolean(truth); }
HostObject ToHostString(const char* text) {
  return serve([&] { return make_string(text); });
}
// All names are global: procedures' own variables are no names to a module.
HostObject ToHostName(const char* text, int) {
  return serve([&] { return make_name(text); });
}

HostObject HostNull() { return make_sequence({}); }
HostObject HostUnique(HostObject object) {
  return serve([&] { return checked(object); });
}

HostObject HostNewExpSeq(int n) {
  return serve([&] { return n == 0 ? make_sequence({}) : new_slots(HOST_TYPE_SEQUENCE, n); });
}

HostObject HostExpSeqOf(int n, ...) {
  va_list objects;
  va_start(objects, n);
  const Object result = serve([&] { return read_sequence(n, &objects); });
  va_end(objects);
  return result;
}

HostObject HostNewList(int n) {
  return serve([&] { return new_slots(HOST_TYPE_LIST, n); });
}

void HostListAssign(HostObject list, int i, HostObject element) {
  serve([&] {
    if (!has_type(list, HOST_TYPE_LIST)) raise_error("not a list under construction");
    if (i < 1 || static_cast<std::size_t>(i) > host_num_elements(list)) {
      raise_error("list index %1 out of range", {make_integer(i)});
    }
    host_words(list)[i] = value(element);
  });
}

HostObject HostFinishList(HostObject list) {
  return serve([&] {
    if (!has_type(list, HOST_TYPE_LIST)) raise_error("not a list under construction");
    return list;
  });
}

HostObject HostNewBinaryOp(const char* op, HostObject left, HostObject right) {
  return serve([&] {
    if (std::string_view(op) != "=") raise_error("unknown operator `%1'", {make_string(op)});
    return make_equation(value(left), value(right));
  });
}

HostObject HostNewRecord(int n, ...) {
  va_list arguments;
  va_start(arguments, n);
  const Object record = serve([&] { return read_record(n, &arguments); });
  va_end(arguments);
  return record;
}

void HostAssign(HostObject name, HostObject object) {
  serve([&] { assign(checked(name), value(object)); });
}

void HostGcProtect(HostObject object) {
  serve([&] { heap().protect(checked(object)); });
}
void HostGcAllow(HostObject object) { heap().release(object); }

}  // namespace vexil::service
