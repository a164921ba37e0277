// Type ids of the host's own; those that modules read are in vstring/object.h.
#pragma once

namespace vexil {

enum HostType : int {
  kTypeBigInteger = 1,  // integers that do not fit an immediate (31 bits)
  kTypeFloat = 2,
  kTypeProcedure = 4,  // word 1: its code, word 2: its program, then the values it took along
  kTypeRecord = 5,     // a name and a value for each field, in turn
  kTypeForeign = 6,
  kTypeQuoted = 9,    // word 1: a sequence that is to be passed to a procedure as it stands
  kTypeProgram = 10,  // stands for a statement whose procedures exist
};

/// Words of an Array that the collector looks at.
enum ArrayLayout : unsigned {
  kArrayDataType = 1,   // word 1: HOST_RTABLE_ANY, ...
  kArrayDataStart = 2,  // word 2: the index of the first word of the elements
};

}  // namespace vexil
