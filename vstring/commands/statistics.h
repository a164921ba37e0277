// Letter statistics, as used in text analysis and classical cryptanalysis. Degenerate texts give
// not-a-number, -0.0 or kNoCorrelation, never an error.
#pragma once

#include <cstdint>

#include "vstring/core/histogram.h"
#include "vstring/core/text.h"

namespace vstring {

/// Shannon entropy in bits a byte; -0.0 for texts of one repeated byte and for "".
double entropy(Text text);
/// Index of coincidence: the probability that two bytes picked from different places are equal.
double index_of_coincidence(Text text);
/// The probability that a byte of s equals a byte of t.
double mutual_index_of_coincidence(Text s, Text t);
/// Mean byte value.
double mean_byte(Text text);

struct ChiSquare {
  double value;        // against equal counts of the values 1..255
  double probability;  // of a larger value, from a table of the normal approximation
};
ChiSquare chi_square(Text text);

/// What serial_correlation gives when all bytes are equal, and for "".
inline constexpr double kNoCorrelation = -100000.0;
/// Correlation of each byte with the next one, the text taken as a ring.
double serial_correlation(Text text);

int num_distinct(Text text);

/// Greatest common divisor of the distances between equal runs of three bytes or more whose first
/// one starts in the first half of the text: a multiple of the key length of a Vigenere cipher. 0:
/// none.
std::int32_t kasiski_divisor(Text text);

}  // namespace vstring
