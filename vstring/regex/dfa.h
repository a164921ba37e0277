// Searches that keep all ways through a program in one state, made when it is first met: a few
// instructions a byte, whatever the pattern. Entry point: Dfa.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "vstring/core/text.h"
#include "vstring/regex/limits.h"
#include "vstring/regex/positions.h"
#include "vstring/regex/start_finder.h"

namespace vstring::regex {

/// States named by what they consist of, and where each class of bytes leads from them. A link is
/// the offset of a state's row, with marks above it.
class StateTable {
 public:
  using Key = std::u16string;
  using Link = std::uint32_t;
  static constexpr Link kUnknown = 0xffffffff;
  static constexpr Link kAccepts = Link{1} << 31;
  static constexpr Link kIsDead = Link{1} << 30;   // no byte leads on
  static constexpr Link kIsStart = Link{1} << 29;  // nothing is under way
  static constexpr Link kMarks = kAccepts | kIsDead | kIsStart;

  explicit StateTable(std::size_t num_classes) : num_classes_(num_classes) {}

  /// The state of this key, new ones with these marks.
  Link link_to(const Key& key, Link marks);
  const Key& key(Link state) const { return *keys_[(state & ~kMarks) / num_classes_]; }
  Link next(Link state, std::size_t byte_class) const { return links_[state + byte_class]; }
  void set_next(Link state, std::size_t byte_class, Link link) {
    links_[state + byte_class] = link;
  }
  const Link* links() const { return links_.data(); }
  std::size_t memory() const { return memory_; }

 private:
  std::size_t num_classes_;
  std::unordered_map<Key, Link> states_;
  std::vector<const Key*> keys_;  // by number of the state
  std::vector<Link> links_;       // by state and class
  std::size_t memory_ = 0;        // about what all this takes
};

class Dfa {
 public:
  enum class Outcome : std::uint8_t { Match, NoMatch, GivenUp };
  struct Span {
    const char* start;
    const char* end;
  };

  /// All must outlive the searcher.
  Dfa(const Prepared& prepared, Text text, const Limits& limits = kUsualLimits);

  /// Searches the leftmost match from `position` on, before the end of the text; `^` matches at
  /// `origin`. Gives up, then and ever after, when states would take too much work or memory.
  Outcome search(const char* position, const char* origin, StartFinder& starts, Span& match);
  bool has_given_up() const { return has_given_up_; }

 private:
  using Link = StateTable::Link;
  using Key = StateTable::Key;

  Outcome find_end(const char* position, const char* origin, StartFinder& starts, Span& match);
  const char* find_start(const char* first, const char* origin, const char* end);
  Link start_state(bool is_at_origin);
  Link next_forward(Link state, std::size_t byte_class);
  Link next_backward(Link state, std::size_t byte_class);
  Link finish_forward(bool is_decided);
  Link finish_backward();
  bool add(const Positions::List& positions);
  void begin_state();
  bool is_start_in(const Positions::List& starts, const Key& key);
  bool may_end(Link state) const;
  bool is_worthwhile();

  Positions positions_;
  const Limits& limits_;
  const char* end_;          // of the text
  std::uint64_t max_bytes_;  // that may be looked at before giving up
  StateTable forward_;       // a key: a Progress, then positions in order of preference
  StateTable backward_;      // a key: the positions from which the end is reached, in numeric order
  bool has_given_up_ = false;
  std::size_t num_bytes_ = 0;           // looked at
  std::size_t num_visits_ = 0;          // of positions, to make states
  Key key_;                             // the state in the making
  std::vector<std::uint32_t> members_;  // by position: the state in the making it was put in last
  std::uint32_t num_made_ = 0;
};

}  // namespace vstring::regex
