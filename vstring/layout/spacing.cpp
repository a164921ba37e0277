// White space taken away, squeezed and added.
#include "vstring/layout/spacing.h"

#include <algorithm>
#include <cstring>

#include "vstring/layout/edits.h"
#include "vstring/layout/runs.h"

namespace vstring {
namespace {

char* put(char* out, Text piece) {
  std::memcpy(out, piece.data(), piece.size());
  return out + piece.size();
}

}  // namespace

Text trimmed_left(Text text, const ByteSet& set) { return text.substr(find_other(text, set)); }

Text trimmed_right(Text text, const ByteSet& set) {
  while (!text.empty() && set.contains(byte_of(text.back()))) text.remove_suffix(1);
  return text;
}

std::size_t write_squeezed(Text text, char* out) {
  EditWriter edits(text, out, text.size());
  each_run(text, kBlanks, [&](std::size_t begin, std::size_t end, bool is_blank) {
    bool is_squeezed = end - begin == 1 && text[begin] == ' ';
    if (is_blank && !is_squeezed) edits.replace(begin, end, 1, ' ');
  });
  return edits.finish();
}

std::size_t write_without_blanks(Text text, char* out) {
  EditWriter edits(text, out, text.size());
  each_run(text, kBlanks, [&](std::size_t begin, std::size_t end, bool is_blank) {
    if (is_blank) edits.replace(begin, end, 0, ' ');
  });
  return edits.finish();
}

std::size_t count_lines(Text text) {
  constexpr ByteSet newline("\n");
  bool has_rest = !text.empty() && text.back() != '\n';
  return count_members(text, newline) + (has_rest ? 1 : 0);
}

void write_indented(Text text, Text prefix, char* out) {
  while (!text.empty()) {
    std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    out = put(put(out, prefix), text.substr(0, end));
    text.remove_prefix(end);
  }
}

}  // namespace vstring
