// The printed form, built in one growing text with a stack of the values that are open: nesting of
// any depth is printed.
#include <charconv>
#include <cmath>

#include "vexil/values/arrays.h"
#include "vexil/values/integers.h"
#include "vexil/values/values.h"

namespace vexil {
namespace {

// How tightly the language's forms bind, from loosest to tightest. A part that binds less tightly
// than its place asks for goes into parentheses. A number's minus sign binds tightly enough
// anywhere.
enum Binding : int {
  kBindsProcedure,
  kBindsSequence,
  kBindsElement,  // what may stand between commas
  kBindsEquation = kBindsElement,
  kBindsEquationSide,
  kBindsRange = kBindsEquationSide,
  kBindsRangeSide,
};

constexpr std::size_t kMaxPrinted = HOST_MAX_TEXT * 4;  // what the longest text may need
constexpr int kMaxConversions = 8;  // handles within what a handle's converter gives

std::function<std::string(Object)> procedure_printer;
std::function<Object(Object)> foreign_converter;

class Printer {
 public:
  std::string print(Object object) {
    if (kind_of(object) == Kind::Sequence && elements(object).empty()) return {};
    open(object, kBindsProcedure, 0);
    while (!open_.empty()) step();
    return std::move(out_);
  }

 private:
  // A value whose parts are being printed.
  struct Frame {
    Kind kind;
    std::span<const Object> parts;
    std::size_t next;  // the part to print next
    std::string_view close;
    Binding of_parts;
    int conversions;
  };

  void step();
  void open(Object object, Binding place, int conversions);
  void open_composite(Object object, Binding place, int conversions);
  void open_sequence(Object object, Binding place, int conversions);
  void open_pair(Object object, Binding own, Binding place, int conversions);
  void open_foreign(Object handle, Binding place, int conversions);
  void push(Object object, std::string_view opening, std::string_view closing, Binding of_parts,
            int conversions);
  void print_separator(const Frame& frame);
  void print_float(double value);
  void print_procedure(Object procedure, Binding place);

