/* The public headers as C reads them, and the words of the records that modules share. */
#include "vstring/arguments.h"
#include "vstring/bitmap.h"
#include "vstring/charclass.h"
#include "vstring/containers.h"
#include "vstring/encoding.h"
#include "vstring/kernel_vector.h"
#include "vstring/language.h"
#include "vstring/library.h"
#include "vstring/object.h"
#include "vstring/random.h"
#include "vstring/regex.h"
#include "vstring/search.h"
#include "vstring/sort.h"
#include "vstring/time.h"

#define WORDS(type, count) \
  _Static_assert(sizeof(void*) != 4 || sizeof(type) == 4 * (count), #type " has other words")

WORDS(PoolArena, 3);
WORDS(Pool, 3);
WORDS(ListNode, 2);
WORDS(List, 4);
WORDS(StringNode, 2);
WORDS(StringList, 3);
WORDS(IntegerNode, 2);
WORDS(IntegerList, 4);
WORDS(IntegerPairNode, 3);
WORDS(IntegerPairList, 4);
WORDS(TableEntry, 4);
WORDS(Table, 4);
WORDS(DynamicString, 3);
WORDS(BitVector, 3);
WORDS(MatchRecord, 3);
WORDS(MatchList, 3);
WORDS(Bitmap, 4);
WORDS(AcOutput, 4);
WORDS(AcEdge, 4);
WORDS(AcNode, 4);
WORDS(AcAutomaton, 259);
WORDS(OptionEntry, 5);
