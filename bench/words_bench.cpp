// Combinatorics of words beside the plain methods: the word searched for in itself twice, the
// table of failures over the doubled word, byte after byte.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "vstring/core/least_rotation.h"
#include "vstring/words/borders.h"
#include "vstring/words/factorisation.h"
#include "vstring/words/repetitions.h"
#include "vstring/words/shape.h"

namespace {

using vstring::Text;

std::string english(std::size_t length) {
  std::ifstream file("/usr/share/common-licenses/GPL-3");
  std::string text(std::istreambuf_iterator<char>(file), {});
  while (text.size() < length) text += text;
  text.resize(length);
  return text;
}

std::string all_but_one(std::size_t length) {
  std::string text(length, 'a');
  text[length / 2] = 'b';
  return text;
}

std::size_t root_by_search(Text word) {
  std::string twice(word.substr(1));
  twice.append(word.substr(0, word.size() - 1));
  std::size_t place = twice.find(word);
  return place == Text::npos ? word.size() : place + 1;
}

// Booth's method.
std::size_t rotation_by_failures(Text word) {
  std::size_t n = word.size();
  std::vector<std::int64_t> failure(2 * n + 1, -1);
  std::size_t start = 0;
  for (std::size_t j = 1; j < 2 * n; ++j) {
    char c = word[j % n];
    std::int64_t i = failure[j - start - 1];
    auto at = [&](std::int64_t k) { return word[(start + static_cast<std::size_t>(k + 1)) % n]; };
    for (; i != -1 && c != at(i); i = failure[static_cast<std::size_t>(i)]) {
      if (c < at(i)) start = j - static_cast<std::size_t>(i) - 1;
    }
    if (c != at(i)) {
      if (c < at(i)) start = j;
      failure[j - start] = -1;
    } else {
      failure[j - start] = i + 1;
    }
  }
  return start;
}

std::size_t repeats_by_bytes(Text word) {
  std::size_t count = 0;
  for (std::size_t d = word.size() - 1; d >= 2; --d) {
    bool is_inside = false;
    for (std::size_t j = 0; j + d < word.size(); ++j) {
      bool is_equal = word[j] == word[j + d];
      if (is_equal && !is_inside) ++count;
      is_inside = is_equal;
    }
  }
  return count;
}

bool falls_by_bytes(Text word) {
  for (std::size_t i = 1; i < word.size(); ++i) {
    if (vstring::byte_of(word[i]) < vstring::byte_of(word[i - 1])) return true;
  }
  return false;
}

bool is_palindrome_by_bytes(Text word) {
  for (std::size_t i = 0; i < word.size() / 2; ++i) {
    if (word[i] != word[word.size() - 1 - i]) return false;
  }
  return true;
}

template <class Ours, class Peer>
void add(const char* name, std::string text, Ours ours, Peer peer) {
  benchmark::RegisterBenchmark(name,
                               [=](benchmark::State& state) {
                                 Text word = text;
                                 bench::compare(
                                     state, static_cast<double>(word.size()),
                                     [&] { return ours(word); }, [&] { return peer(word); });
                               })
      ->UseManualTime()
      ->Iterations(20);
}

int add_rows() {
  std::string prose = english(1 << 20);
  std::string power(1 << 20, 'a');
  add("words/isprim prose/search", prose, vstring::root_length, root_by_search);
  add("words/isprim a^k/search", power, vstring::root_length, root_by_search);
  add("words/isprim a^k b a^k/search", all_but_one(1 << 12), vstring::root_length, root_by_search);
  add("words/minconj prose/Booth", prose, vstring::least_rotation, rotation_by_failures);
  add("words/minconj a^k/Booth", power, vstring::least_rotation, rotation_by_failures);
  add("words/minconj a^k b a^k/Booth", all_but_one(1 << 20), vstring::least_rotation,
      rotation_by_failures);
  auto count_repeats = [](Text word) { return vstring::count_repeats(word, word.size() * 10000); };
  add("words/repeats/bytes", english(10000), count_repeats, repeats_by_bytes);
  add("words/ismono/bytes", power, vstring::first_fall, falls_by_bytes);
  add("words/ispal/bytes", power, vstring::is_palindrome, is_palindrome_by_bytes);
  return 0;
}

const int rows_added = add_rows();

}  // namespace
