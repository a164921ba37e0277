#include "vstring/words/grammar.h"

#include <cstddef>

#include "vstring/words/digram_index.h"

namespace vstring {
namespace {

using SymbolId = std::uint32_t;
using RuleId = std::uint32_t;

constexpr SymbolId kNone = 0;                 // no symbol has this number
constexpr GrammarSymbol kGuard = 0x80000000;  // the bit that marks a guard's value

bool is_rule(GrammarSymbol value) { return value % 2 == 0; }
RuleId rule_of(GrammarSymbol value) { return (value & ~kGuard) / 2; }

class GrammarBuilder {
 public:
  explicit GrammarBuilder(Text text) : symbols_(1) {
    RuleId start = new_rule();
    for (char c : text) {
      SymbolId last = symbols_[guard(start)].previous;
      insert_behind(last, new_symbol(2U * byte_of(c) + 1));
      tasks_.push_back({Task::kCheck, last});
      run_tasks();
    }
  }

  Grammar grammar() const {
    constexpr std::uint32_t kUnnumbered = 0xffffffff;
    std::vector<std::uint32_t> numbers(rules_.size(), kUnnumbered);
    std::vector<RuleId> order = {0};
    numbers[0] = 0;
    Grammar result;
    for (std::size_t k = 0; k < order.size(); ++k) {
      std::vector<GrammarSymbol>& right_side = result.emplace_back();
      for (SymbolId x = first(order[k]); !is_guard(x); x = symbols_[x].next) {
        GrammarSymbol value = symbols_[x].value;
        if (is_rule(value)) {
          std::uint32_t& number = numbers[rule_of(value)];
          if (number == kUnnumbered) {
            number = static_cast<std::uint32_t>(order.size());
            order.push_back(rule_of(value));
          }
          value = 2 * number;
        }
        right_side.push_back(value);
      }
    }
    return result;
  }

 private:
  struct Symbol {
    SymbolId previous = kNone;
    SymbolId next = kNone;
    GrammarSymbol value = 0;
  };
  // A circle of symbols, closed by a guard.
  struct Rule {
    SymbolId guard;
    std::uint32_t num_uses;
  };
  // What is still to be done, the last one first: a list instead of recursion, whose depth may grow
  // with the text.
  struct Task {
    enum Kind : std::uint8_t { kCheck, kFinishNewRule, kFinishUse };
    Kind kind;
    std::uint32_t subject;  // a symbol or a rule
  };

  bool is_guard(SymbolId x) const { return (symbols_[x].value & kGuard) != 0; }
  SymbolId guard(RuleId rule) const { return rules_[rule].guard; }
  SymbolId first(RuleId rule) const { return symbols_[guard(rule)].next; }

  SymbolId new_symbol(GrammarSymbol value) {
    SymbolId x = free_symbols_;
    if (x != kNone) {
      free_symbols_ = symbols_[x].next;
    } else {
      x = static_cast<SymbolId>(symbols_.size());
      symbols_.emplace_back();
    }
    symbols_[x] = {kNone, kNone, value};
    if ((value & kGuard) == 0 && is_rule(value)) ++rules_[rule_of(value)].num_uses;
    return x;
  }

  void free_symbol(SymbolId x) {
    symbols_[x].next = free_symbols_;
    free_symbols_ = x;
  }

  // Rules keep their numbers, also when they are gone.
  RuleId new_rule() {
    auto rule = static_cast<RuleId>(rules_.size());
    rules_.push_back({kNone, 0});
    SymbolId x = new_symbol(kGuard | 2 * rule);
    rules_[rule].guard = x;
    symbols_[x].previous = symbols_[x].next = x;
    return rule;
  }

  // The pair that a symbol forms with the next one.
  std::uint64_t pair_at(SymbolId x) const {
    return std::uint64_t{symbols_[x].value} << 32 | symbols_[symbols_[x].next].value;
  }
  bool has_pair(SymbolId x) const { return !is_guard(x) && !is_guard(symbols_[x].next); }

  void index(SymbolId x) { index_.set(pair_at(x), x); }

  // Only this very occurrence is taken out of the index.
  void remove_pair(SymbolId x) {
    if (has_pair(x)) index_.remove(pair_at(x), x);
  }

  bool is_middle_of_three(SymbolId x) const {
    const Symbol& symbol = symbols_[x];
    return symbol.previous != kNone && symbol.next != kNone &&
           symbols_[symbol.previous].value == symbol.value &&
           symbols_[symbol.next].value == symbol.value;
  }

