/* Containers for intermediate results: pools, linked lists, a hash table, growing byte strings and
 * bit vectors. Usable from C and C++. Tests: tests/unit/containers_test.cpp.
 *
 * Conventions. Functions take the container first and give the container, or a pointer to what is
 * new, on success. They give null without memory, also where sizes are beyond what there can be,
 * and leave a container that can be used on and released (dynamic strings lose their text). They do
 * nothing for a null container and give null, or what is told here. They never raise a host error;
 * only the _toexpseq functions call the host. "Word" is a machine word: 32 bits on a 32-bit build.
 * The layouts are part of the interface. Nothing here is shared between threads. */
#ifndef VSTRING_CONTAINERS_H
#define VSTRING_CONTAINERS_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "vstring/export.h"
#include "vstring/kernel_vector.h"

/* === Pools: regions whose parts are released together === */

/* Where the next allocation comes from; all null when there is no block. */
typedef struct PoolArena {
  struct PoolBlock* block; /* the current one */
  char* next;              /* its first free byte */
  char* end;               /* one past its last byte */
} PoolArena;

/* The head of a block, padded to a multiple of 16; the usable bytes follow. It holds the arena from
 * before the block was taken, so the blocks in use form a stack. */
typedef struct PoolBlock {
  PoolArena previous;
} PoolBlock;

typedef struct Pool {
  PoolArena* arena;      /* null after pool_destroy */
  PoolBlock* recycled;   /* blocks kept for reuse */
  uint32_t num_recycled; /* at most 10 */
} Pool;

/* A new empty pool. After pool_destroy the handle itself is to be released with free(). */
VSTRING_API Pool* pool_create(void);

/* Makes a caller's handle an empty pool, whatever it held. */
VSTRING_API Pool* pool_init(Pool* pool);

/* `size` bytes, aligned to 16, that live until pool_free or pool_destroy. A block is made for
 * what the current one cannot hold, with about 8 KB to spare. Zero bytes of a pool without a block
 * are null. */
VSTRING_API void* pool_alloc(Pool* pool, size_t size);

/* count * size zeroed bytes, as from pool_alloc. */
VSTRING_API void* pool_alloc0(Pool* pool, size_t count, size_t size);

/* A copy of a NUL-terminated text; null for a null text too. */
VSTRING_API char* pool_strdup(Pool* pool, const char* text);

/* Releases all allocations. The pool can be used on; up to ten blocks are kept for that. */
VSTRING_API Pool* pool_free(Pool* pool);

/* Releases everything but the handle. Nothing can be allocated then before the next pool_init; null
 * when that has been done already. */
VSTRING_API Pool* pool_destroy(Pool* pool);

/* === Lists: nodes live in a pool of the list's own ===
 *
 * For each kind: _create makes a list; _init makes a caller's header an empty list, whatever it
 * held; _free releases the nodes and empties the header and the pool, but not the pool's handle:
 * release list->pool with free() afterwards, and then the header of a list from _create. Nothing
 * can be appended after _free before the next _init. _iter calls function(value, data) from head to
 * tail: 0 as soon as a call gives 0, 1 after the last one and for an empty list, LIST_NO_LIST for a
 * null list or function. _dump writes a line for each element up to one that cannot be written. */

#define LIST_NO_LIST 0xFFFFFFFFU

typedef struct ListNode {
  struct ListNode* next;
  uintptr_t value; /* one word */
} ListNode;

/* A list of words. */
typedef struct List {
  ListNode* head;
  ListNode* tail;
  uint32_t count; /* of what was appended */
  Pool* pool;
} List;

VSTRING_API List* list_create(void);
VSTRING_API List* list_init(List* list);
VSTRING_API List* list_free(List* list);

/* The number of values appended; LIST_NO_LIST for a null list. */
VSTRING_API uint32_t list_size(const List* list);

/* Adds a value at the tail. */
VSTRING_API List* list_append(List* list, uintptr_t value);

/* Adds a value at the head. Such values do not count. */
VSTRING_API List* list_prepend(List* list, uintptr_t value);

VSTRING_API uint32_t list_iter(const List* list, int (*function)(uintptr_t value, void* data),
                               void* data);

typedef struct StringNode {
  struct StringNode* next;
  char* text; /* in the list's pool */
} StringNode;

