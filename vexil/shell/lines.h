// Reads files in big blocks, and lines from them. Entry points: FileReader, LineReader. Tests:
// tests/shell/shell_test.py.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexil {

/// Throws std::runtime_error, "cannot read `NAME': REASON", when the file cannot be read.
class FileReader {
 public:
  /// "-" is standard input.
  explicit FileReader(const std::string& name);
  ~FileReader();
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;

  /// The next bytes, valid until the next call; false at the end.
  bool next(std::string_view& block);

 private:
  [[noreturn]] void fail() const;

  int file_;
  std::string name_;
  std::vector<char> block_;
};

/// A line ends with its newline or with the input. Of a line that no string holds, only so much is
/// kept that it is seen to be too long.
class LineReader {
 public:
  explicit LineReader(const std::string& name) : file_(name) {}
  /// The next line without its newline, valid until the next call; false at the end. Throws
  /// std::bad_alloc when there is no memory for it.
  bool next(std::string_view& line);
  /// Goes past the rest of a line that there was no memory for.
  void skip_line();

 private:
  void keep(std::string_view part);

  FileReader file_;
  std::string_view rest_;  // of the block
  std::string start_;      // of a line that goes on in the next block
};

}  // namespace vexil
