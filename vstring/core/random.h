// Pseudo-random numbers, and texts and permutations made of them. Entry points: restart_random,
// draw_random, write_random_bytes, write_random_members, write_permutation, and the exported rand32
// (vstring/random.h). Tests: tests/unit/random_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "vstring/core/text.h"

namespace vstring {

/// Starts the sequence that belongs to a seed. Only bits 0-3, 8-11, 16-19 and 24-27 matter, the
/// lowest of each four not much: seeds that agree on them give the same sequence.
void restart_random(std::uint32_t seed);

/// Draws values.size() values: what as many calls of rand32 would give.
void draw_random(std::span<std::uint32_t> values);

/// Writes `size` bytes, none of them NUL: the bytes of successive values, the lowest first. What is
/// left of the last value is lost.
void write_random_bytes(std::size_t size, char* out);

/// Writes `size` members, which are at least one, each chosen by one value.
void write_random_members(Text members, std::size_t size, char* out);

/// Fills `order` with 0 .. order.size() - 1 in random order, one value for each.
void write_permutation(std::span<std::uint32_t> order);

}  // namespace vstring
