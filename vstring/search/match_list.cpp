// Match lists. Tests: tests/unit/match_list_test.cpp.
#include <cstdlib>
#include <new>
#include <vector>

#include "vstring/library.h"
#include "vstring/search.h"

namespace {

// Takes note of the record that was last in a freed list. Nobody frees it, for callers may go on using
// the tail; here it stays reachable.
void keep_orphan(MatchRecord* record) {
  static auto* orphans = new std::vector<MatchRecord*>;
  try {
    orphans->push_back(record);
  } catch (const std::bad_alloc&) {
    return;  // one record less to account for
  }
}

}  // namespace

void MatchListInit(MatchList* list) {
  if (list != nullptr) *list = MatchList{};
}

MatchList* MatchListCreate() { return static_cast<MatchList*>(std::calloc(1, sizeof(MatchList))); }

MatchList* AddMatchToList(MatchList* list, uint32_t position, int32_t value) {
  if (list == nullptr) return nullptr;
  void* block = std::malloc(sizeof(MatchRecord));
  if (block == nullptr) return nullptr;
  auto* record = new (block) MatchRecord{nullptr, position, value};
  if (list->head == nullptr) {
    list->head = record;
    list->count = 1;
  } else {
    list->tail->next = record;
    ++list->count;
  }
  list->tail = record;
  return list;
}

void FreeMatchList(MatchList* list) {
  if (list == nullptr || list->head == nullptr) return;
  for (MatchRecord* record = list->head; record != list->tail;) {
    MatchRecord* next = record->next;
    if (static_cast<void*>(record) != static_cast<void*>(*smbuf)) std::free(record);
    record = next;
  }
  keep_orphan(list->tail);
}
