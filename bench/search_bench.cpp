// Exact search beside memmem and the standard library's searcher, pattern sets beside Vectorscan.
#include <hs/hs.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/texts.h"
#include "vstring/search.h"
#include "vstring/search/exact.h"
#include "vstring/search/pattern_set.h"

namespace {

using bench::english;
using bench::licence;
using vstring::ExactSearcher;
using vstring::PatternSet;
using vstring::Text;

const std::string& long_text() {
  static const std::string text = english(std::size_t{64} << 20);
  return text;
}

std::size_t offset_by_memmem(Text pattern, Text text) {
  const void* hit = memmem(text.data(), text.size(), pattern.data(), pattern.size());
  return hit == nullptr ? Text::npos
                        : static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
}

std::size_t count_by_memmem(Text pattern, Text text) {
  std::size_t count = 0;
  for (std::size_t at; (at = offset_by_memmem(pattern, text)) != Text::npos; ++count) {
    text.remove_prefix(at + 1);
  }
  return count;
}

// What is found at once is searched for often enough to be timed.
void first_beside_memmem(benchmark::State& state, Text pattern, Text text) {
  std::size_t offset = offset_by_memmem(pattern, text);
  int repeats = offset < 100000 ? 1000 : 1;
  auto repeated = [=](auto search) {
    return [=] {
      std::size_t sum = 0;
      for (int i = 0; i < repeats; ++i) {
        Text unknown = pattern;
        benchmark::DoNotOptimize(unknown);  // or one call would do for all
        sum += search(unknown, text);
      }
      return sum;
    };
  };
  auto ours = [](Text p, Text t) { return vstring::find_text(p, t); };
  double bytes = static_cast<double>(std::min(offset, text.size())) * repeats;
  bench::compare(state, bytes, repeated(ours), repeated(offset_by_memmem));
}

void count_beside_memmem(benchmark::State& state, Text pattern, Text text) {
  bench::compare(
      state, static_cast<double>(text.size()),
      [=] { return vstring::count_occurrences(pattern, text); },
      [=] { return count_by_memmem(pattern, text); });
}

void first_beside_horspool(benchmark::State& state, Text pattern, Text text) {
  bench::compare(
      state, static_cast<double>(text.size()), [=] { return vstring::find_text(pattern, text); },
      [=] {
        std::boyer_moore_horspool_searcher searcher(pattern.begin(), pattern.end());
        return std::search(text.begin(), text.end(), searcher) - text.begin();
      });
}

// Words of the text, and made-up ones that follow its pairs of letters.
std::vector<std::string> words(std::size_t count) {
  std::string letters;
  for (char c : licence()) letters += std::isalpha(vstring::byte_of(c)) != 0 ? c : ' ';
  std::set<std::string> found;
  for (std::size_t i = 0; i < letters.size();) {
    std::size_t end = std::min(letters.find(' ', i), letters.size());
    if (end - i > 1) found.insert(letters.substr(i, end - i));
    i = end + 1;
  }
  std::mt19937 random(7);
  while (found.size() < count) {
    std::string word;
    std::size_t at = random() % (letters.size() - 1);
    for (std::size_t length = 3 + random() % 8; word.size() < length;) {
      if (letters[at] != ' ') word += letters[at];
      char next = letters[at + 1];
      do at = random() % (letters.size() - 1);
      while (letters[at] != next);
    }
    found.insert(word);
  }
  return {found.begin(), found.end()};
}

struct VectorscanSet {
  explicit VectorscanSet(const std::vector<std::string>& patterns) {
    std::vector<const char*> texts;
    std::vector<std::size_t> lengths;
    std::vector<unsigned> ids, flags(patterns.size(), 0);
    for (const std::string& p : patterns) {
      ids.push_back(static_cast<unsigned>(ids.size()) + 1);
      texts.push_back(p.c_str());
      lengths.push_back(p.size());
    }
    hs_compile_error_t* error = nullptr;
    hs_compile_lit_multi(texts.data(), flags.data(), ids.data(), lengths.data(),
                         static_cast<unsigned>(patterns.size()), HS_MODE_BLOCK, nullptr, &database,
                         &error);
    hs_alloc_scratch(database, &scratch);
  }
  ~VectorscanSet() {
    hs_free_scratch(scratch);
    hs_free_database(database);
  }
  VectorscanSet(const VectorscanSet&) = delete;
  VectorscanSet& operator=(const VectorscanSet&) = delete;

  std::size_t all(Text text) const {
    std::vector<PatternSet::Report> found;
    auto keep = [](unsigned id, unsigned long long, unsigned long long end, unsigned, void* to) {
      static_cast<std::vector<PatternSet::Report>*>(to)->push_back(
          {static_cast<std::uint32_t>(end), id});
      return 0;
    };
    hs_scan(database, text.data(), static_cast<unsigned>(text.size()), 0, scratch, keep, &found);
    return found.size();
  }

