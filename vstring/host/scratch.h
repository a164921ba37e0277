// Working memory of a command: the shared buffer when it is enough, else the heap. Entry point:
// Scratch.
#pragma once

#include <cstddef>

#include "vstring/host/holding.h"

namespace vstring {

/// Up to this size, its NUL included, a text is usually built in the shared buffer `smbuf`: two
/// bytes below the buffer's own size. What is left there shows through `regsplit`, so which texts
/// pass through the buffer is part of what commands do.
inline constexpr std::size_t kMostShared = SMALL_BUFFER_BASE_SIZE - 2;

/// A block of bytes for as long as the object lives. A block of at most `most_shared` bytes is lent
/// from the shared buffer, once at a time: a second one, also one in a command that a callback
/// runs, gets the heap. Throws std::bad_alloc.
class Scratch {
 public:
  explicit Scratch(std::size_t size, std::size_t most_shared = kMostShared);
  char* data() const { return data_; }

 private:
  char* data_;
  Holding holding_;
};

}  // namespace vstring
