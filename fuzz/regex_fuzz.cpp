// A pattern and a text, separated by a newline: compiled, matched, and matched again by threads
// and by states, which must agree.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vstring/regex/match.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vstring::regex;
  std::string input(reinterpret_cast<const char*>(data), size);
  if (input.find('\0') != std::string::npos) return 0;
  std::size_t end = input.find('\n');
  if (end == std::string::npos) return 0;
  std::string text = input.substr(end + 1);
  RegexpRecord* record = vrx_regcomp(input.substr(0, end).c_str());
  if (record == nullptr) return 0;
  {
    Prepared prepared(*record);
    Captures captures;
    Captures by_threads;
    Execution execution(prepared, text, true);
    bool is_match = execution.search(0, captures);
    const char* begin = text.data();
    bool is_same = find_with_threads(prepared, begin, begin, begin + text.size(), by_threads);
    if (is_match != is_same) std::abort();
    if (is_match && (captures.start != by_threads.start || captures.end != by_threads.end)) {
      std::abort();
    }
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
