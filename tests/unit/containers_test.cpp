// Containers: layout, quirks that users rely on, and behaviour when memory runs out.
#include "vstring/containers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/faults/failing_malloc.h"

namespace {

using faults::Refusals;
using faults::refuse_each;

TEST(Pool, AllocationsAreAlignedApartAndReusable) {
  Pool* pool = pool_create();
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(pool_alloc(pool, 0), nullptr);  // there is no block yet
    std::vector<std::string> texts;
    std::vector<char*> copies;
    for (std::size_t size : {1, 15, 16, 17, 8000, 100000, 3, 8090, 8100}) {
      auto* block = static_cast<unsigned char*>(pool_alloc0(pool, size, 1));
      ASSERT_NE(block, nullptr);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0U);
      EXPECT_EQ(std::count(block, block + size, 0), static_cast<long>(size));
      std::memset(block, 0xff, size);
      texts.emplace_back(size, static_cast<char>('a' + round));
      copies.push_back(pool_strdup(pool, texts.back().c_str()));
    }
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(copies[i], texts[i]);
    EXPECT_EQ(pool_free(pool), pool);
    EXPECT_LE(pool->num_recycled, 10U);
  }
  EXPECT_EQ(pool_alloc(pool, SIZE_MAX), nullptr);
  EXPECT_EQ(pool_alloc(pool, SIZE_MAX - 100), nullptr);
  EXPECT_EQ(pool_alloc0(pool, SIZE_MAX / 2, 3), nullptr);
  EXPECT_EQ(pool_alloc(nullptr, 1), nullptr);
  EXPECT_EQ(pool_destroy(pool), pool);
  EXPECT_EQ(pool_alloc(pool, 1), nullptr);
  EXPECT_EQ(pool_destroy(pool), nullptr);
  std::free(pool);
}

TEST(Pool, BlocksAreUsedAgainAndNoMoreThanTenAreKept) {
  Pool* pool = pool_create();
  char* first = nullptr;
  for (int i = 0; i < 30; ++i) {
    char* block = static_cast<char*>(pool_alloc(pool, 20000));
    if (i == 20) first = block;
  }
  const char* start = reinterpret_cast<char*>(pool->arena->block);
  EXPECT_EQ(pool->arena->end - start, 20000 + 8108);
  pool_free(pool);
  EXPECT_EQ(pool->num_recycled, 10U);  // those that were taken last; the last of them comes first
  EXPECT_EQ(pool_alloc(pool, 20000), first);
  EXPECT_NE(pool_alloc(pool, 100000), nullptr);  // passes over those too small
  EXPECT_EQ(pool->num_recycled, 0U);
  pool_destroy(pool);
  std::free(pool);
}

TEST(Lists, PrependedValuesAreNotCounted) {
  List* list = list_create();
  list_prepend(list, 7);
  EXPECT_EQ(list->head, list->tail);
  EXPECT_EQ(list_size(list), 0U);
  list_append(list, 8);
  list_prepend(list, 6);
  EXPECT_EQ(list_size(list), 1U);
  std::string seen;
  auto collect = [](std::uintptr_t value, void* data) {
    *static_cast<std::string*>(data) += std::to_string(value);
    return value == 8 ? 0 : 1;
  };
  EXPECT_EQ(list_iter(list, collect, &seen), 0U);
  EXPECT_EQ(seen, "678");
  EXPECT_EQ(list_iter(list, nullptr, nullptr), LIST_NO_LIST);
  EXPECT_EQ(list_size(nullptr), LIST_NO_LIST);
  EXPECT_EQ(list_free(list), list);
  EXPECT_EQ(list_append(list, 1), nullptr);
  std::free(list->pool);  // the handle is the caller's
  std::free(list);
}

