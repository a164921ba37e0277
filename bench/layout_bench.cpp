// Layout beside the plain loops that people write, on the text of the GPL again and again. The
// fields that split finds beside a loop of memchr that only counts; split and join as commands,
// where most of the time goes into the host's objects, beside the same loop and beside making the
// strings alone.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/texts.h"
#include "vexil/services/services.h"
#include "vstring/export.h"
#include "vstring/layout/fields.h"
#include "vstring/layout/spacing.h"
#include "vstring/layout/tabs.h"
#include "vstring/layout/wrap.h"

VSTRING_API HostObject vstring_split(HostKernelVector* kv, HostObject arguments);
VSTRING_API HostObject vstring_join(HostKernelVector* kv, HostObject arguments);

namespace {

using bench::english;
using vstring::Text;

std::size_t count_by_memchr(Text text, char c) {
  std::size_t count = 0;
  const char* end = text.data() + text.size();
  const char* at = text.data();
  while ((at = static_cast<const char*>(std::memchr(at, c, static_cast<std::size_t>(end - at)))) !=
         nullptr) {
    ++count;
    ++at;
  }
  return count;
}

bool is_blank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// --- Commands -----------------------------------------------------------------------------------

constexpr std::size_t kLong = std::size_t{64} << 20;
constexpr std::size_t kHeap = std::size_t{3} << 30;  // enough for all rounds without a collection

HostObject call(HostModuleEntry entry, std::initializer_list<HostObject> arguments) {
  auto* kv = const_cast<HostKernelVector*>(&vexil::kernel_vector());
  return entry(kv, vexil::make_sequence({arguments.begin(), arguments.size()}));
}

// Calls ours(text, separator) within a host.
template <class Ours>
void compare_to_memchr(char separator, Ours ours) {
  vexil::init_values(kHeap);
  vexil::init_services({}, vexil::RaiseMode::Exception);
  {
    std::string text = english(kLong);
    ours(Text(text), vexil::make_string(Text(&separator, 1)),
         [&] { return count_by_memchr(text, separator); });
  }
  vexil::shut_values();
}

void split_beside_memchr(benchmark::State& state, char separator) {
  compare_to_memchr(separator, [&](Text text, HostObject by, auto peer) {
    HostObject whole = vexil::make_string(text);
    bench::compare(
        state, static_cast<double>(kLong),
        [=] {
          return call(vstring_split, {whole, by});
        },
        peer);
  });
}

// What the strings alone cost: the ends of the fields are known and marked.
void split_beside_strings(benchmark::State& state, char separator) {
  compare_to_memchr(separator, [&](Text text, HostObject by, auto) {
    HostObject whole = vexil::make_string(text);
    std::string copy(text);
    std::vector<const char*> starts{copy.data()};
    for (char& c : copy) {
      if (c != separator) continue;
      c = '\0';
      starts.push_back(&c + 1);
    }
    bench::compare(
        state, static_cast<double>(kLong),
        [=] {
          return call(vstring_split, {whole, by});
        },
        [&] {
          HostObject last = 0;
          for (const char* start : starts) last = vexil::kernel_vector().ToHostString(start);
          return last;
        });
  });
}

void join_beside_memchr(benchmark::State& state, char separator) {
  compare_to_memchr(separator, [&](Text text, HostObject by, auto peer) {
    std::vector<HostObject> pieces;
    for (std::size_t begin = 0; begin <= text.size();) {
      std::size_t end = std::min(text.find(separator, begin), text.size());
      pieces.push_back(vexil::make_string(text.substr(begin, end - begin)));
      begin = end + 1;
    }
    HostObject list = vexil::make_list(pieces);
    bench::compare(
        state, static_cast<double>(kLong),
        [=] {
          return call(vstring_join, {list, by});
        },
        peer);
  });
}

// --- Algorithms ---------------------------------------------------------------------------------

// Work on a short text is repeated until a round has handled about this many bytes.
constexpr std::size_t kRoundBytes = 1 << 17;

// Both write something made of the text to a block of `growth` times its size and give the length.
template <class Ours, class Peer>
void compare_edits(benchmark::State& state, const std::string& text, std::size_t growth, Ours ours,
                   Peer peer) {
  std::string out(growth * text.size(), ' ');
  std::size_t rounds = std::max<std::size_t>(1, kRoundBytes / text.size());
  auto repeat = [&](auto& edit) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < rounds; ++i) {
      benchmark::DoNotOptimize(length += edit(Text(text), out.data()));
      benchmark::ClobberMemory();
    }
    return length;
  };
  bench::compare(
      state, static_cast<double>(rounds * text.size()), [&] { return repeat(ours); },
      [&] { return repeat(peer); });
}

