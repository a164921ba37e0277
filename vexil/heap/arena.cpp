// Free runs of pages: two indices, by address (to join neighbours) and by size (to find the
// tightest).
#include "vexil/heap/arena.h"

#include <sys/mman.h>

#include <stdexcept>

#ifndef MAP_FIXED_NOREPLACE
#define MAP_FIXED_NOREPLACE 0x100000
#endif

namespace vexil {
namespace {

constexpr std::uint64_t kFirstAddress = 0x10000000;
constexpr std::uint64_t kAddressStep = 0x01000000;
constexpr std::uint64_t kEndOfReferences =
    0xfffff000;  // no object ends at 4 GiB: ends stay 32 bits
constexpr std::size_t kReleasedRun = std::size_t{4} << 20;

void* pointer_to(Arena::Address address) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the arena is chosen by its address
  return reinterpret_cast<void*>(address);
}

// Maps `size` bytes exactly there; false when something else is in the way.
bool map_at(std::uint64_t address, std::size_t size) {
  void* wanted = pointer_to(static_cast<Arena::Address>(address));
  void* got = mmap(wanted, size, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE, -1, 0);
  if (got == MAP_FAILED) return false;
  if (got == wanted) return true;
  munmap(got, size);  // a kernel that takes the address for a hint
  return false;
}

}  // namespace

Arena::Arena(std::size_t size) : size_((size + kPage - 1) / kPage * kPage) {
  if (size == 0 || size_ < size) throw std::runtime_error("the heap's size must be positive");
  for (std::uint64_t at = kFirstAddress; at + size_ <= kEndOfReferences; at += kAddressStep) {
    if (!map_at(at, size_)) continue;
    base_ = static_cast<Address>(at);
    make_spare();
    insert(base_, size_);
    return;
  }
  throw std::runtime_error("no address space below 4 GiB for a heap of this size");
}

Arena::~Arena() { munmap(pointer_to(base_), size_); }

Arena::Address Arena::take(std::size_t pages, End end) {
  const std::size_t bytes = pages * kPage;
  auto tightest = free_by_size_.lower_bound({bytes, 0});
  if (tightest == free_by_size_.end()) return 0;
  // However the runs lie, there is at most one free one more than there are taken ones.
  if (free_by_address_.size() + spares_.size() < num_taken_ + 2) make_spare();
  ++num_taken_;
  auto [free_bytes, start] = *tightest;
  erase(free_by_address_.find(start));
  const std::size_t rest = free_bytes - bytes;
  const Address taken = end == End::Low ? start : start + rest;
  if (rest != 0) insert(end == End::Low ? start + bytes : start, rest);
  // Huge pages where a text is long enough to fill them: most of its cost is page faults otherwise.
  if (bytes >= kReleasedRun) madvise(pointer_to(taken), bytes, MADV_HUGEPAGE);
  return taken;
}

void Arena::give_back(Address address, std::size_t pages) noexcept {
  --num_taken_;
  std::size_t bytes = pages * kPage;
  if (bytes >= kReleasedRun) madvise(pointer_to(address), bytes, MADV_DONTNEED);
  auto next = free_by_address_.lower_bound(address);
  if (next != free_by_address_.end() && next->first == address + bytes) {
    bytes += next->second;
    auto following = std::next(next);
    erase(next);
    next = following;
  }
  if (next != free_by_address_.begin()) {
    auto previous = std::prev(next);
    if (previous->first + previous->second == address) {
      address = previous->first;
      bytes += previous->second;
      erase(previous);
    }
  }
  insert(address, bytes);
}

void Arena::make_spare() {
  const std::size_t num_entries = free_by_address_.size() + spares_.size() + 1;
  if (spares_.capacity() < num_entries) spares_.reserve(2 * num_entries);
  ByAddress by_address{{0, 0}};
  BySize by_size{{0, 0}};
  spares_.push_back({by_address.extract(by_address.begin()), by_size.extract(by_size.begin())});
}

void Arena::insert(Address address, std::size_t bytes) noexcept {
  Entries entries = std::move(spares_.back());
  spares_.pop_back();
  entries.by_address.key() = address;
  entries.by_address.mapped() = bytes;
  entries.by_size.value() = {bytes, address};
  free_by_address_.insert(std::move(entries.by_address));
  free_by_size_.insert(std::move(entries.by_size));
}

void Arena::erase(ByAddress::iterator run) noexcept {
  auto by_size = free_by_size_.find({run->second, run->first});
  spares_.push_back({free_by_address_.extract(run), free_by_size_.extract(by_size)});
}

}  // namespace vexil
