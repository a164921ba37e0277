// The heap: small objects in cells, large ones in runs of pages; collection at safe points.
#include "vexil/heap/heap.h"

#include <fcntl.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vexil/heap/arena.h"
#include "vexil/heap/cells.h"
#include "vexil/heap/marker.h"

namespace vexil {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLeastBetweenCollections = std::size_t{32} << 20;
constexpr std::size_t kLeastGrowth = std::size_t{64} << 20;
constexpr std::size_t kPoisonedRun = std::size_t{1} << 20;  // longer ones go back to the system

// Bytes of the process that are in memory; 0 where the system does not tell.
std::size_t process_bytes() {
  static const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  char text[64] = {};
  if (pread(file, text, sizeof text - 1, 0) <= 0) return 0;
  char* resident = nullptr;
  std::strtoul(text, &resident, 10);  // in front of it stands what is mapped
  return std::strtoul(resident, nullptr, 10) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// From how many bytes on a process that had `size` after a collection counts as grown much.
std::size_t outgrown_size(std::size_t size) { return size / 4 * 5 + kLeastGrowth; }

// What has been freed counts as long as the allocator keeps it.
void give_back_freed_memory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

struct LargeObject {
  Arena::Address address;
  std::size_t pages;
};

std::size_t pages_for(std::size_t bytes) { return (bytes + Arena::kPage - 1) / Arena::kPage; }

}  // namespace

struct Heap::State {
  explicit State(std::size_t limit) : arena(limit), cells(arena), marker(arena) {}

  Object take(std::size_t words);
  Object take_large(std::size_t bytes);
  void mark_roots();
  void note_handle(Object handle);
  void find_dead_handles();
  bool mark();
  void sweep_large();
  void collect();
  void finalize();
  std::size_t bytes_in_use() const { return cells.bytes_in_use() + large_bytes; }
  void set_next_collection();

