/* Exact search for one pattern or many, and the list that collects matches. Usable from C and C++.
 * Tests: tests/unit/exact_search_test.cpp, match_list_test.cpp, automaton_test.cpp.
 *
 * Texts are bytes. Offsets are 0-based; what goes to a host or to users is 1-based. */
#ifndef VSTRING_SEARCH_H
#define VSTRING_SEARCH_H

#include <stddef.h>
#include <stdint.h>

#include "vstring/containers.h"
#include "vstring/export.h"
#include "vstring/kernel_vector.h"

/* --- One pattern
 * ---------------------------------------------------------------------------------- */

/* 1-based position of the leftmost occurrence of an m-byte pattern in an n-byte text; 0 when there
 * is none, when m or n is 0, and when m > n. Linear in m + n. */
VSTRING_API size_t Search(const char* pattern, size_t m, const char* text, size_t n);

/* --- Match lists
 * ---------------------------------------------------------------------------------- */

typedef struct MatchRecord {
  struct MatchRecord* next;
  uint32_t position; /* 0-based offset of the first character */
  int32_t value;     /* 1-based index of the pattern, 0 when there is only one */
} MatchRecord;

typedef struct MatchList {
  int32_t count;
  MatchRecord* head;
  MatchRecord* tail;
} MatchList;

/* All of these do nothing for a null list. */
VSTRING_API void MatchListInit(MatchList* list);
/* A new empty list, to be released with free(); null when memory runs out. */
VSTRING_API MatchList* MatchListCreate(void);
/* Appends a record; the list, or null, the list unchanged, when memory runs out. */
VSTRING_API MatchList* AddMatchToList(MatchList* list, uint32_t position, int32_t value);
/* Frees the records but the last one, which is never freed, and not the header. */
VSTRING_API void FreeMatchList(MatchList* list);
/* A sequence of 1-based positions; the empty sequence for an empty or null list. */
VSTRING_API HostObject MatchListToExpSeq(HostKernelVector* kv, const MatchList* list);
/* The same with a list [position, value] for each match. */
VSTRING_API HostObject MatchListToExpSeq2(HostKernelVector* kv, const MatchList* list);
/* A host list of 1-based positions, also for an empty or null list. */
VSTRING_API HostObject MatchListToList(HostKernelVector* kv, const MatchList* list);

/* --- Many patterns: the automaton of Aho and Corasick (Communications of the ACM 18(6), 1975) ---
 */

typedef struct AcOutput {
  struct AcOutput* next;
  char* pattern; /* a copy */
  int32_t value; /* as given to ac_insert */
  uint32_t length;
} AcOutput;

typedef struct AcEdge {
  struct AcEdge* next; /* of the same node; new ones come first */
  struct AcNode* target;
  uint32_t byte;
  int32_t terminal_value; /* the pattern's value if the edge was made for its last byte, else 0 */
} AcEdge;

typedef struct AcNode {
  struct AcNode* level_next; /* of the same depth; new ones come first */
  struct AcNode* failure;    /* null: the root */
  AcOutput* outputs;
  AcEdge* edges;
} AcNode;

typedef struct AcAutomaton {
  AcNode* root[256];       /* the nodes of depth 1, by byte: the root is this table */
  int32_t levels_capacity; /* slots of levels; -1 after ac_free */
  AcNode** levels;         /* levels[d] heads the nodes of depth d; slot 0 is not used */
  Pool* pool;              /* owns everything */
} AcAutomaton;

/* A new automaton, to be released with ac_free and then free(); null when memory runs out. */
VSTRING_API AcAutomaton* ac_alloc(void);
VSTRING_API AcAutomaton* ac_init(AcAutomaton* ac);
/* Adds a pattern: 1, also when it is there already and keeps its first value; 0 when memory runs
 * out. An empty pattern never matches. */
VSTRING_API int ac_insert(AcAutomaton* ac, const char* pattern, int32_t value);
/* To be called once, after the last ac_insert and before the first ac_search: 1, or 0 when memory
 * runs out. Gives every node the outputs of its failure node in reverse order, then its own. */
VSTRING_API int ac_prep(AcAutomaton* ac);
/* Reports every occurrence in a NUL-terminated text, by last byte, those that end at the same byte
 * in the order of the outputs: report(ctx, pattern, start of the occurrence, value); a zero return
 * stops the search. Gives the number of calls. `root` is the automaton's root table. */
VSTRING_API int ac_search(AcNode* const* root, const char* text,
                          int (*report)(void* ctx, const char* pattern, const char* start,
                                        int32_t value),
                          void* ctx);
/* Releases what the automaton owns; not its record. */
VSTRING_API void ac_free(AcAutomaton* ac);

#endif
