// Grammar inference beside the same text through the library's own hash of pairs, and sorting
// beside a comparison sort.
#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <unordered_map>

#include "bench/ratio.h"
#include "vstring/words/grammar.h"
#include "vstring/words/orderings.h"
#include "vstring/words/sorting.h"

namespace {

using vstring::Text;

std::string dictionary() {
  std::ifstream file("/usr/share/dict/words");
  return {std::istreambuf_iterator<char>(file), {}};
}

// What reading the pairs alone costs with a standard table.
std::size_t count_pairs(Text text) {
  std::unordered_map<std::uint64_t, std::size_t> places;
  for (std::size_t i = 0; i + 4 < text.size(); ++i) {
    std::uint64_t key = 0;
    for (std::size_t j = 0; j < 4; ++j) key = key << 8 | vstring::byte_of(text[i + j]);
    places.emplace(key, i);
  }
  return places.size();
}

template <class Ours, class Peer>
void add(const char* name, std::string text, int iterations, Ours ours, Peer peer) {
  benchmark::RegisterBenchmark(name,
                               [=](benchmark::State& state) {
                                 bench::compare(
                                     state, static_cast<double>(text.size()),
                                     [&] { return ours(text); }, [&] { return peer(text); });
                               })
      ->UseManualTime()
      ->Iterations(iterations);
}

int add_rows() {
  std::string words = dictionary();
  std::string ten;
  while (ten.size() < 10'000'000) ten += words;
  auto infer = [](Text text) { return vstring::infer_grammar(text).size(); };
  add("grammar/sequitur dictionary/pairs in a table", words, 3, infer, count_pairs);
  add("grammar/sequitur 10 MB/pairs in a table", ten, 1, infer, count_pairs);
  auto sort = [](Text text) {
    std::string out(text.size(), ' ');
    return vstring::sort_bytes(text, out.data());
  };
  auto comparison_sort = [](Text text) {
    std::string out(text);
    std::sort(out.begin(), out.end());
    return out.size();
  };
  add("grammar/sort 1 MB/std::sort", words.substr(0, 900'000), 10, sort, comparison_sort);
  add("grammar/sort 40/std::sort", words.substr(1000, 40), 1000, sort, comparison_sort);
  auto uniq = [](Text text) { return vstring::distinct_bytes(text).size(); };
  auto sort_and_unique = [](Text text) {
    std::string out(text);
    std::sort(out.begin(), out.end());
    return static_cast<std::size_t>(std::unique(out.begin(), out.end()) - out.begin());
  };
  add("grammar/uniq 1 MB/std::sort", words.substr(0, 900'000), 10, uniq, sort_and_unique);
  return 0;
}

const int rows_added = add_rows();

}  // namespace
