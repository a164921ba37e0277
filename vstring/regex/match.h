// Matching. Entry point: Execution, the search for the leftmost match in one subject text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "vstring/core/text.h"
#include "vstring/regex/dfa.h"
#include "vstring/regex/limits.h"
#include "vstring/regex/prepared.h"
#include "vstring/regex/start_finder.h"

namespace vstring::regex {

/// Where the whole match (0) and the sub-expressions 1..9 start and end; null when unset.
struct Captures {
  std::array<const char*, VRX_NUM_MATCHES> start{};
  std::array<const char*, VRX_NUM_MATCHES> end{};

  bool is_set(std::size_t i) const { return start[i] != nullptr && end[i] != nullptr; }
  /// The matched bytes; empty when unset.
  Text text(std::size_t i) const {
    return is_set(i) ? Text(start[i], static_cast<std::size_t>(end[i] - start[i])) : Text();
  }
};

/// A subject text, and what has been learnt about it. Whether matching fails from an instruction at
/// a position does not depend on how it was reached: captures decide nothing and every loop takes a
/// byte. So failures are noted, and the work stays in proportion to program times text, also over
/// several searches of the same text.
class Execution {
 public:
  /// `wants_groups`: whether sub-expressions are to be reported, or only the whole match.
  Execution(const Prepared& prepared, Text text, bool wants_groups,
            const Limits& limits = kUsualLimits);

  /// Searches the leftmost match in the part of the text from `from` on, which counts as the start
  /// of the text for `^`. Only a match fills the captures. Throws std::bad_alloc.
  bool search(std::size_t from, Captures& captures);

 private:
  // What to take back or to try next when a try has failed.
  struct Frame {
    enum class Kind : std::uint8_t { Alternative, Repeat, UndoStart, UndoEnd };
    Kind kind;
    std::int32_t index;    // an instruction; of an undo: the sub-expression
    const char* position;  // where to go on; where the Repeat has ended; what the capture was
    const char* low;       // of a Repeat: where it ends at the shortest
  };
  // The run of its set's bytes that a Repeat has seen last. From `failed` to `end` no position
  // leads to a match.
  struct Run {
    const char* begin = nullptr;
    const char* end = nullptr;
    const char* failed = nullptr;
  };

  void start_at(const char* origin);
  void clear_notes();
  bool holds_must_text(const char* from);
  bool find(const char* position, Captures& captures);
  const char* last_failed_start(const char* position) const;
  bool is_slow(const char* position) const;
  std::optional<bool> find_by_states(const char* position, Captures& captures);
  bool matches_at(const char* position, Captures& captures);
  bool backtrack(const char* position, Captures& captures);
  bool resume(std::int32_t& i, const char*& position, Captures& captures);
  bool choose(const Instruction& choice, const char* position, std::int32_t& i);
  bool repeat(std::int32_t i, const char*& position);
  bool repeat_less(const char*& position);
  const char* longest_end(const Instruction& repeat, const char* high, const char* low);
  Run& run_at(const Instruction& repeat, const char* position);
  void capture(const Instruction& instruction, const char* position, Captures& captures);
  bool may_start(std::int32_t i, const char* position) const;
  bool has_failed(const Instruction& choice, const char* position);
  bool is_sure(const char* position) const;
  std::size_t note_at(std::int32_t choice, const char* position) const;
  bool start_notes();
  bool has_room();
  bool learn_all();
  void forget(const char* from, const char* to);
  void push(const Frame& frame);

  const Prepared& prepared_;
  const char* begin_;              // of the text
  const char* end_;                // of the text, its terminator
  const char* origin_;             // where `^` matches
  const char* must_at_ = nullptr;  // where the must_text stands, from the last start on
  bool wants_groups_;
  const Limits& limits_;
  StartFinder starts_;
  std::vector<Frame> stack_;
  std::vector<Run> runs_;             // by choice number
  std::size_t moves_ = 0;             // instructions done by backtracking
  std::unique_ptr<Dfa> dfa_;          // made when backtracking has turned out to be slow
  std::size_t num_choices_ = 0;       // choices made
  std::vector<std::uint64_t> notes_;  // a bit a choice and position; empty: not begun
  bool is_stopped_ = false;           // the last try was left for states to be made
  bool knows_all_ = false;            // the notes tell all failures, not only those met
  bool is_out_of_room_ = false;       // backtracking would take too much memory
};

/// The leftmost match at or after `position`, by following all ways through the program at once:
/// slower than backtracking, but with memory in proportion to the program alone.
bool find_with_threads(const Prepared& prepared, const char* position, const char* origin,
                       const char* end, Captures& captures);

}  // namespace vstring::regex