/* A list of strings, which are copied. It has no count. */
typedef struct StringList {
  StringNode* head;
  StringNode* tail;
  Pool* pool;
} StringList;

VSTRING_API StringList* sl_create(void);
VSTRING_API StringList* sl_init(StringList* list);
VSTRING_API StringList* sl_free(StringList* list);

/* Adds a copy of a NUL-terminated text at the tail; null for a null text too. */
VSTRING_API StringList* sl_append(StringList* list, const char* text);

VSTRING_API uint32_t sl_iter(const StringList* list, int (*function)(const char* text, void* data),
                             void* data);

/* Lines ">>|text|". */
VSTRING_API StringList* sl_dump(FILE* stream, StringList* list);

/* A host sequence of n slots, the first ones set to host strings of the list's texts, as many as
 * there are slots. Slots beyond the list are as the host made them; a null list counts as empty. */
VSTRING_API HostObject sl_toexpseq(HostKernelVector* kv, const StringList* list, int n);

typedef struct IntegerNode {
  struct IntegerNode* next;
  int32_t value;
} IntegerNode;

/* A list of integers. */
typedef struct IntegerList {
  IntegerNode* head;
  IntegerNode* tail;
  uint32_t count;
  Pool* pool;
} IntegerList;

VSTRING_API IntegerList* il_create(void);
VSTRING_API IntegerList* il_init(IntegerList* list);
VSTRING_API IntegerList* il_free(IntegerList* list);

/* Adds a value at the tail. Null, the list unchanged, without memory. */
VSTRING_API IntegerList* il_append(IntegerList* list, int32_t value);

VSTRING_API uint32_t il_iter(const IntegerList* list, int (*function)(int32_t value, void* data),
                             void* data);

/* Lines ">>|value|". */
VSTRING_API IntegerList* il_dump(FILE* stream, IntegerList* list);

/* As sl_toexpseq, of host integers. */
VSTRING_API HostObject il_toexpseq(HostKernelVector* kv, const IntegerList* list, int n);

typedef struct IntegerPairNode {
  struct IntegerPairNode* next;
  int32_t first;
  int32_t second;
} IntegerPairNode;

/* A list of pairs of integers. */
typedef struct IntegerPairList {
  IntegerPairNode* head;
  IntegerPairNode* tail;
  uint32_t count;
  Pool* pool;
} IntegerPairList;

VSTRING_API IntegerPairList* ipl_create(void);
VSTRING_API IntegerPairList* ipl_init(IntegerPairList* list);
VSTRING_API IntegerPairList* ipl_free(IntegerPairList* list);

/* Adds a pair at the tail. Null, the list unchanged, without memory. */
VSTRING_API IntegerPairList* ipl_append(IntegerPairList* list, int32_t first, int32_t second);

/* The same with a pointer to the two integers; null for a null pointer too. */
VSTRING_API IntegerPairList* ipl_appendv(IntegerPairList* list, const int32_t* pair);

VSTRING_API uint32_t ipl_iter(const IntegerPairList* list,
                              int (*function)(int32_t first, int32_t second, void* data),
                              void* data);

/* Lines ">>|first,second|". */
VSTRING_API IntegerPairList* ipl_dump(FILE* stream, IntegerPairList* list);

/* As sl_toexpseq, of host lists [first, second]. */
VSTRING_API HostObject ipl_toexpseq(HostKernelVector* kv, const IntegerPairList* list, int n);

/* === Hash table: strings to words === */

typedef struct TableEntry {
  struct TableEntry* next; /* in its chain; new entries come first */
  uintptr_t unused;        /* a word for the caller, 0 at first */
  const char* key;         /* as given, not copied: the caller keeps the text alive */
  uintptr_t value;
} TableEntry;

typedef struct Table {
  TableEntry** buckets;
  uint32_t num_buckets; /* always even */
  uint32_t num_entries;
  Pool* pool; /* owns buckets and entries */
} Table;

/* A new table for about `size` entries: size + 5 buckets for an odd size, size + 6 for an even one.
 * The number of buckets never changes. */
VSTRING_API Table* table_new(uint32_t size);

/* Sets the value of a key and gives its entry. A key that is there already keeps its entry with the
 * text that it was first given. Null for a null key too. */
VSTRING_API TableEntry* table_insert(Table* table, const char* key, uintptr_t value);

/* The entry of a key; null when there is none and for a null key. */
VSTRING_API TableEntry* table_search(const Table* table, const char* key);