  Arena arena;
  Cells cells;
  Marker marker;
  std::vector<LargeObject> large;
  std::size_t large_bytes = 0;
  std::vector<std::function<void(const Mark&)>> roots;
  std::unordered_map<Object, std::size_t> protected_objects;
  std::vector<Object> handles;  // those that have not been finalized
  std::vector<Object> dead;     // handles that are to be finalized
  std::function<void(Object)> foreign_finalizer;
  std::function<void(Object)> program_finalizer;
  std::size_t collect_at = kLeastBetweenCollections;  // bytes in use that make a safe point collect
  std::size_t outgrown_at = 0;  // size of the process from which on new handles are a reason
  Clock::time_point looked_at;  // when the size of the process was last asked for
  bool is_due = false;          // a safe point is to collect: an allocation failed, or so
  bool is_collecting = false;
  bool gc_stress = false;
};

Object Heap::State::take(std::size_t words) {
  if (words > HOST_LENGTH_MASK) raise_out_of_memory();
  const std::size_t granules = (words + 1) / 2;
  const Object object =
      granules <= kSmallGranules ? cells.take(granules) : take_large(granules * kGranule);
  if (object != 0) return object;
  is_due = true;
  raise_out_of_memory();
}

Object Heap::State::take_large(std::size_t bytes) {
  const std::size_t pages = pages_for(bytes);
  if (large.size() == large.capacity()) large.reserve(2 * large.size() + 16);
  const Arena::Address address = arena.take(pages, Arena::End::High);
  if (address == 0) return 0;
  large.push_back({address, pages});
  large_bytes += pages * Arena::kPage;
  return static_cast<Object>(address);
}

void Heap::State::mark_roots() {
  const Mark mark = [this](Object object) { marker.mark(object); };
  for (const auto& visit : roots) visit(mark);
  for (const auto& [object, count] : protected_objects) marker.mark(object);
  for (Object handle : dead) marker.mark(handle);
}

// What handles stand for is outside the heap, and nobody tells how large it is. So when the
// process has grown much since the last collection, handles that are garbage may be the reason. To
// fill memory takes time, so to look now and then is enough.
void Heap::State::note_handle(Object handle) {
  handles.push_back(handle);
  const auto now = Clock::now();
  if (now - looked_at < std::chrono::milliseconds(1)) return;
  looked_at = now;
  if (process_bytes() > outgrown_at) is_due = true;
}

// Handles that nothing reaches any more. They live through one more sweep, so that finalizing them
// afterwards may use the heap.
void Heap::State::find_dead_handles() {
  const auto first_dead = std::partition(handles.begin(), handles.end(),
                                         [this](Object h) { return marker.is_marked(h); });
  const auto num_dead = static_cast<std::size_t>(handles.end() - first_dead);
  dead.reserve(dead.size() + num_dead);
  std::for_each(first_dead, handles.end(), [this](Object handle) { marker.mark(handle); });
  dead.insert(dead.end(), first_dead, handles.end());
  handles.erase(first_dead, handles.end());
}

// False, and nothing is marked, when there is no memory to follow the references.
bool Heap::State::mark() {
  try {
    mark_roots();
    find_dead_handles();
    return true;
  } catch (const std::bad_alloc&) {
    marker.clear_all();
    return false;
  }
}

void Heap::State::sweep_large() {
  std::size_t kept = 0;
  large_bytes = 0;
  for (const LargeObject& object : large) {
    const std::size_t bytes = object.pages * Arena::kPage;
    if (marker.is_marked(object.address)) {
      marker.clear_one(object.address);
      large_bytes += bytes;
      large[kept++] = object;
      continue;
    }
    if (gc_stress && bytes <= kPoisonedRun) {
      std::memset(host_words(static_cast<Object>(object.address)), 0xdb, bytes);
    }
    arena.give_back(object.address, object.pages);
  }
  large.resize(kept);
}

void Heap::State::collect() {
  if (is_collecting) return;  // asked for by a disposer
  is_due = !mark();
  if (is_due) return;  // the next safe point tries again
  is_collecting = true;
  cells.sweep(marker, gc_stress);
  sweep_large();
  set_next_collection();
  finalize();
  std::size_t size = process_bytes();
  if (size > outgrown_at) {
    give_back_freed_memory();
    size = process_bytes();
  }
  outgrown_at = outgrown_size(size);
  is_collecting = false;
}

void Heap::State::finalize() {
  while (!dead.empty()) {
    const Object handle = dead.back();
    dead.pop_back();
    const bool is_foreign = host_type(handle) == kTypeForeign;
    const auto& finalizer = is_foreign ? foreign_finalizer : program_finalizer;
    if (finalizer) finalizer(handle);
  }
}

// How much may be allocated until the next collection: as much as there is, but a fraction of what
// is left when the heap fills up, so that garbage does not stand in the way of a large result.
void Heap::State::set_next_collection() {
  const std::size_t used = bytes_in_use();
  collect_at = used + std::min(std::max(used, kLeastBetweenCollections), (arena.size() - used) / 4);
}

Heap::Heap(std::size_t limit) : state_(std::make_unique<State>(limit)) {
  state_->set_next_collection();
  state_->outgrown_at = outgrown_size(process_bytes());
}

Heap::~Heap() { finalize_all(); }

void Heap::finalize_all() {
  state_->is_collecting = true;  // nothing is collected meanwhile
  state_->finalize();
  state_->dead.swap(state_->handles);
  state_->finalize();
  state_->is_collecting = false;
}

Object Heap::allocate(int type, std::size_t words) {
  const Object object = state_->take(words);
  std::memset(host_words(object), 0, words * 4);
  host_words(object)[0] =
      static_cast<std::uint32_t>(type) << HOST_TYPE_SHIFT | static_cast<std::uint32_t>(words);
  if (type == kTypeForeign || type == kTypeProgram) state_->note_handle(object);
  return object;
}

Object Heap::allocate_text(int type, std::size_t words) {
  const Object object = state_->take(words);
  std::uint32_t* first = host_words(object);
  first[0] =
      static_cast<std::uint32_t>(type) << HOST_TYPE_SHIFT | static_cast<std::uint32_t>(words);
  first[1] = 0;
  first[2] = 0;
  first[words - 1] = 0;
  return object;
}

void Heap::add_roots(std::function<void(const Mark&)> visit) {
  state_->roots.push_back(std::move(visit));
}

void Heap::collect() { state_->collect(); }

void Heap::safe_point() {
  if (state_->gc_stress || state_->is_due || state_->bytes_in_use() >= state_->collect_at)
    collect();
}

void Heap::set_gc_stress(bool on) { state_->gc_stress = on; }

void Heap::set_finalizer(int type, std::function<void(Object)> finalize) {
  (type == kTypeForeign ? state_->foreign_finalizer : state_->program_finalizer) =
      std::move(finalize);
}

void Heap::protect(Object object) { ++state_->protected_objects[object]; }

void Heap::release(Object object) {
  const auto found = state_->protected_objects.find(object);
  if (found != state_->protected_objects.end() && --found->second == 0) {
    state_->protected_objects.erase(found);
  }
}

std::size_t Heap::bytes_in_use() const { return state_->bytes_in_use(); }

bool Heap::contains(Object object) const {
  return host_is_immediate(object) ||
         (object % kGranule == 0 &&
          Arena::Address{object} - state_->arena.base() < state_->arena.size());
}

}  // namespace vexil
