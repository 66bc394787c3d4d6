// The hardware of both nodes, as zorctl shows it: what is not known is null.
#pragma once

#include <string>

#include "output.h"
#include "zor_hwinfo_core.h"

// One node's record, and how far it could be read.
struct NodeHardware {
    const char *node;       // "local", "remote"
    bool is_known = false;  // the node has a section
    bool is_whole = false;  // and all of its enclosures were read
    ZORHWHostInfo host = {};
};

struct HardwarePicture {
    NodeHardware local = {"local"};
    NodeHardware remote = {"remote"};
};

// Reads both nodes under the hardware lock. False when that fails.
bool ReadHardware(HardwarePicture *picture);

// What people call a key of a row, or one item of its list: "fan", "used disks".
std::string HardwareLabel(const std::string &key);

// A part of the picture: rows of an array, each an object.
struct HardwarePart {
    const char *name;
    const char *description;
    Json (*rows)(const HardwarePicture &picture);
};

// Hosts, chain, enclosures, fans, power supplies, temperatures, disks, answers.
extern const HardwarePart kHardwareParts[];
extern const size_t kHardwarePartCount;
