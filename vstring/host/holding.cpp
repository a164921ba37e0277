// A stack of what is held, as deep as commands are nested in calls of procedures.
#include "vstring/host/holding.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vstring {
namespace {

struct Held {
  Holding::Release release;
  void* context;
  Object object;
  std::uintptr_t frame;  // where on the machine's stack its holder was made
};
std::vector<Held> held;

// Where the calling function is on the machine's stack, which grows downwards. A command that is
// still running called whoever starts another one, so its frame is above that one's; what is below
// is gone.
[[gnu::always_inline]] inline std::uintptr_t this_frame() {
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

void release_from(std::size_t place) {
  while (held.size() > place) {
    Held last = held.back();
    held.pop_back();
    num_held = held.size();
    last.release(last.context, last.object);
  }
}

}  // namespace

void Holding::make_room() {
  if (held.size() == held.capacity()) held.reserve(std::max<std::size_t>(16, 2 * held.size()));
}

[[gnu::noinline]] Holding::Holding(Release release, void* context, Object object) noexcept
    : place_(held.size()) {
  held.push_back({release, context, object, this_frame()});
  num_held = held.size();
}

// What is above belonged to commands within this one, and none of them is left.
Holding::~Holding() { release_from(place_); }

void recover_from_jump() {
  std::uintptr_t frame = this_frame();
  std::size_t place = held.size();
  while (place > 0 && held[place - 1].frame < frame) --place;
  release_from(place);
}

}  // namespace vstring
