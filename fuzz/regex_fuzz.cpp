// A pattern and a text, separated by a newline: compiled, searched for again and again, and also by
// threads and by states, which must agree.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vstring/regex/match.h"

namespace {

using namespace vstring::regex;

// The match of a search, which threads must find as well.
Captures same_as_threads(const Prepared& prepared, Execution& execution, const char* begin,
                         const char* from, const char* end) {
  Captures captures;
  Captures by_threads;
  bool is_match = execution.search(static_cast<std::size_t>(from - begin), captures);
  if (is_match != find_with_threads(prepared, from, from, end, by_threads)) std::abort();
  if (!is_match) return {};
  if (captures.start != by_threads.start || captures.end != by_threads.end) std::abort();
  return captures;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string input(reinterpret_cast<const char*>(data), size);
  if (input.find('\0') != std::string::npos) return 0;
  std::size_t end = input.find('\n');
  if (end == std::string::npos) return 0;
  std::string text = input.substr(end + 1);
  RegexpRecord* record = vrx_regcomp(input.substr(0, end).c_str());
  if (record == nullptr) return 0;
  {
    Prepared prepared(*record);
    Limits limits;
    if (size % 2 == 0) limits.max_frames = 8;
    if (size % 3 == 0) limits.free_moves = limits.choices_per_byte = 0;
    if (size % 5 == 0) limits.max_memory = 0;
    Execution execution(prepared, text, true, limits);
    const char* begin = text.data();
    const char* text_end = begin + text.size();
    Captures captures = same_as_threads(prepared, execution, begin, begin, text_end);
    // What the first search has learnt is used by those behind its match.
    const char* from = captures.end[0];
    for (int i = 0; i < 40 && from != nullptr && from < text_end; ++i) {
      Captures next = same_as_threads(prepared, execution, begin, from, text_end);
      from = next.is_set(0) ? std::max(next.end[0], from + 1) : nullptr;
    }
    bool is_match = captures.is_set(0);
    StartFinder starts(prepared, text);
    Dfa dfa(prepared, text);
    Dfa::Span span{};
    bool is_tried = record->anchored == 0 && !text.empty();
    auto outcome = is_tried ? dfa.search(begin, begin, starts, span) : Dfa::Outcome::GivenUp;
    if (outcome != Dfa::Outcome::GivenUp && is_match != (outcome == Dfa::Outcome::Match)) {
      std::abort();
    }
    if (outcome == Dfa::Outcome::Match &&
        (span.start != captures.start[0] || span.end != captures.end[0])) {
      std::abort();
    }
  }
  std::free(record);
  return 0;
}
