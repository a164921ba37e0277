// Grammar inference and sorting as commands. Tests: docs/commands/grammar.md,
// tests/transcripts/words/orderings.vt.
#include <array>
#include <string>
#include <vector>

#include "vstring/charclass.h"
#include "vstring/core/byte_set.h"
#include "vstring/host/commands.h"
#include "vstring/words/grammar.h"
#include "vstring/words/shape.h"
#include "vstring/words/sorting.h"

namespace vstring {
namespace {

constexpr const char* kNoString = "argument must be a string";

// The objects that symbols show as, each made once.
class SymbolObjects {
 public:
  SymbolObjects(const Host& host, std::size_t num_rules) : host_(host) {
    for (std::size_t k = 0; k < num_rules; ++k) {
      names_.push_back(host.name(std::string("t").append(std::to_string(k)).c_str()));
    }
  }
  Object of_rule(std::size_t k) const { return names_[k]; }
  Object operator[](GrammarSymbol symbol) {
    if (symbol % 2 == 0) return names_[symbol / 2];
    Object& letter = letters_[symbol / 2];
    if (letter == 0) letter = host_.one_char(static_cast<unsigned char>(symbol / 2));
    return letter;
  }

 private:
  const Host& host_;
  std::vector<Object> names_;
  std::array<Object, 256> letters_ = {};
};

const ByteSet& blanks() {
  static const ByteSet set = [] {
    ByteSet bytes;
    for (int c = 1; c < 256; ++c) {
      if (ccl_isspace(c) != 0) bytes.add(static_cast<unsigned char>(c));
    }
    return bytes;
  }();
  return set;
}

}  // namespace

Object cmd::vstring_sequitur(Args& args, Host& host) {
  Grammar grammar = infer_grammar(args.string(1, "first argument must be a string"));
  SymbolObjects objects(host, grammar.size());
  List result = host.list(grammar.size());
  for (std::size_t k = 0; k < grammar.size(); ++k) {
    List right_side = host.list(grammar[k].size());
    for (std::size_t i = 0; i < grammar[k].size(); ++i) {
      right_side.set(i, objects[grammar[k][i]]);
    }
    result.set(k, host.equation(objects.of_rule(k), right_side.finish()));
  }
  return result.finish();
}

Object cmd::vstring_sort(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  if (s.size() < 2) return args[1];
  return host.text(s.size(), [s](char* out) { sort_bytes(s, out); });
}

Object cmd::vstring_uniq(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  if (s.size() < 2) return args[1];
  return host.text(Text(distinct_bytes(s)));
}

Object cmd::vstring_issorted(Args& args, Host& host) {
  Text s = args.string(1, kNoString);
  return host.boolean(first_fall(s) == s.size());
}

Object cmd::vstring_isblank(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  return host.boolean(find_other(s, blanks()) == s.size());
}

}  // namespace vstring
