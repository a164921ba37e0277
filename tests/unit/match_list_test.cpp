// Match lists: what they own, and what happens when memory runs out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "tests/faults/failing_malloc.h"
#include "vstring/library.h"
#include "vstring/search.h"

namespace {

TEST(MatchList, KeepsTheOrderAndItsTail) {
  MatchList* list = MatchListCreate();
  for (uint32_t i = 0; i < 5; ++i) ASSERT_EQ(AddMatchToList(list, i, 7), list);
  uint32_t expected = 0;
  for (const MatchRecord* record = list->head; record != nullptr; record = record->next) {
    EXPECT_EQ(record->position, expected++);
    EXPECT_EQ(record->value, 7);
  }
  EXPECT_EQ(list->count, 5);
  MatchRecord* tail = list->tail;
  FreeMatchList(list);
  EXPECT_EQ(tail->position, 4U);  // still readable, as AddressSanitizer would tell
  EXPECT_EQ(tail->next, nullptr);
  EXPECT_EQ(list->count, 5);
  MatchListInit(list);
  EXPECT_EQ(list->count, 0);
  FreeMatchList(list);
  std::free(list);
}

TEST(MatchList, ARecordInTheSharedBufferIsNotFreed) {
  alignas(MatchRecord) static MatchRecord tail{nullptr, 2, 0};
  auto* head = new (*smbuf) MatchRecord{&tail, 1, 0};
  MatchList list{2, head, &tail};
  FreeMatchList(&list);
  EXPECT_EQ(head->position, 1U);
}

TEST(MatchList, StaysAsItIsWithoutMemory) {
  faults::Refusals seen = faults::refuse_each([] {
    MatchList* list = MatchListCreate();
    for (uint32_t i = 0; i < 4; ++i) {
      int32_t before = list == nullptr ? 0 : list->count;
      bool is_added = AddMatchToList(list, i, 0) != nullptr;
      if (list != nullptr) {
        EXPECT_EQ(list->count, before + (is_added ? 1 : 0));
      }
    }
    FreeMatchList(list);
    if (list != nullptr) std::free(list->tail);
    std::free(list);
  });
  EXPECT_GE(seen.num_refused, 5U);
  MatchListInit(nullptr);
  FreeMatchList(nullptr);
  EXPECT_EQ(AddMatchToList(nullptr, 0, 0), nullptr);
}

}  // namespace
