// The automaton: a trie with failure links, and for as many of its nodes as are worth it (those
// nearest the root, where a text spends its time) a row with the next state after every byte.
#include "vstring/search/pattern_set.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <utility>

namespace vstring {
namespace {

constexpr std::size_t kMostRowBytes = std::size_t{64} << 20;
constexpr std::size_t kLeastRows = 64;
constexpr std::size_t kTextBytesARow = 4;  // what repays the making of a row

// Leads over the stretches of a text where no pattern can start, for as long as that pays.
class Skipper {
 public:
  explicit Skipper(const StartFilter& filter)
      : filter_(filter), gain_(filter.is_useful() ? 4096 : -1) {}

  std::size_t next(Text text, std::size_t from) {
    if (gain_ < 0) return from;
    std::size_t next = filter_.next(text, from);
    gain_ += static_cast<std::ptrdiff_t>(std::min(next - from, kMostGain)) - kCost;
    gain_ = std::min(gain_, static_cast<std::ptrdiff_t>(kMostGain));
    return next;
  }

 private:
  static constexpr std::ptrdiff_t kCost = 12;  // in bytes passed by the rows
  static constexpr std::size_t kMostGain = 65536;
  const StartFilter& filter_;
  std::ptrdiff_t gain_;
};

}  // namespace

void PatternSet::add(Text pattern, std::uint32_t value) {
  if (!pattern.empty()) patterns_.push_back({pattern, value});
}

// In the order of their texts the patterns grow the trie along its newest branch alone: a child
// that is there already is the latest one of its node.
void PatternSet::plant_patterns() {
  std::stable_sort(patterns_.begin(), patterns_.end(),
                   [](const Pattern& a, const Pattern& b) { return a.text < b.text; });
  sprouts_.emplace_back();
  for (const Pattern& pattern : patterns_) plant(pattern);
  std::vector<Pattern>().swap(patterns_);
}

void PatternSet::plant(const Pattern& pattern) {
  NodeId node = 0;
  for (char c : pattern.text) {
    unsigned char byte = byte_of(c);
    NodeId child = sprouts_[node].child;
    if (child == 0 || sprouts_[child].byte != byte) {
      if (sprouts_.size() >= kStop - 1) throw std::bad_alloc();
      child = static_cast<NodeId>(sprouts_.size());
      sprouts_.push_back({0, sprouts_[node].child, kNone, byte});
      sprouts_[node].child = child;
    }
    node = child;
  }
  if (sprouts_[node].output != kNone) return;
  sprouts_[node].output = static_cast<std::uint32_t>(outputs_.size());
  outputs_.push_back(
      {pattern.value, static_cast<std::uint32_t>(pattern.text.size()), kNone, false});
}

void PatternSet::prepare(std::size_t text_length) {
  plant_patterns();
  lay_out_nodes();
  link_failures();
  make_start_filter();
  number_classes();
  fill_rows(text_length);
}

void PatternSet::lay_out_nodes() {
  std::vector<NodeId> order{0};
  order.reserve(sprouts_.size());
  nodes_.reserve(sprouts_.size() + 1);
  labels_.reserve(sprouts_.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const Sprout& sprout = sprouts_[order[i]];
    nodes_.push_back({static_cast<NodeId>(order.size()), 0, sprout.output, kNone});
    labels_.push_back(sprout.byte);
    for (NodeId child = sprout.child; child != 0; child = sprouts_[child].sibling) {
      order.push_back(child);
    }
  }
  auto past = static_cast<NodeId>(order.size());
  nodes_.push_back({past, 0, kNone, kNone});
  for (NodeId i = 1; i < nodes_[1].child; ++i) root_children_[labels_[i]] = i;
  std::vector<Sprout>().swap(sprouts_);
}

PatternSet::NodeId PatternSet::child_of(NodeId node, unsigned char byte) const {
  if (node == 0) return root_children_[byte];
  NodeId first = nodes_[node].child;
  const unsigned char* labels = labels_.data() + first;
  const void* found = std::memchr(labels, byte, nodes_[node + 1].child - first);
  if (found == nullptr) return 0;
  return first + static_cast<NodeId>(static_cast<const unsigned char*>(found) - labels);
}

void PatternSet::link_failures() {
  is_odd_.resize(nodes_.size());
  for (NodeId node = 0; node + 1 < nodes_.size(); ++node) {
    for (NodeId child = nodes_[node].child; child < nodes_[node + 1].child; ++child) {
      NodeId failure = 0;
      for (NodeId at = node; at != 0 && failure == 0;) {
        at = nodes_[at].failure;
        failure = child_of(at, labels_[child]);
      }
      link(child, failure);
    }
  }
}

void PatternSet::link(NodeId node, NodeId failure) {
  Node& here = nodes_[node];
  here.failure = failure;
  is_odd_[node] = !is_odd_[failure];
  std::uint32_t inherited = nodes_[failure].output;
  if (here.output == kNone) {
    here.output = inherited;
  } else {
    outputs_[here.output].next = inherited;
    outputs_[here.output].is_odd = is_odd_[node];
  }
}

// Of the nodes that are as deep as the shortest pattern, but no deeper than the filter looks.
void PatternSet::make_start_filter() {
  std::size_t depth = StartFilter::kMostBytes;
  for (const Output& output : outputs_) depth = std::min<std::size_t>(depth, output.length);
  std::vector<std::pair<NodeId, std::string>> starts{{0, ""}};
  for (std::size_t i = 0; i < starts.size() && starts[i].second.size() < depth; ++i) {
    NodeId node = starts[i].first;
    for (NodeId child = nodes_[node].child; child < nodes_[node + 1].child; ++child) {
      starts.emplace_back(child, starts[i].second + static_cast<char>(labels_[child]));
    }
    if (starts.size() > 3 * StartFilter::kMostStarts) return;
  }
  std::vector<std::string> deepest;
  for (auto& [node, start] : starts) {
    if (start.size() == depth) deepest.push_back(std::move(start));
  }
  if (!deepest.empty() && deepest.size() <= StartFilter::kMostStarts)
    filter_ = StartFilter(deepest);
}

void PatternSet::number_classes() {
  std::array<bool, 256> is_used{};
  for (std::size_t i = 1; i < labels_.size(); ++i) is_used[labels_[i]] = true;
  bool is_full = std::find(is_used.begin(), is_used.end(), false) == is_used.end();
  class_count_ = is_full ? 0 : 1;
  for (std::size_t byte = 0; byte < 256; ++byte) {
    if (is_used[byte]) classes_[byte] = static_cast<unsigned char>(class_count_++);
  }
}

std::uint32_t PatternSet::state_of(NodeId node) const {
  const Node& here = nodes_[node];
  if (node == 0 && filter_.is_useful()) return kStop;
  return here.output == kNone && here.row != kNone ? here.row : kStop | node;
}

// A leaf goes on as its failure does and shares its row.
void PatternSet::fill_rows(std::size_t text_length) {
  std::size_t most = std::max(kLeastRows, text_length / kTextBytesARow);
  most = std::min(most, kMostRowBytes / (class_count_ * sizeof(std::uint32_t)));
  std::size_t count = 0;
  for (NodeId node = 0; node + 1 < nodes_.size() && count < most; ++node) {
    if (node != 0 && is_leaf(node)) {
      nodes_[node].row = nodes_[nodes_[node].failure].row;
    } else {
      nodes_[node].row = static_cast<std::uint32_t>(count++ * class_count_);
    }
  }
  rows_.resize(count * class_count_);
  for (NodeId node = 0; node + 1 < nodes_.size() && nodes_[node].row != kNone; ++node) {
    if (node != 0 && is_leaf(node)) continue;
    std::uint32_t* row = rows_.data() + nodes_[node].row;
    if (node == 0) {
      std::fill_n(row, class_count_, state_of(0));
    } else {
      std::copy_n(rows_.data() + nodes_[nodes_[node].failure].row, class_count_, row);
    }
    for (NodeId child = nodes_[node].child; child < nodes_[node + 1].child; ++child) {
      row[classes_[labels_[child]]] = state_of(child);
    }
  }
}

// The state after a byte, from any node.
std::uint32_t PatternSet::step(NodeId node, unsigned char byte) const {
  while (nodes_[node].row == kNone) {
    if (NodeId child = child_of(node, byte)) return state_of(child);
    node = nodes_[node].failure;
  }
  return rows_[nodes_[node].row + classes_[byte]];
}

// Calls visit(report) for what ends before `end`; false when it asks for no more.
template <class Visit>
bool PatternSet::report(NodeId node, std::size_t end, std::vector<std::uint32_t>& even,
                        Visit visit) const {
  auto visit_output = [&](const Output& output) {
    return visit(Report{static_cast<std::uint32_t>(end - output.length), output.value});
  };
  std::uint32_t nearest = nodes_[node].output;
  if (nearest == kNone) return true;
  if (outputs_[nearest].next == kNone) return visit_output(outputs_[nearest]);
  const bool is_odd = is_odd_[node];
  for (std::uint32_t i = nearest; i != kNone; i = outputs_[i].next) {
    if (outputs_[i].is_odd == is_odd) {
      even.push_back(i);
    } else if (!visit_output(outputs_[i])) {
      return false;
    }
  }
  for (; !even.empty(); even.pop_back()) {
    if (!visit_output(outputs_[even.back()])) return false;
  }
  return true;
}

template <class Visit>
void PatternSet::scan(Text text, Visit visit) const {
  std::vector<std::uint32_t> even;
  Skipper skipper(filter_);
  const std::uint32_t* rows = rows_.data();
  std::uint32_t row = 0;
  for (std::size_t i = skipper.next(text, 0); i < text.size(); ++i) {
    std::uint32_t state = rows[row + classes_[byte_of(text[i])]];
    while ((state & kStop) != 0) {
      NodeId node = state & ~kStop;
      if (node == 0) {
        i = skipper.next(text, i + 1) - 1;
        state = 0;
        break;
      }
      if (!report(node, i + 1, even, visit)) return;
      state = nodes_[node].row;
      if (state != kNone) break;
      if (++i == text.size()) return;
      state = step(node, byte_of(text[i]));
    }
    row = state;
  }
}

std::optional<PatternSet::Report> PatternSet::first(Text text) const {
  std::optional<Report> found;
  scan(text, [&found](const Report& report) {
    found = report;
    return false;
  });
  return found;
}

std::vector<PatternSet::Report> PatternSet::all(Text text, std::size_t limit) const {
  std::vector<Report> found;
  scan(text, [&found, limit](const Report& report) {
    found.push_back(report);
    return found.size() < limit;
  });
  return found;
}

}  // namespace vstring
