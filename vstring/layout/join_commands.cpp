// join, casejoin, implode: texts put together. Tests: docs/commands/layout.md,
// tests/transcripts/layout/split.vt.
#include <cstring>

#include "vstring/charclass.h"
#include "vstring/core/checked.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

constexpr const char* kNoListOfStrings = "first argument must be a list of strings";

// The elements of argument 1, which are not looked at.
Elements read_list(const Args& args, const char* message) {
  if (!args.is_list(1)) fail(message);
  return Elements(args[1]);
}

// How long the texts are together; fails unless all of them are texts.
std::size_t total_length(const Elements& texts) {
  std::size_t length = 0;
  for (Object text : texts) {
    if (!is_text(text)) fail(kNoListOfStrings);
    length = checked_sum(length, text_of(text).size());
  }
  return length;
}

char* put(char* out, Text piece) {
  std::memcpy(out, piece.data(), piece.size());
  return out + piece.size();
}

char capital_of(char c) {
  return ccl_islower(byte_of(c)) != 0 ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

Object cmd::vstring_join(Args& args, Host& host) {
  Elements texts = read_list(args, kNoListOfStrings);
  std::size_t length = total_length(texts);
  Text separator = args.has(2) ? args.string(2, "second argument must be a string") : " ";
  if (texts.empty()) return host.empty_text();
  if (texts.size() == 1) return texts[0];
  length = checked_sum(length, checked_product(separator.size(), texts.size() - 1));
  return host.text(length, [&](char* out) {
    out = put(out, text_of(texts[0]));
    for (std::size_t i = 1; i < texts.size(); ++i) {
      out = put(out, separator);
      out = put(out, text_of(texts[i]));
    }
  });
}

Object cmd::vstring_casejoin(Args& args, Host& host) {
  Elements texts = read_list(args, kNoListOfStrings);
  return host.text(total_length(texts), [&](char* out) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      Text text = text_of(texts[i]);
      char* start = out;
      out = put(out, text);
      if (i != 0 && !text.empty()) *start = capital_of(text[0]);
    }
  });
}

Object cmd::vstring_implode(Args& args, Host& host) {
  Elements texts = read_list(args, "argument must be a list");
  return host.text(total_length(texts), [&](char* out) {
    for (Object text : texts) out = put(out, text_of(text));
  });
}

}  // namespace vstring
