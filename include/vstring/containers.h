/* Containers for intermediate results: pools, linked lists, a hash table, growing byte strings and
 * bit vectors. Usable from C and C++. Tests: tests/unit/containers_test.cpp.
 *
 * Functions take the container first, give the container (or a pointer to what is new) on success
 * and null when memory runs out, and do nothing for a null container. They never raise a host
 * error. */
#ifndef VSTRING_CONTAINERS_H
#define VSTRING_CONTAINERS_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "vstring/export.h"
#include "vstring/kernel_vector.h"

/* --- Pools: regions whose parts are released together --------------------------------------------
 */

/* Where the next allocation comes from. The blocks form a stack: the header of each holds the state
 * from before it was taken. */
typedef struct PoolArena {
  struct PoolBlock* block; /* the current one, null at first */
  char* next;              /* its first free byte */
  char* end;               /* one past its last byte */
} PoolArena;

/* The head of a block; its usable bytes follow, aligned to 16. */
typedef struct PoolBlock {
  PoolArena previous;
} PoolBlock;

typedef struct Pool {
  PoolArena* arena;
  PoolBlock* recycled; /* blocks kept for reuse */
  uint32_t num_recycled;
} Pool;

/* A new pool; its handle is to be released with free() after pool_destroy. */
VSTRING_API Pool* pool_create(void);
/* The same in a caller's handle. */
VSTRING_API Pool* pool_init(Pool* pool);
/* `size` bytes aligned to 16; they live until the pool is freed. Also null when the size is beyond
 * what there can be. */
VSTRING_API void* pool_alloc(Pool* pool, size_t size);
/* count * size zeroed bytes. */
VSTRING_API void* pool_alloc0(Pool* pool, size_t count, size_t size);
/* A copy of a NUL-terminated text. */
VSTRING_API char* pool_strdup(Pool* pool, const char* text);
/* Releases all allocations; up to ten blocks are kept for the next ones. */
VSTRING_API Pool* pool_free(Pool* pool);
/* Releases everything but the handle. */
VSTRING_API Pool* pool_destroy(Pool* pool);

/* --- Lists: nodes live in a pool of the list's own
 * ------------------------------------------------ */

/* What the _iter functions give. */
#define LIST_NO_LIST 0xFFFFFFFFU /* null list or function */

typedef struct ListNode {
  struct ListNode* next;
  uintptr_t value; /* one machine word */
} ListNode;

typedef struct List {
  ListNode* head;
  ListNode* tail;
  uint32_t count; /* of what was appended */
  Pool* pool;
} List;

VSTRING_API List* list_create(void);
VSTRING_API List* list_init(List* list);
/* Releases the nodes; not the header. */
VSTRING_API List* list_free(List* list);
/* The number of values appended, LIST_NO_LIST for a null list. */
VSTRING_API uint32_t list_size(const List* list);
VSTRING_API List* list_append(List* list, uintptr_t value);
/* A new head. Values that were prepended are not counted. */
VSTRING_API List* list_prepend(List* list, uintptr_t value);
/* Calls function(value, data) from head to tail: 0 as soon as a call gives 0, else 1. */
VSTRING_API uint32_t list_iter(const List* list, int (*function)(uintptr_t value, void* data),
                               void* data);

typedef struct StringNode {
  struct StringNode* next;
  char* text;
} StringNode;

/* A list of strings, which are copied; they are not counted. */
typedef struct StringList {
  StringNode* head;
  StringNode* tail;
  Pool* pool;
} StringList;

VSTRING_API StringList* sl_create(void);
VSTRING_API StringList* sl_init(StringList* list);
VSTRING_API StringList* sl_free(StringList* list);
VSTRING_API StringList* sl_append(StringList* list, const char* text);
VSTRING_API uint32_t sl_iter(const StringList* list, int (*function)(const char* text, void* data),
                             void* data);
/* A line ">>|text|" for each string, up to one that cannot be written. */
VSTRING_API StringList* sl_dump(FILE* stream, StringList* list);
/* A host sequence of n slots, the first ones set to the list's strings. */
VSTRING_API HostObject sl_toexpseq(HostKernelVector* kv, const StringList* list, int n);

typedef struct IntegerNode {
  struct IntegerNode* next;
  int32_t value;
} IntegerNode;

typedef struct IntegerList {
  IntegerNode* head;
  IntegerNode* tail;
  uint32_t count;
  Pool* pool;
} IntegerList;

VSTRING_API IntegerList* il_create(void);
VSTRING_API IntegerList* il_init(IntegerList* list);
/* Also clears the header. */
VSTRING_API IntegerList* il_free(IntegerList* list);
VSTRING_API IntegerList* il_append(IntegerList* list, int32_t value);
VSTRING_API uint32_t il_iter(const IntegerList* list, int (*function)(int32_t value, void* data),
                             void* data);
VSTRING_API IntegerList* il_dump(FILE* stream, IntegerList* list);
VSTRING_API HostObject il_toexpseq(HostKernelVector* kv, const IntegerList* list, int n);

typedef struct IntegerPairNode {
  struct IntegerPairNode* next;
  int32_t first;
  int32_t second;
} IntegerPairNode;

typedef struct IntegerPairList {
  IntegerPairNode* head;
  IntegerPairNode* tail;
  uint32_t count;
  Pool* pool;
} IntegerPairList;

