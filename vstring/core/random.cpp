// The generator and what is drawn from it. A value is the product of the ones 33 and 99 draws back
// plus a multiply-with-carry word, so 32 products can be had at once; the words would follow each
// other one by one, but the sequence can be entered anywhere, so four parts of it run side by side.
#include "vstring/core/random.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "vstring/random.h"

namespace vstring {
namespace {

constexpr std::size_t kTableSize = 128;
constexpr std::size_t kBlock = 32;    // values drawn at once
constexpr std::size_t kNearLag = 33;  // draws back to the factors of a product
constexpr std::size_t kFarLag = 99;
constexpr std::size_t kNumParts = 4;  // of a block, that run side by side
constexpr std::size_t kPartSize = kBlock / kNumParts;
constexpr std::uint32_t kMultiplier = 30903;

constexpr std::uint32_t step(std::uint32_t word, std::uint32_t multiplier) {
  return multiplier * (word & 0xffff) + (word >> 16);
}

// A step multiplies by the multiplier modulo this, so many steps are one multiplication. True of
// words in 1 .. modulus - 1; from one of these the steps never lead out.
constexpr std::uint64_t kModulus = (std::uint64_t{kMultiplier} << 16) - 1;

using PartFactors = std::array<std::uint64_t, kNumParts>;

constexpr PartFactors make_part_factors() {
  PartFactors factors{1};
  for (std::size_t k = 1; k < kNumParts; ++k) {
    factors[k] = factors[k - 1];
    for (std::size_t i = 0; i < kPartSize; ++i) factors[k] = factors[k] * kMultiplier % kModulus;
  }
  return factors;
}

constexpr PartFactors kPartFactors = make_part_factors();

class Generator {
 public:
  Generator() { fill({1, 3, 5, 7}, 16); }

  void fill(std::array<std::uint32_t, 4> seeds, std::uint32_t carry);
  std::uint32_t draw();
  void draw(std::span<std::uint32_t> values);

 private:
  void draw_block(std::uint32_t* values);
  void add_words(std::uint32_t* values);
  // The place of the value `lag` draws before the one that goes to place_.
  std::size_t place_before(std::size_t lag) const { return place_ + kTableSize - lag; }

