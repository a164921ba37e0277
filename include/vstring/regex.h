/* The regular-expression engine: byte-coded programs, leftmost match, greedy repetition. Usable
 * from C and C++. Tests: tests/unit/regex_test.cpp, tests/transcripts/regex/.
 *
 * Syntax: `|` separates alternatives; `*`, `+`, `?` repeat the atom before them; `(`...`)` groups
 * and numbers, at most 9; `.` is any byte, `^` and `$` are the text's start and end, `[...]` and
 * `[^...]` byte sets with ranges; a backslash makes the next byte literal; every other byte stands
 * for itself. The first alternative that lets the whole pattern match wins, not the longest. */
#ifndef VSTRING_REGEX_H
#define VSTRING_REGEX_H

#include <stdint.h>

#include "vstring/export.h"

enum {
  VRX_MAGIC = 156,        /* first byte of every program */
  VRX_NUM_MATCHES = 10,   /* the whole match and nine sub-expressions */
  VRX_MAX_PROGRAM = 32767 /* a program is shorter than this */
};

/* A compiled pattern, one block of the C allocator: the program follows the header. */
typedef struct RegexpRecord {
  const char*
      match_start[VRX_NUM_MATCHES]; /* starts in the subject; 0 is the whole match, null: unset */
  const char* match_end[VRX_NUM_MATCHES]; /* ends, one past the last byte */
  uint8_t start_char;                     /* when not 0, the byte with which every match begins */
  uint8_t anchored;                       /* when not 0, a match begins only at the text's start */
  const char* must_text; /* in the program: a literal that every match contains, or null */
  int32_t must_length;   /* its length */
  unsigned char program[1];
} RegexpRecord;

/* Compiles a pattern; the result is to be released with free(). Null, with the error recorded by
 * vrx_regerror, for a null pattern ("NULL argument"), one that is not well formed, one whose
 * program is VRX_MAX_PROGRAM bytes or longer ("regexp too big"), or when memory runs out ("out of
 * space"). */
VSTRING_API RegexpRecord* vrx_regcomp(const char* pattern);

/* Matches a NUL-terminated text: 1, with match_start and match_end filled, or 0. Records "NULL
 * parameter" for a null argument and "corrupted program" for a record that is no program. Takes
 * time in proportion to program times text, whatever the pattern. */
VSTRING_API int vrx_regexec(RegexpRecord* record, const char* text);

/* Keeps a copy of the message as the engine's last error and gives it; null gives the last error
 * without a change. It stays until the next failure. */
VSTRING_API char* vrx_regerror(const char* message);

/* The program of a pattern, from the cache when it is the one asked for last; null, with the error
 * recorded, when it cannot be compiled. The program belongs to the library and lives as long as it.
 * A null pattern is "NULL argument". */
VSTRING_API RegexpRecord* RegexCacheLookup(const char* pattern);

#endif
