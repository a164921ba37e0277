// The engine's errors and the buffer that holds the last one.
#include "vstring/regex/errors.h"

#include <cstring>
#include <iterator>

#include "vstring/regex.h"

namespace {

char buffer[256] = "";

constexpr const char* kTexts[] = {
    "",
    "NULL argument",
    "regexp too big",
    "out of space",
    "too many ()",
    "unmatched ()",
    "junk on end",
    "?+* follows nothing",
    "*+ operand could be empty",
    "nested *?+",
    "trailing \\",
    "invalid [] range",
    "unmatched []",
    "internal urp",
    "internal disaster",
    "NULL parameter",
    "corrupted program",
    "corrupted pointers",
    "memory corruption",
    "internal foulup",
};
static_assert(std::size(kTexts) ==
              static_cast<std::size_t>(vstring::regex::Error::InternalFoulup) + 1);

}  // namespace

char* vrx_regerror(const char* message) {
  if (message != nullptr) {
    std::size_t length = strnlen(message, sizeof buffer - 1);
    std::memmove(buffer, message, length);
    buffer[length] = '\0';
  }
  return buffer;
}

namespace vstring::regex {

void record_error(Error error) { vrx_regerror(kTexts[static_cast<std::size_t>(error)]); }
void clear_error() { buffer[0] = '\0'; }
const char* last_error() { return buffer; }

}  // namespace vstring::regex
