// Regular expressions: all matches in the GPL text repeated, against PCRE2 without its compiler,
// RE2 and std::regex. A row's ratio is the peer's time over ours.
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#include <re2/re2.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <string>

#include "bench/ratio.h"
#include "vstring/regex/match.h"

namespace {

constexpr std::size_t kTextBytes = std::size_t{32} << 20;
// std::regex needs seconds for a megabyte; it is given less, and both are compared byte for byte.
constexpr std::size_t kSmallTextBytes = std::size_t{256} << 10;

std::string make_text(std::size_t size) {
  std::ifstream file("/usr/share/common-licenses/GPL-3");
  std::string once{std::istreambuf_iterator<char>(file), {}};
  std::string text;
  while (text.size() < size) text += once;
  text.resize(size);
  return text;
}

const std::string& large_text() {
  static const std::string text = make_text(kTextBytes);
  return text;
}
const std::string& small_text() {
  static const std::string text = make_text(kSmallTextBytes);
  return text;
}

struct Pattern {
  const char* name;
  const char* pattern;
  bool wants_groups;
  int repeats = 1;  // how often the work is done: one look at the text's start is soon over
};

constexpr Pattern kPatterns[] = {
    {"literal", "General Public License", false},
    {"words", "warranty|copyright|freedom|patent|source", false},
    {"class_runs", "[A-Z][A-Z]+", false},
    {"suffix", "[a-z]+ing", false},
    {"dot_star", "the .*software", false},
    {"nested", "(([a-z]+) )+and", false},
    {"anchored", "^ *GNU", false, 1000},
    {"groups", "([A-Za-z]+) of ([a-z]+)", true},
    {"no_match", "[0-9][0-9][0-9][0-9][0-9]x", false},
    {"sets", "[^ ]*[.,;:]", false},
};

std::size_t count_ours(const Pattern& pattern, const std::string& text) {
  std::unique_ptr<RegexpRecord, decltype(&std::free)> record(vrx_regcomp(pattern.pattern),
                                                             std::free);
  vstring::regex::Prepared prepared(*record);
  vstring::regex::Execution execution(prepared, text, pattern.wants_groups);
  vstring::regex::Captures captures;
  std::size_t count = 0;
  for (std::size_t from = 0; from < text.size() && execution.search(from, captures); ++count) {
    from = static_cast<std::size_t>(captures.end[0] - text.data());
    if (record->anchored != 0) break;
  }
  return count;
}

std::size_t count_pcre2(const Pattern& pattern, const std::string& text) {
  int error = 0;
  PCRE2_SIZE offset = 0;
  pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.pattern),
                                   PCRE2_ZERO_TERMINATED, PCRE2_DOTALL, &error, &offset, nullptr);
  pcre2_match_data* data = pcre2_match_data_create_from_pattern(code, nullptr);
  std::size_t count = 0;
  for (std::size_t from = 0; from < text.size(); ++count) {
    int result = pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), from, 0,
                             data, nullptr);
    if (result < 0) break;
    from = pcre2_get_ovector_pointer(data)[1];
  }
  pcre2_match_data_free(data);
  pcre2_code_free(code);
  return count;
}

std::size_t count_re2(const Pattern& pattern, const std::string& text) {
  re2::RE2::Options options;
  options.set_dot_nl(true);
  options.set_encoding(re2::RE2::Options::EncodingLatin1);
  re2::RE2 compiled(pattern.pattern, options);
  re2::StringPiece groups[3];
  std::size_t count = 0;
  for (std::size_t from = 0; from < text.size(); ++count) {
    if (!compiled.Match(text, from, text.size(), re2::RE2::UNANCHORED, groups,
                        pattern.wants_groups ? 3 : 1)) {
      break;
    }
    from = static_cast<std::size_t>(groups[0].data() + groups[0].size() - text.data());
  }
  return count;
}

std::size_t count_std(const Pattern& pattern, const std::string& text) {
  std::regex compiled(pattern.pattern, std::regex::optimize);
  auto begin = std::cregex_iterator(text.data(), text.data() + text.size(), compiled);
  return static_cast<std::size_t>(std::distance(begin, std::cregex_iterator()));
}

using Count = std::size_t (*)(const Pattern&, const std::string&);

std::size_t repeat(Count count, const Pattern& pattern, const std::string& text) {
  std::size_t total = 0;
  for (int i = 0; i < pattern.repeats; ++i) total += count(pattern, text);
  return total;
}

// The number of iterations is fixed: it would be chosen by our time, and the peer's may be a
// thousand times as long.
void add_rows(const char* peer, Count count_peer, const std::string& (*text)()) {
  for (const Pattern& pattern : kPatterns) {
    std::string name = std::string("regex/") + pattern.name + "/" + peer;
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=, &pattern](benchmark::State& state) {
                                   bench::compare(
                                       state, static_cast<double>(text().size()) * pattern.repeats,
                                       [&] { return repeat(count_ours, pattern, text()); },
                                       [&] { return repeat(count_peer, pattern, text()); });
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5);
  }
}

const bool are_registered = [] {
  add_rows("pcre2", count_pcre2, large_text);
  add_rows("re2", count_re2, large_text);
  add_rows("std_regex", count_std, small_text);
  return true;
}();

}  // namespace
