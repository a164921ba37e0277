/* Exact search for one pattern or many, and the list that collects matches. Usable from C and C++.
 * Tests: tests/unit/exact_search_test.cpp, match_list_test.cpp, automaton_test.cpp.
 *
 * Texts are bytes. Offsets are 0-based; positions, which is what hosts and users get, are 1-based.
 * The layouts below are part of the interface: modules may read and fill the records themselves. */
#ifndef VSTRING_SEARCH_H
#define VSTRING_SEARCH_H

#include <stddef.h>
#include <stdint.h>

#include "vstring/containers.h"
#include "vstring/export.h"
#include "vstring/kernel_vector.h"

/* === One pattern === */

/* The 1-based position of the leftmost occurrence of an m-byte pattern in an n-byte text; 0 when
 * there is none, when m or n is 0, and when m > n. Neither has to be NUL-terminated; a byte 0 is
 * like any other. Linear in n, whatever the pattern. Never fails: it needs no heap memory. */
VSTRING_API size_t Search(const char* pattern, size_t m, const char* text, size_t n);

/* === Match lists === */

/* One occurrence. */
typedef struct MatchRecord {
  struct MatchRecord* next;
  uint32_t position; /* 0-based offset of its first byte */
  int32_t value;     /* 1-based index of the pattern that matched, 0 when there is only one */
} MatchRecord;

/* The occurrences in the order in which they were added; all zero when there are none. */
typedef struct MatchList {
  int32_t count;
  MatchRecord* head;
  MatchRecord* tail;
} MatchList;

/* Makes a caller's list empty, whatever it held. Nothing for a null list. */
VSTRING_API void MatchListInit(MatchList* list);

/* A new empty list, to be released with free() after FreeMatchList; null without memory. */
VSTRING_API MatchList* MatchListCreate(void);

/* Appends a record. Gives the list; null for a null list, and null, the list unchanged, without
 * memory or when there are 2^31 - 1 records already. */
VSTRING_API MatchList* AddMatchToList(MatchList* list, uint32_t position, int32_t value);

/* Frees the records from the head on up to the last one, which it never frees: list->tail stays
 * valid, and whoever has no more use for it may free() it. The header is neither freed nor changed;
 * its head is not valid any more, so use MatchListInit before the next AddMatchToList. A record
 * that lies in the shared scratch buffer is passed over. Nothing for a null list. */
VSTRING_API void FreeMatchList(MatchList* list);

/* A host sequence of the positions (offset + 1) in the list's order; the empty sequence for a null
 * or empty list. Raises what the host raises when it cannot make it. */
VSTRING_API HostObject MatchListToExpSeq(HostKernelVector* kv, const MatchList* list);

/* The same, but a host list [position, value] for each record. */
VSTRING_API HostObject MatchListToExpSeq2(HostKernelVector* kv, const MatchList* list);

/* A host list of the positions; the empty list for a null or empty one. */
VSTRING_API HostObject MatchListToList(HostKernelVector* kv, const MatchList* list);

/* === Many patterns: the automaton of Aho and Corasick (Communications of the ACM 18(6), 1975) ===
 *
 * Made by ac_alloc or ac_init, filled by ac_insert, prepared once by ac_prep, searched any number
 * of times by ac_search, released by ac_free. The chains of a prepared automaton repeat a pattern
 * at every node that it ends at, so sets of many suffixes of one another (a, aa, aaa, ...) take
 * memory in the square of their number. */

/* What is reported on entering a node. */
typedef struct AcOutput {
  struct AcOutput* next;
  char* pattern;   /* a copy of the text, in the pool */
  int32_t value;   /* as given to ac_insert */
  uint32_t length; /* of the pattern, in bytes */
} AcOutput;

typedef struct AcEdge {
  struct AcEdge* next;    /* of the same node; new ones come first */
  struct AcNode* target;  /* the child */
  uint32_t byte;          /* 0..255 */
  int32_t terminal_value; /* the pattern's value if the edge was made for its last byte, else 0 */
} AcEdge;

/* The longest beginning of a pattern that the text read so far ends with. */
typedef struct AcNode {
  struct AcNode* level_next; /* of the same depth; new ones come first */
  struct AcNode* failure;    /* null: the root */
  AcOutput* outputs;
  AcEdge* edges;
} AcNode;

typedef struct AcAutomaton {
  AcNode* root[256];       /* the nodes of depth 1 by their byte: the root is this table */
  int32_t levels_capacity; /* slots of levels: 10 at first, then doubled; -1 after ac_free */
  AcNode** levels;         /* levels[d] heads the chain of depth d; slot 0 is not used */
  Pool* pool;              /* owns nodes, edges, outputs and texts */
} AcAutomaton;

/* A new empty automaton, to be released with ac_free and then free(); null without memory. */
VSTRING_API AcAutomaton* ac_alloc(void);

/* Makes a caller's record an empty automaton, whatever it held. Null for a null record and without
 * memory; then nothing has to be released. */
VSTRING_API AcAutomaton* ac_init(AcAutomaton* ac);

/* Adds a NUL-terminated pattern, which is copied. 1 on success, also for a pattern that is there
 * already: it keeps the value of its first insertion. 0 without memory, for a null argument, and
 * for a pattern of 2^30 bytes or more; the patterns added before stay. An empty pattern never
 * matches. Not to be called after ac_prep. */
VSTRING_API int ac_insert(AcAutomaton* ac, const char* pattern, int32_t value);

/* Links failures and completes the chains of outputs: each node gets those of its failure node in
 * reverse order and then its own, chain(v) = reverse(chain(failure(v))) + own(v). To be called
 * once. 1 on success; 0 without memory, and the automaton is then only good for ac_free. */
VSTRING_API int ac_prep(AcAutomaton* ac);

/* What ac_search calls for an occurrence: `start` is its first byte in the text. Zero ends the
 * search. */
typedef int (*AcReport)(void* ctx, const char* pattern, const char* start, int32_t value);

/* Reports every occurrence of every pattern in a NUL-terminated text, overlapping ones included:
 * ordered by their last byte, those that end together in the order of the chain of outputs. `root`
 * is the root table of a prepared automaton. Gives the number of calls of `report`, the one that
 * ended the search included (at most INT_MAX); 0 for a null table or text. */
VSTRING_API int ac_search(AcNode* const* root, const char* text, AcReport report, void* ctx);

/* Releases all that the automaton owns and empties it; not its record. Nothing for a null one. */
VSTRING_API void ac_free(AcAutomaton* ac);

#endif
