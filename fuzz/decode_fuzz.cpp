// Any bytes as coded text: decoded and coded again, which must give what was decoded.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vstring/encoding/base64.h"
#include "vstring/encoding/block_sort.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vstring;
  std::string input(reinterpret_cast<const char*>(data), size);
  Text digits = base64_digits(input);
  std::string bytes(decoded_size(digits.size()), ' ');
  if (decode_base64(digits, bytes.data())) {
    std::string coded(base64_size(bytes.size()), ' ');
    encode_base64(bytes, coded.data());
    std::size_t same = bytes.size() / 3 * 4;  // the last digit may have held more bits
    if (Text(coded).substr(0, same) != digits.substr(0, same)) std::abort();
  }
  std::string sorted(size, ' ');
  std::string back(size, ' ');
  std::size_t row = block_sort(input, sorted.data());
  undo_block_sort(sorted, row, back.data());
  if (back != input) std::abort();
  undo_block_sort(input, size / 2, back.data());
  return 0;
}
