/* Reading a command's arguments: booleans, ranges, string indices, options, character filters. What
 * fails raises through the host's HostRaiseError and does not return. Usable from C and C++.
 * Tests: tests/unit/arguments_test.cpp. */
#ifndef VSTRING_ARGUMENTS_H
#define VSTRING_ARGUMENTS_H

#include <stddef.h>
#include <stdint.h>

#include "vstring/charclass.h"
#include "vstring/export.h"
#include "vstring/kernel_vector.h"

/* 1 when obj is one of the names true, false, FAIL, else 0 (also for a string with such a text). */
VSTRING_API int IsVexilBoolean(HostKernelVector* kv, HostObject obj);
/* 1 when obj is one of the names true, false, else 0. */
VSTRING_API int IsVexilTrueFalse(HostKernelVector* kv, HostObject obj);
/* 1 for true, 0 for false, -1 for FAIL; raises "cannot convert to boolean: %1" otherwise. */
VSTRING_API int VexilToBoolean(HostKernelVector* kv, HostObject obj);

/* Stores the endpoints of a range object, the lower one first, and gives hi - lo + 1, clamped to 32
 * bits; it may be zero or negative. For an endpoint that is no integer of 32 bits it raises
 *   "lower endpoint of range must be a small integer"
 *   "upper endpoint of range must be a small integer" */
VSTRING_API int GetRange(HostKernelVector* kv, HostObject range, int32_t* lo, int32_t* hi);

/* Resolves a 1-based range, in which negative ends count from the end, against a text of len bytes.
 * Gives the number of positions, 0 for an empty range, with *lo and *hi the 0-based first and last
 * one; or -1, *lo and *hi unchanged, when the range is not valid. A start beyond the end becomes
 * len and an end beyond it len - 1, so that a range behind the text is empty and not an error. */
VSTRING_API int NormalRange(int len, int32_t* lo, int32_t* hi);

/* A 1-based index into a text of len bytes: 0..len as it stands, a negative one counted from the
 * end, where -1 is len - 1; -len and below are out of range. Raises
 *   "expecting an integral (32-bit) string index, but got `%1'"
 *   "string index `%1' out of range" */
VSTRING_API int GetStringIndex(HostKernelVector* kv, size_t len, HostObject obj);

/* One option of a table for GetOptions; a table ends with an entry whose name is null. */
typedef struct OptionEntry {
  const char* name;  /* compared exactly */
  HostObject value;  /* out: the value given, 0 when absent */
  uint32_t position; /* out: 1-based position of the argument that set it, 0 when absent */
  int32_t kind;      /* for the command's own use; boolean options carry 2 */
  int32_t flags;     /* negative: may be given as its bare name, which means true */
} OptionEntry;

enum { OPTION_BOOLEAN = 2, OPTION_BARE = INT32_MIN };

/* Fills the table from the arguments behind the first `first` ones: equations name = value, and
 * bare names where the entry allows them. A later argument overrides an earlier one; what names no
 * entry is ignored. Gives the number of entries that were set. */
VSTRING_API int GetOptions(HostKernelVector* kv, OptionEntry* table, int first, HostObject args);

/* The value of one option among the arguments behind the first `first` ones, 0 when absent; the
 * first occurrence wins. With allowBare nonzero a string or name equal to `name` means true. */
VSTRING_API HostObject GetOption(HostKernelVector* kv, int first, HostObject args, const char* name,
                                 int allowBare);

/* The text of a string or name, or that of the right side of an equation name = text; else null. */
VSTRING_API const char* GetStringOption(HostKernelVector* kv, HostObject obj, const char* name);

/* The alphabet that AlphabetFilter tests against: at most 256 bytes of text are copied. It starts
 * as the small letters and stays until the next alphabet replaces it. */
VSTRING_API void SetFilterAlphabet(const char* text);
/* Nonzero when byte value ch is in the alphabet; 0 always is. */
VSTRING_API int AlphabetFilter(int ch);

/* The character test that obj names: a string is an alphabet of 1 to 256 characters, a name a class
 * ("alpha", "letters", "digit", ...) or "last", the class looked up last. Raises
 *   "character class must be nonempty"
 *   "alphabet too long (must be at most 255 characters)"
 *   "unrecognised character class `%1'" */
VSTRING_API CharClassTest GetFilter(HostKernelVector* kv, HostObject obj);

#endif
