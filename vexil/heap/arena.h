// The heap's address space: pages below 4 GiB, handed out in runs. Entry point: Arena.
// Tests: tests/unit/heap_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace vexil {

class Arena {
 public:
  using Address = std::uintptr_t;
  static constexpr std::size_t kPage = 4096;

  /// Reserves `size` bytes; throws std::runtime_error when there is no room for them below 4 GiB.
  explicit Arena(std::size_t size);
  ~Arena();
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  Address base() const { return base_; }
  std::size_t size() const { return size_; }

  enum class End { Low, High };
  /// A run of pages, 0 when there is none that long. It comes from the tightest free run, from the
  /// end that is asked for: objects that stay and objects that go keep out of each other's way.
  /// Throws std::bad_alloc, and has done nothing then.
  Address take(std::size_t pages, End end);
  /// Gives a run back; a long one's memory returns to the system at once. Needs no memory.
  void give_back(Address address, std::size_t pages) noexcept;

 private:
  using ByAddress = std::map<Address, std::size_t>;
  using BySize = std::set<std::pair<std::size_t, Address>>;
  // The entries of a free run in both indices.
  struct Entries {
    ByAddress::node_type by_address;
    BySize::node_type by_size;
  };

  void make_spare();
  void insert(Address address, std::size_t bytes) noexcept;
  void erase(ByAddress::iterator run) noexcept;

  Address base_ = 0;
  std::size_t size_;
  ByAddress free_by_address_;
  BySize free_by_size_;
  std::size_t num_taken_ = 0;
  // Entries not in use, so many that every run that is taken can be given back.
  std::vector<Entries> spares_;
};

}  // namespace vexil
