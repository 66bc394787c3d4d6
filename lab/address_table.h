// The IPv4 addresses of this machine.
#pragma once

#include <map>
#include <string>

struct Address {
    std::string text;
    bool is_static;  // kept for good: not leased by DHCP, not link-local by chance
};

// The first address of each interface, by the kernel's name.
std::map<std::string, Address> ReadAddresses();
