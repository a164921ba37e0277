// Working memory of a command: the shared buffer when it is enough, else the heap. Entry point:
// Scratch.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vstring {

/// A block of bytes for as long as the object lives. Short blocks are lent from the shared buffer
/// `smbuf`, once at a time: a second one, also one in a command that a callback runs, gets the
/// heap. Throws std::bad_alloc.
class Scratch {
 public:
  explicit Scratch(std::size_t size);
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  char* data() const { return data_; }

 private:
  char* data_;
};

/// Where on the machine's stack the command is that has the shared buffer; 0: nobody has it.
inline std::uintptr_t buffer_frame = 0;

/// Takes the shared buffer from a command that the host jumped out of. To be called at the start of
/// a command when somebody has it.
void take_back_abandoned_buffer();

}  // namespace vstring
