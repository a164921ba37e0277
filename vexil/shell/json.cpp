// Values as JSON; see json.h. Integers have any size, so numbers are written here; texts by the
// JSON library.
#include "vexil/shell/json.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "vexil/language/depth.h"
#include "vexil/services/services.h"

namespace vexil {

namespace {

// The texts of bytes above 127 take two bytes in UTF-8.
std::string to_utf8(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xc0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3f));
    }
  }
  return utf8;
}

void append_elements(std::string& out, std::span<const Object> elements) {
  out += '[';
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (i > 0) out += ", ";
    append_json(out, elements[i]);
  }
  out += ']';
}

void append_tagged(std::string& out, const char* tag, std::span<const Object> elements) {
  out.append("{\"").append(tag).append("\": ");
  append_elements(out, elements);
  out += '}';
}

void append_text(std::string& out, const char* tag, std::string_view text) {
  out.append("{\"").append(tag).append("\": ");
  append_json_string(out, text);
  out += '}';
}

void append_name(std::string& out, Object name) {
  if (name == make_boolean(1)) {
    out += "true";
  } else if (name == make_boolean(0)) {
    out += "false";
  } else {
    append_text(out, "name", text(name));
  }
}

void append_float(std::string& out, Object value) {
  const bool is_finite = std::isfinite(float_value(value));
  const std::string number = printed(value);
  out += R"({"float": )" + (is_finite ? number : '"' + number + '"') + '}';
}

void append_bytes(std::string& out, std::span<const std::uint8_t> bytes) {
  out += "{\"bytes\": [";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) out += ", ";
    out += std::to_string(bytes[i]);
  }
  out += "]}";
}

void append_index(std::string& out, Object indexed) {
  out += R"({"index": [)";
  append_json(out, indexed_base(indexed));
  for (Object index : elements(indexed)) {
    out += ", ";
    append_json(out, index);
  }
  out += "]}";
}

void append_record(std::string& out, Object record) {
  out += R"({"record": {)";
  const char* separator = "";
  for (const auto& [name, value] : fields(record)) {
    out += separator;
    append_json_string(out, text(name));
    out += ": ";
    append_json(out, value);
    separator = ", ";
  }
  out += "}}";
}

void append_foreign(std::string& out, Object handle) {
  out += R"({"foreign": )";
  append_json(out, foreign_value(handle));
  out += '}';
}

void append_pair(std::string& out, const char* tag, Object object) {
  const auto [left, right] = sides(object);
  const Object both[] = {left, right};
  append_tagged(out, tag, both);
}

}  // namespace

void append_json_string(std::string& out, std::string_view text) {
  out += nlohmann::json(to_utf8(text)).dump();
}

void append_json(std::string& out, Object value) {
  check_depth();
  switch (kind_of(value)) {
    case Kind::Integer:
      out += printed(value);
      return;
    case Kind::Float:
      append_float(out, value);
      return;
    case Kind::String:
      append_json_string(out, text(value));
      return;
    case Kind::Name:
      append_name(out, value);
      return;
    case Kind::IndexedName:
      append_index(out, value);
      return;
    case Kind::List:
      append_elements(out, elements(value));
      return;
    case Kind::Set:
      append_tagged(out, "set", elements(value));
      return;
    case Kind::Sequence:
      append_tagged(out, "seq", elements(value));
      return;
    case Kind::Range:
      append_pair(out, "range", value);
      return;
    case Kind::Equation:
      append_pair(out, "equation", value);
      return;
    case Kind::Array:
      append_tagged(out, "array", elements(array_contents(value)));
      return;
    case Kind::Bytes:
      append_bytes(out, bytes(value));
      return;
    case Kind::Procedure:
      append_text(out, "procedure", printed(value));
      return;
    case Kind::Record:
      append_record(out, value);
      return;
    case Kind::Foreign:
      append_foreign(out, value);
      return;
  }
}

}  // namespace vexil
