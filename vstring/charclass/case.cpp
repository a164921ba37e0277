// Case conversion. The loops are written so that the compiler turns them into vector code.
// Tests: tests/unit/case_test.cpp, tests/transcripts/charclass/case.vt.
#include "vstring/charclass/case.h"

#include "vstring/charclass.h"

namespace vstring {
namespace {

constexpr unsigned char kCaseBit = 0x20;  // between a letter and its other case

// Compiled once for any machine and once for wider vectors, of which the loader takes the better.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__)
#define VSTRING_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define VSTRING_WIDE
#endif

// Flips the case of the bytes from `first` to `first` + 25.
VSTRING_WIDE void flip_letters(const char* text, std::size_t size, unsigned char first, char* out) {
  for (std::size_t i = 0; i < size; ++i) {
    auto c = static_cast<unsigned char>(text[i]);
    auto offset = static_cast<unsigned char>(c - first);
    out[i] = static_cast<char>(offset < 26 ? c ^ kCaseBit : c);
  }
}

VSTRING_WIDE void flip_all_letters(const char* text, std::size_t size, char* out) {
  for (std::size_t i = 0; i < size; ++i) {
    auto c = static_cast<unsigned char>(text[i]);
    auto offset = static_cast<unsigned char>((c | kCaseBit) - 'a');
    out[i] = static_cast<char>(offset < 26 ? c ^ kCaseBit : c);
  }
}

}  // namespace

void write_upper(Text text, char* out) { flip_letters(text.data(), text.size(), 'a', out); }
void write_lower(Text text, char* out) { flip_letters(text.data(), text.size(), 'A', out); }
void write_other_case(Text text, char* out) { flip_all_letters(text.data(), text.size(), out); }

void write_capitalised(Text text, char* out) {
  bool is_inside = false;
  for (char raw : text) {
    unsigned char c = byte_of(raw);
    std::uint32_t classes = cclbm[c];
    std::uint32_t to_flip = is_inside ? CCL_UPPER : CCL_LOWER;
    *out++ = static_cast<char>((classes & to_flip) != 0 ? c ^ kCaseBit : c);
    is_inside = (classes & CCL_ALNUM) != 0;
  }
}

}  // namespace vstring
