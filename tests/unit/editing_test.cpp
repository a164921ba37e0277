// The edits against their plain twins: every short length, which the vector code treats in
// different ways, and random longer ones; texts and results lie in heap blocks of exact length, so
// that a sanitizer sees every byte read or written outside.
#include "vstring/commands/editing.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/reference/editing.h"
#include "tests/reference/words.h"

namespace {

using namespace vstring;
using reference::random_below;
using reference::random_word;
using Bytes = std::vector<char>;

Text text_of(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

template <class Write>
std::string written(std::size_t size, Write write) {
  Bytes out(size);
  write(out.data());
  return {out.begin(), out.end()};
}

// Calls check(text, letters) with texts of few and of many different bytes.
template <class Check>
void with_texts(Check check) {
  std::mt19937 random(7);
  for (std::size_t round = 0; round < 800; ++round) {
    std::size_t length = round < 300 ? round : random_below(random, 20000);
    for (std::size_t letters : {std::size_t{2}, std::size_t{26}, std::size_t{256}}) {
      std::string word = random_word(random, letters, length);
      check(random, Bytes(word.begin(), word.end()));
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(Editing, ReversesAndRotates) {
  with_texts([](std::mt19937& random, const Bytes& bytes) {
    Text text = text_of(bytes);
    ASSERT_EQ(written(text.size(), [&](char* out) { write_reversed(text, out); }),
              reference::reversed(text));
    if (text.empty()) return;
    std::size_t shift = random_below(random, text.size());
    ASSERT_EQ(written(text.size(), [&](char* out) { write_rotated(text, shift, out); }),
              reference::rotated(text, shift));
  });
}

TEST(Editing, Translates) {
  with_texts([](std::mt19937& random, const Bytes& bytes) {
    Text text = text_of(bytes);
    std::size_t letters = 1 + random_below(random, 256);
    std::string from = random_word(random, letters, random_below(random, 300));
    std::string to = random_word(random, 256, from.size() + random_below(random, 3));
    ASSERT_EQ(written(text.size(), [&](char* out) { write_translated(from, to, text, out); }),
              reference::translated(from, to, text));
  });
}

TEST(Editing, Repeats) {
  std::mt19937 random(8);
  for (std::size_t length = 0; length < 400; ++length) {
    std::string text = random_word(random, 26, length * (length % 50 == 0 ? 200 : 1));
    for (std::size_t count : {std::size_t{0}, std::size_t{1}, 2 + random_below(random, 200)}) {
      ASSERT_EQ(written(text.size() * count, [&](char* out) { write_repeated(text, count, out); }),
                reference::repeated(text, count));
    }
  }
}

int sign(int value) { return (value > 0) - (value < 0); }

// Pairs that agree up to case for long, differ in one byte, or in length alone.
TEST(Editing, ComparesIgnoringCase) {
  with_texts([](std::mt19937& random, Bytes a) {
    Bytes b = a;
    for (char& c : b) {
      bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
      if (is_letter && random() % 2 == 0) c = static_cast<char>(c ^ 0x20);
    }
    ASSERT_EQ(compare_ignoring_case(text_of(a), text_of(b)), 0);
    if (a.empty()) return;
    if (random() % 3 == 0) b.resize(random_below(random, b.size()));
    if (random() % 3 != 0) a[random_below(random, a.size())] = static_cast<char>(random());
    ASSERT_EQ(sign(compare_ignoring_case(text_of(a), text_of(b))),
              reference::order_ignoring_case(text_of(a), text_of(b)));
  });
}

TEST(Editing, FindsTheLast) {
  with_texts([](std::mt19937& random, Bytes bytes) {
    char c = static_cast<char>(random());
    ASSERT_EQ(find_last(text_of(bytes), c), text_of(bytes).rfind(c));
    if (bytes.empty()) return;
    bytes[random_below(random, bytes.size())] = '!';
    ASSERT_EQ(find_last(text_of(bytes), '!'), text_of(bytes).rfind('!'));
  });
}

}  // namespace
