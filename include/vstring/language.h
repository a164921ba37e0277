/* Helpers for words of natural language. Usable from C and C++. */
#ifndef VSTRING_LANGUAGE_H
#define VSTRING_LANGUAGE_H

#include "vstring/export.h"

/* The number of syllables of an English word, a NUL-terminated text of letters: its groups of
 * vowels (a e i o u y) less a silent final e (one behind a consonant, but not behind a consonant
 * and l), and at least 1; 0 for the empty text. -1 for a text that is not all letters. */
VSTRING_API int SyllableLength(const char* word);

/* The number of words of a NUL-terminated text: its longest runs of letters, digits and
 * apostrophes. -1 for a null text; never more than INT_MAX. When lines is not null, the number of
 * newlines is added to *lines, but for those that stand right behind a word: so "a\nb" adds none
 * and "a.\nb" one. */
VSTRING_API int CountWords(const char* text, int* lines);

#endif
