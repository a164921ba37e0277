// The engine's errors. Entry points: Error, record_error. The one table of their texts is in
// errors.cpp.
#pragma once

namespace vstring::regex {

enum class Error {
  None,
  NullArgument,
  TooBig,
  OutOfSpace,
  TooManyGroups,
  UnmatchedGroup,
  JunkOnEnd,
  NothingToRepeat,
  EmptyOperand,
  NestedRepetition,
  TrailingBackslash,
  InvalidRange,
  UnmatchedSet,
  InternalUrp,
  InternalDisaster,
  NullParameter,
  CorruptedProgram,
  CorruptedPointers,
  MemoryCorruption,
  InternalFoulup,
};

/// Records the error's text as vrx_regerror does.
void record_error(Error error);
/// Forgets the last error, so that a later failure does not show it.
void clear_error();
/// The last error's text, "" when there is none.
const char* last_error();

}  // namespace vstring::regex
