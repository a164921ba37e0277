// Calls in both directions: commands that the host calls, and procedures that a command calls back.
#include <algorithm>
#include <cstdarg>

#include "vexil/services/boundary.h"
#include "vexil/services/table.h"

namespace vexil {
namespace {

bool is_flat(std::span<const Object> objects) {
  return std::none_of(objects.begin(), objects.end(), [](Object object) {
    return host_type(object) == HOST_TYPE_SEQUENCE || host_type(object) == kTypeQuoted;
  });
}

std::vector<Object> read_arguments(int n, va_list* objects) {
  std::vector<Object> given(static_cast<std::size_t>(n < 0 ? 0 : n));
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is, by the caller
  for (Object& object : given) object = checked(va_arg(*objects, HostObject));
  return flattened(given);
}

Object call_back(Object procedure, const std::vector<Object>& arguments) {
  const CallRoots procedure_root({&procedure, 1});
  const CallRoots argument_roots(arguments);
  heap().safe_point();
  return unquoted(checked(service_hooks().call_procedure(procedure, arguments)));
}

}  // namespace

Object call_command(const HostModuleCommand& command, std::span<const Object> arguments) {
  const Object sequence =
      is_flat(arguments) ? make_sequence(arguments) : make_sequence(flattened(arguments));
  const CallRoots roots({&sequence, 1});
  auto* kv = const_cast<HostKernelVector*>(&kernel_vector());  // modules only read it
  const Object result = enter_module(command.name, [&] { return command.entry(kv, sequence); });
  if (result == 0 || !heap().contains(result)) {
    throw HostError{"the command returned no value", {}, command.name};
  }
  return unquoted(result);
}

namespace service {

HostObject HostQuote(HostObject object) {
  return serve([&] {
    if (host_type(checked(object)) != HOST_TYPE_SEQUENCE) return object;
    const Object quoted = heap().allocate(kTypeQuoted, 2);
    host_words(quoted)[1] = object;
    return quoted;
  });
}

// An error of the procedure is the procedure's own: it does not get the calling command's name.
HostObject HostCallProcedure(HostObject procedure, int n, ...) {
  va_list objects;
  va_start(objects, n);
  const Object result =
      serve([&] { return call_back(checked(procedure), read_arguments(n, &objects)); }, false);
  va_end(objects);
  return result;
}

}  // namespace service
}  // namespace vexil