  // The last values of the first summand in the order in which they were drawn, written twice, so
  // that a block can be read from anywhere without a wrap.
  std::uint32_t table_[2 * kTableSize] = {};
  std::size_t place_ = 0;  // of the next value; less than kTableSize
  std::uint32_t word_ = 0;
};

// The table is filled from its end; the first place is left out, since it is the first to be
// written and is not read before.
void Generator::fill(std::array<std::uint32_t, 4> seeds, std::uint32_t carry) {
  constexpr std::uint32_t kMultipliers[] = {18273, 23163, 24984, 28854};
  for (std::size_t place = kTableSize - 1; place > 0; --place) {
    for (std::size_t i = 0; i < 4; ++i) seeds[i] = step(seeds[i], kMultipliers[i]);
    std::uint32_t high = (seeds[0] << 16) + (seeds[2] << 16);
    std::uint32_t low = (seeds[1] & 0xffff) + (seeds[3] & 0xffff);
    table_[place] = table_[place + kTableSize] = (high + low) | 1;
  }
  place_ = 0;
  word_ = carry;
}

std::uint32_t Generator::draw() {
  std::uint32_t value =
      table_[place_before(kNearLag) % kTableSize] * table_[place_before(kFarLag) % kTableSize];
  table_[place_] = table_[place_ + kTableSize] = value;
  place_ = (place_ + 1) % kTableSize;
  word_ = step(word_, kMultiplier);
  return value + word_;
}

// place_ is a multiple of the block's size.
void Generator::draw_block(std::uint32_t* values) {
  const std::uint32_t* near = table_ + place_before(kNearLag) % kTableSize;
  const std::uint32_t* far = table_ + place_before(kFarLag) % kTableSize;
  for (std::size_t i = 0; i < kBlock; ++i) values[i] = near[i] * far[i];
  std::memcpy(table_ + place_, values, kBlock * sizeof *values);
  std::memcpy(table_ + place_ + kTableSize, values, kBlock * sizeof *values);
  place_ = (place_ + kBlock) % kTableSize;
  add_words(values);
}

void Generator::add_words(std::uint32_t* values) {
  std::uint32_t words[kNumParts];
  for (std::size_t k = 0; k < kNumParts; ++k) {
    words[k] = static_cast<std::uint32_t>(word_ * kPartFactors[k] % kModulus);
  }
  for (std::size_t i = 0; i < kPartSize; ++i) {
    for (std::size_t k = 0; k < kNumParts; ++k) {
      words[k] = step(words[k], kMultiplier);
      values[k * kPartSize + i] += words[k];
    }
  }
  word_ = words[kNumParts - 1];
}

void Generator::draw(std::span<std::uint32_t> values) {
  auto draw_some = [&](std::size_t count) {
    for (std::uint32_t& value : values.first(count)) value = draw();
    values = values.subspan(count);
  };
  draw_some(std::min(values.size(), (kBlock - place_ % kBlock) % kBlock));
  for (; values.size() >= kBlock; values = values.subspan(kBlock)) draw_block(values.data());
  draw_some(values.size());
}

Generator& generator() {
  static Generator the_generator;
  return the_generator;
}

// Appends the bytes of a value that are not NUL, at most up to `end`.
char* append_bytes(std::uint64_t value, int size, char* out, const char* end) {
  for (int i = 0; i < size && out != end; ++i) {
    auto c = static_cast<char>(value >> (8 * i) & 0xff);
    if (c != '\0') *out++ = c;
  }
  return out;
}

// Whether one of the word's bytes is zero (A. Mycroft).
bool has_zero_byte(std::uint64_t word) {
  return ((word - 0x0101010101010101) & ~word & 0x8080808080808080) != 0;
}

// Draws `count` values and visits each.
template <class Visit>
void visit_random(std::size_t count, Visit visit) {
  std::uint32_t values[kTableSize];
  while (count > 0) {
    auto drawn = std::span(values).first(std::min(count, kTableSize));
    generator().draw(drawn);
    for (std::uint32_t value : drawn) visit(value);
    count -= drawn.size();
  }
}

std::uint32_t odd_seed(std::uint32_t nibble, std::uint32_t if_zero) {
  return (nibble & 15) == 0 ? if_zero : (nibble & 15) | 1;
}

}  // namespace

void restart_random(std::uint32_t seed) {
  std::array<std::uint32_t, 4> seeds = {odd_seed(seed, 1), odd_seed(seed >> 8, 3),
                                        odd_seed(seed >> 16, 5), odd_seed(seed >> 24, 7)};
  generator().fill(seeds, seeds[0] + seeds[1] + seeds[2] + seeds[3]);
}

void draw_random(std::span<std::uint32_t> values) { generator().draw(values); }

void write_random_bytes(std::size_t size, char* out) {
  const char* end = out + size;
  std::uint32_t block[kBlock];
  // A block has at most as many bytes as these, so all its values are wanted.
  while (static_cast<std::size_t>(end - out) >= sizeof block) {
    generator().draw(block);
    for (std::size_t i = 0; i < kBlock; i += 2) {
      std::uint64_t pair = block[i] | std::uint64_t{block[i + 1]} << 32;
      if (std::endian::native != std::endian::little || has_zero_byte(pair)) {
        out = append_bytes(pair, 8, out, end);
      } else {
        std::memcpy(out, &pair, 8);
        out += 8;
      }
    }
  }
  while (out != end) out = append_bytes(generator().draw(), 4, out, end);
}

void write_random_members(Text members, std::size_t size, char* out) {
  auto count = static_cast<std::uint32_t>(members.size());
  visit_random(size, [&](std::uint32_t value) { *out++ = members[value % count]; });
}

void write_permutation(std::span<std::uint32_t> order) {
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint32_t>(i);
  std::size_t k = 0;
  visit_random(order.size(), [&](std::uint32_t value) {
    std::size_t j = k + value % static_cast<std::uint32_t>(order.size() - k);
    std::swap(order[k++], order[j]);
  });
}

}  // namespace vstring

std::uint32_t rand32(void) { return vstring::generator().draw(); }