TEST(Lists, StringsAreCopiedAndDumped) {
  StringList list;
  ASSERT_EQ(sl_init(&list), &list);
  char text[] = "one";
  sl_append(&list, text);
  text[0] = 'X';
  sl_append(&list, "two");
  char* dumped = nullptr;
  std::size_t size = 0;
  FILE* stream = open_memstream(&dumped, &size);
  sl_dump(stream, &list);
  IntegerPairList pairs;
  ipl_init(&pairs);
  const int32_t pair[] = {-1, 2};
  ipl_appendv(&pairs, pair);
  ipl_dump(stream, &pairs);
  int sum = 0;
  auto add = [](int32_t first, int32_t second, void* data) {
    *static_cast<int*>(data) += first + 10 * second;
    return 1;
  };
  EXPECT_EQ(ipl_iter(&pairs, add, &sum), 1U);
  EXPECT_EQ(sum, 19);
  EXPECT_EQ(ipl_iter(nullptr, add, &sum), LIST_NO_LIST);
  EXPECT_EQ(ipl_iter(&pairs, nullptr, &sum), LIST_NO_LIST);
  IntegerList integers;
  il_init(&integers);
  il_append(&integers, INT32_MIN);
  il_dump(stream, &integers);
  std::fclose(stream);
  EXPECT_STREQ(dumped, ">>|one|\n>>|two|\n>>|-1,2|\n>>|-2147483648|\n");
  std::free(dumped);
  std::free(sl_free(&list)->pool);
  std::free(ipl_free(&pairs)->pool);
  std::free(il_free(&integers)->pool);
  EXPECT_EQ(integers.head, nullptr);
}

// The hash as it is described, one byte at a time.
uint32_t plain_hash(const std::string& key) {
  uint32_t hash = 0;
  for (std::size_t i = 0; i < key.size(); ++i) {
    auto byte = static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(key[i])));
    hash = i < 4 ? (hash * 256) | byte : (hash * 2 | hash / (1U << 27)) ^ byte;
  }
  return hash;
}

TEST(Table, HashIsTheDocumentedOne) {
  EXPECT_EQ(table_hash("abc"), 6382179U);
  for (const char* key : {"", "a", "abcd", "hello world", "\xff", "ab\x80zz\xff\x81"}) {
    EXPECT_EQ(table_hash(key), plain_hash(key)) << key;
  }
}

TEST(Table, AgreesWithAMap) {
  EXPECT_EQ(table_new(UINT32_MAX - 2), nullptr);
  Table* table = table_new(10);
  EXPECT_EQ(table->num_buckets, 16U);
  std::map<std::string, std::uintptr_t> expected;
  std::mt19937 random(1);
  for (int i = 0; i < 2000; ++i) {
    std::string key(random() % 7, 'a');
    for (char& c : key) c = static_cast<char>(0xfa + random() % 4);
    auto value = static_cast<std::uintptr_t>(i);
    auto place = expected.insert_or_assign(key, value).first;
    ASSERT_NE(table_insert(table, place->first.c_str(), value), nullptr);
  }
  EXPECT_EQ(table->num_entries, expected.size());
  for (const auto& [key, value] : expected)
    EXPECT_EQ(table_search(table, key.c_str())->value, value);
  EXPECT_EQ(table_search(table, "absent"), nullptr);
  uint32_t used = 0;
  uint32_t longest = 0;
  double average = 0.0;
  EXPECT_EQ(table_stats(table, &used, &longest, &average), 1);
  EXPECT_DOUBLE_EQ(average, static_cast<double>(expected.size()) / 16.0);
  EXPECT_GE(longest, expected.size() / 16);
  EXPECT_EQ(table_stats(table, nullptr, &longest, &average), 0);
  EXPECT_EQ(table_iter(table, [](const char*, std::uintptr_t) { return 1; }), 1U);
  EXPECT_EQ(table_iter(nullptr, nullptr), 0U);
  table_free(table);
  table = table_new(11);
  EXPECT_EQ(table->num_buckets, 16U);
  table_free(table);
}

TEST(DynamicString, GrowsAndKeepsASpareByte) {
  DynamicString ds;
  ASSERT_NE(ds_inits(&ds, 4), nullptr);
  EXPECT_EQ(ds_appendl(&ds, "ab\0cd", 5), &ds);
  ds_appends(&ds, "cd");
  EXPECT_EQ(ds.capacity, 4U);
  EXPECT_STREQ(ds_value(&ds), "abcd");
  ds_append(&ds, 'e');
  EXPECT_EQ(ds.capacity, 8U);
  const char* text = "fgh,ijk";
  EXPECT_EQ(ds_get_to_delim(&ds, text, ','), text + 3);
  EXPECT_EQ(ds_get_to_delim(&ds, text + 3, ','), text + 3);
  DynamicString* copy = ds_dup(&ds);
  EXPECT_STREQ(ds_value(copy), "abcdefgh");
  EXPECT_EQ(ds_copy(copy, &ds), copy);
  EXPECT_EQ(ds_length(copy), 16U);
  EXPECT_EQ(ds_verify(copy), 1);
  ds_free(copy);
  EXPECT_EQ(ds_verify(copy), 0);
  EXPECT_EQ(ds_append(copy, 'x'), nullptr);
  std::free(copy);
  ds_appends(&ds, ds_value(&ds));
  EXPECT_STREQ(ds_value(&ds), "abcdefghabcdefgh");
  ds_copy(&ds, &ds);
  EXPECT_EQ(ds_length(&ds), 32U);
  ds_free(&ds);
  EXPECT_EQ(ds_inits(&ds, SIZE_MAX), nullptr);
}

