// The line between host and modules: calling a module's code, and what happens to an error inside a
// service that a module called. Entry points: enter_module, serve. Tests:
// tests/unit/services_test.cpp.
#pragma once

#include <span>
#include <string_view>
#include <utility>

#include "vexil/services/services.h"

namespace vexil {

/// Keeps objects from collection while they are part of a call.
class CallRoots {
 public:
  explicit CallRoots(std::span<const Object> objects);
  ~CallRoots();
  CallRoots(const CallRoots&) = delete;
  CallRoots& operator=(const CallRoots&) = delete;

 private:
  std::size_t outer_size_;
};

/// Visits what CallRoots keep.
void visit_call_roots(const Heap::Mark& mark);

using ModuleCall = Object (*)(void* context);
/// Runs code of a module on behalf of a command ("" when there is none). Throws what the module, or
/// a service that it called, raised.
Object enter_module_call(std::string_view command, ModuleCall call, void* context);

template <class Call>
Object enter_module(std::string_view command, Call call) {
  return enter_module_call(
      command, [](void* context) { return (*static_cast<Call*>(context))(); }, &call);
}

/// To be called while an exception is handled: sends it on by throwing, or keeps it for the jump.
void keep_exception(bool names_command);
/// Back to where the module was entered, which throws the exception that was kept.
[[noreturn]] void leave_module();

void set_raise_mode(RaiseMode mode);

/// Runs a service's body; what it throws leaves the module the way that was chosen. Errors get the
/// name of the command that called the service.
template <class Body>
auto serve(Body body, bool names_command = true) -> decltype(body()) {
  try {
    return body();
  } catch (...) {
    keep_exception(names_command);
  }
  leave_module();
}

/// The table's hooks, as init_services was given them.
const ServiceHooks& service_hooks();

/// The object itself; raises when a module passed what is no object.
Object checked(Object object);
/// A copy of `objects` with the sequences among them (and within these) spliced in, and quoted ones
/// as they stand.
std::vector<Object> flattened(std::span<const Object> objects);
/// What HostQuote wrapped; anything else as it is.
Object unquoted(Object object);

}  // namespace vexil
