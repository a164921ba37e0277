// The two-way search.
#include "vstring/search/two_way.h"

#include <algorithm>
#include <cstring>

namespace vstring {
namespace {

struct Suffix {
  std::size_t start;
  std::size_t period;
};

// The suffix that is the greatest, by the order of bytes or by its reverse, and its period.
template <class Less>
Suffix greatest_suffix(Text x, Less less) {
  Suffix best{0, 1};
  std::size_t rival = 1, agree = 0;
  while (rival + agree < x.size()) {
    unsigned char a = byte_of(x[rival + agree]), b = byte_of(x[best.start + agree]);
    if (a == b) {
      bool is_round = ++agree == best.period;
      if (is_round) rival += best.period, agree = 0;
    } else if (less(a, b)) {
      rival += agree + 1;
      agree = 0;
      best.period = rival - best.start;
    } else {
      best = {rival, 1};
      rival = best.start + 1;
      agree = 0;
    }
  }
  return best;
}

}  // namespace

TwoWay::TwoWay(Text pattern) : pattern_(pattern) {
  Suffix one = greatest_suffix(pattern, [](unsigned char a, unsigned char b) { return a < b; });
  Suffix other = greatest_suffix(pattern, [](unsigned char a, unsigned char b) { return a > b; });
  Suffix suffix = one.start > other.start ? one : other;
  cut_ = suffix.start;
  period_ = suffix.period;
  is_periodic_ = std::memcmp(pattern.data(), pattern.data() + period_, cut_) == 0;
  if (!is_periodic_) period_ = std::max(cut_, pattern.size() - cut_) + 1;
}

std::size_t TwoWay::next(Text text, Position& at, std::size_t limit) const {
  const char* x = pattern_.data();
  const std::size_t m = pattern_.size();
  while (at.start < limit) {
    const char* y = text.data() + at.start;
    std::size_t right = std::max(cut_, at.known);
    while (right < m && x[right] == y[right]) ++right;
    if (right < m) {
      at = {at.start + right - cut_ + 1, 0};
      continue;
    }
    std::size_t left = cut_;
    while (left > at.known && x[left - 1] == y[left - 1]) --left;
    bool is_found = left <= at.known;
    std::size_t found = at.start;
    at = {at.start + period_, is_periodic_ ? m - period_ : 0};
    if (is_found) return found;
  }
  return Text::npos;
}

}  // namespace vstring
