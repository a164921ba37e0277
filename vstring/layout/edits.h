// A text written anew with some of its bytes replaced, all else kept: the edits come in order, and
// what lies between them is copied in one go. An algorithm is written once, for either: EditMeasure
// tells how long the result is, EditWriter makes it. Tests: tests/unit/layout_test.cpp.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "vstring/core/checked.h"
#include "vstring/core/text.h"

namespace vstring {

/// Up to this many bytes of room an estimate that is too large does no harm: what is not written to
/// costs nothing. Beyond it results are measured first.
inline constexpr std::size_t kLavishRoom = std::size_t{1} << 27;

class EditMeasure {
 public:
  explicit EditMeasure(Text text) : length_(text.size()) {}

  /// The bytes begin .. end - 1 become `count` copies of `fill`. Throws std::bad_alloc for a length
  /// beyond all memory.
  void replace(std::size_t begin, std::size_t end, std::size_t count, char /*fill*/) {
    length_ = checked_sum(length_ - (end - begin), count);
  }
  std::size_t finish() const { return length_; }

 private:
  std::size_t length_;
};

class EditWriter {
 public:
  /// `out` has `room` bytes, enough for the result, and does not overlap the text. What the result
  /// leaves of them may be written to as well.
  EditWriter(Text text, char* out, std::size_t room)
      : text_(text), start_(out), out_(out), end_(out + room) {}

  void replace(std::size_t begin, std::size_t end, std::size_t count, char fill) {
    keep_until(begin);
    if (count <= kChunk && is_chunk_free()) {
      std::memset(out_, fill, kChunk);
    } else {
      std::fill_n(out_, count, fill);
    }
    out_ += count;
    read_ = end;
  }
  /// Copies the rest; gives the length of the result.
  std::size_t finish() {
    keep_until(text_.size());
    return static_cast<std::size_t>(out_ - start_);
  }

 private:
  // Most pieces are short: where there is room, they are written as a chunk of constant size.
  static constexpr std::size_t kChunk = 32;

  bool is_chunk_free() const { return static_cast<std::size_t>(end_ - out_) >= kChunk; }

  void keep_until(std::size_t end) {
    const char* from = text_.data() + read_;
    std::size_t size = end - read_;
    bool is_chunk = size <= kChunk && text_.size() - read_ >= kChunk && is_chunk_free();
    if (is_chunk) {
      std::memcpy(out_, from, kChunk);
    } else {
      std::copy_n(from, size, out_);
    }
    out_ += size;
  }

  Text text_;
  std::size_t read_ = 0;  // all before it has been written
  char* start_;
  char* out_;
  char* end_;
};

}  // namespace vstring
