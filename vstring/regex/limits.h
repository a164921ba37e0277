// When a search goes over from one way of searching to the next. Entry point: Limits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vstring::regex {

/// How much each way of searching may take before another one takes over. The results are the same
/// whatever they are; tests set them to their extremes, so that short texts are searched in the
/// ways that are otherwise those of very long ones.
struct Limits {
  // Backtracking.
  std::size_t max_frames = std::size_t{2} << 20;           ///< things to try next, 64 MB
  std::size_t max_note_bits = std::size_t{32} << 20 << 3;  ///< notes of failures, 32 MB
  /// Failures are noted once there have been more choices for each byte that was gone past, these
  /// bytes added.
  std::size_t choices_per_byte = 4;
  std::size_t free_choice_bytes = 256;
  /// The automaton is tried once more instructions were done than these and one for so many bytes.
  std::size_t free_moves = 2048;
  std::size_t bytes_per_move = 2;

  // The automaton.
  std::size_t max_memory = std::size_t{4} << 20;    ///< of its states, in bytes
  std::size_t free_visits = std::size_t{64} << 10;  ///< work put into states that need no repaying
  std::size_t visits_per_byte = 16;                 ///< that each byte looked at repays
  /// The searches of one text may look at each of its bytes that often, and at some more.
  std::size_t max_rounds = 8;
  std::size_t free_bytes = 4096;

  // Places that a match may start at by their first byte, tried before more is made of it.
  std::size_t worth_pairs = 64;     ///< a table of the first two bytes
  std::size_t worth_filter = 1024;  ///< a filter by up to three bytes
};

inline constexpr Limits kUsualLimits;

}  // namespace vstring::regex
