/* Bitmaps: fixed numbers of bits in C memory. Usable from C and C++.
 *
 * Bit i, from 0, is bit i % 8, the least significant first, of byte i / 8. A block holds whole
 * words of 32 bits: those behind the last bit are 0 in a new bitmap, but complements and random
 * fillings reach them, and equality and counting see them. One more word, outside of `words`,
 * stands behind the block: the operations on single bits accept the index nbits, and this is where
 * it may lead. Nothing here calls the host. */
#ifndef VSTRING_BITMAP_H
#define VSTRING_BITMAP_H

#include <stdint.h>
#include <stdio.h>

#include "vstring/export.h"

typedef struct Bitmap {
  uint32_t words;  /* 32-bit words of the block: nbits / 32, rounded up */
  uint32_t nbits;  /* number of bits */
  uint8_t* data;   /* the block, owned by the record */
  uint8_t* cursor; /* always equal to data */
} Bitmap;

/* A bitmap of nbits zeros; null when memory runs out. */
VSTRING_API Bitmap* bm_new(uint32_t nbits);
/* Makes a bitmap one of nbits zeros; null, with the record freed, when memory runs out. */
VSTRING_API Bitmap* bm_init(Bitmap* bitmap, uint32_t nbits);
/* As bm_new, each word of the block one value of rand32 (vstring/random.h). */
VSTRING_API Bitmap* bm_rand(uint32_t nbits);
/* Frees block and record; null is allowed. */
VSTRING_API void bm_free(Bitmap* bitmap);
/* nbits; 0 for null. */
VSTRING_API uint32_t bm_size(const Bitmap* bitmap);

/* Bit i; -1 when the bitmap is null or i > nbits. The two are the same. */
VSTRING_API int bm_get(const Bitmap* bitmap, uint32_t i);
VSTRING_API int bm_setp(const Bitmap* bitmap, uint32_t i);
/* Sets or clears bit i; 1, or -1 when the bitmap is null or i > nbits. */
VSTRING_API int bm_set_bit(Bitmap* bitmap, uint32_t i);
VSTRING_API int bm_clear_bit(Bitmap* bitmap, uint32_t i);
/* Sets bits a to b - 1, as far as the block reaches; 1, or -1 for null. */
VSTRING_API int bm_set_range(Bitmap* bitmap, uint32_t a, uint32_t b);
/* Sets the bits at n positions, in order; 1. -1 when an argument is null, when n > nbits, or at
 * the first position > nbits, with those before it set. */
VSTRING_API int bm_set_bits(Bitmap* bitmap, uint32_t n, const uint32_t* positions);
/* Clears the block. */
VSTRING_API void bm_clear(Bitmap* bitmap);

/* Whether all words of the block are 0, or none is; 1 for a block without words, -1 for null. */
VSTRING_API int bm_clearp(const Bitmap* bitmap);
VSTRING_API int bm_nclearp(const Bitmap* bitmap);
/* Whether the sizes and all words are equal. Null is equal to null alone. */
VSTRING_API int bm_equal(const Bitmap* a, const Bitmap* b);
VSTRING_API int bm_noteq(const Bitmap* a, const Bitmap* b);
/* The number of ones in the first (nbits + 7) / 8 bytes; -1 for null. The two are the same. */
VSTRING_API int64_t bm_count_bits(const Bitmap* bitmap);
VSTRING_API int64_t bm_count_bits1(const Bitmap* bitmap);

/* Gives dst the size and bits of src; dst, or null, with dst unchanged, when either is null or
 * memory runs out. */
VSTRING_API Bitmap* bm_copy(Bitmap* dst, const Bitmap* src);
/* A new bitmap with the size and bits of src; null for null and when memory runs out. */
VSTRING_API Bitmap* bm_dup(const Bitmap* src);
/* a := a op b over the words of the one with fewer bits; a, or null when either is null. */
VSTRING_API Bitmap* bm_andeq(Bitmap* a, const Bitmap* b);
VSTRING_API Bitmap* bm_oreq(Bitmap* a, const Bitmap* b);
VSTRING_API Bitmap* bm_xoreq(Bitmap* a, const Bitmap* b);
/* The same on a duplicate of a, which is the result; null too when memory runs out. */
VSTRING_API Bitmap* bm_and(const Bitmap* a, const Bitmap* b);
VSTRING_API Bitmap* bm_or(const Bitmap* a, const Bitmap* b);
VSTRING_API Bitmap* bm_xor(const Bitmap* a, const Bitmap* b);
/* A duplicate with all words of the block complemented; null as bm_dup. */
VSTRING_API Bitmap* bm_not(const Bitmap* a);

/* Writes the block, a word a line, the first bit of each word last. */
VSTRING_API void bm_print(FILE* stream, const Bitmap* bitmap);

/* The elements, of n in an array, whose positions have their bit set, in their order: a new array
 * with room for bm_count_bits elements, at least one, to be released with free(). Positions from
 * nbits on are left out. Null when an argument is null or memory runs out. */
VSTRING_API uint8_t* bm_select_ui8(const Bitmap* bitmap, const uint8_t* array, uint32_t n);
VSTRING_API int8_t* bm_select_i8(const Bitmap* bitmap, const int8_t* array, uint32_t n);
VSTRING_API uint16_t* bm_select_ui16(const Bitmap* bitmap, const uint16_t* array, uint32_t n);
VSTRING_API int16_t* bm_select_i16(const Bitmap* bitmap, const int16_t* array, uint32_t n);
VSTRING_API uint32_t* bm_select_ui32(const Bitmap* bitmap, const uint32_t* array, uint32_t n);
VSTRING_API int32_t* bm_select_i32(const Bitmap* bitmap, const int32_t* array, uint32_t n);
VSTRING_API float* bm_select_f32(const Bitmap* bitmap, const float* array, uint32_t n);
VSTRING_API double* bm_select_f64(const Bitmap* bitmap, const double* array, uint32_t n);
VSTRING_API void** bm_select_ptr(const Bitmap* bitmap, void* const* array, uint32_t n);

#endif
