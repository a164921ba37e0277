#include "vstring/similarity/common_substring.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vstring {
namespace {

// The edges of the states of an automaton. Those of a state stand side by side in a block that
// doubles when it is full: a chain through all of memory would cost a cache miss an edge, for
// states that have hundreds. Blocks that were outgrown are used again.
class Edges {
 public:
  static constexpr std::int32_t kNone = -1;

  struct Block {
    std::uint32_t start = 0;
    std::uint16_t size = 0;
    std::uint16_t capacity = 0;  // a power of two, or nothing yet
  };

  explicit Edges(std::size_t expected) {
    edges_.reserve(expected);
    first_free_.fill(kNone);
  }

  /// Where the edge leads; kNone when there is no such edge.
  std::int32_t target(Block block, unsigned char letter) const {
    const Edge* edge = edges_.data() + block.start;
    for (const Edge* end = edge + block.size; edge != end; ++edge) {
      if (edge->letter == letter) return edge->target;
    }
    return kNone;
  }

  /// Leads an edge that is there to another state.
  void redirect(Block block, unsigned char letter, std::int32_t to) {
    Edge* edge = edges_.data() + block.start;
    while (edge->letter != letter) ++edge;
    edge->target = to;
  }

  void add(Block& block, unsigned char letter, std::int32_t to) {
    if (block.size == block.capacity) grow(block);
    edges_[block.start + block.size] = {to, letter};
    ++block.size;
  }

  Block copy(Block original) {
    Block block = take(original.capacity);
    fill(block, original);
    return block;
  }

 private:
  struct Edge {
    std::int32_t target;
    unsigned char letter;
  };

  void fill(Block& block, Block from) {
    std::copy_n(edges_.begin() + from.start, from.size, edges_.begin() + block.start);
    block.size = from.size;
  }

  void grow(Block& block) {
    Block wider = take(static_cast<std::uint16_t>(std::max(1, 2 * block.capacity)));
    fill(wider, block);
    if (block.capacity != 0) {
      edges_[block.start].target = first_free(block.capacity);
      first_free(block.capacity) = static_cast<std::int32_t>(block.start);
    }
    block = wider;
  }

  // An empty block.
  Block take(std::uint16_t capacity) {
    if (capacity == 0) return {};
    std::int32_t& free = first_free(capacity);
    if (free != kNone) {
      auto start = static_cast<std::uint32_t>(free);
      free = edges_[start].target;
      return {start, 0, capacity};
    }
    auto start = static_cast<std::uint32_t>(edges_.size());
    edges_.resize(start + capacity);
    return {start, 0, capacity};
  }

  std::int32_t& first_free(std::uint16_t capacity) {
    return first_free_[static_cast<std::size_t>(std::countr_zero(capacity))];
  }

  std::vector<Edge> edges_;
  // The first free block of 1, 2, 4, .. 256 edges each; its first target is where the next one is.
  std::array<std::int32_t, 9> first_free_;
};

// The least automaton that reads all substrings of a text. A state stands for the substrings that
// end at the same places.
class SuffixAutomaton {
 public:
  static constexpr std::int32_t kNone = Edges::kNone;
  static constexpr std::int32_t kRoot = 0;

  struct State {
    std::int32_t length;     // of the longest substring it stands for
    std::int32_t link;       // to the state of that one's longest suffix that ends at more places
    std::int32_t first_end;  // where the substrings first end in the text, the last byte's offset
    Edges::Block edges;      // the root has a table instead
  };

  explicit SuffixAutomaton(Text text) : edges_(2 * text.size()) {
    states_.reserve(2 * text.size() + 1);
    states_.push_back({0, kNone, kNone, {}});
    from_root_.fill(kNone);
    std::int32_t last = kRoot;
    for (char c : text) last = extend(last, byte_of(c));
  }

  const State& operator[](std::int32_t state) const { return states_[index(state)]; }

  /// The state behind an edge; kNone when there is no such edge.
  std::int32_t target(std::int32_t state, unsigned char letter) const {
    if (state == kRoot) return from_root_[letter];
    return edges_.target(states_[index(state)].edges, letter);
  }

 private:
  static std::size_t index(std::int32_t i) { return static_cast<std::size_t>(i); }

  void add_edge(std::int32_t from, unsigned char letter, std::int32_t to) {
    if (from == kRoot) {
      from_root_[letter] = to;
    } else {
      edges_.add(states_[index(from)].edges, letter, to);
    }
  }

  void redirect(std::int32_t from, unsigned char letter, std::int32_t to) {
    if (from == kRoot) {
      from_root_[letter] = to;
    } else {
      edges_.redirect(states_[index(from)].edges, letter, to);
    }
  }

  std::int32_t new_state(State state) {
    states_.push_back(state);
    return static_cast<std::int32_t>(states_.size() - 1);
  }

  // The state of the whole text read so far, one letter longer.
  std::int32_t extend(std::int32_t last, unsigned char letter) {
    std::int32_t end = states_[index(last)].length;
    std::int32_t current = new_state({end + 1, kRoot, end, {}});
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
    const State original = states_[index(q)];
    if (original.length == length) return q;
    std::int32_t copy =
        new_state({length, original.link, original.first_end, edges_.copy(original.edges)});
    for (; p != kNone && target(p, letter) == q; p = states_[index(p)].link) {
      redirect(p, letter, copy);
    }
    states_[index(q)].link = copy;
    return copy;
  }

  std::vector<State> states_;
  Edges edges_;
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
