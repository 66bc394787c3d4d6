// The names of the entries of ha.status.
#pragma once

#include <cstdint>

// The entry name for a host selector and a status key; null when the selector
// is refused or the key does not exist (logged).
const char *ZORGetStatusKey(uint32_t selector, uint32_t key);
