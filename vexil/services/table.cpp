// The service table itself, with the services that raise and report.
#include "vexil/services/table.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <stdexcept>

#include "vexil/services/boundary.h"
#include "vexil/services/foreign.h"

namespace vexil {
namespace {

ServiceHooks hooks;

constexpr HostKernelVector kTable = {
#define SERVICE(result, name, parameters) service::name,
#include "vstring/kernel_services.def"
#undef SERVICE
};

// An initialiser with too few rows would leave nulls behind; a module calls without looking.
bool is_complete(const HostKernelVector& table) {
#define SERVICE(result, name, parameters) \
  if (table.name == nullptr) return false;
#include "vstring/kernel_services.def"
#undef SERVICE
  return true;
}

// Formats into a text of its own; `again` is a second copy of `arguments`, for a long one.
int print(const char* format, va_list* arguments, va_list* again) {
  std::array<char, 512> buffer;
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is, by the caller
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, *arguments);
  if (length < 0) return length;
  const auto size = static_cast<std::size_t>(length);
  if (size < buffer.size()) {
    hooks.output({buffer.data(), size});
  } else {
    std::vector<char> longer(size + 1);
    std::vsnprintf(longer.data(), longer.size(), format, *again);
    hooks.output({longer.data(), size});
  }
  return length;
}

}  // namespace

const ServiceHooks& service_hooks() { return hooks; }

void init_services(ServiceHooks given, RaiseMode mode) {
  if (!is_complete(kTable)) throw std::logic_error("the service table is not complete");
  hooks = std::move(given);
  set_raise_mode(mode);
  heap().add_roots(visit_call_roots);
  heap().set_finalizer(kTypeForeign, dispose_of);
  set_foreign_converter(foreign_value);
}

const HostKernelVector& kernel_vector() { return kTable; }

namespace service {

void HostRaiseError(const char* message, HostObject x1, HostObject x2, HostObject x3) {
  serve([&] {
    std::vector<Object> objects;
    for (Object object : {x1, x2, x3}) objects.push_back(object == 0 ? 0 : checked(object));
    while (!objects.empty() && objects.back() == 0) objects.pop_back();
    raise_error(message, std::move(objects));
  });
}

int HostPrintf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int written = serve([&] { return print(format, &arguments, &again); });
  va_end(again);
  va_end(arguments);
  return written;
}

void HostUserInfo(int level, const char* topic, const char* text) {
  serve([&] { hooks.info(level, topic, text); });
}

}  // namespace service
}  // namespace vexil
