// The lists that describe a node's interfaces in ha.status, in the forms that
// the library reads.
#pragma once

#include <string>
#include <vector>

struct InterfaceLists {
    std::string names;      // "eth0,bond0:eth1:eth2"
    std::string addresses;  // one for each name, empty without one
    std::string states;     // "up" or "down" for each name
    std::string speeds;     // the heartbeat link's, then one for each name: "1000,1000,0:1000:-1"
    std::string statics;    // "yes" or "no" for each name
};

// The interfaces as they are named; without names, as the machine has them. The
// heartbeat link is as fast as the fastest port when there is a peer.
InterfaceLists ListInterfaces(const std::vector<std::string> &names, bool has_heartbeat);

// The MAC addresses of all ports, with commas between.
std::string ListMacAddresses();

std::vector<std::string> SplitText(const std::string &text, char separator);
