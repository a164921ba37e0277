// Bitmap records: words, the spare word behind them, ranges and selections.
#include "vstring/bitmap.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "tests/faults/failing_malloc.h"

namespace {

struct Free {
  void operator()(Bitmap* bitmap) const { bm_free(bitmap); }
  void operator()(void* block) const { std::free(block); }
};
using Owned = std::unique_ptr<Bitmap, Free>;

TEST(Bitmap, IsABoolVectorWithARestInItsLastWord) {
  std::mt19937 random(8);
  for (std::uint32_t nbits : {0U, 1U, 31U, 32U, 33U, 64U, 100U, 1000U}) {
    Owned bitmap(bm_new(nbits)), ones(bm_not(bitmap.get()));
    EXPECT_EQ(bitmap->words, (nbits + 31) / 32);
    EXPECT_EQ(bm_count_bits(ones.get()), (nbits + 7) / 8 * 8);
    std::vector<bool> expected(nbits + 1);
    for (int step = 0; step < 200; ++step) {
      auto i = static_cast<std::uint32_t>(random() % (nbits + 1));
      auto j = static_cast<std::uint32_t>(random() % (nbits + 3));
      if (step % 3 == 0) {
        EXPECT_EQ(bm_set_range(bitmap.get(), i, j), 1);
        for (; i < j && i < bitmap->words * 32; ++i) {
          if (i <= nbits) expected[i] = true;
        }
      } else {
        expected[i] = step % 3 == 1;
        EXPECT_EQ((step % 3 == 1 ? bm_set_bit : bm_clear_bit)(bitmap.get(), i), 1);
      }
      std::vector<std::int16_t> elements, selected;
      for (std::uint32_t k = 0; k <= nbits; ++k) {
        ASSERT_EQ(bm_get(bitmap.get(), k), expected[k]) << nbits << ' ' << k;
        elements.push_back(static_cast<std::int16_t>(k));
        if (k < nbits && expected[k]) selected.push_back(elements.back());
      }
      std::unique_ptr<std::int16_t[], Free> found(
          bm_select_i16(bitmap.get(), elements.data(), nbits + 1));
      ASSERT_TRUE(std::equal(selected.begin(), selected.end(), found.get()));
    }
    EXPECT_EQ(bm_get(bitmap.get(), nbits + 1), -1);
    Owned copy(bm_dup(bitmap.get())), other(bm_new(7));
    EXPECT_EQ(bm_equal(copy.get(), bitmap.get()), 1);
    EXPECT_EQ(bm_copy(other.get(), copy.get()), other.get());
    EXPECT_EQ(bm_noteq(other.get(), bitmap.get()), 0);
    bm_xoreq(copy.get(), bitmap.get());
    EXPECT_EQ(bm_clearp(copy.get()), 1);
    EXPECT_EQ(bm_nclearp(copy.get()), nbits == 0);
    EXPECT_EQ(bm_nclearp(ones.get()), 1);
  }
}

TEST(Bitmap, CombinesTheWordsOfTheShorterOne) {
  std::mt19937 random(5);
  auto word = [](const Bitmap* bitmap, std::uint32_t k) {
    return reinterpret_cast<const std::uint32_t*>(bitmap->data)[k];
  };
  for (int round = 0; round < 1000; ++round) {
    Owned a(bm_rand(static_cast<std::uint32_t>(random() % 300)));
    Owned b(bm_rand(static_cast<std::uint32_t>(random() % 300)));
    Owned both(bm_and(a.get(), b.get())), either(bm_or(a.get(), b.get()));
    Owned one(bm_xor(a.get(), b.get())), none(bm_not(a.get()));
    for (std::uint32_t k = 0; k < a->words; ++k) {
      bool is_common = k < b->words;
      std::uint32_t x = word(a.get(), k), y = is_common ? word(b.get(), k) : 0;
      ASSERT_EQ(word(both.get(), k), is_common ? x & y : x);
      ASSERT_EQ(word(either.get(), k), x | y);
      ASSERT_EQ(word(one.get(), k), x ^ y);
      ASSERT_EQ(word(none.get(), k), ~x);
    }
    EXPECT_EQ(bm_get(both.get(), both->words * 32), both->nbits % 32 == 0 ? 0 : -1);
    EXPECT_EQ(bm_equal(bm_oreq(a.get(), b.get()), either.get()), 1);
    std::int64_t ones = 0;
    for (std::uint32_t i = 0; i < (b->nbits + 7) / 8 * 8; ++i) ones += b->data[i / 8] >> i % 8 & 1;
    ASSERT_EQ(bm_count_bits(b.get()), ones);
  }
}

TEST(Bitmap, WithoutMemoryNothingIsLost) {
  Owned kept(bm_rand(40)), twin(bm_dup(kept.get())), other(bm_new(99));
  auto seen = faults::refuse_each([&] {
    bm_free(bm_rand(9));
    bm_free(bm_xor(kept.get(), other.get()));
    std::free(bm_select_ui8(other.get(), other->data, 9));
    bool is_copied = bm_copy(kept.get(), other.get()) != nullptr;
    EXPECT_EQ(bm_equal(kept.get(), is_copied ? other.get() : twin.get()), 1);
    bm_copy(kept.get(), twin.get());
    if (Bitmap* small = bm_new(1)) bm_free(bm_init(small, 100));
  });
  EXPECT_EQ(seen.first_leak, 0U);
  EXPECT_EQ(seen.num_refused, 10U);
}

TEST(Bitmap, CountsToTheLargestSize) {
  Owned largest(bm_new(UINT32_MAX));
  EXPECT_EQ(largest->words, 1U << 27);
  EXPECT_EQ(bm_set_range(largest.get(), UINT32_MAX - 3, UINT32_MAX), 1);
  EXPECT_EQ(bm_set_bit(largest.get(), UINT32_MAX), 1);
  EXPECT_EQ(bm_count_bits(largest.get()), 4);
  if (sizeof(std::size_t) > 4) return;  // the rest: more ones than 32 bits can count
  bm_set_range(largest.get(), 0, UINT32_MAX);
  EXPECT_EQ(bm_count_bits(largest.get()), std::int64_t{1} << 32);
  EXPECT_EQ(bm_select_ui8(largest.get(), largest->data, 5), nullptr);
}

TEST(Bitmap, RefusesWhatIsNotThere) {
  Owned bitmap(bm_new(10));
  const std::uint32_t positions[] = {3, 10, 11, 4};
  EXPECT_EQ(bm_set_bits(bitmap.get(), 2, positions), 1);
  EXPECT_EQ(bm_set_bits(bitmap.get(), 4, positions), -1);
  EXPECT_EQ(bm_set_bits(bitmap.get(), 11, positions), -1);
  EXPECT_EQ(bm_get(bitmap.get(), 4), 0);
  EXPECT_EQ(bm_get(bitmap.get(), 10), 1);
  EXPECT_EQ(bm_get(nullptr, 0), -1);
  EXPECT_EQ(bm_count_bits(nullptr), -1);
  EXPECT_EQ(bm_andeq(bitmap.get(), nullptr), nullptr);
  EXPECT_EQ(bm_or(nullptr, bitmap.get()), nullptr);
  EXPECT_EQ(bm_copy(bitmap.get(), nullptr), nullptr);
  EXPECT_EQ(bm_equal(nullptr, nullptr), 1);
  EXPECT_EQ(bm_equal(bitmap.get(), nullptr), 0);
  ASSERT_EQ(bm_init(bitmap.get(), 3), bitmap.get());
  EXPECT_EQ(bm_clearp(bitmap.get()), 1);
}

TEST(Bitmap, PrintsWordsLastBitFirst) {
  Owned bitmap(bm_new(33));
  bm_set_bit(bitmap.get(), 0);
  bm_set_bit(bitmap.get(), 32);
  char* text = nullptr;
  std::size_t size = 0;
  FILE* stream = open_memstream(&text, &size);
  bm_print(stream, bitmap.get());
  std::fclose(stream);
  std::string line = std::string(31, '0') + "1\n";
  EXPECT_EQ(text, line + line);
  std::free(text);
}

}  // namespace
