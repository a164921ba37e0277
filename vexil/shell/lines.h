// Reads lines from a file in big blocks. Entry point: LineReader. Tests: tests/shell/shell_test.py.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexil {

/// A line ends with its newline or with the input. Of a line that no string holds, only so much is
/// kept that it is seen to be too long.
class LineReader {
 public:
  explicit LineReader(int file);
  /// The next line without its newline, valid until the next call; false at the end. Throws
  /// std::runtime_error when the input cannot be read.
  bool next(std::string_view& line);

 private:
  bool fill();
  void keep(std::string_view part);

  int file_;
  std::vector<char> block_;
  std::string_view rest_;  // of the block
  std::string start_;      // of a line that goes on in the next block
};

}  // namespace vexil
