// Base64 beside OpenSSL, rotations beside memcpy, block sorting beside a library sort of the
// rotations and divsufsort, random values beside one at a time.
#include <divsufsort.h>
#include <openssl/evp.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/texts.h"
#include "vstring/core/random.h"
#include "vstring/encoding/base64.h"
#include "vstring/encoding/block_sort.h"
#include "vstring/encoding/rotation.h"
#include "vstring/random.h"

namespace {

using bench::english;
using vstring::Text;

// Repeated so often that the clock's own time does not count.
template <class Ours, class Peer>
void compare(benchmark::State& state, std::size_t size, Ours ours, Peer peer) {
  std::size_t times = 1 + 100000 / (size + 1);
  auto repeated = [=](auto work) {
    return [=] {
      for (std::size_t i = 0; i < times; ++i) {
        work();
        benchmark::ClobberMemory();
      }
      return times;
    };
  };
  bench::compare(state, static_cast<double>(size * times), repeated(ours), repeated(peer));
}

std::size_t size_of(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

std::string random_text(std::size_t size) {
  std::string text(size, ' ');
  vstring::restart_random(1);
  vstring::write_random_bytes(size, text.data());
  return text;
}

const unsigned char* bytes_of(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

void encode_openssl(benchmark::State& state) {
  std::string text = random_text(size_of(state));
  std::string out(vstring::base64_size(text.size()) + 1, ' ');
  compare(
      state, text.size(), [&] { vstring::encode_base64(text, out.data()); },
      [&] {
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()), bytes_of(text),
                        static_cast<int>(text.size()));
      });
}

void decode_openssl(benchmark::State& state) {
  std::string text = random_text(size_of(state));
  std::string coded(vstring::base64_size(text.size()), ' ');
  vstring::encode_base64(text, coded.data());
  std::string out(text.size() + 3, ' ');
  compare(
      state, coded.size(),
      [&] {
        Text digits = vstring::base64_digits(coded);
        benchmark::DoNotOptimize(vstring::decode_base64(digits, out.data()));
      },
      [&] {
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(out.data()), bytes_of(coded),
                        static_cast<int>(coded.size()));
      });
}

#define SIZES Arg(3)->Arg(10)->Arg(20)->Arg(47)->Arg(100)->Arg(1000)->Arg(1 << 20)->UseManualTime()
BENCHMARK(encode_openssl)->Name("encoding/base64_encode/openssl")->SIZES;
BENCHMARK(decode_openssl)->Name("encoding/base64_decode/openssl")->SIZES;

template <class Rotate>
void rotate_memcpy(benchmark::State& state, Rotate rotate) {
  std::string text = random_text(size_of(state));
  std::string out(text.size(), ' ');
  compare(
      state, text.size(), [&] { rotate(text, out.data()); },
      [&] { std::memcpy(out.data(), text.data(), text.size()); });
}

void bytes_memcpy(benchmark::State& state) {
  rotate_memcpy(state, [](Text text, char* out) {
    benchmark::DoNotOptimize(vstring::rotate_bytes(text, 77, out));
  });
}

void letters_memcpy(benchmark::State& state) {
  rotate_memcpy(state, [](Text text, char* out) { vstring::rotate_letters(text, 13, out); });
}

BENCHMARK(bytes_memcpy)->Name("encoding/rot/memcpy")->SIZES;
BENCHMARK(letters_memcpy)->Name("encoding/rot13/memcpy")->SIZES;

void library_sort(const std::string& text, std::string& out) {
  std::string twice = text + text;
  std::vector<std::uint32_t> order(text.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return std::memcmp(twice.data() + a, twice.data() + b, text.size()) < 0;
  });
  for (std::size_t i = 0; i < text.size(); ++i) out[i] = twice[order[i] + text.size() - 1];
}

void block_sort_library(benchmark::State& state) {
  std::string text = english(size_of(state));
  std::string out(text.size(), ' ');
  compare(
      state, text.size(), [&] { vstring::block_sort(text, out.data()); },
      [&] { library_sort(text, out); });
}

void divsufsort_transform(const std::string& text, std::string& out) {
  divbwt(bytes_of(text), reinterpret_cast<unsigned char*>(out.data()), nullptr,
         static_cast<int>(text.size()));
}

void block_sort_divsufsort(benchmark::State& state) {
  std::string text = english(size_of(state));
  std::string out(text.size(), ' ');
  compare(
      state, text.size(), [&] { vstring::block_sort(text, out.data()); },
      [&] { divsufsort_transform(text, out); });
}

// One letter throughout: quadratic for a sort of the rotations.
void block_sort_run(benchmark::State& state) {
  std::string text(size_of(state), 'a');
  std::string out(text.size(), ' ');
  compare(
      state, text.size(), [&] { vstring::block_sort(text, out.data()); },
      [&] { divsufsort_transform(text, out); });
}

void undo_divsufsort(benchmark::State& state) {
  std::string text = english(size_of(state));
  std::string sorted(text.size(), ' ');
  std::string out(text.size(), ' ');
  std::size_t row = vstring::block_sort(text, sorted.data());
  std::string peer_sorted(text.size(), ' ');
  int peer_row = divbwt(bytes_of(text), reinterpret_cast<unsigned char*>(peer_sorted.data()),
                        nullptr, static_cast<int>(text.size()));
  compare(
      state, text.size(), [&] { vstring::undo_block_sort(sorted, row, out.data()); },
      [&] {
        inverse_bw_transform(bytes_of(peer_sorted), reinterpret_cast<unsigned char*>(out.data()),
                             nullptr, static_cast<int>(text.size()), peer_row);
      });
}

#define TEXTS Arg(1000)->Arg(35000)->Arg(1 << 20)->UseManualTime()
BENCHMARK(block_sort_library)
    ->Name("encoding/bw/library_sort")
    ->Arg(1000)
    ->Arg(35000)
    ->UseManualTime();
BENCHMARK(block_sort_divsufsort)->Name("encoding/bw/divsufsort")->TEXTS;
BENCHMARK(block_sort_run)->Name("encoding/bw_run/divsufsort")->Arg(1000000)->UseManualTime();
BENCHMARK(undo_divsufsort)->Name("encoding/bw_undo/divsufsort")->TEXTS;

void draw_serial(benchmark::State& state) {
  std::vector<std::uint32_t> values(size_of(state));
  compare(
      state, 4 * values.size(), [&] { vstring::draw_random(values); },
      [&] {
        for (std::uint32_t& value : values) value = rand32();
      });
}

void bytes_serial(benchmark::State& state) {
  std::string out(size_of(state), ' ');
  compare(
      state, out.size(), [&] { vstring::write_random_bytes(out.size(), out.data()); },
      [&] {
        for (std::size_t i = 0; i < out.size();) {
          std::uint32_t value = rand32();
          for (int k = 0; k < 4 && i < out.size(); ++k, value >>= 8) {
            if ((value & 0xff) != 0) out[i++] = static_cast<char>(value);
          }
        }
      });
}

BENCHMARK(draw_serial)
    ->Name("random/draw/serial")
    ->Arg(10)
    ->Arg(1000)
    ->Arg(100000)
    ->UseManualTime();
BENCHMARK(bytes_serial)
    ->Name("random/bytes/serial")
    ->Arg(10)
    ->Arg(1000)
    ->Arg(100000)
    ->UseManualTime();

}  // namespace
