// The shared scratch buffer and its lending. Tests: the transcripts, also in the `tiny` build,
// where the buffer is so short that every command outgrows it.
#include "vstring/host/scratch.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#include "vstring/library.h"

namespace {

constexpr std::uint32_t kGuard = 0xDEADBABE;

// Guard words frame the buffer: one that has changed tells in a debugger that somebody wrote past
// it.
struct alignas(16) GuardedBuffer {
  char padding[12] = {};  // so that the bytes are aligned for whatever is built in them
  std::uint32_t before = kGuard;
  char bytes[SMALL_BUFFER_BASE_SIZE] = {};
  std::uint32_t after = kGuard;
};

GuardedBuffer shared;

}  // namespace

char (*const smbuf)[SMALL_BUFFER_BASE_SIZE] = &shared.bytes;

namespace vstring {

namespace {

bool is_lent = false;

char* acquire(std::size_t size, std::size_t most_shared) {
  Holding::make_room();
  if (size <= most_shared && !is_lent) {
    is_lent = true;
    return shared.bytes;
  }
  auto* block = static_cast<char*>(std::malloc(size));
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void release(void* block, Object) {
  if (block == shared.bytes) {
    is_lent = false;
  } else {
    std::free(block);
  }
}

}  // namespace

Scratch::Scratch(std::size_t size, std::size_t most_shared)
    : data_(acquire(size, most_shared)), holding_(release, data_) {}

}  // namespace vstring
