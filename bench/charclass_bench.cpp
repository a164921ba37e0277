// Class scans beside the plain table loop and the C library, case conversion beside memcpy.
#include <cctype>
#include <cstring>
#include <string>

#include "bench/ratio.h"
#include "vstring/charclass.h"
#include "vstring/charclass/case.h"
#include "vstring/core/byte_set.h"

namespace {

using vstring::byte_of;
using vstring::ByteSet;
using vstring::Text;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

ByteSet set_of(std::uint32_t bits) {
  ByteSet set;
  for (int c = 0; c < 256; ++c) {
    if ((cclbm[c] & bits) != 0) set.add(static_cast<unsigned char>(c));
  }
  return set;
}

// Repeated so often that the clock's own time does not count.
template <class Work>
auto repeated(std::size_t size, Work work) {
  return [=, times = 1 + 100000 / (size + 1)] {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < times; ++i) {
      sum += work();
      benchmark::ClobberMemory();
    }
    return sum;
  };
}

template <class Ours, class Peer>
void compare(benchmark::State& state, std::size_t size, Ours ours, Peer peer) {
  double bytes = static_cast<double>(size * (1 + 100000 / (size + 1)));
  bench::compare(state, bytes, repeated(size, ours), repeated(size, peer));
}

const std::string& letters() {
  static const std::string text = [] {
    std::string word = "Lorem";
    std::string all;
    while (all.size() < kMegabyte) all += word;
    all.resize(kMegabyte);
    return all;
  }();
  return text;
}

Text letters(const benchmark::State& state) {
  return Text(letters()).substr(0, static_cast<std::size_t>(state.range(0)));
}

void all_members_table(benchmark::State& state) {
  Text text = letters(state);
  ByteSet alpha = set_of(CCL_ALPHA);
  auto plain = [=] {
    std::size_t at = 0;
    while (at < text.size() && (cclbm[byte_of(text[at])] & CCL_ALPHA) != 0) ++at;
    return at;
  };
  compare(
      state, text.size(), [=] { return find_other(text, alpha); }, plain);
}

void all_members_memchr(benchmark::State& state) {
  Text text = letters(state);
  ByteSet alpha = set_of(CCL_ALPHA);
  auto peer = [=] {
    const void* hit = std::memchr(text.data(), '#', text.size());
    return hit == nullptr ? text.size() : 0;
  };
  compare(
      state, text.size(), [=] { return find_other(text, alpha); }, peer);
}

void all_members_memcpy(benchmark::State& state) {
  Text text = letters(state);
  ByteSet alpha = set_of(CCL_ALPHA);
  static std::string out(kMegabyte, ' ');
  auto peer = [=] {
    std::memcpy(out.data(), text.data(), text.size());
    return std::size_t{1};
  };
  compare(
      state, text.size(), [=] { return find_other(text, alpha); }, peer);
}

void find_member_strcspn(benchmark::State& state) {
  ByteSet digits = set_of(CCL_DIGIT);
  const std::string copy(letters(state));
  const char* c_text = copy.c_str();
  Text seen = copy;
  compare(
      state, seen.size(), [=] { return find_member(seen, digits); },
      [=] { return std::strcspn(c_text, "0123456789"); });
}

void count_members_table(benchmark::State& state) {
  Text text = letters(state);
  ByteSet vowels = set_of(CCL_VOWEL);
  auto plain = [=] {
    std::size_t count = 0;
    for (char c : text) count += (cclbm[byte_of(c)] & CCL_VOWEL) != 0;
    return count;
  };
  compare(
      state, text.size(), [=] { return count_members(text, vowels); }, plain);
}

#define SIZES Arg(8)->Arg(30)->Arg(100)->Arg(1000)->Arg(1 << 20)->UseManualTime()
BENCHMARK(all_members_table)->Name("charclass/all_members/table")->SIZES;
BENCHMARK(all_members_memchr)->Name("charclass/all_members/memchr")->SIZES;
BENCHMARK(all_members_memcpy)->Name("charclass/all_members/memcpy")->SIZES;
BENCHMARK(find_member_strcspn)->Name("charclass/find_member/strcspn")->SIZES;
BENCHMARK(count_members_table)->Name("charclass/count_members/table")->SIZES;

using Convert = void (*)(Text text, char* out);

template <Convert convert>
void convert_memcpy(benchmark::State& state) {
  Text text = letters(state);
  static std::string out(kMegabyte, ' ');
  auto ours = [=] {
    convert(text, out.data());
    return std::size_t{1};
  };
  auto peer = [=] {
    std::memcpy(out.data(), text.data(), text.size());
    return std::size_t{1};
  };
  compare(state, text.size(), ours, peer);
}

void upper_toupper(benchmark::State& state) {
  Text text = letters(state);
  static std::string out(kMegabyte, ' ');
  auto ours = [=] {
    vstring::write_upper(text, out.data());
    return std::size_t{1};
  };
  auto peer = [=] {
    for (std::size_t i = 0; i < text.size(); ++i) {
      out[i] = static_cast<char>(std::toupper(byte_of(text[i])));
    }
    return std::size_t{1};
  };
  compare(state, text.size(), ours, peer);
}

BENCHMARK(convert_memcpy<vstring::write_upper>)->Name("case/upper/memcpy")->SIZES;
BENCHMARK(convert_memcpy<vstring::write_lower>)->Name("case/lower/memcpy")->SIZES;
BENCHMARK(convert_memcpy<vstring::write_other_case>)->Name("case/other/memcpy")->SIZES;
BENCHMARK(convert_memcpy<vstring::write_capitalised>)->Name("case/capitalised/memcpy")->SIZES;
BENCHMARK(upper_toupper)->Name("case/upper/toupper")->SIZES;

}  // namespace