void fields_beside_memchr(benchmark::State& state, Text separators) {
  std::string text = english(static_cast<std::size_t>(state.range(0)));
  vstring::Splitter splitter;
  splitter.separators = vstring::ByteSet(separators);
  compare_edits(
      state, text, 0,
      [&](Text s, char*) {
        std::size_t longest = 0;
        splitter.each_field(s, [&](Text field) { longest = std::max(longest, field.size()); });
        return longest;
      },
      [&](Text s, char*) { return count_by_memchr(s, separators[0]); });
}

std::string text_for(const benchmark::State& state) {
  return english(static_cast<std::size_t>(state.range(0)));
}

// Words one by one, white space collapsed.
std::size_t wrap_plainly(Text text, std::size_t width, char* out) {
  char* start = out;
  std::size_t column = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    if (is_blank(text[at])) {
      *out++ = text[at];
      ++column;
      while (at < text.size() && is_blank(text[at])) ++at;
      continue;
    }
    while (end < text.size() && !is_blank(text[end])) ++end;
    if (column + (end - at) > width && at != 0 && out[-1] != '\n') {
      *out++ = '\n';
      column = 0;
    }
    std::memcpy(out, text.data() + at, end - at);
    out += end - at;
    column += end - at;
    at = end;
  }
  return static_cast<std::size_t>(out - start);
}

void wrap_beside_plain(benchmark::State& state, std::size_t width) {
  vstring::WrapStyle style;
  style.width = width;
  compare_edits(
      state, text_for(state), 2,
      [&](Text text, char* out) {
        return vstring::write_wrapped(text, style, out, 2 * text.size());
      },
      [&](Text text, char* out) { return wrap_plainly(text, width, out); });
}

std::size_t expand_plainly(Text text, char* out) {
  char* start = out;
  std::size_t column = 0;
  for (char c : text) {
    if (c == '\t') {
      do {
        *out++ = ' ';
      } while (++column % 8 != 0);
      continue;
    }
    *out++ = c;
    column = c == '\n' ? 0 : column + (c != '\b' ? 1 : 0);
  }
  return static_cast<std::size_t>(out - start);
}

// Source code, say: one blank in `every` is a tab.
void exptabs_beside_plain(benchmark::State& state, std::size_t every) {
  std::string text = text_for(state);
  std::size_t count = 0;
  for (char& c : text) {
    if (c == ' ' && ++count % every == 0) c = '\t';
  }
  compare_edits(
      state, text, 8,
      [](Text s, char* out) {
        return vstring::write_expanded(s, {}, out, vstring::room_for_expanded(s, {}));
      },
      expand_plainly);
}

void squeeze_beside_plain(benchmark::State& state) {
  compare_edits(state, text_for(state), 1, vstring::write_squeezed, [](Text text, char* out) {
    char* start = out;
    for (char c : text) {
      if (!is_blank(c)) {
        *out++ = c;
      } else if (out == start || out[-1] != ' ') {
        *out++ = ' ';
      }
    }
    return static_cast<std::size_t>(out - start);
  });
}

void delsp_beside_plain(benchmark::State& state) {
  compare_edits(state, text_for(state), 1, vstring::write_without_blanks, [](Text text, char* out) {
    return static_cast<std::size_t>(std::remove_copy_if(text.begin(), text.end(), out, is_blank) -
                                    out);
  });
}

