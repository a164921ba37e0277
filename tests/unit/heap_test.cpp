// The heap: reuse, roots, deep nesting, the limit, handles.
#include "vexil/heap/heap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <vector>

#include "tests/faults/failing_malloc.h"

namespace vexil {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

TEST(Heap, ObjectsAreAlignedZeroedAndLowAlsoWhenReused) {
  Heap heap(16 * kMegabyte);
  heap.set_gc_stress(true);
  for (int round = 0; round < 3; ++round) {
    for (std::size_t words : {1, 2, 3, 33, 100, 1023, 1024, 1025, 5000, 70000}) {
      const Object object = heap.allocate(HOST_TYPE_STRING, words);
      ASSERT_EQ(object % 8, 0U);
      ASSERT_EQ(host_length(object), words);
      for (std::size_t i = 1; i < words; ++i) ASSERT_EQ(host_words(object)[i], 0U);
      std::memset(host_words(object) + 1, 0xff, (words - 1) * 4);
    }
    heap.safe_point();
    EXPECT_EQ(heap.bytes_in_use(), 0U);
  }
}

TEST(Heap, KeepsWhatRootsReachAndOnlyThat) {
  Heap heap(64 * kMegabyte);
  heap.set_gc_stress(true);
  std::mt19937 random(7);
  std::map<int, Object> kept;  // each a list of one string of the key's length
  heap.add_roots([&](const Heap::Mark& mark) {
    for (const auto& [key, object] : kept) mark(object);
  });
  for (int step = 0; step < 3000; ++step) {
    const int key = static_cast<int>(random() % 3000);
    const auto length = static_cast<std::size_t>(key);
    const Object text = heap.allocate_text(HOST_TYPE_STRING, (HOST_TEXT_OFFSET + length) / 4 + 1);
    std::memset(host_text(text), 1 + key % 100, length);
    const Object list = heap.allocate(HOST_TYPE_LIST, 2);
    host_words(list)[1] = text;
    kept[key] = list;
    if (step % 3 == 0) kept.erase(kept.begin());
    if (step % 50 == 0) heap.safe_point();
  }
  heap.collect();
  for (const auto& [key, list] : kept) {
    const Object text = host_element(list, 1);
    ASSERT_EQ(host_text_length(text), static_cast<std::size_t>(key));
    for (int i = 0; i < key; ++i) ASSERT_EQ(host_text(text)[i], 1 + key % 100);
  }
  kept.clear();
  heap.collect();
  EXPECT_EQ(heap.bytes_in_use(), 0U);
}

TEST(Heap, MarksNestingOfTenMillionLevels) {
  Heap heap(512 * kMegabyte);
  Object list = heap.allocate(HOST_TYPE_LIST, 1);
  for (int i = 0; i < 10'000'000; ++i) {
    const Object outer = heap.allocate(HOST_TYPE_LIST, 2);
    host_words(outer)[1] = list;
    list = outer;
  }
  heap.protect(list);
  heap.protect(list);
  heap.release(list);
  heap.collect();
  EXPECT_GE(heap.bytes_in_use(), 80'000'000U);
  heap.release(list);
  heap.release(list);  // one too many is no harm
  heap.collect();
  EXPECT_EQ(heap.bytes_in_use(), 0U);
}

TEST(Heap, FullHeapRaisesAndTheNextStatementWorks) {
  Heap heap(8 * kMegabyte);
  for (std::size_t words : {std::size_t{2}, std::size_t{300}, std::size_t{100000}}) {
    const auto fill = [&] {
      while (true) heap.allocate(HOST_TYPE_LIST, words);
    };
    for (int statement = 0; statement < 3; ++statement) {
      EXPECT_THROW(fill(), HostError);
      heap.safe_point();
      EXPECT_EQ(heap.bytes_in_use(), 0U);
      heap.allocate(HOST_TYPE_LIST, 1'900'000);
      heap.collect();
    }
  }
  EXPECT_THROW(heap.allocate(HOST_TYPE_LIST, std::size_t{HOST_LENGTH_MASK} + 1), HostError);
  EXPECT_THROW(Heap(std::size_t{0xffffffff}), std::runtime_error);
}

TEST(Heap, LongestTextsComeAndGo) {
  Heap heap(1024 * kMegabyte);
  for (int i = 0; i < 20; ++i) {
    for (int j = 0; j < 3; ++j) {
      const Object text = heap.allocate_text(HOST_TYPE_STRING, HOST_LENGTH_MASK);
      host_text(text)[i * 1000] = 'x';
      host_text(text)[HOST_MAX_TEXT - 1] = 'x';
    }
    heap.safe_point();
  }
}

TEST(Heap, CollectsHandlesWhenTheProcessGrows) {
  constexpr std::size_t kBehindEach = 4 * kMegabyte;
  std::map<Object, std::vector<char>> blocks;
  Heap heap(16 * kMegabyte);
  heap.set_finalizer(kTypeForeign, [&](Object handle) { blocks.erase(handle); });
  std::size_t most = 0;
  for (int i = 0; i < 100; ++i) {
    blocks[heap.allocate(kTypeForeign, 8)].resize(kBehindEach, 'x');
    most = std::max(most, blocks.size());
    heap.safe_point();
  }
  EXPECT_LT(most, 80U);  // how many it takes depends on what ran before
}

TEST(Heap, FinalizesHandlesOnceAndLeavesTheHeapUsableMeanwhile) {
  int finalized = 0;
  {
    Heap heap(8 * kMegabyte);
    heap.set_finalizer(kTypeForeign, [&](Object handle) {
      EXPECT_EQ(host_type(handle), kTypeForeign);
      heap.allocate(HOST_TYPE_LIST, 3);
      heap.collect();
      ++finalized;
    });
    heap.protect(heap.allocate(kTypeForeign, 10));
    heap.allocate(kTypeForeign, 10);
    heap.collect();
    EXPECT_EQ(finalized, 1);
    heap.collect();
    EXPECT_EQ(finalized, 1);
  }
  EXPECT_EQ(finalized, 2);
}

// Whatever allocation is refused, all pages can be had again afterwards.
TEST(Heap, NoRefusedAllocationCostsPages) {
  for (std::size_t n = 1;; ++n) {
    Heap heap(kMegabyte);
    std::vector<Object> kept;
    heap.add_roots([&](const Heap::Mark& mark) {
      for (Object object : kept) mark(object);
    });
    faults::RefusedAllocation refusal(n);
    for (std::size_t words : {2, 40, 400, 3000, 2, 90000, 3000}) {
      try {
        const Object list = heap.allocate(HOST_TYPE_LIST, words);
        faults::Counting off(false);
        kept.push_back(list);
      } catch (const std::bad_alloc&) {
        continue;
      }
    }
    heap.collect();
    faults::Counting off(false);
    kept.clear();
    heap.collect();
    EXPECT_NO_THROW(heap.allocate(HOST_TYPE_STRING, kMegabyte / 4)) << n;
    if (!refusal.was_refused()) break;
  }
}

}  // namespace
}  // namespace vexil
