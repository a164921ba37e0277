// Making a command's result. Entry point: Host. Nothing else in the library writes into host
// objects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "vstring/core/text.h"
#include "vstring/host/failure.h"
#include "vstring/host/scratch.h"
#include "vstring/kernel_vector.h"
#include "vstring/object.h"

namespace vstring {

/// An expression sequence under construction; every slot is to be set.
class Sequence {
 public:
  Sequence(HostKernelVector* kv, std::size_t size);
  /// Slot i, 0-based.
  void set(std::size_t i, Object value) { host_words(object_)[i + 1] = value; }
  Object object() const { return object_; }

 private:
  Object object_;
};

/// A host list under construction; every slot is to be set.
class List {
 public:
  List(HostKernelVector* kv, std::size_t size);
  /// Slot i, 0-based.
  void set(std::size_t i, Object value) {
    kv_->HostListAssign(object_, static_cast<int>(i) + 1, value);
  }
  /// The list so far: what is to be protected while procedures are called.
  Object object() const { return object_; }
  /// The list to return or to keep.
  Object finish() { return kv_->HostFinishList(object_); }

 private:
  HostKernelVector* kv_;
  Object object_;
};

class Host {
 public:
  explicit Host(HostKernelVector* kv) : kv_(kv) {}
  HostKernelVector* kernel() const { return kv_; }

  /// A string of these bytes, which may be anywhere and none of which is NUL. `most_shared`: as
  /// below.
  Object text(Text text, std::size_t most_shared = kMostShared) const;
  /// The same for bytes inside a NUL-terminated text, made without the shared buffer.
  Object piece(Text piece) const;
  /// A string of `length` bytes, none of them NUL, that `write(char* out)` writes. Too long a
  /// string is refused before anything is allocated. The bytes pass through the shared buffer, and
  /// stay there, when with their NUL they are at most `most_shared`.
  template <class Write>
  Object text(std::size_t length, Write write, std::size_t most_shared = kMostShared) const {
    refuse_long_text(length);
    Scratch scratch(length + 1, most_shared);
    write(scratch.data());
    scratch.data()[length] = '\0';
    return kv_->ToHostString(scratch.data());
  }
  /// The text of `original`, a string or name, as `write(char* out)` writes it anew: at most `room`
  /// bytes, none of them NUL, whose number it gives. A text that comes out as it was is not made
  /// again (see unchanged). Too much room is refused before anything is allocated.
  template <class Write>
  Object rewritten(Object original, std::size_t room, Write write) const {
    refuse_long_text(room);
    Scratch scratch(room + 1);
    std::size_t length = write(scratch.data());
    if (Text(scratch.data(), length) == Text(host_text(original), host_text_length(original))) {
      return unchanged(original);
    }
    scratch.data()[length] = '\0';
    return kv_->ToHostString(scratch.data());
  }
  /// What a command gives for a text that stays as it is: a string object itself, for a name a new
  /// string.
  Object unchanged(Object original) const {
    return host_type(original) == HOST_TYPE_STRING ? original : c_text(host_text(original));
  }
  /// A string of a NUL-terminated text.
  Object c_text(const char* text) const { return kv_->ToHostString(text); }
  Object empty_text() const { return kv_->ToHostString(""); }
  /// The string of one character; "" for character 0.
  Object one_char(unsigned char c) const {
    const char text[2] = {static_cast<char>(c), '\0'};
    return kv_->ToHostString(text);
  }
  /// The bytes as a one-dimensional Array, in which a NUL is a byte like any other.
  Object byte_array(Text bytes) const;
  Object name(const char* text) const { return kv_->ToHostName(text, 1); }

  Object integer(std::int32_t value) const { return kv_->ToHostInteger32(value); }
  /// A length or 1-based position inside a host text, which always fits.
  Object position(std::size_t value) const { return integer(static_cast<std::int32_t>(value)); }
  /// A count or a sum: an integer, or a float when it is beyond 32 bits.
  Object whole(std::int64_t value) const;
  Object number(double value) const { return kv_->ToHostFloat(value); }
  Object boolean(bool value) const { return kv_->ToHostBoolean(value ? 1 : 0); }
  Object fail_value() const { return kv_->ToHostBoolean(-1); }
  /// The empty sequence: what a command that finds nothing returns.
  Object nothing() const { return kv_->HostUnique(kv_->HostNull()); }
  Object equation(Object left, Object right) const {
    return kv_->HostNewBinaryOp("=", left, right);
  }

  /// A handle on `data`, which the handle owns from the return on: `dispose` releases it when the
  /// handle is collected. `convert` makes what the handle shows as.
  Object foreign(void* data, HostForeignTagFunction tag, HostForeignConverter convert,
                 HostForeignDisposer dispose) const;

  Sequence sequence(std::size_t size) const { return {kv_, size}; }
  /// The sequence of these objects; nothing() when there are none.
  Object sequence_of(std::span<const Object> elements) const;
  List list(std::size_t size) const { return {kv_, size}; }
  Object list_of(std::span<const Object> elements) const;
  /// The list [a, b].
  Object pair(Object a, Object b) const;

 private:
  static void refuse_long_text(std::size_t length);
  HostKernelVector* kv_;
};

}  // namespace vstring
