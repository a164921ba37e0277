// Natural language beside its peers: libstemmer's Porter on the words of a dictionary, loops over a
// table of bytes, and the program wc itself.
#include <libstemmer.h>

#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/texts.h"
#include "vstring/language/porter.h"
#include "vstring/language/sentences.h"
#include "vstring/language/words.h"

namespace {

using bench::english;
using vstring::Text;

void porter(benchmark::State& state) {
  std::ifstream file("/usr/share/dict/words");
  std::vector<std::string> words(std::istream_iterator<std::string>(file), {});
  double bytes = 0;
  for (const std::string& word : words) bytes += static_cast<double>(word.size());
  auto ours = [&] {
    std::size_t length = 0;
    char stem[vstring::kMaxPorterWord];
    for (const std::string& word : words) {
      if (word.size() > 1) length += vstring::porter_stem(word, stem);
    }
    return length;
  };
  std::unique_ptr<sb_stemmer, void (*)(sb_stemmer*)> stemmer(sb_stemmer_new("porter", nullptr),
                                                             sb_stemmer_delete);
  auto peer = [&] {
    std::size_t length = 0;
    for (const std::string& word : words) {
      if (word.size() < 2) continue;
      sb_stemmer_stem(stemmer.get(), reinterpret_cast<const sb_symbol*>(word.data()),
                      static_cast<int>(word.size()));
      length += static_cast<std::size_t>(sb_stemmer_length(stemmer.get()));
    }
    return length;
  };
  bench::compare(state, bytes, ours, peer);
}

enum Kind : unsigned char { kOther, kWord, kSpace, kMark };

const std::array<Kind, 256> kKinds = [] {
  std::array<Kind, 256> kinds = {};
  for (int c = 0; c < 128; ++c) {
    Kind& kind = kinds[static_cast<std::size_t>(c)];
    if (std::isalnum(c) != 0 || c == '\'') kind = kWord;
    if (std::isspace(c) != 0) kind = kSpace;
    if (c == '.' || c == '?' || c == '!' || c == ':') kind = kMark;
  }
  return kinds;
}();

Kind kind_of(char c) { return kKinds[vstring::byte_of(c)]; }

std::size_t count_by_table(Text text) {
  std::size_t words = 0;
  std::size_t lines = 0;
  bool is_inside = false;
  for (char c : text) {
    bool is_word = kind_of(c) == kWord;
    if (is_word && !is_inside) ++words;
    if (c == '\n' && !is_inside) ++lines;
    is_inside = is_word;
  }
  return words + lines;
}

std::size_t find_words_by_table(Text text) {
  std::size_t sum = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kind_of(text[i]) != kWord) continue;
    std::size_t start = i;
    while (i < text.size() && kind_of(text[i]) == kWord) ++i;
    sum += i - start;
  }
  return sum;
}

std::size_t count_sentences_by_table(Text text) {
  std::size_t count = 1;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (kind_of(text[i]) == kMark && kind_of(text[i + 1]) == kSpace &&
        vstring::is_sentence_end(text, i)) {
      ++count;
    }
  }
  return count;
}

std::size_t count(Text text) {
  vstring::WordCount count = vstring::count_words(text);
  return count.words + count.lines;
}

std::size_t find_words(Text text) {
  std::size_t sum = 0;
  vstring::for_each_word(text, [&](Text word) { sum += word.size(); });
  return sum;
}

// The program wc on a file of the same text, its start included.
class WcProgram {
 public:
  explicit WcProgram(Text text) : path_(std::filesystem::temp_directory_path() / "wc_bench.txt") {
    std::ofstream(path_) << text;
  }
  ~WcProgram() { std::filesystem::remove(path_); }
  WcProgram(const WcProgram&) = delete;
  WcProgram& operator=(const WcProgram&) = delete;
  std::size_t count() const {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> out(
        popen(("LC_ALL=C wc -w <" + path_.string()).c_str(), "r"), pclose);
    std::size_t words = 0;
    return std::fscanf(out.get(), "%zu", &words) == 1 ? words : 0;
  }

 private:
  std::filesystem::path path_;
};

void wc_program(benchmark::State& state) {
  std::string text = english(std::size_t{64} << 20);
  WcProgram program(text);
  bench::compare(
      state, static_cast<double>(text.size()), [&] { return count(text); },
      [&] { return program.count(); });
}

template <class Ours, class Peer>
void add(const char* name, std::string text, Ours ours, Peer peer) {
  benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
    std::size_t times = 1 + 10000 / text.size();  // a short text again and again
    auto repeated = [&](auto work) {
      std::size_t sum = 0;
      for (std::size_t i = 0; i < times; ++i) {
        Text again = text;
        benchmark::DoNotOptimize(again);
        sum += work(again);
      }
      return sum;
    };
    bench::compare(
        state, static_cast<double>(text.size() * times), [&] { return repeated(ours); },
        [&] { return repeated(peer); });
  })->UseManualTime();
}

int add_rows() {
  benchmark::RegisterBenchmark("language/porter dictionary/libstemmer", porter)->UseManualTime();
  std::string prose = english(1 << 20);
  std::string line = english(60);
  add("language/wc prose/table", prose, count, count_by_table);
  add("language/wc 60 bytes/table", line, count, count_by_table);
  add("language/words prose/table", prose, find_words, find_words_by_table);
  add("language/words 60 bytes/table", line, find_words, find_words_by_table);
  add("language/sent prose/table", prose, vstring::count_sentences, count_sentences_by_table);
  add("language/sent 60 bytes/table", line, vstring::count_sentences, count_sentences_by_table);
  benchmark::RegisterBenchmark("language/wc 64 MB/wc -w", wc_program)->UseManualTime();
  return 0;
}

const int rows_added = add_rows();

}  // namespace
