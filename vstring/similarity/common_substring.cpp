#include "vstring/similarity/common_substring.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vstring {
namespace {

// The least automaton that reads all substrings of a text. A state stands for the substrings that
// end at the same places.
class SuffixAutomaton {
 public:
  static constexpr std::int32_t kNone = -1;
  static constexpr std::int32_t kRoot = 0;

  struct State {
    std::int32_t length;      // of the longest substring it stands for
    std::int32_t link;        // to the state of that one's longest suffix that ends at more places
    std::int32_t first_edge;  // of a chain; the root has a table instead
    std::int32_t first_end;   // where the substrings first end in the text, the last byte's offset
  };

  explicit SuffixAutomaton(Text text) {
    states_.reserve(2 * text.size() + 1);
    states_.push_back({0, kNone, kNone, kNone});
    from_root_.fill(kNone);
    std::int32_t last = kRoot;
    for (char c : text) last = extend(last, byte_of(c));
  }

  const State& operator[](std::int32_t state) const { return states_[index(state)]; }

  /// The state behind an edge; kNone when there is no such edge.
  std::int32_t target(std::int32_t state, unsigned char letter) const {
    if (state == kRoot) return from_root_[letter];
    for (std::int32_t e = states_[index(state)].first_edge; e != kNone; e = edges_[index(e)].next) {
      if (edges_[index(e)].letter == letter) return edges_[index(e)].target;
    }
    return kNone;
  }

 private:
  struct Edge {
    std::int32_t next;
    std::int32_t target;
    unsigned char letter;
  };

  static std::size_t index(std::int32_t i) { return static_cast<std::size_t>(i); }

  void add_edge(std::int32_t from, unsigned char letter, std::int32_t to) {
    if (from == kRoot) {
      from_root_[letter] = to;
      return;
    }
    std::int32_t& first = states_[index(from)].first_edge;
    edges_.push_back({first, to, letter});
    first = static_cast<std::int32_t>(edges_.size() - 1);
  }

  void redirect(std::int32_t from, unsigned char letter, std::int32_t to) {
    if (from == kRoot) {
      from_root_[letter] = to;
      return;
    }
    std::int32_t e = states_[index(from)].first_edge;
    while (edges_[index(e)].letter != letter) e = edges_[index(e)].next;
    edges_[index(e)].target = to;
  }

  std::int32_t new_state(State state) {
    states_.push_back(state);
    return static_cast<std::int32_t>(states_.size() - 1);
  }

  // The state of the whole text read so far, one letter longer.
  std::int32_t extend(std::int32_t last, unsigned char letter) {
    std::int32_t end = states_[index(last)].length;
    std::int32_t current = new_state({end + 1, kRoot, kNone, end});
    std::int32_t p = last;
    std::int32_t q = kNone;
    while (p != kNone && (q = target(p, letter)) == kNone) {
      add_edge(p, letter, current);
      p = states_[index(p)].link;
    }
    if (p != kNone) states_[index(current)].link = exact_target(p, letter, q);
    return current;
  }

  // The state behind p's edge to q that stands for nothing longer than p's substrings with the
  // letter: q itself, or a copy of it that takes the shorter ones over.
  std::int32_t exact_target(std::int32_t p, unsigned char letter, std::int32_t q) {
    std::int32_t length = states_[index(p)].length + 1;
    if (states_[index(q)].length == length) return q;
    const State original = states_[index(q)];
    std::int32_t copy = new_state({length, original.link, kNone, original.first_end});
    for (std::int32_t e = original.first_edge; e != kNone;) {
      const Edge edge = edges_[index(e)];
      add_edge(copy, edge.letter, edge.target);
      e = edge.next;
    }
    for (; p != kNone && target(p, letter) == q; p = states_[index(p)].link) {
      redirect(p, letter, copy);
    }
    states_[index(q)].link = copy;
    return copy;
  }

  std::vector<State> states_;
  std::vector<Edge> edges_;
  std::array<std::int32_t, 256> from_root_;
};

// Reads a text through the automaton of another and tells, after each byte, the state and the
// length of the longest suffix read that is a substring of the other.
template <class Visit>
void read_through(const SuffixAutomaton& automaton, Text text, Visit visit) {
  std::int32_t state = SuffixAutomaton::kRoot;
  std::int32_t length = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::int32_t next = automaton.target(state, byte_of(text[i]));
    while (next == SuffixAutomaton::kNone && state != SuffixAutomaton::kRoot) {
      state = automaton[state].link;
      length = automaton[state].length;
      next = automaton.target(state, byte_of(text[i]));
    }
    if (next != SuffixAutomaton::kNone) {
      state = next;
      ++length;
    }
    visit(i, state, length);
  }
}

// A substring of s by where it starts and how long it is.
struct Run {
  std::int32_t start = 0;
  std::int32_t length = 0;
};

Run longest_run(Text s, Text t) {
  Run best;
  if (t.size() <= s.size()) {
    read_through(SuffixAutomaton(t), s, [&](std::size_t i, std::int32_t, std::int32_t length) {
      if (length > best.length) best = {static_cast<std::int32_t>(i) + 1 - length, length};
    });
    return best;
  }
  SuffixAutomaton automaton(s);
  read_through(automaton, t, [&](std::size_t, std::int32_t state, std::int32_t length) {
    if (length == 0 || length < best.length) return;
    std::int32_t start = automaton[state].first_end + 1 - length;
    if (length > best.length || start < best.start) best = {start, length};
  });
  return best;
}

}  // namespace

Text longest_common_substring(Text s, Text t) {
  Run run = longest_run(s, t);
  return s.substr(static_cast<std::size_t>(run.start), static_cast<std::size_t>(run.length));
}

}  // namespace vstring
