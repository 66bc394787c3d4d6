// The name of the calling process as it goes into messages.
#pragma once

#include "zor_core.h"

// Reads the first bytes of the own command line; the field stays as it is when
// they cannot be read (logged).
void getProcessName(char (&name)[ZOR_PROCESS_NAME_SIZE]);
