// Class specifications such as "a-z", "^0-9", "[abc]", ":digit:". Entry point: expand_class_spec.
#pragma once

#include <optional>

#include "vstring/core/byte_set.h"
#include "vstring/core/text.h"

namespace vstring {

/// The members of the class that a specification describes; nothing when it holds a descending
/// range. Brackets around it are taken off, as many as there are. ":name:" is a named class, "^..."
/// a complement; a backslash makes the next byte an ordinary member. Byte 0 is never a member.
std::optional<ByteSet> expand_class_spec(Text spec);

}  // namespace vstring
