/* Helpers for words of natural language. Usable from C and C++. */
#ifndef VSTRING_LANGUAGE_H
#define VSTRING_LANGUAGE_H

#include "vstring/export.h"

/* The number of syllables of an English word, a NUL-terminated text of letters: its groups of
 * vowels (a e i o u y) less a silent final e (one behind a consonant, but not behind a consonant
 * and l), and at least 1; 0 for the empty text. -1 for a text that is not all letters. */
VSTRING_API int SyllableLength(const char* word);

#endif
