// The flag behind check_interrupt(); see interrupt.h.
#include "vexil/values/interrupt.h"

namespace vexil {

volatile std::sig_atomic_t interrupt_requested = 0;
volatile std::sig_atomic_t is_prompting = 0;

}  // namespace vexil
