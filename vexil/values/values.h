// Host values: making them, taking them apart, comparing and printing them. Entry points: the make_
// and read functions below. Tests: tests/unit/values_test.cpp, tests/transcripts/vexil/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vexil/heap/heap.h"

namespace vexil {

/// All values live in this one heap, which exists from init_values() on.
Heap& heap();
void init_values(std::size_t heap_limit);
void shut_values();  // disposes of foreign handles

enum class Kind {
  Integer,
  Float,
  String,
  Name,
  IndexedName,
  List,
  Set,
  Sequence,
  Range,
  Equation,
  Array,
  Bytes,
  Procedure,
  Record,
  Foreign
};
Kind kind_of(Object object);
/// `string`, `name`, ...: what type(x) gives.
std::string_view kind_name(Kind kind);

Object make_integer(std::int64_t value);
Object make_float(double value);
Object make_string(std::string_view text);               // raises when too long; text holds no NUL
Object make_name(std::string_view text);                 // the one name with this text
Object make_boolean(int truth);                          // 1 true, 0 false, -1 FAIL
Object make_sequence(std::span<const Object> elements);  // flattens nothing
Object make_list(std::span<const Object> elements);
Object make_set(std::span<const Object> elements);  // drops duplicates, keeps first appearance
Object make_range(Object lower, Object upper);
Object make_equation(Object left, Object right);
Object make_indexed_name(Object name, std::span<const Object> indices);
Object make_array(std::span<const Object> elements);  // indices 1..n
Object make_byte_array(std::span<const std::uint8_t> bytes);
/// code is an index into the language's table of procedures; captured are the values that it took
/// along from the procedures around it.
/// `program`: an object that is kept as long as this one is.
Object make_procedure(std::uint32_t code, Object program, std::span<const Object> captured = {});
Object make_record(std::span<const std::pair<std::string_view, Object>> fields);

bool is_integer(Object object);
bool is_integer32(Object object);
std::int32_t integer32(Object object);  // of is_integer32 objects
double float_value(Object object);
std::string_view text(Object object);  // of a string or name
std::span<const Object> elements(
    Object object);  // of a list, set, sequence, indices of an indexed name
std::uint32_t procedure_code(Object object);
std::span<const Object> captured_values(Object procedure);
/// Both sides of an equation, both endpoints of a range.
std::pair<Object, Object> sides(Object object);
Object indexed_base(Object object);   // the name (or indexed name) in front of the indices
Object array_contents(Object array);  // the list of its elements; nested for several dimensions
std::span<const std::uint8_t> bytes(Object array);             // the elements of a byte Array
std::vector<std::pair<Object, Object>> fields(Object record);  // names and values

/// Structural equality (what if() does with an equation and sets use).
bool is_equal(Object a, Object b);

/// Values of names. A name without a value gives 0. Raises for the names that are constants.
Object value_of(Object name);
void assign(Object name, Object value);
/// Every name there is (for completion).
void for_each_name(const std::function<void(Object)>& visit);

/// How values that only higher layers know are shown: a procedure by its source, a foreign handle
/// by what its converter gives. Each layer sets its own.
void set_procedure_printer(std::function<std::string(Object procedure)> print);
void set_foreign_converter(std::function<Object(Object handle)> convert);

/// The printed form. A text in backquotes has the escapes of a string, and \` in place of \". A
/// sequence of one element reads `a, ()`; an Array of several dimensions shows as nested lists.
std::string printed(Object object);
/// The text that %1 shows in a message: a string's text without quotes, else the printed form.
std::string shown(Object object);

}  // namespace vexil
