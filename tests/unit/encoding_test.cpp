// Encodings against their definitions, in blocks of exactly their size.
#include "vstring/encoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "tests/reference/words.h"
#include "vstring/encoding/base64.h"
#include "vstring/encoding/block_sort.h"
#include "vstring/encoding/rotation.h"
#include "vstring/encoding/suffix_array.h"

namespace vstring {
namespace {

// What `write` writes into a heap block of just this size.
template <class Write>
std::string written(std::size_t size, Write write) {
  std::unique_ptr<char[]> block(new char[size]);
  write(block.get());
  return {block.get(), size};
}

// A text that ends where its heap block does.
class Exact {
 public:
  explicit Exact(const std::string& text) : block_(new char[text.size()]), size_(text.size()) {
    std::copy(text.begin(), text.end(), block_.get());
  }
  Text text() const { return {block_.get(), size_}; }

 private:
  std::unique_ptr<char[]> block_;
  std::size_t size_;
};

std::string random_bytes(std::mt19937& random, std::size_t size) {
  std::string bytes(size, ' ');
  for (char& c : bytes) c = static_cast<char>(reference::random_below(random, 256));
  return bytes;
}

TEST(Encoding, TableOfRotations) {
  for (unsigned row = 0; row <= AROTN_ROT13; ++row) {
    unsigned shift = row == AROTN_ROT13 ? 13 : row;
    for (int c = 0; c < 256; ++c) {
      int first = c >= 'a' && c <= 'z' ? 'a' : c >= 'A' && c <= 'Z' ? 'A' : 0;
      int expected = first == 0 ? c : first + (c - first + static_cast<int>(shift)) % 26;
      ASSERT_EQ(arotntab[row][c], expected) << row << ' ' << c;
    }
  }
  for (int c = 0; c < 256; ++c) ASSERT_EQ(arotntab[AROTN_NUM_ONES][c], __builtin_popcount(c));
}

TEST(Encoding, RotationsGoByTheTable) {
  std::mt19937 random(1);
  for (unsigned shift = 0; shift < 256; ++shift) {
    std::string bytes = random_bytes(random, 256 + shift % 70);
    std::string sums = bytes;
    std::string letters = bytes;
    for (char& c : sums) c = static_cast<char>(byte_of(c) + shift);
    for (char& c : letters) c = static_cast<char>(arotntab[shift][byte_of(c)]);
    auto k = static_cast<unsigned char>(shift);
    bool has_nul = false;
    EXPECT_EQ(written(bytes.size(), [&](char* out) { has_nul = rotate_bytes(bytes, k, out); }),
              sums);
    EXPECT_EQ(has_nul, sums.find('\0') != std::string::npos);
    EXPECT_EQ(written(bytes.size(), [&](char* out) { rotate_letters(bytes, k % 26, out); }),
              letters);
  }
}

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Six bits at a time.
std::string plain_base64(const std::string& bytes) {
  std::string coded;
  for (std::size_t bit = 0; bit < 8 * bytes.size(); bit += 6) {
    unsigned value = 0;
    for (std::size_t b = bit; b < bit + 6; ++b) {
      bool is_set = b < 8 * bytes.size() && (byte_of(bytes[b / 8]) >> (7 - b % 8) & 1) != 0;
      value = value * 2 + is_set;
    }
    coded += kAlphabet[value];
  }
  while (coded.size() % 4 != 0) coded += '=';
  return coded;
}

TEST(Encoding, Base64OfAnyLength) {
  std::mt19937 random(2);
  for (std::size_t size = 0; size < 200; ++size) {
    std::string bytes = random_bytes(random, size);
    Exact exact(bytes);
    std::string coded =
        written(base64_size(size), [&](char* out) { encode_base64(exact.text(), out); });
    ASSERT_EQ(coded, plain_base64(bytes));
    Exact digits{std::string(base64_digits(coded))};
    std::size_t decoded = decoded_size(digits.text().size());
    EXPECT_EQ(written(decoded, [&](char* out) { EXPECT_TRUE(decode_base64(digits.text(), out)); }),
              bytes);
    std::string left_over(4 * size + 1, 'b');
    EXPECT_FALSE(decode_base64(left_over, std::string(3 * size + 1, ' ').data()));
  }
}

TEST(Encoding, EveryOtherByteIsNoDigitAnywhere) {
  Text alphabet = kAlphabet;
  for (std::size_t size : {3, 15, 18, 34, 71}) {
    std::string out(size, ' ');
    for (std::size_t place = 0; place < size; ++place) {
      for (int c = 0; c < 256; ++c) {
        std::string digits(size, 'b');
        digits[place] = static_cast<char>(c);
        bool is_digit = alphabet.find(static_cast<char>(c)) != Text::npos;
        ASSERT_EQ(decode_base64(digits, out.data()), is_digit) << size << ' ' << place << ' ' << c;
      }
    }
  }
}

void check_suffixes(const std::string& word) {
  std::vector<std::int32_t> order(word.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    return Text(word).substr(static_cast<std::size_t>(a)) <
           Text(word).substr(static_cast<std::size_t>(b));
  });
  ASSERT_EQ(sort_suffixes(word), order) << word;
}

void check_block_sort(const std::string& word) {
  std::size_t n = word.size();
  std::vector<std::string> rotations;
  for (std::size_t i = 0; i < n; ++i) rotations.push_back(word.substr(i) + word.substr(0, i));
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return rotations[a] < rotations[b]; });
  std::string expected;
  for (std::size_t start : order) expected += rotations[start].back();
  auto row =
      n < 2 ? 0
            : static_cast<std::size_t>(std::find(order.begin(), order.end(), 1U) - order.begin());
  std::size_t kept = 0;
  ASSERT_EQ(written(n, [&](char* out) { kept = block_sort(word, out); }), expected) << word;
  ASSERT_EQ(kept, row) << word;
  ASSERT_EQ(written(n, [&](char* out) { undo_block_sort(expected, row, out); }), word);
}

TEST(Encoding, SuffixesAndRotationsInOrder) {
  for (const std::string& word : reference::all_words(3, 8)) {
    check_suffixes(word);
    check_block_sort(word);
  }
  std::mt19937 random(3);
  for (int i = 0; i < 300; ++i) {
    std::string word = i % 2 == 0
                           ? random_bytes(random, reference::random_below(random, 400))
                           : reference::random_word(random, 1 + random() % 3, 1 + random() % 400);
    if (i % 3 == 0) word += word + word;
    check_suffixes(word);
    check_block_sort(word);
  }
}

// Fibonacci words need every level of the recursion, and their rotations differ late.
TEST(Encoding, BlockSortOfRepetitiveText) {
  std::string before = "b";
  std::string word = "a";
  while (word.size() < 2000) before = std::exchange(word, word + before);
  check_suffixes(word);
  check_block_sort(word);
}

// From 2^24 bytes on a row and its character no longer fit in 32 bits.
TEST(Encoding, BlockSortOfLongTextComesBack) {
  std::string word(std::size_t{1} << 24, 'a');
  word += 'b';
  std::string sorted = "b";
  sorted.append(word.size() - 1, 'a');
  EXPECT_TRUE(written(word.size(), [&](char* out) { undo_block_sort(sorted, 1, out); }) == word);
}

}  // namespace
}  // namespace vstring
