// The backtracking matcher. Recursion is replaced by a stack of what to try next; failures are
// noted once a search has taken more steps than a harmless one does. Tests:
// tests/unit/regex_test.cpp.
#include "vstring/regex/match.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include "vstring/regex/errors.h"
#include "vstring/search/exact.h"

namespace vstring::regex {

Execution::Execution(const Prepared& prepared, Text text, bool wants_groups, const Limits& limits)
    : prepared_(prepared),
      begin_(text.data()),
      end_(text.data() + text.size()),
      origin_(begin_),
      wants_groups_(wants_groups),
      limits_(limits),
      starts_(prepared, text, limits),
      runs_(static_cast<std::size_t>(prepared.num_choices())) {}

bool Execution::search(std::size_t from, Captures& captures) {
  const char* start = begin_ + from;
  if (start != origin_) start_at(start);
  return holds_must_text(start) && find(start, captures);
}

bool Execution::holds_must_text(const char* from) {
  const RegexpRecord& record = prepared_.record();
  if (record.must_text == nullptr || (must_at_ != nullptr && from <= must_at_)) return true;
  Text must(record.must_text, static_cast<std::size_t>(record.must_length));
  std::size_t at = find_text(must, Text(from, distance(from, end_)));
  must_at_ = at == Text::npos ? nullptr : from + at;
  return must_at_ != nullptr;
}

// What was learnt stays true for a later start of the text, but for what `^` has a say in: it
// matches at the new start alone, where it failed before. Behind that it fails as it did.
void Execution::start_at(const char* origin) {
  origin_ = origin;
  if (!prepared_.has_at_start()) return;
  for (Run& run : runs_) {
    if (run.begin != nullptr) run.failed = std::max(run.failed, origin + 1);
  }
  forget(origin, origin);
}

bool Execution::find(const char* position, Captures& captures) {
  Text literal = prepared_.whole_literal();
  if (!literal.empty()) {
    std::size_t found = find_text(literal, Text(position, distance(position, end_)));
    if (found == Text::npos) return false;
    captures = {};
    captures.start[0] = position + found;
    captures.end[0] = captures.start[0] + literal.size();
    return true;
  }
  bool is_anchored = prepared_.record().anchored != 0;
  for (;;) {
    if (!is_anchored) position = starts_.next(position);
    if (position == nullptr) return false;
    if (!is_anchored && is_slow(position)) {
      std::optional<bool> is_found = find_by_states(position, captures);
      if (is_found) return *is_found;
    }
    if (!has_room()) {
      return find_with_threads(prepared_, position, origin_, end_, captures);
    }
    if (matches_at(position, captures)) return true;
    if (is_out_of_room_) continue;
    if (std::exchange(is_stopped_, false)) {
      clear_notes();
      continue;
    }
    if (is_anchored) return false;
    position = last_failed_start(position);
    if (position == end_) return false;
    ++position;
  }
}

// Whether backtracking has taken so long for the text gone past that states are worth making.
bool Execution::is_slow(const char* position) const {
  if (position == end_) return false;
  if (dfa_ != nullptr) return !dfa_->has_given_up();
  if (is_out_of_room_) return true;
  return moves_ > limits_.free_moves + distance(begin_, position) / limits_.bytes_per_move;
}

// Nothing when the states are too many.
std::optional<bool> Execution::find_by_states(const char* position, Captures& captures) {
  if (dfa_ == nullptr) {
    dfa_ = std::make_unique<Dfa>(prepared_, Text(begin_, distance(begin_, end_)), limits_);
  }
  Dfa::Span match{};
  Dfa::Outcome outcome = dfa_->search(position, origin_, starts_, match);
  if (outcome == Dfa::Outcome::GivenUp) return std::nullopt;
  if (outcome == Dfa::Outcome::NoMatch) return false;
  if (wants_groups_) {
    if (has_room() && matches_at(match.start, captures)) return true;
    return find_with_threads(prepared_, match.start, origin_, end_, captures);
  }
  captures = {};
  captures.start[0] = match.start;
  captures.end[0] = match.end;
  return true;
}

// Where no match can start either once none starts at `position`: a pattern that begins with a
// Repeat has then been tried behind every part of the run, so up to the run's end there is no use
// in starting.
const char* Execution::last_failed_start(const char* position) const {
  if (prepared_.leading_repeat() == kNone) return position;
  const Instruction& repeat = prepared_[prepared_.leading_repeat()];
  const Run& run = runs_[static_cast<std::size_t>(repeat.choice)];
  bool is_inside = run.begin != nullptr && run.begin <= position && position <= run.end;
  return is_inside ? run.end : position;
}

// Takes back what was noted of a match: the choices that led to it have not failed.
bool Execution::matches_at(const char* position, Captures& captures) {
  if (!backtrack(position, captures)) return false;
  if (!knows_all_) {
    forget(position, captures.end[0]);
  } else if (!is_sure(position)) {
    forget(position, position);
  }
  return true;
}

bool Execution::backtrack(const char* position, Captures& captures) {
  captures.start.fill(nullptr);
  captures.end.fill(nullptr);
  captures.start[0] = position;
  stack_.clear();
  bool may_stop = dfa_ == nullptr && prepared_.record().anchored == 0;
  std::int32_t i = prepared_.start();
  for (;;) {
    const Instruction& instruction = prepared_[i];
    ++moves_;
    bool is_match = true;
    switch (instruction.what) {
      case Do::Succeed:
        captures.end[0] = position;
        return true;
      case Do::AtStart:
        is_match = position == origin_;
        break;
      case Do::AtEnd:
        is_match = position == end_;
        break;
      case Do::Byte:
        is_match = position != end_ && prepared_.set(instruction.set).contains(byte_of(*position));
        ++position;
        break;
      case Do::Literal: {
        std::size_t length = instruction.literal.size();
        is_match = distance(position, end_) >= length &&
                   std::memcmp(position, instruction.literal.data(), length) == 0;
        position += is_match ? length : 0;
        break;
      }
      case Do::Repeat:
        is_match = repeat(i, position);
        break;
      case Do::Open:
      case Do::Close:
        if (wants_groups_) capture(instruction, position, captures);
        break;
      case Do::Choose:
        is_match = choose(instruction, position, i);
        if (is_match) continue;  // choose has set i
        break;
      case Do::Broken:
        record_error(static_cast<Error>(instruction.error));
        is_match = false;
        break;
    }
    if (is_match) {
      i = instruction.next;
    } else if (is_out_of_room_ || !resume(i, position, captures)) {
      return false;
    } else if (may_stop && is_slow(position)) {
      is_stopped_ = true;
      return false;
    }
  }
}

// Goes on with the youngest thing left to try; false when there is nothing.
bool Execution::resume(std::int32_t& i, const char*& position, Captures& captures) {
  while (!stack_.empty()) {
    Frame frame = stack_.back();
    switch (frame.kind) {
      case Frame::Kind::UndoStart:
        captures.start[static_cast<std::size_t>(frame.index)] = frame.position;
        break;
      case Frame::Kind::UndoEnd:
        captures.end[static_cast<std::size_t>(frame.index)] = frame.position;
        break;
      case Frame::Kind::Alternative:
        stack_.pop_back();
        i = frame.index;
        position = frame.position;
        return true;
      case Frame::Kind::Repeat:
        if (repeat_less(position)) {
          i = prepared_[frame.index].next;
          return true;
        }
        break;
    }
    stack_.pop_back();
  }
  return false;
}

// Sets i to the first alternative that the next byte allows, and keeps the other for later.
bool Execution::choose(const Instruction& choice, const char* position, std::int32_t& i) {
  if (has_failed(choice, position)) return false;
  bool may_be_other = may_start(choice.other, position);
  if (!may_start(choice.next, position)) {
    i = choice.other;
    return may_be_other;
  }
  if (may_be_other) push({Frame::Kind::Alternative, choice.other, position, nullptr});
  i = choice.next;
  return true;
}

// Takes as many bytes as let what follows begin; shorter runs are left to repeat_less.
bool Execution::repeat(std::int32_t i, const char*& position) {
  const Instruction& repeat = prepared_[i];
  if (repeat.error != 0) record_error(static_cast<Error>(repeat.error));
  Run& run = run_at(repeat, position);
  const char* low = position + repeat.minimum;
  const char* end = longest_end(repeat, run.failed - 1, low);
  run.failed = end != nullptr ? end + 1 : std::min(run.failed, low);
  if (end == nullptr) return false;
  if (end > low && !is_sure(end)) push({Frame::Kind::Repeat, i, end, low});
  position = end;
  return true;
}

// What followed the Repeat on top of the stack has failed: lets it end earlier, if it can.
bool Execution::repeat_less(const char*& position) {
  Frame& frame = stack_.back();
  const Instruction& repeat = prepared_[frame.index];
  Run& run = runs_[static_cast<std::size_t>(repeat.choice)];
  bool is_in_run = run.begin <= frame.position && frame.position <= run.end;
  const char* failed = is_in_run ? std::min(run.failed, frame.position) : frame.position;
  const char* end = longest_end(repeat, failed - 1, frame.low);
  if (is_in_run) run.failed = end != nullptr ? end + 1 : std::min(failed, frame.low);
  if (end == nullptr) return false;
  frame.position = end;
  position = end;
  return true;
}

// The last position in low..high at which what follows the Repeat can begin and has not failed
// before.
const char* Execution::longest_end(const Instruction& repeat, const char* high, const char* low) {
  for (; high >= low; --high) {
    if (may_start(repeat.next, high) && !has_failed(repeat, high)) return high;
  }
  return nullptr;
}

// A run that reaches the one seen before is that one: what has failed in it stays known.
Execution::Run& Execution::run_at(const Instruction& repeat, const char* position) {
  Run& run = runs_[static_cast<std::size_t>(repeat.choice)];
  if (run.begin != nullptr && run.begin <= position && position <= run.end) return run;
  bool is_before = std::less<>()(position, run.begin);  // never where there is no run yet
  const char* limit = is_before ? run.begin : end_;
  std::size_t most = distance(position, limit);
  std::size_t length =
      repeat.is_any ? most : find_other(Text(position, most), prepared_.set(repeat.set));
  const char* end = position + length;
  if (is_before && end == limit) {
    run.begin = position;
  } else {
    run = {position, end, end + 1};
  }
  return run;
}

void Execution::capture(const Instruction& instruction, const char* position, Captures& captures) {
  bool is_open = instruction.what == Do::Open;
  const char*& slot = (is_open ? captures.start : captures.end)[instruction.group];
  if (!stack_.empty()) {
    push({is_open ? Frame::Kind::UndoStart : Frame::Kind::UndoEnd, instruction.group, slot,
          nullptr});
  }
  slot = position;
}

bool Execution::may_start(std::int32_t i, const char* position) const {
  return prepared_.can_be_empty(i) ||
         (position != end_ && prepared_.first_bytes(i).contains(byte_of(*position)));
}

void Execution::push(const Frame& frame) {
  if (stack_.size() >= limits_.max_frames) {
    is_out_of_room_ = true;
    return;
  }
  stack_.push_back(frame);
}

}  // namespace vstring::regex
