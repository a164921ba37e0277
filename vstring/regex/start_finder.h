// Where in a text a match may start. Entry point: StartFinder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "vstring/core/text.h"
#include "vstring/regex/limits.h"
#include "vstring/regex/prepared.h"
#include "vstring/regex/start_pairs.h"
#include "vstring/search/exact.h"
#include "vstring/search/start_filter.h"

namespace vstring::regex {

class StartFinder {
 public:
  StartFinder(const Prepared& prepared, Text text, const Limits& limits = kUsualLimits);

  /// The first position from `position` on at which a match may start; null when there is none. To
  /// be called with positions that no match found before has gone past.
  const char* next(const char* position);

 private:
  // How the places are found.
  enum class By : std::uint8_t {
    Nothing,  // a match may start anywhere
    Literal,  // every match begins with a literal
    Turn,     // every match begins with a run of bytes, and something known comes after it
    Byte,     // what a match can begin with
  };

  void find_turn();
  void search_for(Text literal);
  const char* next_literal(const char* position) const;
  const char* next_turn(const char* position) const;
  const char* next_byte(const char* position);

  const Prepared& prepared_;
  Text text_;
  const Limits& limits_;
  const char* end_;  // of the text
  By by_ = By::Nothing;
  std::int32_t turn_ = kNone;             // the Literal or Byte that comes after the run
  std::optional<ExactSearcher> literal_;  // the one to be searched for
  char literal_byte_ = '\0';              // its first byte
  std::size_t num_tried_ = 0;             // positions found by their first byte alone
  std::optional<StartPairs> pairs_;       // these two are made when enough of them have been tried
  StartFilter filter_;
};

}  // namespace vstring::regex