  hs_database_t* database = nullptr;
  hs_scratch_t* scratch = nullptr;
};

PatternSet set_of(const std::vector<std::string>& patterns, std::size_t text_length) {
  PatternSet set;
  std::uint32_t value = 0;
  for (const std::string& p : patterns) set.add(p, ++value);
  set.prepare(text_length);
  return set;
}

void set_beside_vectorscan(benchmark::State& state, const std::vector<std::string>& patterns,
                           Text text) {
  PatternSet set = set_of(patterns, text.size());
  VectorscanSet peer(patterns);
  state.counters["reports"] = static_cast<double>(set.all(text, SIZE_MAX).size());
  state.counters["peer_reports"] = static_cast<double>(peer.all(text));
  bench::compare(
      state, static_cast<double>(text.size()), [&] { return set.all(text, SIZE_MAX).size(); },
      [&] { return peer.all(text); });
}

// The exported automaton, which follows its edges one by one.
void set_beside_edge_chains(benchmark::State& state, const std::vector<std::string>& patterns,
                            Text text) {
  PatternSet set = set_of(patterns, text.size());
  AcAutomaton* peer = ac_alloc();
  std::int32_t value = 0;
  for (const std::string& p : patterns) ac_insert(peer, p.c_str(), ++value);
  ac_prep(peer);
  auto search_peer = [&] {
    std::vector<PatternSet::Report> found;
    auto keep = [](void* to, const char*, const char* start, std::int32_t index) {
      auto offset = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(start));
      static_cast<std::vector<PatternSet::Report>*>(to)->push_back(
          {offset, static_cast<std::uint32_t>(index)});
      return 1;
    };
    ac_search(peer->root, text.data(), keep, &found);
    return found.size();
  };
  bench::compare(
      state, static_cast<double>(text.size()), [&] { return set.all(text, SIZE_MAX).size(); },
      search_peer);
  ac_free(peer);
  std::free(peer);
}

void set_made_beside_vectorscan(benchmark::State& state, const std::vector<std::string>& patterns) {
  bench::compare(
      state, 0, [&] { return set_of(patterns, 10000000).first("").has_value(); },
      [&] { return VectorscanSet(patterns).database; });
}

template <class Run, class... Given>
void row(const std::string& name, Run run, Given... given) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { run(state, given...); })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

void add_single_rows() {
  for (std::size_t length : {2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64}) {
    std::string size = '/' + std::to_string(length);
    auto piece = [&](std::size_t at, std::size_t bytes) { return licence().substr(at, bytes); };
    auto* present = new std::string(piece(12345, length));
    auto* last_differs = new std::string(piece(12345, length - 1) + '~');
    auto* joined = new std::string(piece(20000, length / 2) + 'q' + piece(400, length));
    joined->resize(length);
    auto* reversed = new std::string(present->rbegin(), present->rend());
    const std::string& text = long_text();
    row("search/present" + size + "/memmem", first_beside_memmem, Text(*present), Text(text));
    row("search/last_differs" + size + "/memmem", first_beside_memmem, Text(*last_differs),
        Text(text));
    row("search/joined" + size + "/memmem", first_beside_memmem, Text(*joined), Text(text));
    row("search/reversed" + size + "/memmem", first_beside_memmem, Text(*reversed), Text(text));
    row("search/all" + size + "/memmem", count_beside_memmem, Text(*present), Text(text));
    row("search/rare" + size + "/horspool", first_beside_horspool, Text(*last_differs), Text(text));
  }
}

void add_adversarial_rows() {
  static const std::string a_text(std::size_t{4} << 20, 'a');
  static const std::string a_row(1000, 'a');
  static const std::string middle_b = a_row + 'b' + a_row, b_first = 'b' + a_row;
  static const std::string b_text = [] {
    std::string text;
    while (text.size() < a_text.size()) text += a_row.substr(2) + 'b';
    return text;
  }();
  // The peer starts anew after each hit: on a shorter text, it would not end on a long one.
  Text short_text = Text(a_text).substr(0, 1 << 13);
  row("search/worst/a1000/memmem", count_beside_memmem, Text(a_row), short_text);
  row("search/worst/a1000ba1000/memmem", first_beside_memmem, Text(middle_b), Text(a_text));
  row("search/worst/ba1000/memmem", first_beside_memmem, Text(b_first), Text(a_text));
  row("search/worst/a1000_in_a998b/memmem", first_beside_memmem, Text(a_row), Text(b_text));
  row("search/worst/ba1000_in_a998b/memmem", first_beside_memmem, Text(b_first), Text(b_text));
}

void add_set_rows() {
  static const std::string text = english(10000000);
  static const std::vector<std::string> many = words(24000);
  static const std::vector<std::string> few = {"warranty", "copyleft", "merchantability", "source"};
  static const std::vector<std::string> seldom = {"zebra", "quixotic", "xylophone", "jukebox"};
  static const std::vector<std::string> thousand = words(1500);
  row("set/24000_words/vectorscan", set_beside_vectorscan, many, Text(text));
  row("set/1500_words/vectorscan", set_beside_vectorscan, thousand, Text(text));
  row("set/4_words/vectorscan", set_beside_vectorscan, few, Text(text));
  row("set/4_absent_words/vectorscan", set_beside_vectorscan, seldom, Text(text));
  row("set/24000_words/edge_chains", set_beside_edge_chains, many, Text(text));
  row("set/4_words/edge_chains", set_beside_edge_chains, few, Text(text));
  row("set/making_24000/vectorscan", set_made_beside_vectorscan, many);
}

[[maybe_unused]] const bool kRows =
    (add_single_rows(), add_adversarial_rows(), add_set_rows(), true);

}  // namespace
