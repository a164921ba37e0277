// Containers: layout, quirks that users rely on, and behaviour when memory runs out.
#include "vstring/containers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>

namespace {

static_assert(sizeof(void*) != 4 ||
              (sizeof(PoolArena) == 12 && sizeof(ListNode) == 8 && sizeof(IntegerPairNode) == 12 &&
               sizeof(TableEntry) == 16 && sizeof(DynamicString) == 12 && sizeof(BitVector) == 12));

TEST(Pool, AllocationsAreAlignedApartAndReusable) {
  Pool* pool = pool_create();
  for (int round = 0; round < 3; ++round) {
    char* previous_end = nullptr;
    for (std::size_t size : {1, 15, 16, 17, 8000, 100000, 3}) {
      auto* block = static_cast<char*>(pool_alloc(pool, size));
      ASSERT_NE(block, nullptr);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0U);
      EXPECT_NE(block, previous_end);
      std::memset(block, 0xff, size);
      previous_end = block;
    }
    auto* zeroed = static_cast<unsigned char*>(pool_alloc0(pool, 7, 3));
    EXPECT_EQ(std::string(zeroed, zeroed + 21), std::string(21, '\0'));
    EXPECT_STREQ(pool_strdup(pool, "text"), "text");
    EXPECT_EQ(pool_free(pool), pool);
    EXPECT_LE(pool->num_recycled, 10U);
  }
  EXPECT_EQ(pool_alloc(pool, SIZE_MAX), nullptr);
  EXPECT_EQ(pool_alloc(pool, SIZE_MAX - 100), nullptr);
  EXPECT_EQ(pool_alloc0(pool, SIZE_MAX / 2, 3), nullptr);
  EXPECT_EQ(pool_alloc(nullptr, 1), nullptr);
  pool_destroy(pool);
  std::free(pool);
}

TEST(Pool, NoMoreThanTenBlocksAreKept) {
  Pool* pool = pool_create();
  for (int i = 0; i < 30; ++i) ASSERT_NE(pool_alloc(pool, 20000), nullptr);
  pool_free(pool);
  EXPECT_EQ(pool->num_recycled, 10U);
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
  list_free(list);
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
  IntegerList integers;
  il_init(&integers);
  il_append(&integers, INT32_MIN);
  il_dump(stream, &integers);
  std::fclose(stream);
  EXPECT_STREQ(dumped, ">>|one|\n>>|two|\n>>|-1,2|\n>>|-2147483648|\n");
  std::free(dumped);
  sl_free(&list);
  ipl_free(&pairs);
  il_free(&integers);
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
  EXPECT_EQ(ds_inits(&ds, (ds_free(&ds), SIZE_MAX)), nullptr);
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
}

}  // namespace
