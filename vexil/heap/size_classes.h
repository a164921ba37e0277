// Sizes of the cells that small objects live in: every multiple of 8 bytes up to 128, then four
// steps a doubling up to 4096, so that at most a fifth of a cell is wasted.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vexil {

constexpr std::size_t kGranule = 8;          // bytes; every object starts at a multiple
constexpr std::size_t kSmallGranules = 512;  // the largest cell
constexpr std::size_t kNumSizeClasses = 36;

struct SizeClasses {
  std::array<std::uint16_t, kNumSizeClasses> granules{};    // of each class
  std::array<std::uint8_t, kSmallGranules + 1> class_of{};  // by granules needed
};

constexpr SizeClasses make_size_classes() {
  SizeClasses classes;
  std::size_t size = 0;
  std::size_t step = 1;
  std::size_t needed = 0;
  for (std::size_t i = 0; i < kNumSizeClasses; ++i) {
    if (i >= 16 && i % 4 == 0) step *= i == 16 ? 4 : 2;
    size += step;
    classes.granules[i] = static_cast<std::uint16_t>(size);
    for (; needed <= size; ++needed) classes.class_of[needed] = static_cast<std::uint8_t>(i);
  }
  return classes;
}

inline constexpr SizeClasses kSizeClasses = make_size_classes();
static_assert(kSizeClasses.granules[kNumSizeClasses - 1] == kSmallGranules);

}  // namespace vexil
