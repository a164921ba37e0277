// The wrappers that count allocations and refuse one of them.
#include "tests/faults/failing_malloc.h"

#include <cerrno>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

struct State {
  bool is_armed;
  std::size_t refused;  // number of the allocation to refuse
  std::size_t asked;
  long left;
};
State state;

bool is_refused() {
  if (!state.is_armed || ++state.asked != state.refused) return false;
  errno = ENOMEM;
  return true;
}

void* count_new(void* block) {
  if (state.is_armed && block != nullptr) ++state.left;
  return block;
}

void count_freed(const void* block) {
  if (state.is_armed && block != nullptr) --state.left;
}

}  // namespace

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
  return is_refused() ? nullptr : count_new(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return is_refused() ? nullptr : count_new(__real_calloc(count, size));
}

// A refused one leaves the old block as it is.
void* __wrap_realloc(void* block, std::size_t size) {
  if (is_refused()) return nullptr;
  void* grown = __real_realloc(block, size);
  return block == nullptr ? count_new(grown) : grown;
}

void __wrap_free(void* block) {
  count_freed(block);
  __real_free(block);
}

}  // extern "C"

namespace {

void* allocate(std::size_t size, std::size_t alignment) {
  if (alignment <= alignof(std::max_align_t)) return __wrap_malloc(size == 0 ? 1 : size);
  if (is_refused()) return nullptr;
  return count_new(std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment));
}

void* allocate_or_throw(std::size_t size, std::size_t alignment) {
  void* block = allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

std::size_t value_of(std::align_val_t alignment) { return static_cast<std::size_t>(alignment); }

}  // namespace

// All forms, so that no block is made by one heap and released by another.
void* operator new(std::size_t n) { return allocate_or_throw(n, 1); }
void* operator new[](std::size_t n) { return allocate_or_throw(n, 1); }
void* operator new(std::size_t n, std::align_val_t a) { return allocate_or_throw(n, value_of(a)); }
void* operator new[](std::size_t n, std::align_val_t a) {
  return allocate_or_throw(n, value_of(a));
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return allocate(n, 1); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return allocate(n, 1); }
void operator delete(void* block) noexcept { __wrap_free(block); }
void operator delete[](void* block) noexcept { __wrap_free(block); }
void operator delete(void* block, std::size_t) noexcept { __wrap_free(block); }
void operator delete[](void* block, std::size_t) noexcept { __wrap_free(block); }
void operator delete(void* block, std::align_val_t) noexcept { __wrap_free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { __wrap_free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { __wrap_free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { __wrap_free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { __wrap_free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { __wrap_free(block); }

namespace faults {

RefusedAllocation::RefusedAllocation(std::size_t n) { state = {true, n, 0, 0}; }
RefusedAllocation::~RefusedAllocation() { state = {}; }
bool RefusedAllocation::was_refused() const { return state.asked >= state.refused; }
long RefusedAllocation::num_left() const { return state.left; }

Counting::Counting(bool is_on) : was_on_(std::exchange(state.is_armed, is_on)) {}
void Counting::stop() { state.is_armed = false; }
Counting::~Counting() { state.is_armed = was_on_; }

}  // namespace faults
