#include "description_words.h"

namespace {

struct DescriptionRow {
    const char *key;
    const char *words;
};

constexpr DescriptionRow kDescriptions[] = {
    {"desc_ha_normal", "the cluster is in order"},
    {"desc_remote_boot_error", "the remote node could not start"},
    {"desc_switchover_failed", "a switchover has failed"},
    {"desc_failover_failed", "a failover has failed"},
    {"desc_halt_blocking_active", "a task keeps the active node from halting"},
    {"desc_halt_blocking_passive", "a task keeps the passive node from halting"},
    {"desc_passive_offline", "the passive node is offline"},
    {"desc_no_passive", "there is no passive node"},
    {"desc_failed_service_active", "services of the active node have failed"},
    {"desc_failed_service_passive", "services have failed on the passive node"},
    {"desc_failed_net_active", "interfaces of the active node have failed"},
    {"desc_failed_net_passive", "interfaces of the passive node have failed"},
    {"desc_host_hw_error_active", "hardware of the active node has failed"},
    {"desc_host_hw_error_passive", "hardware of the passive node has failed"},
    {"desc_invalid_enc_list_active", "the active node's chain of enclosures is not in order"},
    {"desc_invalid_enc_list_passive", "the passive node's chain of enclosures is not in order"},
    {"desc_enclosure_hw_error", "hardware of an enclosure has failed"},
    {"desc_heartbeat_link_lost", "the heartbeat link is lost"},
    {"desc_space_busy", "a storage space is busy"},
    {"desc_fcache_crashed", "a flash cache has crashed"},
    {"desc_fcache_degrade", "a flash cache is degraded"},
    {"desc_space_crash", "a storage space has crashed"},
    {"desc_space_degrade", "a storage space is degraded"},
    {"desc_memory_not_match", "the nodes have different amounts of memory"},
    {"desc_no_monitored_if", "no interface is monitored"},
    {"desc_monitored_ifs_no_static_ip", "monitored interfaces have no static address"},
    {"desc_recovering_passive", "the passive node is recovering"},
    {"desc_upgrading_passive", "the passive node is being upgraded"},
};

}  // namespace

std::string DescriptionWords(const std::string &key) {
    for (const DescriptionRow &row : kDescriptions) {
        if (key == row.key) return row.words;
    }
    return key;
}
