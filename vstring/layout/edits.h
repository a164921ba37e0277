// A text written anew with some of its bytes replaced, all else kept: the edits come in order, and
// what lies between them is copied in one go. An algorithm is written once, for either: EditMeasure
// tells how long the result is, EditWriter makes it. Tests: tests/unit/layout_test.cpp.
#pragma once

#include <cstddef>
#include <cstring>

#include "vstring/core/checked.h"
#include "vstring/core/text.h"

namespace vstring {

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
  /// `out` has room for the result and does not overlap the text.
  EditWriter(Text text, char* out) : text_(text), start_(out), out_(out) {}

  void replace(std::size_t begin, std::size_t end, std::size_t count, char fill) {
    keep_until(begin);
    for (; count != 0; --count) *out_++ = fill;
    read_ = end;
  }
  /// Copies the rest; gives the length of the result.
  std::size_t finish() {
    keep_until(text_.size());
    return static_cast<std::size_t>(out_ - start_);
  }

 private:
  void keep_until(std::size_t end) {
    std::memcpy(out_, text_.data() + read_, end - read_);
    out_ += end - read_;
  }

  Text text_;
  std::size_t read_ = 0;  // all before it has been written
  char* start_;
  char* out_;
};

}  // namespace vstring
