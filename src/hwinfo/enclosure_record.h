// The record of one enclosure.
#pragma once

#include <cstdint>

#include "zor_hwinfo_core.h"

// Fills the record from the section of a serial number, which may be the
// record's own. 0 also when there is no such section; -1 after a line.
int32_t HWReadAEncInfo(const char *serial, ZORHWEncInfo *enc);
