// The commands encode and decode. Tests: docs/commands/encoding.md,
// tests/transcripts/encoding/encoding.vt.
#include "vstring/encoding/base64.h"
#include "vstring/encoding/block_sort.h"
#include "vstring/encoding/rotation.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

enum class Encoding { Null, Base64, Rot13, Rot, Arotn, BlockSort };

constexpr struct {
  Text name;
  Encoding encoding;
} kEncodings[] = {
    {"null", Encoding::Null}, {"base64", Encoding::Base64}, {"rot13", Encoding::Rot13},
    {"rot", Encoding::Rot},   {"arotn", Encoding::Arotn},   {"bw", Encoding::BlockSort},
};

constexpr int kNumLetters = 26;

// What the last rot[k] or alpharot[k] has said; rot and arotn without an index go by it.
unsigned char rotation_index = 0;

// What the last block sort has left for the way back, which its result does not tell.
std::size_t block_sort_row = 0;

Encoding read_name(Object name) {
  for (const auto& row : kEncodings) {
    if (row.name == text_of(name)) return row.encoding;
  }
  fail("unrecognised encoding `%1'", name);
}

// rot[k] or alpharot[k].
Encoding read_indexed(HostKernelVector* kv, Object indexed) {
  constexpr const char* kInvalid = "invalid encoding";
  Object name = host_element(indexed, 1);
  if (!is_text(name)) fail(kInvalid);
  bool is_rot = text_of(name) == "rot";
  if (!is_rot && text_of(name) != "alpharot") fail(kInvalid);
  Elements indices(host_element(indexed, 2));
  if (indices.size() != 1 || !kv->IsHostInteger32(indices[0])) fail(kInvalid);
  std::int32_t index = kv->HostToInteger32(indices[0]);
  if (is_rot) {
    if (index < 0) fail("`rot' index must be non-negative");
    if (index >= 256) fail("`rot' index must be less than 256");
  } else {
    if (index < 0) fail("`alpharot' index must be non-negative");
    if (index >= kNumLetters) fail("`alpharot' index must be less than 26");
  }
  rotation_index = static_cast<unsigned char>(index);
  return is_rot ? Encoding::Rot : Encoding::Arotn;
}

Encoding read_encoding(HostKernelVector* kv, Object option) {
  if (is_text(option)) return read_name(option);
  bool is_equation = host_type(option) == HOST_TYPE_EQUATION;
  if (!is_equation || !is_text(host_element(option, 1)) ||
      text_of(host_element(option, 1)) != "encoding") {
    fail("second argument must be of the form `encoding = NAME'");
  }
  Object value = host_element(option, 2);
  if (is_text(value)) return read_name(value);
  if (host_type(value) == HOST_TYPE_INDEXED_NAME) return read_indexed(kv, value);
  fail("encoding option takes a string or symbol value");
}

// What encode and decode have in common: argument 1 is a string, argument 2 names an encoding.
Encoding read_arguments(Args& args, Host& host) {
  if (!args.has(1)) fail("argument expected");
  if (!args.is_string(1)) fail("first argument must be a string");
  return args.has(2) ? read_encoding(host.kernel(), args[2]) : Encoding::Base64;
}

Object letters_rotated(Host& host, Text s, int shift) {
  auto places = static_cast<unsigned char>(shift % kNumLetters);
  return host.text(s.size(), [=](char* out) { rotate_letters(s, places, out); });
}

// A text cannot hold a NUL byte: what has one becomes a byte Array.
Object bytes_rotated(Host& host, Text s, int shift) {
  Scratch scratch(s.size() + 1);
  bool has_nul = rotate_bytes(s, static_cast<unsigned char>(shift), scratch.data());
  scratch.data()[s.size()] = '\0';
  if (has_nul) return host.byte_array({scratch.data(), s.size()});
  return host.c_text(scratch.data());
}

Object base64_decoded(Host& host, Text s) {
  Text digits = base64_digits(s);
  std::size_t size = decoded_size(digits.size());
  Scratch scratch(size + 1);
  if (!decode_base64(digits, scratch.data())) fail("invalid encoding");
  Text bytes(scratch.data(), size);
  if (bytes.find('\0') != Text::npos) return host.byte_array(bytes);
  scratch.data()[size] = '\0';
  return host.c_text(scratch.data());
}

}  // namespace

Object cmd::vstring_encode(Args& args, Host& host) {
  Encoding encoding = read_arguments(args, host);
  Text s = args.text(1);
  switch (encoding) {
    case Encoding::Null:
      return args[1];
    case Encoding::Base64:
      return host.text(base64_size(s.size()), [s](char* out) { encode_base64(s, out); });
    case Encoding::Rot13:
      return letters_rotated(host, s, kNumLetters / 2);
    case Encoding::Rot:
      return bytes_rotated(host, s, rotation_index);
    case Encoding::Arotn:
      return letters_rotated(host, s, rotation_index);
    case Encoding::BlockSort:
      break;
  }
  return host.text(s.size(), [s](char* out) { block_sort_row = block_sort(s, out); });
}

Object cmd::vstring_decode(Args& args, Host& host) {
  Encoding encoding = read_arguments(args, host);
  Text s = args.text(1);
  switch (encoding) {
    case Encoding::Null:
      return args[1];
    case Encoding::Base64:
      return base64_decoded(host, s);
    case Encoding::Rot13:
      return letters_rotated(host, s, kNumLetters / 2);
    case Encoding::Rot:
      return bytes_rotated(host, s, 256 - rotation_index);
    case Encoding::Arotn:
      return letters_rotated(host, s, kNumLetters - rotation_index % kNumLetters);
    case Encoding::BlockSort:
      break;
  }
  return host.text(s.size(), [s](char* out) { undo_block_sort(s, block_sort_row, out); });
}

}  // namespace vstring
