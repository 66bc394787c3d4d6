// The node's static addresses, and whether the interface is used through one.
#pragma once

#include <cstdint>

#include "kevacore.h"

// Makes a list of the addresses, which the caller frees; the holder is null
// before. 0, or -1 after a line.
int32_t ZORGetStaticIPList(VLIBCSzList **list);

// Stores 1 when the address that the web server was asked at is static, else 0.
// False after a line, with the value as it was.
bool ZORLoginIPIsStaticIP(int32_t *isStatic);
