// The text of an error: its message with the objects filled in.
#include <algorithm>

#include "vexil/values/values.h"

namespace vexil {
namespace {

// 1st, 2nd, 3rd, 4th, 11th, 21st; what is no integer stays as it is shown.
std::string ordinal(Object object) {
  std::string number = shown(object);
  if (!is_integer(object)) return number;
  const char last = number.back();
  const bool is_teen = number.size() > 1 && number[number.size() - 2] == '1';
  if (is_teen || last == '0' || last > '3') return number + "th";
  return number + (last == '1' ? "st" : last == '2' ? "nd" : "rd");
}

}  // namespace

// A message without objects is text as it stands, per cent signs and all.
std::string HostError::message() const {
  if (objects.empty()) return format;
  std::string filled;
  for (std::size_t i = 0; i < format.size(); ++i) {
    const bool is_ordinal = format.compare(i, 2, "%-") == 0;
    const std::size_t digit = i + (is_ordinal ? 2 : 1);
    const char selector = format[i] == '%' && digit < format.size() ? format[digit] : '\0';
    const std::size_t index = static_cast<std::size_t>(selector - '1');
    if (selector == '%' && !is_ordinal) {
      filled += '%';
    } else if (selector >= '1' && selector <= '3' && index < objects.size()) {
      if (objects[index] != 0)
        filled += is_ordinal ? ordinal(objects[index]) : shown(objects[index]);
    } else {
      filled += format[i];
      continue;
    }
    i = digit;
  }
  return filled;
}

}  // namespace vexil
