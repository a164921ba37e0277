// Entering and leaving modules.
#include "vexil/services/boundary.h"

#include <csetjmp>
#include <exception>
#include <new>

namespace vexil {
namespace {

// Where the innermost running module was entered.
struct Place {
  std::jmp_buf target;
  std::string_view command;
  Place* outer;
};

RaiseMode raise_mode = RaiseMode::Exception;
Place* innermost = nullptr;
std::exception_ptr kept_exception;

std::vector<Object>& call_roots() {
  static std::vector<Object> roots;
  return roots;
}

class EnteredPlace {
 public:
  explicit EnteredPlace(std::string_view command) {
    place_.command = command;
    place_.outer = innermost;
    innermost = &place_;
  }
  ~EnteredPlace() { innermost = place_.outer; }
  EnteredPlace(const EnteredPlace&) = delete;
  EnteredPlace& operator=(const EnteredPlace&) = delete;
  Place& place() { return place_; }

 private:
  Place place_{};
};

// The frame that services jump back to: it owns nothing. False when it was left by a jump.
bool call_or_catch_jump(Place& place, ModuleCall call, void* context, Object* result) {
  if (setjmp(place.target) != 0) return false;  // NOLINT: the raise mode that C hosts have
  *result = call(context);
  return true;
}

}  // namespace

CallRoots::CallRoots(std::span<const Object> objects) : outer_size_(call_roots().size()) {
  call_roots().insert(call_roots().end(), objects.begin(), objects.end());
}

CallRoots::~CallRoots() { call_roots().resize(outer_size_); }

void visit_call_roots(const Heap::Mark& mark) {
  for (Object object : call_roots()) mark(object);
}

Object enter_module_call(std::string_view command, ModuleCall call, void* context) {
  EnteredPlace entered(command);
  if (raise_mode == RaiseMode::Exception) return call(context);
  Object result = 0;
  if (call_or_catch_jump(entered.place(), call, context, &result)) return result;
  std::rethrow_exception(std::exchange(kept_exception, nullptr));
}

void keep_exception(bool names_command) {
  const std::string command(names_command && innermost != nullptr ? innermost->command : "");
  try {
    try {
      throw;
    } catch (HostError& error) {
      if (error.command.empty()) error.command = command;
      throw;
    } catch (const std::bad_alloc&) {
      throw HostError{"out of memory", {}, command};
    }
  } catch (...) {
    if (raise_mode == RaiseMode::Exception || innermost == nullptr) throw;
    kept_exception = std::current_exception();
  }
}

void leave_module() { std::longjmp(innermost->target, 1); }  // NOLINT: see call_or_catch_jump

void set_raise_mode(RaiseMode mode) { raise_mode = mode; }

Object checked(Object object) {
  if (object == 0 || !heap().contains(object)) raise_error("a module passed an invalid object");
  return object;
}

Object unquoted(Object object) {
  return host_type(object) == kTypeQuoted ? host_element(object, 1) : object;
}

std::vector<Object> flattened(std::span<const Object> objects) {
  std::vector<Object> flat;
  std::vector<std::span<const Object>> pending{objects};  // rests of the sequences that are open
  while (!pending.empty()) {
    std::span<const Object>& rest = pending.back();
    if (rest.empty()) {
      pending.pop_back();
      continue;
    }
    const Object object = rest.front();
    rest = rest.subspan(1);
    if (host_type(object) == HOST_TYPE_SEQUENCE) {
      pending.push_back(elements(object));
    } else {
      flat.push_back(unquoted(object));
      if (flat.size() > HOST_MAX_ELEMENTS) raise_out_of_memory();
    }
  }
  return flat;
}

}  // namespace vexil
