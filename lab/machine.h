// What the kernel says of this machine.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

// An Ethernet port. The name is the one that an appliance's port would have:
// "ethK", with the number of the kernel's name if that is of this form.
struct Port {
    std::string name;
    std::string kernel_name;
    std::string address;  // the first IPv4 address; may be empty
    std::string mac;
    std::string bond;  // the kernel's name of the bond that it is a member of; may be empty
    bool has_static_ip = false;
    bool is_up = false;
    int speed_mbit = -1;  // -1: no link
};

// At most eight ports, in the order of their numbers.
std::vector<Port> ReadPorts();

// A bond of the machine, named "bondK" like an appliance's.
struct Bond {
    std::string name;
    std::string kernel_name;
    std::string address;
    bool has_static_ip = false;
};

std::vector<Bond> ReadBonds();

// The kernel's names of all processes that run.
std::set<std::string> ReadProcessNames();

// Installed memory in MiB; 0 when it cannot be told.
int64_t ReadMemoryMib();

// "MAJOR.MINOR-BUILD" of the installed system; empty when it cannot be told.
std::string ReadSystemVersion();
