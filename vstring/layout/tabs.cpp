// Replacing tabs by spaces: only tabs and what moves the column otherwise are looked at.
#include "vstring/layout/tabs.h"

#include "vstring/layout/edits.h"
#include "vstring/layout/runs.h"

namespace vstring {
namespace {

std::size_t stop_of(std::int32_t column) { return static_cast<std::size_t>(column); }

template <class Edits>
class Expander {
 public:
  Expander(Text text, const TabSetting& setting, Edits edits)
      : text_(text), setting_(setting), edits_(edits) {}

  std::size_t run() {
    const ByteSet special(setting_.countbytes ? "\t\n" : "\t\n\b");
    each_member(text_, special, [this](std::size_t at) {
      advance(at - read_);
      read_ = at + 1;
      if (text_[at] == '\t') {
        expand(at);
      } else if (text_[at] == '\n') {
        column_ = 0;
        next_ = 0;
      }
    });
    return edits_.finish();
  }

 private:
  void expand(std::size_t at) {
    std::size_t blanks = width_of_tab();
    edits_.replace(at, at + 1, blanks, ' ');
    advance(blanks);
  }

  // A stop is left behind only by going beyond it, so a tab at a stop has no width. Behind the last
  // stop every tab is one blank.
  std::size_t width_of_tab() const {
    if (setting_.stops.empty()) return setting_.width - column_ % setting_.width;
    return next_ < setting_.stops.size() ? stop(next_) - column_ : 1;
  }

  void advance(std::size_t columns) {
    column_ += columns;
    while (next_ < setting_.stops.size() && column_ > stop(next_)) ++next_;
  }

  std::size_t stop(std::size_t i) const { return stop_of(setting_.stops[i]); }

  Text text_;
  const TabSetting& setting_;
  Edits edits_;
  std::size_t read_ = 0;
  std::size_t column_ = 0;
  std::size_t next_ = 0;  // the first stop at or behind the column
};

// The most columns that a tab can have.
std::uint64_t widest_tab(const TabSetting& setting) {
  return setting.stops.empty() ? setting.width : stop_of(setting.stops.back());
}

}  // namespace

std::size_t room_for_expanded(Text text, const TabSetting& setting) {
  std::uint64_t tabs = count_members(text, ByteSet("\t"));
  std::uint64_t room = text.size() + tabs * (widest_tab(setting) - 1);
  if (room <= kLavishRoom) return static_cast<std::size_t>(room);
  return Expander(text, setting, EditMeasure(text)).run();
}

std::size_t write_expanded(Text text, const TabSetting& setting, char* out, std::size_t room) {
  return Expander(text, setting, EditWriter(text, out, room)).run();
}

}  // namespace vstring
