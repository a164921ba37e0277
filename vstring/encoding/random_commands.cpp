// The commands randomise, random and randperm. Tests: docs/commands/random.md,
// tests/transcripts/encoding/random.vt.
#include <ctime>
#include <new>
#include <span>

#include "vstring/core/checked.h"
#include "vstring/core/random.h"
#include "vstring/host/commands.h"
#include "vstring/host/filters.h"

namespace vstring {
namespace {

// The characters to choose from, NUL left out: those of an alphabet as it stands, where one that
// stands twice weighs double, or those of a class.
class Members {
 public:
  Members(HostKernelVector* kv, Object object) {
    CharClassTest test = read_filter(kv, object);
    if (kv->IsHostString(object)) {
      alphabet_ = text_of(object);
      return;
    }
    for (int c = 1; c < 256; ++c) {
      if (test(c) != 0) class_[size_++] = static_cast<char>(c);
    }
    alphabet_ = {class_, size_};
  }
  Members(const Members&) = delete;
  Members& operator=(const Members&) = delete;

  Text text() const { return alphabet_; }

 private:
  char class_[256] = {};
  std::size_t size_ = 0;
  Text alphabet_;
};

Object permutation(Host& host, std::size_t size) {
  Scratch scratch(checked_product(size, sizeof(std::uint32_t)));
  std::span order(reinterpret_cast<std::uint32_t*>(scratch.data()), size);
  write_permutation(order);
  List result = host.list(size);
  for (std::size_t k = 0; k < size; ++k) result.set(k, host.position(order[k] + 1));
  return result.finish();
}

}  // namespace

Object cmd::vstring_randomise(Args& args, Host& host) {
  auto seed = static_cast<std::uint32_t>(std::time(nullptr));
  if (args.has(1)) {
    seed = static_cast<std::uint32_t>(args.integer32(1, "first argument must be a 32-bit integer"));
    if (seed == 0) fail("bad seed");
  }
  restart_random(seed);
  return host.nothing();
}

Object cmd::vstring_random(Args& args, Host& host) {
  std::int32_t length = args.is_integer32(1) ? host.kernel()->HostToInteger32(args[1]) : -1;
  if (length < 0) {
    fail("argument %1 must be a non-negative integer, but received %2", host.integer(1), args[1]);
  }
  auto size = static_cast<std::size_t>(length);
  if (!args.has(2)) {
    return host.text(size, [size](char* out) { write_random_bytes(size, out); });
  }
  Members members(host.kernel(), args[2]);
  return host.text(size, [&](char* out) { write_random_members(members.text(), size, out); });
}

Object cmd::vstring_randperm(Args& args, Host& host) {
  std::int32_t n = args.integer32(1, "first argument must be a 32-bit integer");
  if (n < 0) fail("first argument must be non-negative");
  auto size = static_cast<std::size_t>(n);
  if (size > HOST_MAX_ELEMENTS) fail(kOutOfMemory);
  try {
    return permutation(host, size);
  } catch (const std::bad_alloc&) {
    return host.nothing();  // no error: scripts test for it
  }
}

}  // namespace vstring
