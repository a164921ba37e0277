/* A module that was built for a host with more services than there are. */
#include "vstring/kernel_vector.h"

const HostModuleCommand HostModuleCommands[] = {{0, 0, 0, 0, 0, 0}};
const int HostModuleServices = HOST_NUM_SERVICES + 1;