  std::string out_;
  std::vector<Frame> open_;
};

std::span<const Object> words_behind_header(Object object) {
  return {host_words(object) + 1, host_length(object) - 1};
}

void append_quoted(std::string& out, std::string_view text, char quote) {
  constexpr char kDigits[] = "0123456789abcdef";
  out += quote;
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    switch (c) {
      case '\n':
        out += "\\n";
        continue;
      case '\t':
        out += "\\t";
        continue;
      case '\r':
        out += "\\r";
        continue;
      case '\\':
        out += "\\\\";
        continue;
      default:
        break;
    }
    if (c == quote) {
      out += {'\\', quote};
    } else if (byte >= 0x20 && byte < 0x7f) {
      out += c;
    } else {
      out += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  out += quote;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_word_character(char c) {
  return is_digit(c) || c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Whether a name reads back without backquotes: the language's own words do not.
bool is_plain_name(std::string_view name) {
  if (name.empty() || is_digit(name[0])) return false;
  for (std::string_view word : {"and", "or", "not", "div", "mod", "nan", "inf", "_"}) {
    if (name == word) return false;
  }
  for (char c : name) {
    if (!is_word_character(c)) return false;
  }
  return true;
}

void append_name(std::string& out, std::string_view name) {
  if (is_plain_name(name)) {
    out += name;
  } else {
    append_quoted(out, name, '`');
  }
}

void append_bytes(std::string& out, std::span<const std::uint8_t> bytes) {
  out += "bytes(";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i != 0) out += ", ";
    out += std::to_string(bytes[i]);
  }
  out += ')';
}

// Finishes the innermost open value, or prints its next part, which may open in turn.
void Printer::step() {
  if (out_.size() > kMaxPrinted) raise_out_of_memory();
  Frame& frame = open_.back();
  if (frame.next == frame.parts.size()) {
    out_ += frame.close;
    open_.pop_back();
    return;
  }
  if (frame.next != 0) print_separator(frame);
  const Object part = frame.parts[frame.next++];
  if (frame.kind == Kind::IndexedName && frame.next == 2) {  // the indices, in its own brackets
    return push(part, "", "", kBindsElement, frame.conversions);
  }
  open(part, frame.of_parts, frame.conversions);
}

void Printer::print_separator(const Frame& frame) {
  const bool is_odd = frame.next % 2 != 0;
  switch (frame.kind) {
    case Kind::Range:
      out_ += "..";
      break;
    case Kind::Equation:
      out_ += " = ";
      break;
    case Kind::Record:
      out_ += is_odd ? " = " : ", ";
      break;
    case Kind::IndexedName:
      out_ += '[';
      break;
    default:
      out_ += ", ";
  }
}

void Printer::open(Object object, Binding place, int conversions) {
  switch (kind_of(object)) {
    case Kind::Integer:
      out_ += integer_text(object);
      break;
    case Kind::Float:
      print_float(float_value(object));
      break;
    case Kind::String:
      append_quoted(out_, text(object), '"');
      break;
    case Kind::Name:
      append_name(out_, text(object));
      break;
    case Kind::Bytes:
      append_bytes(out_, bytes(object));
      break;
    case Kind::Procedure:
      print_procedure(object, place);
      break;
    case Kind::Foreign:
      open_foreign(object, place, conversions);
      break;
    default:
      open_composite(object, place, conversions);
  }
}

void Printer::open_composite(Object object, Binding place, int conversions) {
  switch (kind_of(object)) {
    case Kind::List:
      return push(object, "[", "]", kBindsElement, conversions);
    case Kind::Set:
      return push(object, "{", "}", kBindsElement, conversions);
    case Kind::Record:
      return push(object, "record(", ")", kBindsEquationSide, conversions);
    case Kind::Range:
      return open_pair(object, kBindsRange, place, conversions);
    case Kind::Equation:
      return open_pair(object, kBindsEquation, place, conversions);
    case Kind::IndexedName:
      return push(object, "", "]", kBindsElement, conversions);
    case Kind::Array: {
      const Object contents[] = {array_contents(object)};
      return push(make_list(contents), "array(", ")", kBindsElement, conversions);
    }
    default:
      return open_sequence(object, place, conversions);
  }
}

// A sequence of one element needs the empty one behind it to read back as a sequence.
void Printer::open_sequence(Object object, Binding place, int conversions) {
  if (host_type(object) == kTypeQuoted) object = host_element(object, 1);
  const std::size_t size = host_num_elements(object);
  if (size == 0) {
    out_ += "()";
  } else if (place > kBindsSequence) {
    push(object, "(", size == 1 ? ", ())" : ")", kBindsElement, conversions);
  } else {
    push(object, "", size == 1 ? ", ()" : "", kBindsElement, conversions);
  }
}

void Printer::open_pair(Object object, Binding own, Binding place, int conversions) {
  const auto of_sides = static_cast<Binding>(own + 1);
  if (own < place) {
    push(object, "(", ")", of_sides, conversions);
  } else {
    push(object, "", "", of_sides, conversions);
  }
}

void Printer::open_foreign(Object handle, Binding place, int conversions) {
  if (!foreign_converter || conversions == kMaxConversions) {
    out_ += "foreign";
  } else {
    open(foreign_converter(handle), place, conversions + 1);
  }
}

void Printer::push(Object object, std::string_view opening, std::string_view closing,
                   Binding of_parts, int conversions) {
  out_ += opening;
  open_.push_back(
      {kind_of(object), words_behind_header(object), 0, closing, of_parts, conversions});
}

void Printer::print_float(double value) {
  if (std::isnan(value)) {
    out_ += "nan";
    return;
  }
  if (std::isinf(value)) {
    out_ += value < 0 ? "-inf" : "inf";
    return;
  }
  // As few digits as read back the same; in full where that is not much longer than with an
  // exponent.
  const double size = std::fabs(value);
  const bool is_plain = size == 0.0 || (size >= 1e-4 && size < 1e16);
  char digits[32];
  const char* end =
      std::to_chars(digits, digits + sizeof digits, value,
                    is_plain ? std::chars_format::fixed : std::chars_format::scientific)
          .ptr;
  const std::string_view number(digits, static_cast<std::size_t>(end - digits));
  const std::size_t exponent = number.find('e');
  out_ += number.substr(0, exponent);
  if (exponent == std::string_view::npos) {
    if (number.find('.') == std::string_view::npos) out_ += ".0";
    return;
  }
  out_ += number[exponent + 1] == '-' ? "e-" : "e";
  out_ += number.substr(number.find_first_not_of('0', exponent + 2));
}

void Printer::print_procedure(Object procedure, Binding place) {
  const std::string source = procedure_printer ? procedure_printer(procedure) : "procedure";
  out_ += place > kBindsProcedure ? '(' + source + ')' : source;
}

}  // namespace

void set_procedure_printer(std::function<std::string(Object)> print) {
  procedure_printer = std::move(print);
}

void set_foreign_converter(std::function<Object(Object)> convert) {
  foreign_converter = std::move(convert);
}

std::string printed(Object object) { return Printer().print(object); }

std::string shown(Object object) {
  if (!host_is_immediate(object) && host_type(object) == HOST_TYPE_STRING) {
    return std::string(text(object));
  }
  return printed(object);
}

}  // namespace vexil
