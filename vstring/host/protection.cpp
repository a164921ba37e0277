// A stack of what is protected, as deep as commands are nested in calls of procedures.
#include "vstring/host/protection.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "vstring/host/machine_stack.h"

namespace vstring {
namespace {

struct Held {
  HostKernelVector* kv;
  Object object;
  std::uintptr_t frame;  // where on the machine's stack the command was
};
std::vector<Held> held;

void release_from(std::size_t place) {
  while (held.size() > place) {
    Held last = held.back();
    held.pop_back();
    num_protected = held.size();
    last.kv->HostGcAllow(last.object);
  }
}

}  // namespace

Protection::Protection(const Host& host, Object object) : place_(held.size()) {
  if (held.size() == held.capacity()) held.reserve(std::max<std::size_t>(16, 2 * held.size()));
  host.kernel()->HostGcProtect(object);
  held.push_back({host.kernel(), object, this_frame()});
  num_protected = held.size();
}

// What lies above belonged to commands within this one, and none of them is left.
Protection::~Protection() { release_from(place_); }

void release_abandoned_protections() {
  std::uintptr_t frame = this_frame();
  std::size_t place = held.size();
  while (place > 0 && held[place - 1].frame < frame) --place;
  release_from(place);
}

}  // namespace vstring
