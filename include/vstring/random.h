/* The library's pseudo-random numbers: a lagged multiplicative Fibonacci generator plus a
 * multiply-with-carry one. Not for secrets. Usable from C and C++.
 * Tests: tests/unit/random_test.cpp. */
#ifndef VSTRING_RANDOM_H
#define VSTRING_RANDOM_H

#include <stdint.h>

#include "vstring/export.h"

/* The next value, 0 .. 2^32 - 1. All commands that draw advance the same sequence; the command
 * randomise starts it again. It starts the same in every process. */
VSTRING_API uint32_t rand32(void);

#endif
