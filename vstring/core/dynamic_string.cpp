// Dynamic strings. Tests: tests/unit/containers_test.cpp.
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "vstring/containers.h"

namespace {

constexpr std::size_t kInitialCapacity = 1024;

// Makes room for `more` bytes by doubling, in a buffer with one more byte for the terminator.
// Without memory the buffer is given up.
bool reserve(DynamicString* ds, std::size_t more) {
  if (ds == nullptr || ds->buffer == nullptr) return false;
  std::size_t needed = 0;
  bool is_possible = !__builtin_add_overflow(ds->length, more, &needed) && needed < SIZE_MAX / 2;
  if (is_possible && needed <= ds->capacity) return true;
  std::size_t capacity = ds->capacity > 0 ? ds->capacity : 1;
  while (is_possible && capacity < needed) capacity *= 2;
  void* grown = is_possible ? std::realloc(ds->buffer, capacity + 1) : nullptr;
  if (grown == nullptr) {
    ds_free(ds);
    ds->length = 0;
    ds->capacity = 0;
    return false;
  }
  ds->buffer = static_cast<char*>(grown);
  ds->capacity = capacity;
  return true;
}

bool is_inside(const DynamicString& ds, const char* text) {
  std::less_equal<> before;
  return ds.buffer != nullptr && before(ds.buffer, text) && before(text, ds.buffer + ds.capacity);
}

}  // namespace

DynamicString* ds_inits(DynamicString* ds, size_t capacity) {
  if (ds == nullptr) return nullptr;
  *ds = {capacity, 0, nullptr};
  if (capacity < SIZE_MAX / 2) ds->buffer = static_cast<char*>(std::malloc(capacity + 1));
  if (ds->buffer == nullptr) return nullptr;
  ds->buffer[0] = '\0';
  return ds;
}

DynamicString* ds_init(DynamicString* ds) { return ds_inits(ds, kInitialCapacity); }

DynamicString* ds_create() {
  void* block = std::malloc(sizeof(DynamicString));
  auto* ds = block == nullptr ? nullptr : new (block) DynamicString{};
  if (ds_init(ds) == nullptr) {
    std::free(block);
    return nullptr;
  }
  return ds;
}

DynamicString* ds_free(DynamicString* ds) {
  if (ds == nullptr) return nullptr;
  std::free(ds->buffer);
  ds->buffer = nullptr;
  return ds;
}

DynamicString* ds_append(DynamicString* ds, char byte) {
  if (!reserve(ds, 1)) return nullptr;
  ds->buffer[ds->length++] = byte;
  return ds;
}

DynamicString* ds_appendl(DynamicString* ds, const char* text, size_t n) {
  if (ds == nullptr || text == nullptr) return nullptr;
  std::size_t length = strnlen(text, n);
  bool is_own = is_inside(*ds, text);  // moves with the buffer
  std::size_t offset = is_own ? static_cast<std::size_t>(text - ds->buffer) : 0;
  if (!reserve(ds, length)) return nullptr;
  std::memcpy(ds->buffer + ds->length, is_own ? ds->buffer + offset : text, length);
  ds->length += length;
  return ds;
}

DynamicString* ds_appends(DynamicString* ds, const char* text) {
  return ds_appendl(ds, text, SIZE_MAX);
}

DynamicString* ds_copy(DynamicString* dst, const DynamicString* src) {
  if (src == nullptr || src->buffer == nullptr) return nullptr;
  return ds_appendl(dst, src->buffer, src->length);
}

DynamicString* ds_dup(const DynamicString* src) {
  if (src == nullptr) return nullptr;
  void* block = std::malloc(sizeof(DynamicString));
  auto* copy = block == nullptr ? nullptr : new (block) DynamicString{};
  if (ds_inits(copy, src->capacity) == nullptr || ds_copy(copy, src) == nullptr) {
    ds_free(copy);
    std::free(block);
    return nullptr;
  }
  return copy;
}

const char* ds_get_to_delim(DynamicString* ds, const char* p, char delimiter) {
  if (ds == nullptr || p == nullptr) return nullptr;
  std::size_t length = 0;
  while (p[length] != delimiter && p[length] != '\0') ++length;
  return ds_appendl(ds, p, length) == nullptr ? nullptr : p + length;
}

char* ds_value(DynamicString* ds) {
  if (ds == nullptr || ds->buffer == nullptr) return nullptr;
  ds->buffer[ds->length] = '\0';
  return ds->buffer;
}

size_t ds_length(const DynamicString* ds) { return ds == nullptr ? 0 : ds->length; }

int ds_verify(const DynamicString* ds) {
  return ds != nullptr && ds->buffer != nullptr && ds->length <= ds->capacity ? 1 : 0;
}
