/* Sorting the bytes of a text. Usable from C and C++. */
#ifndef VSTRING_SORT_H
#define VSTRING_SORT_H

#include "vstring/export.h"

/* Writes the `length` bytes of the source into the destination in ascending order of their values
 * from 0 to 255, and a NUL behind them: the destination has room for length + 1 bytes and may be
 * the source. NUL bytes of the source are left out and made up for by NULs at the end. A negative
 * length counts as 0. Linear. */
VSTRING_API void SortString(char* destination, const char* source, int length);

#endif
