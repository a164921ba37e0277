// The fixed character classes: cclbm, the ccl_ tests, CharClassNameToTest.
// Tests: tests/unit/charclass_test.cpp, tests/transcripts/charclass/.
#include "vstring/charclass.h"

#include <string_view>

namespace {

struct ClassMembers {
  std::uint32_t bit;
  const char* ranges;  // pairs of first and last byte
};

// What is out of the ordinary is meant so: "?" is an identifier character and "%" starts an
// identifier, "y" is no vowel, DNA has no small letters. The classes that hold byte 0 get it below.
constexpr ClassMembers kClasses[] = {
    {CCL_LOWER, "az"},
    {CCL_UPPER, "AZ"},
    {CCL_ALPHA, "AZaz"},
    {CCL_DIGIT, "09"},
    {CCL_BDIGIT, "01"},
    {CCL_ODIGIT, "07"},
    {CCL_XDIGIT, "09AFaf"},
    {CCL_ALNUM, "09AZaz"},
    {CCL_GRAPH, "\x21\x7e"},
    {CCL_PRINT, "\x20\x7e"},
    {CCL_PUNCT, "\x21\x2f\x3a\x40\x5b\x60\x7b\x7e"},
    {CCL_CNTRL, "\x01\x1f\x7f\x7f"},
    {CCL_VOWEL, "AAEEIIOOUUaaeeiioouu"},
    {CCL_IDENT, "09??AZ__az"},
    {CCL_IDENT1, "%%AZ__az"},
    {CCL_DNA, "AACCGGTT"},
    {CCL_SPACE, "\x09\x0d\x20\x20"},
    {CCL_ASCII, "\x01\x7f"},
    {CCL_FENCE, "(([[{{))]]}}"},
};

constexpr std::uint32_t classes_of(int c) {
  std::uint32_t bits = c == 0 ? CCL_CNTRL | CCL_ASCII : 0;
  for (const ClassMembers& members : kClasses) {
    for (const char* range = members.ranges; *range != '\0'; range += 2) {
      if (range[0] <= c && c <= range[1]) bits |= members.bit;
    }
  }
  return bits;
}

struct NamedClass {
  std::string_view name;
  CharClassTest test;
};

constexpr NamedClass kNames[] = {
    {"alpha", ccl_isalpha},        {"alphabetic", ccl_isalpha},   {"alnum", ccl_isalnum},
    {"alphanumeric", ccl_isalnum}, {"ascii", ccl_isascii},        {"bdigit", ccl_isbdigit},
    {"binary", ccl_isbdigit},      {"cntrl", ccl_iscntrl},        {"control", ccl_iscntrl},
    {"digit", ccl_isdigit},        {"digits", ccl_isdigit},       {"dna", ccl_isdna},
    {"fence", ccl_isfence},        {"graph", ccl_isgraph},        {"graphic", ccl_isgraph},
    {"hex", ccl_isxdigit},         {"hdigit", ccl_isxdigit},      {"hexadecimal", ccl_isxdigit},
    {"xdigit", ccl_isxdigit},      {"ident", ccl_isident},        {"identifier", ccl_isident},
    {"ident1", ccl_isident1},      {"identifier1", ccl_isident1}, {"lower", ccl_islower},
    {"lowercase", ccl_islower},    {"octal", ccl_isodigit},       {"odigit", ccl_isodigit},
    {"print", ccl_isprint},        {"printable", ccl_isprint},    {"punct", ccl_ispunct},
    {"punctuation", ccl_ispunct},  {"space", ccl_isspace},        {"whitespace", ccl_isspace},
    {"upper", ccl_isupper},        {"uppercase", ccl_isupper},    {"vowel", ccl_isvowel},
};

}  // namespace

#define CLASSES_4(c) classes_of(c), classes_of((c) + 1), classes_of((c) + 2), classes_of((c) + 3)
#define CLASSES_16(c) CLASSES_4(c), CLASSES_4((c) + 4), CLASSES_4((c) + 8), CLASSES_4((c) + 12)
#define CLASSES_64(c) \
  CLASSES_16(c), CLASSES_16((c) + 16), CLASSES_16((c) + 32), CLASSES_16((c) + 48)

constexpr uint32_t cclbm[256] = {CLASSES_64(0), CLASSES_64(64), CLASSES_64(128), CLASSES_64(192)};

namespace {

// Members of `bits`, by the byte's value; a value beyond a byte is the caller's error.
int class_bits(int c, int bits) { return static_cast<int>(cclbm[c]) & bits; }

}  // namespace

int ccl_islower(int c) { return class_bits(c, CCL_LOWER); }
int ccl_isupper(int c) { return class_bits(c, CCL_UPPER); }
int ccl_isalpha(int c) { return class_bits(c, CCL_ALPHA); }
int ccl_isdigit(int c) { return class_bits(c, CCL_DIGIT); }
int ccl_isbdigit(int c) { return class_bits(c, CCL_BDIGIT); }
int ccl_isodigit(int c) { return class_bits(c, CCL_ODIGIT); }
int ccl_isxdigit(int c) { return class_bits(c, CCL_XDIGIT); }
int ccl_isalnum(int c) { return class_bits(c, CCL_ALNUM); }
int ccl_isgraph(int c) { return class_bits(c, CCL_GRAPH); }
int ccl_isprint(int c) { return class_bits(c, CCL_PRINT); }
int ccl_ispunct(int c) { return class_bits(c, CCL_PUNCT); }
int ccl_iscntrl(int c) { return class_bits(c, CCL_CNTRL); }
int ccl_isvowel(int c) { return class_bits(c, CCL_VOWEL); }
int ccl_isident(int c) { return class_bits(c, CCL_IDENT); }
int ccl_isident1(int c) { return class_bits(c, CCL_IDENT1); }
int ccl_isdna(int c) { return class_bits(c, CCL_DNA); }
int ccl_isspace(int c) { return class_bits(c, CCL_SPACE); }
int ccl_isascii(int c) { return class_bits(c, CCL_ASCII); }
int ccl_isfence(int c) { return class_bits(c, CCL_FENCE); }

CharClassTest CharClassNameToTest(const char* name) {
  for (const NamedClass& named : kNames) {
    if (named.name == name) return named.test;
  }
  return nullptr;
}
