/* Exact search. Usable from C and C++. Tests: tests/unit/exact_search_test.cpp. */
#ifndef VSTRING_SEARCH_H
#define VSTRING_SEARCH_H

#include <stddef.h>

#include "vstring/export.h"

/* 1-based position of the leftmost occurrence of the pattern's m bytes in the text's n bytes; 0 when
 * there is none, and when m or n is 0. Linear in m + n. */
VSTRING_API size_t Search(const char *pattern, size_t m, const char *text, size_t n);

#endif
