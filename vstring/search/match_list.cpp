// Match lists. Tests: tests/unit/match_list_test.cpp.
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include "vstring/library.h"
#include "vstring/search.h"

namespace {

// The last record of a freed list is never freed: callers may go on using it, and free it. Such
// records are only named here, so that leak checkers do not take them for lost, and never looked
// at: hence no links from one to the next, and a vector that stays until the very end.
void keep_orphan(const MatchRecord* record) {
  static auto* orphans = new std::vector<const MatchRecord*>;
  if (orphans->empty() || orphans->back() != record) orphans->push_back(record);
}

}  // namespace

void MatchListInit(MatchList* list) {
  if (list != nullptr) *list = MatchList{};
}

MatchList* MatchListCreate() { return static_cast<MatchList*>(std::calloc(1, sizeof(MatchList))); }

MatchList* AddMatchToList(MatchList* list, uint32_t position, int32_t value) {
  if (list == nullptr || list->count == INT32_MAX) return nullptr;
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
  for (MatchRecord* record = list->head; record != list->tail && record != nullptr;) {
    MatchRecord* next = record->next;
    if (static_cast<void*>(record) != static_cast<void*>(*smbuf)) std::free(record);
    record = next;
  }
  try {
    keep_orphan(list->tail);
  } catch (const std::bad_alloc&) {  // one more record that only its caller knows
    return;
  }
}
