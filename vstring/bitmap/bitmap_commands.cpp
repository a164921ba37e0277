// Bitmaps as commands, and the handles that wrap them. Tests: docs/commands/bitmap.md,
// tests/transcripts/bitmap/bitmap.vt.
#include <memory>
#include <vector>

#include "vstring/bitmap.h"
#include "vstring/bitmap/set_bits.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

constexpr const char* kFirstNoBitmap = "first argument must be a bitmap";
constexpr const char* kSecondNoBitmap = "second argument must be a bitmap";

// For the converter and the disposer, which the host calls without it.
HostKernelVector* current_kernel = nullptr;

// What tells bitmaps from other handles.
HostForeignTagFunction tag() { return reinterpret_cast<HostForeignTagFunction>(bm_new); }

Bitmap* bitmap_of(Object handle) {
  return static_cast<Bitmap*>(current_kernel->HostForeignData(handle));
}

// A handle shows as the list of its bits.
Object convert(Object handle) {
  const Bitmap* bitmap = bitmap_of(handle);
  Object list = current_kernel->HostNewList(static_cast<int>(bitmap->nbits));
  for (std::uint32_t i = 0; i < bitmap->nbits; ++i) {
    Object bit = current_kernel->ToHostInteger32(bm_get(bitmap, i));
    current_kernel->HostListAssign(list, static_cast<int>(i) + 1, bit);
  }
  return current_kernel->HostFinishList(list);
}

void dispose(Object handle) { bm_free(bitmap_of(handle)); }

struct FreeBitmap {
  void operator()(Bitmap* bitmap) const { bm_free(bitmap); }
};
using OwnedBitmap = std::unique_ptr<Bitmap, FreeBitmap>;

Object bitmap_handle(const Host& host, OwnedBitmap bitmap) {
  if (bitmap == nullptr) fail(kOutOfMemory);
  Object handle = host.foreign(bitmap.get(), tag(), convert, dispose);
  static_cast<void>(bitmap.release());  // the handle has it now
  return handle;
}

Bitmap* read_bitmap(const Args& args, const Host& host, int i, const char* message) {
  current_kernel = host.kernel();
  return static_cast<Bitmap*>(args.foreign(i, tag(), message));
}

std::uint32_t positive_integer(const Args& args, const Host& host, int i) {
  HostKernelVector* kv = host.kernel();
  std::int32_t value = args.is_integer32(i) ? kv->HostToInteger32(args[i]) : 0;
  if (value < 1) {
    fail("expecting argument %1 to be a positive integer, but got %2", host.integer(i), args[i]);
  }
  return static_cast<std::uint32_t>(value);
}

struct BitmapAndIndex {
  BitmapAndIndex(const Args& args, const Host& host)
      : bitmap(read_bitmap(args, host, 1, kFirstNoBitmap)),
        index(positive_integer(args, host, 2) - 1) {}
  Bitmap* bitmap;
  std::uint32_t index;
};

struct TwoBitmaps {
  TwoBitmaps(const Args& args, const Host& host)
      : a(read_bitmap(args, host, 1, kFirstNoBitmap)),
        b(read_bitmap(args, host, 2, kSecondNoBitmap)) {}
  Bitmap* a;
  Bitmap* b;
};

Object new_bitmap(const Args& args, const Host& host, Bitmap* (*make)(std::uint32_t)) {
  current_kernel = host.kernel();
  return bitmap_handle(host, OwnedBitmap(make(positive_integer(args, host, 1))));
}

Object bit_value(const Args& args, const Host& host) {
  BitmapAndIndex arguments(args, host);
  return host.integer(bm_get(arguments.bitmap, arguments.index));
}

// The changed bitmap itself, or -1 for an index that is refused.
Object change_bit(const Args& args, const Host& host, int (*change)(Bitmap*, std::uint32_t)) {
  BitmapAndIndex arguments(args, host);
  return change(arguments.bitmap, arguments.index) < 0 ? host.integer(-1) : args[1];
}

}  // namespace

Object cmd::vbm_new(Args& args, Host& host) { return new_bitmap(args, host, bm_new); }

Object cmd::vbm_rand(Args& args, Host& host) { return new_bitmap(args, host, bm_rand); }

Object cmd::vbm_size(Args& args, Host& host) {
  return host.position(bm_size(read_bitmap(args, host, 1, kFirstNoBitmap)));
}

Object cmd::vbm_get(Args& args, Host& host) { return bit_value(args, host); }

Object cmd::vbm_setp(Args& args, Host& host) { return bit_value(args, host); }

Object cmd::vbm_setbit(Args& args, Host& host) { return change_bit(args, host, bm_set_bit); }

Object cmd::vbm_clearbit(Args& args, Host& host) { return change_bit(args, host, bm_clear_bit); }

Object cmd::vbm_countbits(Args& args, Host& host) {
  return host.whole(bm_count_bits(read_bitmap(args, host, 1, kFirstNoBitmap)));
}

Object cmd::vbm_andeq(Args& args, Host& host) {
  TwoBitmaps bitmaps(args, host);
  bm_andeq(bitmaps.a, bitmaps.b);
  return args[1];
}

Object cmd::vbm_oreq(Args& args, Host& host) {
  TwoBitmaps bitmaps(args, host);
  bm_oreq(bitmaps.a, bitmaps.b);
  return args[1];
}

Object cmd::vbm_and(Args& args, Host& host) {
  TwoBitmaps bitmaps(args, host);
  return bitmap_handle(host, OwnedBitmap(bm_and(bitmaps.a, bitmaps.b)));
}

Object cmd::vbm_or(Args& args, Host& host) {
  TwoBitmaps bitmaps(args, host);
  return bitmap_handle(host, OwnedBitmap(bm_or(bitmaps.a, bitmaps.b)));
}

Object cmd::vbm_select(Args& args, Host& host) {
  Bitmap* bitmap = read_bitmap(args, host, 1, kFirstNoBitmap);
  Elements elements = args.collection(2, "second argument must be a list");
  if (elements.size() != bitmap->nbits) fail("bitmap and list must have the same size");
  std::vector<Object> selected;
  for_each_set_bit(*bitmap, bitmap->nbits,
                   [&](std::uint32_t i) { selected.push_back(elements[i]); });
  return host.list_of(selected);
}

}  // namespace vstring
