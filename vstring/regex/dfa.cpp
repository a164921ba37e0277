// The lazily made automaton. A pass forwards, with every position of the text as a possible start,
// finds where the leftmost match ends: states keep the order of preference. A pass backwards from
// there finds where it starts. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/dfa.h"

#include <algorithm>

namespace vstring::regex {
namespace {

// What the key of a forward state begins with.
enum Progress : char16_t {
  kFresh,     // nothing is under way
  kUnderWay,  // the pattern has begun somewhere
  kDecided,   // a match is known; later starts do not count any more
};

}  // namespace

StateTable::Link StateTable::link_to(const Key& key, Link marks) {
  auto [entry, is_new] = states_.try_emplace(key, static_cast<Link>(links_.size()) | marks);
  if (is_new) {
    keys_.push_back(&entry->first);
    links_.resize(links_.size() + num_classes_, kUnknown);
    memory_ += num_classes_ * sizeof(Link) + key.size() * sizeof(char16_t) + sizeof *entry + 32;
  }
  return entry->second;
}

Dfa::Dfa(const Prepared& prepared, Text text, const Limits& limits)
    : positions_(prepared),
      limits_(limits),
      end_(text.data() + text.size()),
      max_bytes_(std::uint64_t{text.size()} * limits.max_rounds + limits.free_bytes),
      forward_(positions_.num_classes()),
      backward_(positions_.num_classes()),
      has_given_up_(!positions_.are_known()) {
  members_.resize(positions_.size(), 0);
}

Dfa::Outcome Dfa::search(const char* position, const char* origin, StartFinder& starts,
                         Span& match) {
  if (!is_worthwhile()) return Outcome::GivenUp;
  Outcome outcome = find_end(position, origin, starts, match);
  if (outcome != Outcome::Match) return outcome;
  match.start = find_start(match.start, origin, match.end);
  return match.start == nullptr ? Outcome::GivenUp : Outcome::Match;
}

bool Dfa::is_worthwhile() {
  bool is_small = forward_.memory() + backward_.memory() <= limits_.max_memory;
  bool is_repaid =
      num_visits_ <= limits_.free_visits || num_visits_ / limits_.visits_per_byte <= num_bytes_;
  has_given_up_ = has_given_up_ || !is_small || !is_repaid || num_bytes_ > max_bytes_;
  return !has_given_up_;
}

// Leaves in match.start a position that no match found here starts before.
Dfa::Outcome Dfa::find_end(const char* position, const char* origin, StartFinder& starts,
                           Span& match) {
  position = starts.next(position);
  if (position == nullptr) return Outcome::NoMatch;
  match = {position, nullptr};
  Link state = start_state(position == origin);
  if ((state & StateTable::kAccepts) != 0) match.end = position;
  state &= ~StateTable::kMarks;
  const char* counted = position;  // bytes before it are in num_bytes_
  const auto& classes = positions_.classes();
  const Link* links = forward_.links();
  for (; position != end_; ++position) {
    Link next = links[state + classes[byte_of(*position)]];
    if (next < StateTable::kIsStart) {
      state = next;
      continue;
    }
    if (next == StateTable::kUnknown) {
      num_bytes_ += distance(counted, position);
      counted = position;
      next = next_forward(state, classes[byte_of(*position)]);
      if (!is_worthwhile()) return Outcome::GivenUp;
      links = forward_.links();
    }
    if ((next & StateTable::kAccepts) != 0) match.end = position + 1;
    if ((next & StateTable::kIsDead) != 0) break;
    state = next & ~StateTable::kMarks;
    if ((next & StateTable::kIsStart) != 0) {
      num_bytes_ += distance(counted, position);
      match.start = counted = starts.next(position + 1);
      if (match.start == nullptr) return Outcome::NoMatch;
      position = match.start - 1;
    }
  }
  num_bytes_ += distance(counted, position);
  if (position == end_ && may_end(state)) match.end = end_;
  return match.end == nullptr ? Outcome::NoMatch : Outcome::Match;
}

// The first position from `first` on from which a match leads to `end`; null on giving up.
const char* Dfa::find_start(const char* first, const char* origin, const char* end) {
  begin_state();
  for (std::size_t i = 0; i < positions_.size(); ++i) {
    auto position = static_cast<Positions::Position>(i);
    bool is_end = position == Positions::kMatch || (end == end_ && positions_.may_end(position));
    if (is_end) key_.push_back(position);
  }
  Link state = finish_backward();
  const char* start = (state & StateTable::kAccepts) != 0 ? end : nullptr;
  const char* position = end;
  while (position != first && (state & StateTable::kIsDead) == 0) {
    Link here = state & ~StateTable::kMarks;
    std::size_t byte_class = positions_.classes()[byte_of(position[-1])];
    state = backward_.next(here, byte_class);
    if (state == StateTable::kUnknown) {
      state = next_backward(here, byte_class);
      if (!is_worthwhile()) return nullptr;
    }
    --position;
    if ((state & StateTable::kAccepts) != 0) start = position;
  }
  num_bytes_ += distance(position, end);
  if (position == origin && is_start_in(positions_.starts(true), backward_.key(state))) {
    start = position;
  }
  return start;
}

void Dfa::begin_state() {
  ++num_made_;
  key_.clear();
}

// Puts positions into the state that are not yet in it; true when one of them is the match, behind
// which nothing counts.
bool Dfa::add(const Positions::List& positions) {
  num_visits_ += positions.size();
  for (Positions::Position position : positions) {
    if (members_[position] == num_made_) continue;
    members_[position] = num_made_;
    key_.push_back(position);
    if (position == Positions::kMatch) return true;
  }
  return false;
}

Dfa::Link Dfa::start_state(bool is_at_origin) {
  begin_state();
  key_.push_back(kFresh);
  return finish_forward(add(positions_.starts(is_at_origin)));
}

Dfa::Link Dfa::next_forward(Link state, std::size_t byte_class) {
  begin_state();
  const Key& key = forward_.key(state);
  bool was_decided = key[0] == kDecided;
  key_.push_back(kFresh);
  bool is_match = false;
  num_visits_ += key.size();
  for (std::size_t i = 1; i < key.size() && !is_match; ++i) {
    if (positions_.takes(key[i], byte_class)) is_match = add(positions_.following(key[i]));
  }
  // A start that has come as far as others begin is not the same as nothing under way.
  if (key_.size() > 1) key_[0] = kUnderWay;
  if (!was_decided && !is_match) is_match = add(positions_.starts(false));
  Link next = finish_forward(was_decided || is_match);
  forward_.set_next(state, byte_class, next);
  return next;
}

Dfa::Link Dfa::finish_forward(bool is_decided) {
  if (is_decided) key_[0] = kDecided;
  Link marks = key_[0] == kFresh ? StateTable::kIsStart : 0;
  if (key_.size() > 1 && key_.back() == Positions::kMatch) marks |= StateTable::kAccepts;
  if (key_.size() == 1) marks |= StateTable::kIsDead;
  return forward_.link_to(key_, marks);
}

Dfa::Link Dfa::next_backward(Link state, std::size_t byte_class) {
  begin_state();
  for (char16_t position : backward_.key(state)) members_[position] = num_made_;
  for (std::size_t i = 0; i < positions_.size(); ++i) {
    auto position = static_cast<Positions::Position>(i);
    if (!positions_.takes(position, byte_class)) continue;
    const Positions::List& following = positions_.following(position);
    num_visits_ += following.size();
    bool leads_on = std::any_of(following.begin(), following.end(),
                                [&](auto next) { return members_[next] == num_made_; });
    if (leads_on) key_.push_back(position);
  }
  num_visits_ += positions_.size();
  Link next = finish_backward();
  backward_.set_next(state, byte_class, next);
  return next;
}

Dfa::Link Dfa::finish_backward() {
  Link marks = key_.empty() ? StateTable::kIsDead : 0;
  if (is_start_in(positions_.starts(false), key_)) marks |= StateTable::kAccepts;
  return backward_.link_to(key_, marks);
}

bool Dfa::is_start_in(const Positions::List& starts, const Key& key) {
  return std::any_of(starts.begin(), starts.end(),
                     [&](auto start) { return std::binary_search(key.begin(), key.end(), start); });
}

bool Dfa::may_end(Link state) const {
  const Key& key = forward_.key(state);
  return std::any_of(key.begin() + 1, key.end(),
                     [&](char16_t position) { return positions_.may_end(position); });
}

}  // namespace vstring::regex