  // Makes two symbols neighbours. Of the pairs in a row of three equal symbols only one is in the
  // index; when that goes, the other takes its place.
  void join(SymbolId left, SymbolId right) {
    if (symbols_[left].next != kNone) {
      remove_pair(left);
      if (is_middle_of_three(right)) index(right);
      if (is_middle_of_three(left)) index(symbols_[left].previous);
    }
    symbols_[left].next = right;
    symbols_[right].previous = left;
  }

  void insert_behind(SymbolId place, SymbolId x) {
    join(x, symbols_[place].next);
    join(place, x);
  }

  void remove(SymbolId x) {
    join(symbols_[x].previous, symbols_[x].next);
    remove_pair(x);
    if (is_rule(symbols_[x].value)) --rules_[rule_of(symbols_[x].value)].num_uses;
    free_symbol(x);
  }

  // Puts a rule in the place of the pair at x; returns the symbol before it.
  SymbolId replace_pair(SymbolId x, RuleId rule) {
    SymbolId before = symbols_[x].previous;
    remove(symbols_[before].next);
    remove(symbols_[before].next);
    insert_behind(before, new_symbol(2 * rule));
    return before;
  }

  void run_tasks() {
    while (!tasks_.empty()) {
      Task task = tasks_.back();
      tasks_.pop_back();
      switch (task.kind) {
        case Task::kCheck:
          if (!check(task.subject)) check(symbols_[task.subject].next);
          break;
        case Task::kFinishNewRule:
          index(first(task.subject));
          [[fallthrough]];
        case Task::kFinishUse:
          expand_first_if_rare(task.subject);
      }
    }
  }

  // Enters the pair at x into the index; when it stands elsewhere, replaces both. Tells whether it
  // has replaced it.
  bool check(SymbolId x) {
    if (!has_pair(x)) return false;
    SymbolId other = index_.find(pair_at(x));
    if (other == DigramIndex::kNone) {
      index(x);
      return false;
    }
    bool is_apart = other != x && symbols_[other].next != x && symbols_[x].next != other;
    if (is_apart) replace_both(x, other);
    return is_apart;
  }

  void replace_both(SymbolId x, SymbolId other) {
    SymbolId before = symbols_[other].previous;
    if (is_guard(before) && is_guard(symbols_[symbols_[other].next].next)) {
      RuleId rule = rule_of(symbols_[before].value);
      tasks_.push_back({Task::kFinishUse, rule});
      tasks_.push_back({Task::kCheck, replace_pair(x, rule)});
      return;
    }
    RuleId rule = new_rule();
    GrammarSymbol second = symbols_[symbols_[x].next].value;
    insert_behind(guard(rule), new_symbol(symbols_[x].value));
    insert_behind(first(rule), new_symbol(second));
    // Nothing is known of a new rule's symbol yet: its pairs are only entered.
    SymbolId place = replace_pair(other, rule);
    if (!check(place)) check(symbols_[place].next);
    tasks_.push_back({Task::kFinishNewRule, rule});
    tasks_.push_back({Task::kCheck, replace_pair(x, rule)});
  }

  // A rule that has come to be used once is written out where it is used.
  void expand_first_if_rare(RuleId rule) {
    SymbolId use = first(rule);
    if (is_guard(use) || !is_rule(symbols_[use].value)) return;
    RuleId rare = rule_of(symbols_[use].value);
    if (rules_[rare].num_uses != 1) return;
    SymbolId left = symbols_[use].previous;
    SymbolId right = symbols_[use].next;
    SymbolId inner_first = first(rare);
    SymbolId inner_last = symbols_[guard(rare)].previous;
    remove_pair(use);
    symbols_[left].next = inner_first;
    symbols_[inner_first].previous = left;
    symbols_[inner_last].next = right;
    symbols_[right].previous = inner_last;
    index(inner_last);
    free_symbol(guard(rare));
    free_symbol(use);
  }

  std::vector<Symbol> symbols_;  // number 0 is none
  std::vector<Rule> rules_;
  SymbolId free_symbols_ = kNone;
  DigramIndex index_;
  std::vector<Task> tasks_;
};

}  // namespace

Grammar infer_grammar(Text text) { return GrammarBuilder(text).grammar(); }

}  // namespace vstring
