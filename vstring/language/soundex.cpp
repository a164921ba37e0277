// Soundex codes. H and W have the digit 0 of the vowels, so that they keep letters of equal digits
// apart: not what Russell's rule says, but the codes that users have stored.
#include "vstring/charclass.h"
#include "vstring/language/phonetics.h"

namespace vstring {
namespace {

constexpr char kDigits[] = "01230120022455012623010202";  // of A to Z
constexpr std::size_t kCodeSize = 4;

}  // namespace

std::array<char, 5> soundex(Text text) {
  std::array<char, 5> code = {'Z', '0', '0', '0', '\0'};
  std::size_t size = 0;
  char digit_before = '0';
  for (char c : text) {
    if (ccl_isalpha(byte_of(c)) == 0) continue;
    auto capital = static_cast<char>(c & ~0x20);
    char digit = kDigits[capital - 'A'];
    if (size == 0) {
      code[size++] = capital;
    } else if (digit != '0' && digit != digit_before) {
      code[size++] = digit;
      if (size == kCodeSize) break;
    }
    digit_before = digit;
  }
  return code;
}

}  // namespace vstring
