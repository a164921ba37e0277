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

// While a block waits to be used again, its header holds the next such block and its own end.
void recycle(Pool* pool, PoolBlock* block, char* end) {
  block->previous = {pool->recycled, nullptr, end};
  pool->recycled = block;
  ++pool->num_recycled;
}

// A block and its end; the block is null when none waits.
PoolArena take_recycled(Pool* pool) {
  PoolBlock* block = pool->recycled;
  if (block == nullptr) return {};
  char* end = block->previous.end;
  pool->recycled = block->previous.block;
  --pool->num_recycled;
  return {block, nullptr, end};
}

PoolArena make_block(std::size_t size) {
  std::size_t block_size = size + kBlockExtra;
  void* block = std::malloc(block_size);
  if (block == nullptr) return {};
  return {new (block) PoolBlock{}, nullptr, static_cast<char*>(block) + block_size};
}

// Makes a block current: a recycled one, which may be too small, or a new one.
bool add_block(Pool* pool, std::size_t size) {
  PoolArena fresh = take_recycled(pool);
  if (fresh.block == nullptr) fresh = make_block(size);
  if (fresh.block == nullptr) return false;
  fresh.next = reinterpret_cast<char*>(fresh.block) + kHeaderSize;
  fresh.block->previous = *pool->arena;
  *pool->arena = fresh;
  return true;
}

}  // namespace

Pool* pool_init(Pool* pool) {
  if (pool == nullptr) return nullptr;
  void* arena = std::malloc(sizeof(PoolArena));
  *pool = {arena == nullptr ? nullptr : new (arena) PoolArena{}, nullptr, 0};
  return arena == nullptr ? nullptr : pool;
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
  if (pool == nullptr || pool->arena == nullptr) return nullptr;
  if (size > SIZE_MAX - kAlignment - kBlockExtra) return nullptr;
  size = round_up(size);
  PoolArena* arena = pool->arena;
  while (static_cast<std::size_t>(arena->end - arena->next) < size) {
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
  if (pool == nullptr || pool->arena == nullptr) return nullptr;
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
  if (pool_free(pool) == nullptr) return nullptr;
  while (PoolBlock* block = take_recycled(pool).block) std::free(block);
  std::free(pool->arena);
  pool->arena = nullptr;
  return pool;
}
