// A pattern and a text, separated by a newline: matched as the plain recursion matches them.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/reference/wildcard.h"
#include "vstring/search/wildcard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string input(reinterpret_cast<const char*>(data), size);
  if (input.find('\0') != std::string::npos) return 0;
  std::size_t end = std::min(input.find('\n'), size);
  std::string pattern = input.substr(0, end);
  std::string text = input.substr(std::min(end + 1, size));
  bool is_match = vstring::matches_wildcard(pattern, text);
  // The recursion takes time exponential in the number of stars.
  if (std::count(pattern.begin(), pattern.end(), '*') > 3 || text.size() > 64) return 0;
  if (is_match != reference::matches_wildcard(pattern.c_str(), text.c_str())) std::abort();
  return 0;
}
