// Breaking a text into lines: words and runs of white space in turn.
#include "vstring/layout/wrap.h"

#include "vstring/layout/edits.h"
#include "vstring/layout/runs.h"

namespace vstring {
namespace {

constexpr std::size_t kTabWidth = 8;

template <class Edits>
class Wrapper {
 public:
  Wrapper(Text text, const WrapStyle& style, Edits edits)
      : text_(text), style_(style), edits_(edits) {}

  std::size_t run() {
    each_run(text_, kBlanks, [this](std::size_t begin, std::size_t end, bool is_blank) {
      if (!is_blank) {
        add_word(begin, end);
      } else if (style_.obeyspaces) {
        for (std::size_t at = begin; at < end; ++at) add_obeyed(at);
      } else {
        add_blanks(begin, end);
      }
    });
    return edits_.finish();
  }

 private:
  // A word is never broken: one that is wider than a line stands in a line of its own. The white
  // space before it stays at the end of the line before.
  void add_word(std::size_t begin, std::size_t end) {
    std::size_t length = end - begin;
    bool is_too_wide = style_.width < column_ + length;
    if (is_too_wide && begin != 0 && (style_.obeylines || !is_line_ended_)) start_line(begin);
    column_ += length;
  }

  // Of a run only the first stays, and what counts or ends a line by itself. A newline that does
  // not end a line is one column wide, and the next word does not start another line behind it.
  void add_blanks(std::size_t begin, std::size_t end) {
    if (!add_by_itself(begin)) keep(begin);
    for (std::size_t at = begin + 1; at < end; ++at) {
      if (!add_by_itself(at)) edits_.replace(at, at + 1, 0, ' ');
    }
  }

  // A white space character where all of them are obeyed.
  void add_obeyed(std::size_t at) {
    if (add_by_itself(at)) return;
    if (text_[at] == '\t') {
      expand_tab(at);
    } else {
      keep(at);
    }
    if (column_ > style_.width) {
      start_line(at + 1);
      is_line_ended_ = true;
    }
  }

  // Keeps a tab that is not to be expanded and a newline that is to be obeyed, wherever they stand.
  bool add_by_itself(std::size_t at) {
    if (text_[at] == '\t' && (style_.countbytes || !style_.expandtabs)) {
      keep(at);
      return true;
    }
    if (text_[at] == '\n' && style_.obeylines) {
      is_line_ended_ = true;
      column_ = 0;
      return true;
    }
    return false;
  }

  void keep(std::size_t at) {
    ++column_;
    is_line_ended_ = text_[at] == '\n';
  }

  void expand_tab(std::size_t at) {
    std::size_t blanks = kTabWidth - column_ % kTabWidth;
    edits_.replace(at, at + 1, blanks, ' ');
    column_ += blanks;
    is_line_ended_ = false;
  }

  void start_line(std::size_t at) {
    edits_.replace(at, at, 1, '\n');
    column_ = 0;
  }

  Text text_;
  WrapStyle style_;
  Edits edits_;
  std::size_t column_ = 0;
  bool is_line_ended_ = false;  // the last character written is a newline
};

}  // namespace

// Where white space is not obeyed nothing is added but a newline before a word, which has at least
// one white space character before it.
std::size_t room_for_wrapped(Text text, const WrapStyle& style) {
  if (!style.obeyspaces && text.size() <= kLavishRoom / 2) return text.size() + text.size() / 2;
  return Wrapper(text, style, EditMeasure(text)).run();
}

std::size_t write_wrapped(Text text, const WrapStyle& style, char* out, std::size_t room) {
  return Wrapper(text, style, EditWriter(text, out, room)).run();
}

}  // namespace vstring
