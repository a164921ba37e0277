// find_with_threads: all ways through the program at once, in order of preference. Where two ways
// come to the same point at the same position the preferred one decides, as in backtracking. Tests:
// tests/unit/regex_test.cpp.
#include <utility>

#include "vstring/regex/errors.h"
#include "vstring/regex/match.h"

namespace vstring::regex {
namespace {

struct Thread {
  std::int32_t instruction;
  std::int32_t progress;  // bytes of a Literal taken; of a Repeat: 1 once its minimum is met
  Captures captures;
};

class ThreadList {
 public:
  ThreadList(const Prepared& prepared, const char* origin, const char* end)
      : prepared_(prepared), origin_(origin), end_(end) {
    std::size_t num_states = 0;
    for (std::int32_t i = 0; i < prepared.size(); ++i) {
      first_state_.push_back(num_states);
      const Instruction& instruction = prepared[i];
      if (instruction.what == Do::Literal) num_states += instruction.literal.size();
      num_states += 2;
    }
    seen_.resize(num_states, nullptr);
  }

  bool find(const char* position, Captures& result) {
    bool is_found = false;
    bool is_anchored = prepared_.record().anchored != 0;
    for (;; ++position) {
      if (!is_found && (!is_anchored || position == origin_)) {
        Captures captures;
        captures.start[0] = position;
        follow(prepared_.start(), 0, position, captures);
      }
      std::swap(threads_, next_);
      next_.clear();
      if (step(position, result)) is_found = true;
      if (position == end_ || (next_.empty() && (is_found || is_anchored))) return is_found;
    }
  }

 private:
  // Lets every thread take the byte at `position`. True when one of them ends in a match; the
  // threads behind that one are dropped.
  bool step(const char* position, Captures& result) {
    for (const Thread& thread : threads_) {
      const Instruction& instruction = prepared_[thread.instruction];
      if (instruction.what == Do::Succeed) {
        result = thread.captures;
        result.end[0] = position;
        return true;
      }
      if (position != end_) take(thread, instruction, position);
    }
    return false;
  }

  void take(const Thread& thread, const Instruction& instruction, const char* position) {
    unsigned char c = byte_of(*position);
    if (instruction.what == Do::Literal) {
      auto offset = static_cast<std::size_t>(thread.progress);
      if (byte_of(instruction.literal[offset]) != c) return;
      bool is_last = offset + 1 == instruction.literal.size();
      follow(is_last ? instruction.next : thread.instruction, is_last ? 0 : thread.progress + 1,
             position + 1, thread.captures);
    } else if (prepared_.set(instruction.set).contains(c)) {
      bool is_repeat = instruction.what == Do::Repeat;
      follow(is_repeat ? thread.instruction : instruction.next, is_repeat ? 1 : 0, position + 1,
             thread.captures);
    }
  }

  // Adds the threads that the instruction leads to without taking a byte, preferred ones first.
  void follow(std::int32_t i, std::int32_t progress, const char* position,
              const Captures& captures) {
    pending_.push_back({i, progress, captures});
    while (!pending_.empty()) {
      Thread thread = pending_.back();
      pending_.pop_back();
      const char*& seen = seen_[first_state_[static_cast<std::size_t>(thread.instruction)] +
                                static_cast<std::size_t>(thread.progress)];
      if (seen == position) continue;
      seen = position;
      lead_on(thread, position);
    }
  }

  void lead_on(const Thread& thread, const char* position) {
    const Instruction& instruction = prepared_[thread.instruction];
    Captures captures = thread.captures;
    switch (instruction.what) {
      case Do::AtStart:
        if (position == origin_) pending_.push_back({instruction.next, 0, captures});
        break;
      case Do::AtEnd:
        if (position == end_) pending_.push_back({instruction.next, 0, captures});
        break;
      case Do::Open:
      case Do::Close:
        (instruction.what == Do::Open ? captures.start : captures.end)[instruction.group] =
            position;
        pending_.push_back({instruction.next, 0, captures});
        break;
      case Do::Choose:
        pending_.push_back({instruction.other, 0, captures});
        pending_.push_back({instruction.next, 0, captures});
        break;
      case Do::Repeat:
        if (instruction.error != 0) record_error(static_cast<Error>(instruction.error));
        next_.push_back(thread);
        if (thread.progress >= instruction.minimum) {
          pending_.push_back({instruction.next, 0, captures});
        }
        break;
      case Do::Broken:
        record_error(static_cast<Error>(instruction.error));
        break;
      case Do::Succeed:
      case Do::Byte:
      case Do::Literal:
        next_.push_back(thread);
        break;
    }
  }

  const Prepared& prepared_;
  const char* origin_;
  const char* end_;
  std::vector<std::size_t> first_state_;  // by instruction
  std::vector<const char*> seen_;         // by state: the position it was reached at last
  std::vector<Thread> threads_;           // at the current position
  std::vector<Thread> next_;              // at the next one
  std::vector<Thread> pending_;           // to be followed; the last one first
};

}  // namespace

bool find_with_threads(const Prepared& prepared, const char* position, const char* origin,
                       const char* end, Captures& captures) {
  return ThreadList(prepared, origin, end).find(position, captures);
}

}  // namespace vstring::regex
