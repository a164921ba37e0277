/* The table behind letter rotations. Usable from C and C++.
 * Tests: tests/unit/encoding_test.cpp. */
#ifndef VSTRING_ENCODING_H
#define VSTRING_ENCODING_H

#include "vstring/export.h"

/* Rows of arotntab. */
enum {
  AROTN_IDENTITY = 26,  /* also the row by which a rotation by 0 is undone */
  AROTN_ROT13 = 257,    /* the same map as row 13 */
  AROTN_NUM_ONES = 258, /* no map: the number of 1 bits of each byte value */
  AROTN_NUM_ROWS = 259
};

/* Row k maps each ASCII letter to the letter k places further on in the alphabet of its own case,
 * from Z on to A and from z on to a, and every other byte to itself. Rows 26..256 begin again:
 * row k is row k mod 26. Row (26 - k) mod 26 undoes row k. */
VSTRING_API const unsigned char arotntab[AROTN_NUM_ROWS][256];

#endif
