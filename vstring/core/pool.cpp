// Pools. Tests: tests/unit/containers_test.cpp.
#include <cstdlib>
#include <cstring>
#include <new>

#include "vstring/containers.h"

namespace {

constexpr std::size_t kAlignment = 16;
constexpr std::size_t kBlockExtra = 8108;  // a block's size beyond what was asked for
constexpr uint32_t kMaxRecycled = 10;

constexpr std::size_t round_up(std::size_t size) {
  return (size + kAlignment - 1) & ~(kAlignment - 1);
}

constexpr std::size_t kHeaderSize = round_up(sizeof(PoolBlock));

// The end of a block's bytes, kept where the saved state of the first allocation begins while the
// block waits to be used again.
struct Recycled {
  PoolBlock* next;
  char* end;
};
static_assert(sizeof(Recycled) <= sizeof(PoolBlock));

PoolBlock* take_recycled(Pool* pool, char*& end) {
  PoolBlock* block = pool->recycled;
  if (block == nullptr) return nullptr;
  Recycled saved;
  std::memcpy(&saved, block, sizeof saved);
  pool->recycled = saved.next;
  --pool->num_recycled;
  end = saved.end;
  return block;
}

void recycle(Pool* pool, PoolBlock* block, char* end) {
  Recycled saved{pool->recycled, end};
  std::memcpy(static_cast<void*>(block), &saved, sizeof saved);
  pool->recycled = block;
  ++pool->num_recycled;
}

// Makes a block current: a recycled one, which may be too small, or a new one.
bool add_block(Pool* pool, std::size_t size) {
  char* end = nullptr;
  PoolBlock* block = take_recycled(pool, end);
  if (block == nullptr) {
    std::size_t block_size = size + kBlockExtra;
    block = static_cast<PoolBlock*>(std::malloc(block_size));
    if (block == nullptr) return false;
    end = reinterpret_cast<char*>(block) + block_size;
  }
  new (block) PoolBlock{*pool->arena};
  *pool->arena = {block, reinterpret_cast<char*>(block) + kHeaderSize, end};
  return true;
}

}  // namespace

Pool* pool_init(Pool* pool) {
  if (pool == nullptr) return nullptr;
  auto* arena = static_cast<PoolArena*>(std::malloc(sizeof(PoolArena)));
  if (arena == nullptr) return nullptr;
  *pool = {new (arena) PoolArena{}, nullptr, 0};
  return pool;
}

Pool* pool_create() {
  auto* pool = static_cast<Pool*>(std::malloc(sizeof(Pool)));
  if (pool_init(pool) == nullptr) {
    std::free(pool);
    return nullptr;
  }
  return pool;
}

void* pool_alloc(Pool* pool, size_t size) {
  if (pool == nullptr || size > SIZE_MAX - kAlignment - kBlockExtra) return nullptr;
  size = round_up(size);
  PoolArena* arena = pool->arena;
  while (static_cast<std::size_t>(arena->end - arena->next) < size || arena->block == nullptr) {
    if (!add_block(pool, size)) return nullptr;
  }
  char* result = arena->next;
  arena->next += size;
  return result;
}

void* pool_alloc0(Pool* pool, size_t count, size_t size) {
  std::size_t total = 0;
  if (__builtin_mul_overflow(count, size, &total)) return nullptr;
  void* result = pool_alloc(pool, total);
  if (result != nullptr) std::memset(result, 0, total);
  return result;
}

char* pool_strdup(Pool* pool, const char* text) {
  if (pool == nullptr || text == nullptr) return nullptr;
  std::size_t size = std::strlen(text) + 1;
  void* copy = pool_alloc(pool, size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

Pool* pool_free(Pool* pool) {
  if (pool == nullptr) return nullptr;
  PoolArena* arena = pool->arena;
  while (arena->block != nullptr) {
    PoolBlock* block = arena->block;
    char* end = arena->end;
    *arena = block->previous;
    if (pool->num_recycled < kMaxRecycled) {
      recycle(pool, block, end);
    } else {
      std::free(block);
    }
  }
  return pool;
}

Pool* pool_destroy(Pool* pool) {
  if (pool == nullptr || pool->arena == nullptr) return nullptr;
  pool_free(pool);
  char* end = nullptr;
  while (PoolBlock* block = take_recycled(pool, end)) std::free(block);
  std::free(pool->arena);
  pool->arena = nullptr;
  return pool;
}
