// The prototypes of all command bodies, expanded from the manifest: a body without a row does not
// compile. Every file of bodies includes this.
#pragma once

#include "vstring/host/args.h"
#include "vstring/host/host.h"

namespace vstring::cmd {

#define COMMAND(entry, required, synopses, summary) Object entry(Args& args, Host& host);
#include "vstring/commands.def"
#undef COMMAND

}  // namespace vstring::cmd
