// Host values: making them, taking them apart, comparing and printing them. Entry points: the make_ and
// read functions below. Tests: tests/unit/values_test.cpp, tests/transcripts/vexil/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gmpxx.h>

#include "vexil/heap/heap.h"

namespace vexil {

/// Type ids of the host's own; those that modules read are in vstring/object.h.
enum HostType : int {
  kTypeBigInteger = 1,  // integers that do not fit an immediate (31 bits)
  kTypeFloat = 2,
  kTypeIndexedName = 3,
  kTypeProcedure = 4,
  kTypeRecord = 5,
  kTypeForeign = 6,
};

/// What a statement raises. `format` still holds %1..%3; `objects` has those that were given.
struct HostError {
  std::string format;
  std::vector<Object> objects;
  std::string command;  // the command that raised, "" when none did
  /// The message with the objects filled in.
  std::string message() const;
};

/// Raises an error that no command raised.
[[noreturn]] void raise_error(std::string format, std::vector<Object> objects = {});

/// All values live in this one heap, which exists from init_values() on.
Heap& heap();
void init_values(std::size_t heap_limit);
void shut_values();  // disposes of foreign handles

enum class Kind { Integer, Float, String, Name, IndexedName, List, Set, Sequence, Range, Equation,
                  Array, Bytes, Procedure, Record, Foreign };
Kind kind_of(Object object);
/// `string`, `name`, ...: what type(x) gives.
std::string_view kind_name(Kind kind);

Object make_integer(std::int64_t value);
Object make_integer(const mpz_class& value);
Object make_float(double value);
Object make_string(std::string_view text);  // raises when too long; text holds no NUL
Object make_name(std::string_view text);    // the one name with this text
Object make_boolean(int truth);             // 1 true, 0 false, -1 FAIL
Object make_sequence(std::span<const Object> elements);  // flattens nothing
Object make_list(std::span<const Object> elements);
Object make_set(std::span<const Object> elements);  // drops duplicates, keeps first appearance
Object make_range(Object lower, Object upper);
Object make_equation(Object left, Object right);
Object make_indexed_name(Object name, std::span<const Object> indices);
Object make_array(std::span<const Object> elements);      // indices 1..n
Object make_byte_array(std::span<const std::int8_t> bytes);
Object make_procedure(std::uint32_t code);  // an index into the language's table of procedures
Object make_record(std::span<const std::pair<std::string_view, Object>> fields);

bool is_integer(Object object);
bool is_integer32(Object object);
std::int32_t integer32(Object object);   // of is_integer32 objects
mpz_class big_integer(Object object);    // of is_integer objects
double float_value(Object object);
std::string_view text(Object object);    // of a string or name
std::span<const Object> elements(Object object);  // of a list, set, sequence, indices of an indexed name
std::uint32_t procedure_code(Object object);

/// Structural equality (what if() does with an equation and sets use).
bool is_equal(Object a, Object b);

/// Values of names. A name without a value gives 0.
Object value_of(Object name);
void assign(Object name, Object value);

/// The printed form.
std::string printed(Object object);
/// The text that %1 shows in a message: a string's text without quotes, else the printed form.
std::string shown(Object object);

}  // namespace vexil
