// Case conversion. Each conversion is a rule for one byte and the byte before it; the one loop over
// all bytes is written so that the compiler turns it into vector code, for any machine and once
// more for wide vectors. Tests: tests/unit/charclass_test.cpp, tests/transcripts/charclass/case.vt.
#include "vstring/charclass/case.h"

#include "vstring/core/cpu.h"

#define VSTRING_INLINE inline __attribute__((always_inline))

namespace vstring {
namespace {

constexpr unsigned kCaseBit = 0x20;  // set in a small letter, clear in a capital

VSTRING_INLINE bool is_between(unsigned char c, unsigned char first, unsigned char count) {
  return static_cast<unsigned char>(c - first) < count;
}

VSTRING_INLINE bool is_letter(unsigned char c) {
  return is_between(static_cast<unsigned char>(c | kCaseBit), 'a', 26);
}

VSTRING_INLINE unsigned char flipped_if(bool is_flipped, unsigned char c) {
  return static_cast<unsigned char>(is_flipped ? c ^ kCaseBit : c);
}

struct Raised {
  static VSTRING_INLINE unsigned char of(unsigned char c, unsigned char) {
    return flipped_if(is_between(c, 'a', 26), c);
  }
};

struct Lowered {
  static VSTRING_INLINE unsigned char of(unsigned char c, unsigned char) {
    return flipped_if(is_between(c, 'A', 26), c);
  }
};

struct Swapped {
  static VSTRING_INLINE unsigned char of(unsigned char c, unsigned char) {
    return flipped_if(is_letter(c), c);
  }
};

struct Capitalised {
  static VSTRING_INLINE unsigned char of(unsigned char c, unsigned char before) {
    bool is_inside = is_letter(before) || is_between(before, '0', 10);
    auto changed = static_cast<unsigned char>((c & ~kCaseBit) | (is_inside ? kCaseBit : 0));
    return is_letter(c) ? changed : c;
  }
};

template <class Rule>
VSTRING_INLINE void convert(Text text, char* __restrict out) {
  if (text.empty()) return;
  const char* __restrict in = text.data();
  std::size_t size = text.size();
  out[0] = static_cast<char>(Rule::of(byte_of(in[0]), 0));
#pragma GCC unroll 2
  for (std::size_t i = 1; i < size; ++i) {
    out[i] = static_cast<char>(Rule::of(byte_of(in[i]), byte_of(in[i - 1])));
  }
}

#ifdef VSTRING_X86
template <class Rule>
VSTRING_AVX2 void convert_avx2(Text text, char* out) {
  convert<Rule>(text, out);
}
#endif

template <class Rule>
void convert_by_machine(Text text, char* out) {
#ifdef VSTRING_X86
  if (has_avx2()) return convert_avx2<Rule>(text, out);
#endif
  convert<Rule>(text, out);
}

}  // namespace

void write_upper(Text text, char* out) { convert_by_machine<Raised>(text, out); }
void write_lower(Text text, char* out) { convert_by_machine<Lowered>(text, out); }
void write_other_case(Text text, char* out) { convert_by_machine<Swapped>(text, out); }
void write_capitalised(Text text, char* out) { convert_by_machine<Capitalised>(text, out); }

}  // namespace vstring
