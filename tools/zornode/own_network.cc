#include "own_network.h"

#include <cerrno>
#include <cstdio>
#include <string>

#include "node.h"

namespace {

// Of the addresses that are kept free for documentation.
std::string CommandsFor(int number) {
    const std::string index = std::to_string(number);
    const std::string port = "eth" + index;
    const std::string wire = "wire" + index;
    return "link add " + port + " type veth peer name " + wire + "\n" +  //
           "address add 192.0.2." + std::to_string(number + 1) + "/24 dev " + port + "\n" +
           "link set " + wire + " up\n" +  //
           "link set " + port + " up\n";
}

}  // namespace

void MakePorts(int count) {
    FILE *const program = popen("ip -batch -", "w");
    if (!program) ThrowErrno("cannot run ip");
    fputs("link set lo up\n", program);
    for (int number = 0; number < count; ++number) fputs(CommandsFor(number).c_str(), program);
    if (pclose(program) != 0)
        throw NodeError("cannot make the node's ports; the program ip of iproute2 has said why");
}
