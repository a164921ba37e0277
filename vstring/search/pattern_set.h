// Search for many patterns at once: the automaton of Aho and Corasick (1975), as the commands use
// it. Entry point: PatternSet (add, prepare, then first or all). Tests:
// tests/unit/pattern_set_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "vstring/core/text.h"
#include "vstring/search/start_filter.h"

namespace vstring {

class PatternSet {
 public:
  /// An occurrence: its 0-based offset and the value of the pattern.
  struct Report {
    std::uint32_t offset;
    std::uint32_t value;
    bool operator==(const Report&) const = default;
  };

  /// Adds a pattern, which must live until prepare(). An empty one occurs nowhere; one added before
  /// keeps its first value.
  void add(Text pattern, std::uint32_t value);
  /// To be called once, when all patterns are in and before the first search: `text_length` bytes,
  /// all texts together, are to be searched, which decides how large a table is worth its making.
  void prepare(std::size_t text_length);

  /// The occurrence that is reported first: the one that ends first; of those that end together the
  /// first in report order.
  std::optional<Report> first(Text text) const;
  /// All occurrences by their last bytes; those that end together in report order. Stops after
  /// `limit` or somewhat more.
  ///
  /// Report order: a state's reports are those of its failure state in reverse, then its own
  /// pattern. So they turn round at each failure step: the patterns at odd distances come first,
  /// the nearest first, then those at even distances, the nearest last.
  std::vector<Report> all(Text text, std::size_t limit) const;

 private:
  using NodeId = std::uint32_t;
  static constexpr std::uint32_t kNone = 0xffffffff;
  // A state of the scan is the offset of a node's row, or this bit and the node's number when
  // something is to be done there: it reports, or has no row.
  static constexpr std::uint32_t kStop = 0x80000000;

  struct Pattern {
    Text text;
    std::uint32_t value;
  };
  // The trie while it grows: the children of a node are a chain.
  struct Sprout {
    NodeId child = 0;  // 0, the root, is nobody's child: none
    NodeId sibling = 0;
    std::uint32_t output = kNone;
    unsigned char byte = 0;
  };
  // The trie as it is searched, in breadth-first order: the children of a node stand in a row.
  struct Node {
    NodeId child;  // the first of them; they end where those of the next node begin
    NodeId failure;
    std::uint32_t output;  // the nearest on the way from here along the failures; kNone: none
    std::uint32_t row;     // offset of the row, kNone without one
  };
  struct Output {
    std::uint32_t value;
    std::uint32_t length;
    std::uint32_t next;  // the next one along the failures
    bool is_odd;         // the parity of the number of failure steps to the root
  };

  void plant_patterns();
  void plant(const Pattern& pattern);
  void lay_out_nodes();
  void link_failures();
  void link(NodeId node, NodeId failure);
  void make_start_filter();
  void number_classes();
  void fill_rows(std::size_t text_length);
  std::uint32_t state_of(NodeId node) const;

  bool is_leaf(NodeId node) const { return nodes_[node].child == nodes_[node + 1].child; }
  NodeId child_of(NodeId node, unsigned char byte) const;
  std::uint32_t step(NodeId node, unsigned char byte) const;
  template <class Visit>
  void scan(Text text, Visit visit) const;
  template <class Visit>
  bool report(NodeId node, std::size_t end, std::vector<std::uint32_t>& even, Visit visit) const;

  std::vector<Pattern> patterns_;
  std::vector<Sprout> sprouts_;
  std::array<NodeId, 256> root_children_{};
  std::vector<Node> nodes_;            // the root first; one more at the end
  std::vector<unsigned char> labels_;  // the byte that leads to a node
  std::vector<bool> is_odd_;
  std::vector<Output> outputs_;
  std::array<unsigned char, 256> classes_{};  // bytes that no pattern holds share a class
  std::size_t class_count_ = 1;
  std::vector<std::uint32_t> rows_;  // the state after a byte of each class
  StartFilter filter_;               // leads from the root to where a pattern may start
};

}  // namespace vstring
