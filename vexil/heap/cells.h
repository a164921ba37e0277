// Small objects: cells of 36 sizes, each size in spans of its own, with a free list. A free cell's
// first word is 0, which no object's header is; its second word links it to the next one. Entry
// point: Cells. Tests: tests/unit/heap_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "vexil/heap/arena.h"
#include "vexil/heap/marker.h"
#include "vexil/heap/size_classes.h"

namespace vexil {

class Cells {
 public:
  explicit Cells(Arena& arena) : arena_(arena) {}

  /// A cell for so many granules (1..kSmallGranules), not zeroed; 0 when the arena is full.
  Object take(std::size_t granules) {
    Class& cls = classes_[kSizeClasses.class_of[granules]];
    if (cls.free == 0 && !add_span(cls)) return 0;
    const Object cell = cls.free;
    cls.free = host_words(cell)[1];
    in_use_ += cls.bytes();
    return cell;
  }

  /// Frees every cell that is not marked and clears the marks; fills the freed with a pattern if
  /// asked.
  void sweep(Marker& marker, bool poison);
  std::size_t bytes_in_use() const { return in_use_; }

 private:
  struct Class {
    Object free = 0;
    std::size_t granules = 0;
    std::vector<Arena::Address> spans = {};
    std::size_t bytes() const { return granules * kGranule; }
  };
  struct SpanSweep {
    std::size_t cells_in_use;
    Object first_free;
    Object last_free;
  };
  bool add_span(Class& cls);
  static SpanSweep sweep_span(const Class& cls, Arena::Address span, const Marker& marker,
                              bool poison);
  void sweep_class(Class& cls, Marker& marker, bool poison);

  Arena& arena_;
  std::array<Class, kNumSizeClasses> classes_;
  std::size_t in_use_ = 0;
};

}  // namespace vexil
