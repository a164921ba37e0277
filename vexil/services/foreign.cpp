// A handle's object holds four pointers from word 2 on.
#include "vexil/services/foreign.h"

#include <cstring>

#include "vexil/services/boundary.h"
#include "vexil/services/table.h"

namespace vexil {
namespace {

struct Handle {
  void* data;
  HostForeignTagFunction tag;
  HostForeignConverter converter;
  HostForeignDisposer disposer;
};
constexpr std::size_t kFirstWord = 2;

Handle read(Object object) {
  Handle handle;
  std::memcpy(&handle, host_words(object) + kFirstWord, sizeof handle);
  return handle;
}

void write(Object object, const Handle& handle) {
  std::memcpy(host_words(object) + kFirstWord, &handle, sizeof handle);
}

Object checked_handle(Object object) {
  if (!service::IsHostForeign(object)) raise_error("not a foreign handle");
  return object;
}

}  // namespace

Object foreign_value(Object object) {
  const HostForeignConverter converter = read(object).converter;
  if (converter == nullptr) return make_sequence({});
  const CallRoots roots({&object, 1});
  return unquoted(checked(enter_module("", [&] { return converter(object); })));
}

void dispose_of(Object object) {
  Handle handle = read(object);
  const HostForeignDisposer disposer = std::exchange(handle.disposer, nullptr);
  if (disposer == nullptr) return;
  write(object, handle);
  try {
    enter_module("", [&] {
      disposer(object);
      return object;
    });
  } catch (...) {  // NOLINT: there is no statement that an error could belong to
  }
}

namespace service {

int IsHostForeign(HostObject object) {
  return object != 0 && heap().contains(object) && host_type(object) == kTypeForeign;
}

HostObject ToHostForeign(void* data, HostForeignTagFunction tag) {
  return serve([&] {
    const Object object = heap().allocate(kTypeForeign, kFirstWord + sizeof(Handle) / 4);
    write(object, {data, tag, nullptr, nullptr});
    return object;
  });
}

void* HostForeignData(HostObject object) {
  return serve([&] { return read(checked_handle(object)).data; });
}

HostForeignTagFunction HostForeignTag(HostObject object) {
  return serve([&] { return read(checked_handle(object)).tag; });
}

void HostForeignSetConverter(HostObject object, HostForeignConverter converter) {
  serve([&] {
    Handle handle = read(checked_handle(object));
    handle.converter = converter;
    write(object, handle);
  });
}

void HostForeignSetDisposer(HostObject object, HostForeignDisposer disposer) {
  serve([&] {
    Handle handle = read(checked_handle(object));
    handle.disposer = disposer;
    write(object, handle);
  });
}

}  // namespace service
}  // namespace vexil
