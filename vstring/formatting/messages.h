// Texts made for readers: messages from templates, the inside of string literals. Entry points:
// format_message, ordinal, escaped_size, write_escaped. Tests: docs/commands/formatting.md,
// tests/transcripts/formatting/formatting.vt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "vstring/core/text.h"

namespace vstring {

/// What a template may ask for of one argument.
struct MessageArgument {
  std::string text;
  std::string ordinal;
};

/// The template with %1 .. %9 replaced by texts, %-1 .. %-9 by ordinals and %% by a percent sign.
/// All else stands as it is, numbers without an argument too; what is inserted is not looked at
/// again. Throws std::bad_alloc, also when the result would be longer than `limit`.
std::string format_message(Text pattern, std::span<const MessageArgument> arguments,
                           std::size_t limit);

/// 1st, 2nd, 3rd, 4th, 11th ...
std::string ordinal(std::int32_t number);

/// The text as the inside of a string literal: \\ \" \n \t \r, other bytes outside 0x20 .. 0x7e as
/// \xhh.
std::size_t escaped_size(Text text);
void write_escaped(Text text, char* out);

}  // namespace vstring
