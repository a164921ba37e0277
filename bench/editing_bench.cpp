// Edits beside memcpy, the standard library and the C library; and what a call costs that does
// nothing: the frame beside a plain C function. Rows end in the size of the text.
#include <strings.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>

#include "bench/ratio.h"
#include "vexil/services/services.h"
#include "vstring/commands/editing.h"
#include "vstring/core/text.h"
#include "vstring/export.h"
#include "vstring/object.h"

VSTRING_API HostObject vstring_length(HostKernelVector* kv, HostObject arguments);
VSTRING_API HostObject vstring_levenshtein(HostKernelVector* kv, HostObject arguments);

namespace {

using vstring::Text;

std::string letters(std::size_t size) {
  std::mt19937 random(1);
  std::string text(size, ' ');
  for (char& c : text) c = "acgt acgt ACGT eilnorsu"[random() % 23];
  return text;
}

std::string all_bytes() {
  std::string bytes(256, ' ');
  for (std::size_t c = 0; c < bytes.size(); ++c) bytes[c] = static_cast<char>(c);
  return bytes;
}

// Work on a short text is repeated until a round has handled about this many bytes.
constexpr std::size_t kRoundBytes = 1 << 17;

// Both callables get the text and a block to write to; rounds(...) repeats them on short texts.
template <class Ours, class Peer>
void compare_edits(benchmark::State& state, std::size_t result_size, Ours ours, Peer peer) {
  auto size = static_cast<std::size_t>(state.range(0));
  std::string text = letters(size);
  std::string out(result_size, ' ');
  std::size_t rounds = std::max<std::size_t>(1, kRoundBytes / (result_size + 16));
  auto repeat = [&](auto& edit) {
    for (std::size_t i = 0; i < rounds; ++i) {
      edit(Text(text), out.data());
      benchmark::ClobberMemory();
    }
    return out.data();
  };
  bench::compare(
      state, static_cast<double>(rounds * result_size), [&] { return repeat(ours); },
      [&] { return repeat(peer); });
}

void copy(Text text, char* out) { std::memcpy(out, text.data(), text.size()); }

std::size_t size_of(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

void reverse_beside_memcpy(benchmark::State& state) {
  compare_edits(state, size_of(state), vstring::write_reversed, copy);
}

void reverse_beside_std(benchmark::State& state) {
  compare_edits(state, size_of(state), vstring::write_reversed,
                [](Text text, char* out) { std::reverse_copy(text.begin(), text.end(), out); });
}

void translate_beside_memcpy(benchmark::State& state, Text from, Text to) {
  compare_edits(
      state, size_of(state),
      [=](Text text, char* out) { vstring::write_translated(from, to, text, out); }, copy);
}

// The usual way: a table of 256 entries, set up for each call.
void translate_beside_table(benchmark::State& state, Text from, Text to) {
  auto by_table = [=](Text text, char* out) {
    std::array<char, 256> table;
    for (std::size_t c = 0; c < table.size(); ++c) table[c] = static_cast<char>(c);
    for (std::size_t i = from.size(); i-- > 0;) table[vstring::byte_of(from[i])] = to[i];
    std::transform(text.begin(), text.end(), out,
                   [&](char c) { return table[vstring::byte_of(c)]; });
  };
  compare_edits(
      state, size_of(state),
      [=](Text text, char* out) { vstring::write_translated(from, to, text, out); }, by_table);
}

constexpr std::size_t kRepeatedSize = 1 << 20;

void repeat_beside_append(benchmark::State& state) {
  std::size_t count = kRepeatedSize / size_of(state);
  std::string result;
  compare_edits(
      state, count * size_of(state),
      [=](Text text, char* out) { vstring::write_repeated(text, count, out); },
      [&](Text text, char*) {
        result.clear();
        result.reserve(count * text.size());
        for (std::size_t i = 0; i < count; ++i) result.append(text);
      });
}

void repeat_beside_memcpy(benchmark::State& state) {
  std::size_t count = kRepeatedSize / size_of(state);
  std::string source = letters(count * size_of(state));
  compare_edits(
      state, source.size(),
      [=](Text text, char* out) { vstring::write_repeated(text, count, out); },
      [&](Text, char* out) { copy(source, out); });
}

void rotate_beside_std(benchmark::State& state) {
  compare_edits(
      state, size_of(state),
      [](Text text, char* out) { vstring::write_rotated(text, text.size() / 3, out); },
      [](Text text, char* out) {
        auto middle = text.end() - static_cast<std::ptrdiff_t>(text.size() / 3);
        std::rotate_copy(text.begin(), middle, text.end(), out);
      });
}

void compare_beside_strncasecmp(benchmark::State& state) {
  std::string other = letters(size_of(state));
  for (char& c : other) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 0x20 : c);
  compare_edits(
      state, size_of(state),
      [&](Text text, char* out) {
        *out = static_cast<char>(vstring::compare_ignoring_case(text, other));
      },
      [&](Text text, char* out) {
        *out = static_cast<char>(strncasecmp(text.data(), other.data(), text.size()));
      });
}

void find_last_beside_memrchr(benchmark::State& state) {
  compare_edits(
      state, size_of(state),
      [](Text text, char* out) {
        *out = static_cast<char>(vstring::find_last(text, '!') == Text::npos);
      },
      [](Text text, char* out) {
        *out = static_cast<char>(memrchr(text.data(), '!', text.size()) == nullptr);
      });
}

// --- The frame --------------------------------------------------------------------------------

// Reads the object as a function would that knows what it is given; what it gives is no object.
__attribute__((noinline)) HostObject plain_length(HostKernelVector*, HostObject arguments) {
  return static_cast<HostObject>(host_text_length(host_element(arguments, 1)));
}

// The same with the checks and the result that any command owes the host.
__attribute__((noinline)) HostObject plain_command(HostKernelVector* kv, HostObject arguments) {
  if (host_num_elements(arguments) < 1) kv->HostRaiseError("too few", 0, 0, 0);
  HostObject text = host_element(arguments, 1);
  if (host_is_text(text) == 0) kv->HostRaiseError("no string", 0, 0, 0);
  return kv->ToHostInteger32(static_cast<std::int32_t>(host_text_length(text)));
}

void frame_beside(benchmark::State& state, HostModuleEntry entry, HostModuleEntry peer) {
  vexil::init_values(std::size_t{64} << 20);
  vexil::init_services({}, vexil::RaiseMode::Exception);
  {
    auto* kv = const_cast<HostKernelVector*>(&vexil::kernel_vector());
    const HostObject texts[] = {vexil::make_string("aberrant"), vexil::make_string("cabernet")};
    const HostObject arguments = vexil::make_sequence(texts);
    vexil::heap().protect(arguments);
    auto call = [=](HostModuleEntry called) {
      benchmark::DoNotOptimize(called);  // called through a pointer, as the host calls
      HostObject result = 0;
      for (int i = 0; i < 10000; ++i) benchmark::DoNotOptimize(result = called(kv, arguments));
      return result;
    };
    bench::compare(
        state, 0, [&] { return call(entry); }, [&] { return call(peer); });
  }
  vexil::shut_values();
}

const std::string identity = all_bytes();
const std::string backwards(identity.rbegin(), identity.rend());
constexpr const char* kAlphabet = "abcdefghijklmnopqrstuvwxyz";
constexpr const char* kRotated = "nopqrstuvwxyzabcdefghijklm";

#define SIZES ->Arg(12)->Arg(100)->Arg(1 << 20)->UseManualTime()
BENCHMARK(reverse_beside_memcpy)->Name("editing/reverse/memcpy") SIZES;
BENCHMARK(reverse_beside_std)->Name("editing/reverse/reverse_copy") SIZES;
BENCHMARK_CAPTURE(translate_beside_memcpy, dna, "ACGT", "TGCA")->Name("editing/tr 4/memcpy") SIZES;
BENCHMARK_CAPTURE(translate_beside_memcpy, letters, kAlphabet, kRotated)
    ->Name("editing/tr 26/memcpy") SIZES;
BENCHMARK_CAPTURE(translate_beside_table, dna, "ACGT", "TGCA")->Name("editing/tr 4/table") SIZES;
BENCHMARK_CAPTURE(translate_beside_table, letters, kAlphabet, kRotated)
    ->Name("editing/tr 26/table") SIZES;
BENCHMARK_CAPTURE(translate_beside_table, all, identity, backwards)
    ->Name("editing/tr 256/table") SIZES;
BENCHMARK(repeat_beside_append)->Name("editing/repeat/append")->Arg(3)->Arg(100)->UseManualTime();
BENCHMARK(repeat_beside_memcpy)->Name("editing/repeat/memcpy")->Arg(3)->Arg(100)->UseManualTime();
BENCHMARK(rotate_beside_std)->Name("editing/rotate/rotate_copy") SIZES;
BENCHMARK(compare_beside_strncasecmp)->Name("editing/compareci/strncasecmp") SIZES;
BENCHMARK(find_last_beside_memrchr)->Name("editing/strrchr/memrchr") SIZES;
BENCHMARK_CAPTURE(frame_beside, plain, vstring_length, plain_length)
    ->Name("frame/length/plain call")
    ->UseManualTime();
BENCHMARK_CAPTURE(frame_beside, command, vstring_length, plain_command)
    ->Name("frame/length/plain command")
    ->UseManualTime();
BENCHMARK_CAPTURE(frame_beside, levenshtein, vstring_levenshtein, plain_command)
    ->Name("frame/levenshtein 8/plain command")
    ->UseManualTime();

}  // namespace
