/* The fixed character classes: membership table, one test a class, look-up by name. They do not
 * depend on the locale; bytes 128..255 belong to no class. Tests: tests/unit/charclass_test.cpp.
 * Usable from C and C++. */
#ifndef VSTRING_CHARCLASS_H
#define VSTRING_CHARCLASS_H

#include <stdint.h>

#include "vstring/export.h"

/* Bits of a word of cclbm, one a class. */
enum {
  CCL_LOWER = 0x1,     /* a-z */
  CCL_UPPER = 0x2,     /* A-Z */
  CCL_ALPHA = 0x4,     /* A-Z a-z */
  CCL_DIGIT = 0x8,     /* 0-9 */
  CCL_BDIGIT = 0x10,   /* 0 1 */
  CCL_ODIGIT = 0x20,   /* 0-7 */
  CCL_XDIGIT = 0x40,   /* 0-9 A-F a-f */
  CCL_ALNUM = 0x80,    /* 0-9 A-Z a-z */
  CCL_GRAPH = 0x100,   /* 0x21-0x7e */
  CCL_PRINT = 0x200,   /* 0x20-0x7e */
  CCL_PUNCT = 0x400,   /* graphic, but no letter or digit */
  CCL_CNTRL = 0x800,   /* 0x00-0x1f 0x7f */
  CCL_VOWEL = 0x1000,  /* A E I O U a e i o u */
  CCL_IDENT = 0x2000,  /* 0-9 ? A-Z _ a-z */
  CCL_IDENT1 = 0x4000, /* % A-Z _ a-z */
  CCL_DNA = 0x8000,    /* A C G T */
  CCL_SPACE = 0x10000, /* 0x09-0x0d, blank */
  CCL_ASCII = 0x20000, /* 0x00-0x7f */
  CCL_FENCE = 0x100000 /* ( ) [ ] { } */
};

/* For each byte value the CCL_ bits of the classes it belongs to. */
VSTRING_API const uint32_t cclbm[256];

/* A class test: takes a byte value 0..255 (not checked) and gives nonzero for a member, else 0. The
 * tests below give the class's own bit. */
typedef int (*CharClassTest)(int c);

VSTRING_API int ccl_islower(int c);
VSTRING_API int ccl_isupper(int c);
VSTRING_API int ccl_isalpha(int c);
VSTRING_API int ccl_isdigit(int c);
VSTRING_API int ccl_isbdigit(int c);
VSTRING_API int ccl_isodigit(int c);
VSTRING_API int ccl_isxdigit(int c);
VSTRING_API int ccl_isalnum(int c);
VSTRING_API int ccl_isgraph(int c);
VSTRING_API int ccl_isprint(int c);
VSTRING_API int ccl_ispunct(int c);
VSTRING_API int ccl_iscntrl(int c);
VSTRING_API int ccl_isvowel(int c);
VSTRING_API int ccl_isident(int c);
VSTRING_API int ccl_isident1(int c);
VSTRING_API int ccl_isdna(int c);
VSTRING_API int ccl_isspace(int c);
VSTRING_API int ccl_isascii(int c);
VSTRING_API int ccl_isfence(int c);

/* The test of the class with this name ("alpha", "alphabetic", "alnum", ...; exact, case matters),
 * or null when no class has it. */
VSTRING_API CharClassTest CharClassNameToTest(const char* name);

#endif