constexpr Text kPrefix = "        ";

void indent_beside_plain(benchmark::State& state) {
  compare_edits(
      state, text_for(state), 2,
      [](Text text, char* out) {
        vstring::write_indented(text, kPrefix, out);
        return vstring::count_lines(text);
      },
      [](Text text, char* out) {
        std::size_t lines = 0;
        for (std::size_t begin = 0; begin < text.size(); ++lines) {
          std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
          out = std::copy(kPrefix.begin(), kPrefix.end(), out);
          out = std::copy(text.begin() + static_cast<std::ptrdiff_t>(begin),
                          text.begin() + static_cast<std::ptrdiff_t>(end), out);
          begin = end;
        }
        return lines;
      });
}

void trim_beside_plain(benchmark::State& state) {
  std::string text(static_cast<std::size_t>(state.range(0)), ' ');
  text[text.size() / 2] = 'x';
  const vstring::ByteSet blanks(" \t\n");
  compare_edits(
      state, text, 0,
      [&](Text s, char*) { return trimmed_right(trimmed_left(s, blanks), blanks).size(); },
      [](Text s, char*) {
        while (!s.empty() && is_blank(s.front())) s.remove_prefix(1);
        while (!s.empty() && is_blank(s.back())) s.remove_suffix(1);
        return s.size();
      });
}

#define COMMAND_ROW ->Iterations(3)->Unit(benchmark::kMillisecond)->UseManualTime()
BENCHMARK_CAPTURE(split_beside_memchr, words, ' ')->Name("layout/split words/memchr") COMMAND_ROW;
BENCHMARK_CAPTURE(split_beside_memchr, lines, '\n')->Name("layout/split lines/memchr") COMMAND_ROW;
BENCHMARK_CAPTURE(split_beside_strings, words, ' ')->Name("layout/split words/strings") COMMAND_ROW;
BENCHMARK_CAPTURE(split_beside_strings, lines, '\n')
    ->Name("layout/split lines/strings") COMMAND_ROW;
BENCHMARK_CAPTURE(join_beside_memchr, words, ' ')->Name("layout/join words/memchr") COMMAND_ROW;
BENCHMARK_CAPTURE(join_beside_memchr, lines, '\n')->Name("layout/join lines/memchr") COMMAND_ROW;

#define SIZES ->Arg(100)->Arg(1 << 20)->UseManualTime()
#define LONG_TOO ->Arg(kLong) SIZES
BENCHMARK_CAPTURE(fields_beside_memchr, words, " ")->Name("layout/fields words/memchr") LONG_TOO;
BENCHMARK_CAPTURE(fields_beside_memchr, set, " \t\n\f\r")
    ->Name("layout/fields white space/memchr") LONG_TOO;
BENCHMARK_CAPTURE(fields_beside_memchr, lines, "\n")->Name("layout/fields lines/memchr") LONG_TOO;
BENCHMARK_CAPTURE(wrap_beside_plain, 80, 80)->Name("layout/wrap 80/plain") LONG_TOO;
BENCHMARK_CAPTURE(wrap_beside_plain, 20, 20)->Name("layout/wrap 20/plain") SIZES;
BENCHMARK_CAPTURE(exptabs_beside_plain, few, 50)->Name("layout/exptabs few/plain") SIZES;
BENCHMARK_CAPTURE(exptabs_beside_plain, all, 1)->Name("layout/exptabs all/plain") SIZES;
BENCHMARK(squeeze_beside_plain)->Name("layout/squeeze/plain") SIZES;
BENCHMARK(delsp_beside_plain)->Name("layout/delsp/plain") SIZES;
BENCHMARK(indent_beside_plain)->Name("layout/indent/plain") SIZES;
BENCHMARK(trim_beside_plain)->Name("layout/trim/plain") SIZES;

}  // namespace