TEST(BitVector, CountsWholeWordsOnly) {
  BitVector bv;
  ASSERT_NE(bv_init(&bv, 40), nullptr);
  bv_set(&bv, 35);
  EXPECT_EQ(bv_count(&bv), 0U);
  EXPECT_EQ(bv_get(&bv, 35), 8U);
  bv_set(&bv, 0);
  bv_set(&bv, 31);
  EXPECT_EQ(bv_count(&bv), 2U);
  bv_reset(&bv, 31);
  EXPECT_EQ(bv_count(&bv), 1U);
  std::free(bv.words);
  ASSERT_NE(bv_init(&bv, 64), nullptr);
  bv_set(bv_set(&bv, 0), 63);
  EXPECT_EQ(bv_count(&bv), 2U);
  std::free(bv.words);
}

// Each of the following makes, fills and releases a container, whatever it is refused meanwhile.
void use_list() {
  List* list = list_create();
  uint32_t appended = 0;
  for (std::uintptr_t i = 0; i < 2000; ++i) appended += list_append(list, i) != nullptr ? 1 : 0;
  auto count = [](std::uintptr_t, void* data) {
    return ++*static_cast<uint32_t*>(data) > 0 ? 1 : 0;
  };
  uint32_t seen = 0;
  EXPECT_EQ(list_iter(list, count, &seen), list == nullptr ? LIST_NO_LIST : 1U);
  EXPECT_EQ(seen, appended);
  EXPECT_EQ(list_size(list), list == nullptr ? LIST_NO_LIST : appended);
  EXPECT_EQ(list_free(list), list);
  if (list != nullptr) std::free(list->pool);
  std::free(list);
}

void use_other_lists() {
  static const std::string long_text(20000, 'x');
  StringList strings;
  sl_init(&strings);
  for (const char* text : {"a", long_text.c_str(), "b"}) sl_append(&strings, text);
  std::free(sl_free(&strings)->pool);
  IntegerList integers;
  il_init(&integers);
  for (int i = 0; i < 1000; ++i) il_append(&integers, i);
  std::free(il_free(&integers)->pool);
  IntegerPairList* pairs = ipl_create();
  for (int i = 0; i < 1000; ++i) ipl_append(pairs, i, i);
  if (ipl_free(pairs) != nullptr) std::free(pairs->pool);
  std::free(pairs);
}

void use_table() {
  Table* table = table_new(1000);
  static const std::string keys(1000, 'k');
  for (std::size_t i = 0; i < keys.size(); ++i) {
    TableEntry* entry = table_insert(table, &keys[i], i);
    EXPECT_EQ(table_search(table, &keys[i]), entry);
  }
  table_free(table);
}

void use_strings_and_bits() {
  DynamicString* ds = ds_create();
  for (int i = 0; i < 5000; ++i) ds_append(ds, 'x');
  DynamicString* copy = ds_dup(ds);
  EXPECT_EQ(ds_appends(copy, "tail") != nullptr, ds_verify(copy) != 0);
  for (DynamicString* each : {ds, copy}) {
    ds_free(each);
    std::free(each);
  }
  BitVector bv;
  if (bv_init(&bv, 100) == nullptr) {
    EXPECT_EQ(bv_count(&bv), 0U);
  }
  std::free(bv.words);
}

TEST(Containers, StayInOrderAndLeakNothingWithoutMemory) {
  use_other_lists();  // makes the texts that they use
  use_table();
  for (auto use : {use_list, use_other_lists, use_table, use_strings_and_bits}) {
    Refusals seen = refuse_each(use);
    EXPECT_GE(seen.num_refused, 5U);
    EXPECT_EQ(seen.first_leak, 0U);
  }
}

}  // namespace