VSTRING_API IntegerPairList* ipl_create(void);
VSTRING_API IntegerPairList* ipl_init(IntegerPairList* list);
VSTRING_API IntegerPairList* ipl_free(IntegerPairList* list);
VSTRING_API IntegerPairList* ipl_append(IntegerPairList* list, int32_t first, int32_t second);
/* The same with a pointer to the two integers. */
VSTRING_API IntegerPairList* ipl_appendv(IntegerPairList* list, const int32_t* pair);
VSTRING_API uint32_t ipl_iter(const IntegerPairList* list,
                              int (*function)(int32_t first, int32_t second, void* data),
                              void* data);
VSTRING_API IntegerPairList* ipl_dump(FILE* stream, IntegerPairList* list);
/* Each element is a host list of the two integers. */
VSTRING_API HostObject ipl_toexpseq(HostKernelVector* kv, const IntegerPairList* list, int n);

/* --- Hash table: strings to machine words
 * --------------------------------------------------------- */

typedef struct TableEntry {
  struct TableEntry* next; /* in its chain */
  uintptr_t unused;        /* for the caller */
  const char* key;         /* as given: the caller keeps the text alive */
  uintptr_t value;
} TableEntry;

typedef struct Table {
  TableEntry** buckets;
  uint32_t num_buckets; /* always even */
  uint32_t num_entries;
  Pool* pool;
} Table;

/* A table with size + 5 buckets for an odd size, size + 6 for an even one. */
VSTRING_API Table* table_new(uint32_t size);
/* Sets the value of a key. A key that is there already keeps its entry and its stored text. */
VSTRING_API TableEntry* table_insert(Table* table, const char* key, uintptr_t value);
VSTRING_API TableEntry* table_search(const Table* table, const char* key);
/* Calls function(key, value) bucket by bucket: 0 as soon as a call gives 0, else 1. */
VSTRING_API uint32_t table_iter(const Table* table,
                                int (*function)(const char* key, uintptr_t value));
/* 1, or 0 when an argument is null. The average is entries over buckets. */
VSTRING_API int table_stats(const Table* table, uint32_t* used_buckets, uint32_t* longest_chain,
                            double* average_chain);
/* Releases the table, its handle included. */
VSTRING_API void table_free(Table* table);
/* The hash: the first four bytes side by side, then for each further one h = (h << 1 | h >> 27) ^
 * byte, bytes taken as signed. Not a rotation: the shift to the right is by 27. */
VSTRING_API uint32_t table_hash(const char* key);

/* --- Dynamic strings
 * ------------------------------------------------------------------------------ */

/* A byte string that grows by doubling. Its text is terminated only by ds_value. */
typedef struct DynamicString {
  size_t capacity;
  size_t length;
  char* buffer; /* one byte longer than the capacity, for the terminator */
} DynamicString;

/* A new string of capacity 1024; its header is to be released with free() after ds_free. */
VSTRING_API DynamicString* ds_create(void);
VSTRING_API DynamicString* ds_init(DynamicString* ds);
VSTRING_API DynamicString* ds_inits(DynamicString* ds, size_t capacity);
/* Frees the buffer; the header stays. */
VSTRING_API DynamicString* ds_free(DynamicString* ds);
/* The append functions lose the text when memory runs out: the buffer is null then. */
VSTRING_API DynamicString* ds_append(DynamicString* ds, char byte);
VSTRING_API DynamicString* ds_appends(DynamicString* ds, const char* text);
/* At most n bytes, up to a NUL. */
VSTRING_API DynamicString* ds_appendl(DynamicString* ds, const char* text, size_t n);
/* Appends src's text, up to a NUL, to dst. */
VSTRING_API DynamicString* ds_copy(DynamicString* dst, const DynamicString* src);
/* A new string with src's capacity and text. */
VSTRING_API DynamicString* ds_dup(const DynamicString* src);
/* Appends the bytes from p up to the first delimiter or NUL and gives the place where it stopped.
 */
VSTRING_API const char* ds_get_to_delim(DynamicString* ds, const char* p, char delimiter);
/* The text, now NUL-terminated; valid until the string changes. */
VSTRING_API char* ds_value(DynamicString* ds);
VSTRING_API size_t ds_length(const DynamicString* ds);
/* 1 when the string and its buffer exist and the length is within the capacity, else 0. */
VSTRING_API int ds_verify(const DynamicString* ds);

/* --- Bit vectors
 * ---------------------------------------------------------------------------------- */

/* Bit i is bit i mod 32, from the least significant, of word i / 32. Indices are not checked. */
typedef struct BitVector {
  uint32_t num_words; /* whole words: num_bits / 32 */
  uint32_t num_bits;
  uint32_t* words; /* num_words + 1, to be released with free() */
} BitVector;

VSTRING_API BitVector* bv_init(BitVector* bv, uint32_t num_bits);
VSTRING_API BitVector* bv_set(BitVector* bv, uint32_t i);
VSTRING_API BitVector* bv_reset(BitVector* bv, uint32_t i);
/* Nonzero when the bit is set: the bit in its place. */
VSTRING_API uint32_t bv_get(const BitVector* bv, uint32_t i);
/* The set bits of the whole words; those of a last partial word do not count. */
VSTRING_API uint32_t bv_count(const BitVector* bv);

#endif
