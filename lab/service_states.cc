#include "service_states.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>

#include "machine.h"
#include "zor_conf.h"

namespace {

// The processes that a service consists of; one of them suffices.
struct Service {
    const char *name;
    const char *processes[3];
};

constexpr Service kServices[] = {
    {"samba", {"smbd", nullptr, nullptr}},   {"iscsitrg", {"tgtd", "ietd", "iscsi_trx"}},
    {"ftpd", {"vsftpd", "proftpd", "ftpd"}}, {"atalk", {"netatalk", "afpd", "atalkd"}},
    {"nfsd", {"nfsd", nullptr, nullptr}},
};

bool IsRunning(const char *name, const std::set<std::string> &processes) {
    for (const Service &service : kServices) {
        if (strcmp(service.name, name) != 0) continue;
        return std::any_of(
            std::begin(service.processes), std::end(service.processes),
            [&](const char *process) { return process && processes.contains(process); });
    }
    return false;
}

}  // namespace

std::string ListServiceStates() {
    const std::set<std::string> processes = ReadProcessNames();
    std::string states;
    for (const char *name : gMonitorServiceList) {
        if (!name) break;
        if (!states.empty()) states += ',';
        states += IsRunning(name, processes) ? "running" : "stopped";
    }
    return states;
}
