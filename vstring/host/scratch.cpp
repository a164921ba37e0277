// The shared scratch buffer and its lending. Tests: the transcripts, also in the `tiny` build,
// where the buffer is so short that every command outgrows it.
#include "vstring/host/scratch.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#include "vstring/host/machine_stack.h"
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

Scratch::Scratch(std::size_t size) {
  if (size < SMALL_BUFFER_BASE_SIZE && buffer_frame == 0) {
    buffer_frame = this_frame();
    data_ = shared.bytes;
    return;
  }
  data_ = static_cast<char*>(std::malloc(size));
  if (data_ == nullptr) throw std::bad_alloc();
}

Scratch::~Scratch() {
  if (data_ == shared.bytes) {
    buffer_frame = 0;
  } else {
    std::free(data_);
  }
}

void take_back_abandoned_buffer() {
  if (buffer_frame < this_frame()) buffer_frame = 0;
}

}  // namespace vstring
