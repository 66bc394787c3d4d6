#include "health_bit.h"

#include <iterator>

#include "zor_core.h"

const HealthBit kHealthBits[] = {
    {0, "there is no passive node", "start the passive node, or check its links and its power"},
    {1, "monitored interfaces of the active node have failed",
     "check cables and switches; zorctl get failed_local_interfaces names them"},
    {2, "monitored interfaces of the passive node have failed",
     "check cables and switches; zorctl get failed_remote_interfaces names them"},
    {3, "monitored services of the active node have failed",
     "look at the service's log; zorctl get failed_local_services names them"},
    {4, "services have failed on the passive node",
     "look at that node's log before a switchover; zorctl constraints names them"},
    {5, "the chain of enclosures of the active node is not in order",
     "check the cabling of the enclosures; zorctl hardware chain shows where it breaks"},
    {6, "the chain of enclosures of the passive node is not in order",
     "check the cabling of the enclosures; zorctl hardware chain shows where it breaks"},
    {7, "the heartbeat link is lost", "check the cable between the nodes"},
    {8, "a storage space is degraded", "replace the failed disk and repair the space"},
    {9, "a storage space has crashed", "see to the disks of the space at once"},
    {10, "a storage space has crashed, and the other node has more of its disks",
     "switch over to the other node"},
    {11, "hardware of the active node has failed",
     "zorctl get failed_local_hardware names it; replace it"},
    {12, "hardware of the passive node has failed",
     "zorctl get failed_remote_hardware names it; replace it"},
    {13, "the nodes have different amounts of memory", "fit both nodes with the same memory"},
    {14, "no interface is monitored", "choose the interfaces that matter"},
    {16, "the node is not in a settled state", "wait until the procedure that runs has ended"},
    {18, "the passive node is recovering", "wait until it has caught up"},
    {19, "the passive node is being upgraded", "wait until the upgrade has ended"},
    {20, "hardware of an enclosure has failed",
     "zorctl hardware fans and zorctl hardware power name it; replace it"},
    {21, "monitored interfaces have no static address",
     "give them one; zorctl get monitored_if_no_static_ip names them"},
    {22, "a storage space is busy", "wait until the operation on it has ended"},
    {23, "a flash cache is degraded", "replace the failed flash disk"},
    {24, "a flash cache has crashed", "see to its flash disks at once"},
    {25, "a flash cache has crashed, and the other node has more of its disks",
     "switch over to the other node"},
    {26, "a failover has failed", "look at the log of both nodes before trying again"},
    {28, "a task keeps the active node from halting", "zorctl get blocking_tasks_local names it"},
    {29, "a task keeps the passive node from halting", "zorctl get blocking_tasks_remote names it"},
};
const size_t kHealthBitCount = std::size(kHealthBits);

const char *HealthBitClass(int bit) {
    const uint32_t mask = uint32_t{1} << bit;
    if (mask & ZOR_HEALTH_ERROR_BITS) return "error";
    return mask & ZOR_HEALTH_WARNING_BITS ? "warning" : "note";
}