/* Calls function(key, value) bucket by bucket, each chain from its head: 0 as soon as a call gives
 * 0, else 1; 0 for a null table or function. */
VSTRING_API uint32_t table_iter(const Table* table,
                                int (*function)(const char* key, uintptr_t value));

/* How many buckets are not empty, how long the longest chain is, and entries over buckets. 1, or 0
 * when an argument is null. */
VSTRING_API int table_stats(const Table* table, uint32_t* used_buckets, uint32_t* longest_chain,
                            double* average_chain);

/* Releases the table, its handle included, and not the keys. */
VSTRING_API void table_free(Table* table);

/* The hash of a key; its bucket is the remainder by num_buckets. The first four bytes side by side,
 * then for each further one h = (h << 1 | h >> 27) ^ byte, bytes taken as signed. It is not a
 * rotation: the shift to the right is by 27. */
VSTRING_API uint32_t table_hash(const char* key);

/* === Dynamic strings === */

/* Bytes that grow at the end, by doubling. Only ds_value terminates them. */
typedef struct DynamicString {
  size_t capacity; /* bytes there is room for; one more is kept for the terminator */
  size_t length;
  char* buffer; /* null after ds_free and when memory ran out */
} DynamicString;

/* A new empty string of capacity 1024. After ds_free its header is to be released with free(). */
VSTRING_API DynamicString* ds_create(void);

/* Makes a caller's header an empty string of capacity 1024, whatever it held. */
VSTRING_API DynamicString* ds_init(DynamicString* ds);

/* The same with another capacity. */
VSTRING_API DynamicString* ds_inits(DynamicString* ds, size_t capacity);

/* Frees the buffer; the header stays and needs ds_init or ds_inits before it is used again. */
VSTRING_API DynamicString* ds_free(DynamicString* ds);

/* What is appended may be part of the string itself. Without memory the text is lost: the buffer is
 * released, and all further appends give null. */

VSTRING_API DynamicString* ds_append(DynamicString* ds, char byte);

/* Appends a NUL-terminated text. */
VSTRING_API DynamicString* ds_appends(DynamicString* ds, const char* text);

/* Appends at most n bytes of a text, those before its first NUL. */
VSTRING_API DynamicString* ds_appendl(DynamicString* ds, const char* text, size_t n);

/* Appends src's text, up to a NUL in it, to dst and gives dst; null for a null src too. */
VSTRING_API DynamicString* ds_copy(DynamicString* dst, const DynamicString* src);

/* A new string with src's capacity and text, to be released like that of ds_create. */
VSTRING_API DynamicString* ds_dup(const DynamicString* src);

/* Appends the bytes from p up to the first delimiter or NUL, which is not appended, and gives its
 * address. p must not point into the string. */
VSTRING_API const char* ds_get_to_delim(DynamicString* ds, const char* p, char delimiter);

/* The text, now NUL-terminated; valid until the string changes. */
VSTRING_API char* ds_value(DynamicString* ds);

/* The length in bytes; 0 for a null string. */
VSTRING_API size_t ds_length(const DynamicString* ds);

/* 1 when the string and its buffer exist and the length is within the capacity, else 0. */
VSTRING_API int ds_verify(const DynamicString* ds);

/* === Bit vectors === */

/* Bit i is bit i mod 32, from the least significant, of word i / 32. Indices are not checked. */
typedef struct BitVector {
  uint32_t num_words; /* whole words: num_bits / 32 */
  uint32_t num_bits;
  uint32_t* words; /* num_words + 1 of 32 bits, to be released with free() */
} BitVector;

/* Makes a caller's record a vector of num_bits zeros, whatever it held; without memory, of none. */
VSTRING_API BitVector* bv_init(BitVector* bv, uint32_t num_bits);

/* Sets bit i. */
VSTRING_API BitVector* bv_set(BitVector* bv, uint32_t i);

/* Clears bit i. */
VSTRING_API BitVector* bv_reset(BitVector* bv, uint32_t i);

/* Nonzero when bit i is set: the bit in its place in the word. 0 for a null vector. */
VSTRING_API uint32_t bv_get(const BitVector* bv, uint32_t i);

/* The number of set bits among those of the whole words; the bits of a last partial word do not
 * count. 0 for a null vector. */
VSTRING_API uint32_t bv_count(const BitVector* bv);

#endif
