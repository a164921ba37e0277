/* Direct reading of host objects: the header word, type ids, and constant-time access to texts.
 * Everything is inline; tests: tests/unit/values_test.cpp. Usable from C and C++.
 *
 * An object is a block of 32-bit words that starts with its header word: the type id in the top 6
 * bits, the length in words, header included, in the low 26 bits. */
#ifndef VSTRING_OBJECT_H
#define VSTRING_OBJECT_H

#include <stddef.h>
#include <stdint.h>

#include "vstring/kernel_vector.h"

/* Type ids of the objects that modules read. */
enum {
  HOST_TYPE_STRING = 7,
  HOST_TYPE_NAME = 8,
  HOST_TYPE_EQUATION = 21,
  HOST_TYPE_INDEXED_NAME = 25,
  HOST_TYPE_SEQUENCE = 30,
  HOST_TYPE_LIST = 31,
  HOST_TYPE_RANGE = 36,
  HOST_TYPE_SET = 37,
  HOST_TYPE_ARRAY = 39
};

enum {
  HOST_TYPE_SHIFT = 26,
  HOST_LENGTH_MASK = 0x03ffffff, /* of the header word: the length in words */
  HOST_TEXT_OFFSET = 12          /* bytes before a string's or name's text */
};

/* The longest text that a string object can hold, in bytes. */
#define HOST_MAX_TEXT ((size_t)HOST_LENGTH_MASK * 4 - HOST_TEXT_OFFSET - 1)
/* The most elements that a sequence, list or set can hold. */
#define HOST_MAX_ELEMENTS ((size_t)HOST_LENGTH_MASK - 1)

/* Whether a reference is an immediate small integer, which has no words. */
static inline int host_is_immediate(HostObject object) { return (int)(object & 1U); }

/* The words of an object that is not immediate. The one place where a reference becomes an address.
 */
static inline uint32_t* host_words(HostObject object) { return (uint32_t*)(uintptr_t)object; }

/* The type id of any reference; -1 for an immediate integer. */
static inline int host_type(HostObject object) {
  return host_is_immediate(object) ? -1 : (int)(host_words(object)[0] >> HOST_TYPE_SHIFT);
}

/* Whether a reference is text: a string or a name, which modules treat alike. */
static inline int host_is_text(HostObject object) {
  int type = host_type(object);
  return type == HOST_TYPE_STRING || type == HOST_TYPE_NAME;
}

/* Length in words, header included, of an object that is not immediate. */
static inline size_t host_length(HostObject object) {
  return host_words(object)[0] & HOST_LENGTH_MASK;
}

/* The NUL-terminated text of a string or name. */
static inline char* host_text(HostObject object) {
  return (char*)host_words(object) + HOST_TEXT_OFFSET;
}

/* Length of a string's or name's text in bytes, in constant time: the last word always holds the
 * terminating NUL and nothing but NULs behind it, so only that word is looked at. */
static inline size_t host_text_length(HostObject object) {
  size_t words = host_length(object);
  const char* last = (const char*)(host_words(object) + words - 1);
  return words * 4 - HOST_TEXT_OFFSET - 4 +
         (size_t)((last[0] != 0) + (last[1] != 0) + (last[2] != 0));
}

/* Number of elements of a sequence, list or set. */
static inline size_t host_num_elements(HostObject object) { return host_length(object) - 1; }

/* Element i (1-based) of a sequence, list or set; also the left (1) and right (2) side of an
 * equation, the lower and upper endpoint of a range, and the name and the sequence of indices of an
 * indexed name. */
static inline HostObject host_element(HostObject object, size_t i) { return host_words(object)[i]; }

#endif
