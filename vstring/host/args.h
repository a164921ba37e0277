// Reading a command's arguments. Entry point: Args. Positions are 1-based, as users count them.
// Readers that take a message end the command with it when the argument is not what they read.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"
#include "vstring/host/failure.h"
#include "vstring/kernel_vector.h"
#include "vstring/object.h"

namespace vstring {

/// Whether an object is text: a string or a name.
inline bool is_text(Object object) { return host_is_text(object) != 0; }
/// The text of a string or name.
inline Text text_of(Object object) { return {host_text(object), host_text_length(object)}; }
/// Whether an object is a list or a set.
inline bool is_collection(Object object) {
  int type = host_type(object);
  return type == HOST_TYPE_LIST || type == HOST_TYPE_SET;
}
inline bool is_list(Object object) { return host_type(object) == HOST_TYPE_LIST; }
inline bool is_range(Object object) { return host_type(object) == HOST_TYPE_RANGE; }

/// The elements of a list, set or sequence, 0-based.
class Elements {
 public:
  explicit Elements(Object object)
      : words_(host_words(object) + 1), size_(host_num_elements(object)) {}
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  Object operator[](std::size_t i) const { return words_[i]; }
  const Object* begin() const { return words_; }
  const Object* end() const { return words_ + size_; }

 private:
  const Object* words_;
  std::size_t size_;
};

/// A resolved range of a text: 0-based first and last position, last included. An empty one has
/// last = first - 1 (or less than nothing to do: see count).
struct Span {
  std::int32_t first;
  std::int32_t last;
  std::int32_t count;  // last - first + 1, never negative
};

class Args {
 public:
  Args(HostKernelVector* kv, Object sequence) : kv_(kv), sequence_(sequence) {}

  int count() const { return static_cast<int>(host_num_elements(sequence_)); }
  Object operator[](int i) const { return host_element(sequence_, static_cast<std::size_t>(i)); }
  bool has(int i) const { return i <= count(); }
  Object sequence() const { return sequence_; }

  bool is_string(int i) const { return is_text((*this)[i]); }
  bool is_collection(int i) const { return vstring::is_collection((*this)[i]); }
  bool is_list(int i) const { return vstring::is_list((*this)[i]); }
  bool is_range(int i) const { return vstring::is_range((*this)[i]); }
  /// An integer of any size.
  bool is_integer(int i) const { return kv_->IsHostInteger((*this)[i]) != 0; }
  bool is_integer32(int i) const { return kv_->IsHostInteger32((*this)[i]) != 0; }

  /// Text of argument i, which is known to be a string or name.
  Text text(int i) const { return text_of((*this)[i]); }
  /// Text of argument i; fails unless it is a string or name.
  Text string(int i, const char* message) const {
    if (!is_string(i)) fail(message);
    return text(i);
  }
  /// Value of argument i; fails unless it is an integer of 32 bits.
  std::int32_t integer32(int i, const char* message) const {
    if (!is_integer32(i)) fail(message);
    return kv_->HostToInteger32((*this)[i]);
  }
  /// Elements of argument i; fails unless it is a list or set.
  Elements collection(int i, const char* message) const {
    if (!is_collection(i)) fail(message);
    return Elements((*this)[i]);
  }
  /// The data of argument i, a handle with this tag; fails unless it is one.
  void* foreign(int i, HostForeignTagFunction tag, const char* message) const {
    if (kv_->IsHostForeign((*this)[i]) == 0 || kv_->HostForeignTag((*this)[i]) != tag)
      fail(message);
    return kv_->HostForeignData((*this)[i]);
  }
  /// Endpoints of range argument i resolved against a text of `length` bytes; fails with `message`
  /// when it is no range, with "invalid range" when it does not resolve.
  Span span(int i, std::size_t length, const char* message) const;
  /// Argument i as a string index into a text of `length` bytes (GetStringIndex), 0 .. length.
  std::size_t index(int i, std::size_t length) const;

 private:
  HostKernelVector* kv_;
  Object sequence_;
};

}  // namespace vstring
