// Texts between pages that must not be touched: a read past them ends the test.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace reference {

/// One text at a time, of up to a page.
class Fenced {
 public:
  Fenced() {
    page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* block = mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    middle_ = static_cast<char*>(block) + page_;
    mprotect(middle_, page_, PROT_READ | PROT_WRITE);
  }
  ~Fenced() { munmap(middle_ - page_, 3 * page_); }
  std::string_view at_start(std::string_view text) {
    return {std::copy(text.begin(), text.end(), middle_) - text.size(), text.size()};
  }
  std::string_view at_end(std::string_view text) {
    char* start = middle_ + page_ - text.size();
    std::copy(text.begin(), text.end(), start);
    return {start, text.size()};
  }

 private:
  std::size_t page_;
  char* middle_;
};

}  // namespace reference
