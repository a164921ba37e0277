// vrx_regexec: matching by a record alone. Tests: tests/unit/regex_test.cpp.
#include <algorithm>
#include <iterator>
#include <new>

#include "vstring/regex/errors.h"
#include "vstring/regex/match.h"

int vrx_regexec(RegexpRecord* record, const char* text) {
  using namespace vstring::regex;
  if (record == nullptr || text == nullptr) {
    record_error(Error::NullParameter);
    return 0;
  }
  if (record->program[0] != VRX_MAGIC) {
    record_error(Error::CorruptedProgram);
    return 0;
  }
  // A match that fails leaves no pointers of the one before.
  std::fill(std::begin(record->match_start), std::end(record->match_start), nullptr);
  std::fill(std::begin(record->match_end), std::end(record->match_end), nullptr);
  try {
    Prepared prepared(*record);
    Captures captures;
    if (!Execution(prepared, text, true).search(0, captures)) return 0;
    std::copy(captures.start.begin(), captures.start.end(), record->match_start);
    std::copy(captures.end.begin(), captures.end.end(), record->match_end);
    return 1;
  } catch (const std::bad_alloc&) {
    record_error(Error::OutOfSpace);
    return 0;
  }
}
