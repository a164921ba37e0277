// Spans of cells, and their sweep.
#include "vexil/heap/cells.h"

#include <cstring>

namespace vexil {
namespace {

constexpr std::size_t kSpan = 65536;
constexpr std::size_t kSpanPages = kSpan / Arena::kPage;
constexpr int kPoison = 0xdb;

Object reference_to(Arena::Address address) { return static_cast<Object>(address); }

}  // namespace

bool Cells::add_span(Class& cls) {
  cls.granules = kSizeClasses.granules[static_cast<std::size_t>(&cls - classes_.data())];
  if (cls.spans.size() == cls.spans.capacity()) cls.spans.reserve(2 * cls.spans.size() + 4);
  const Arena::Address span = arena_.take(kSpanPages, Arena::End::Low);
  if (span == 0) return false;
  cls.spans.push_back(span);
  for (std::size_t at = kSpan / cls.bytes() * cls.bytes(); at != 0;) {
    at -= cls.bytes();
    std::uint32_t* words = host_words(reference_to(span + at));
    words[0] = 0;
    words[1] = cls.free;
    cls.free = reference_to(span + at);
  }
  return true;
}

void Cells::sweep(Marker& marker, bool poison) {
  in_use_ = 0;
  for (Class& cls : classes_) sweep_class(cls, marker, poison);
}

// Rebuilds the free list in the order of addresses; spans without an object go back to the arena.
void Cells::sweep_class(Class& cls, Marker& marker, bool poison) {
  cls.free = 0;
  Object last = 0;
  std::size_t num_kept = 0;
  for (Arena::Address span : cls.spans) {
    if (!marker.has_marks(span, kSpan)) {
      if (poison) std::memset(host_words(reference_to(span)), kPoison, kSpan);
      arena_.give_back(span, kSpanPages);
      continue;
    }
    const SpanSweep swept = sweep_span(cls, span, marker, poison);
    marker.clear(span, kSpan);
    cls.spans[num_kept++] = span;
    in_use_ += swept.cells_in_use * cls.bytes();
    if (swept.first_free == 0) continue;
    (last == 0 ? cls.free : host_words(last)[1]) = swept.first_free;
    last = swept.last_free;
  }
  cls.spans.resize(num_kept);
}

Cells::SpanSweep Cells::sweep_span(const Class& cls, Arena::Address span, const Marker& marker,
                                   bool poison) {
  SpanSweep swept{0, 0, 0};
  const std::size_t bytes = cls.bytes();
  for (Arena::Address at = span; at + bytes <= span + kSpan; at += bytes) {
    if (marker.is_marked(at)) {
      ++swept.cells_in_use;
      continue;
    }
    const Object cell = reference_to(at);
    std::uint32_t* words = host_words(cell);
    if (poison && words[0] != 0) std::memset(words, kPoison, bytes);
    words[0] = 0;
    words[1] = 0;
    (swept.last_free == 0 ? swept.first_free : host_words(swept.last_free)[1]) = cell;
    swept.last_free = cell;
  }
  return swept;
}

}  // namespace vexil
