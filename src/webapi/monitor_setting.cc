// Changing what is monitored: every row is checked before anything is stored.

#include <cstring>
#include <iterator>

#include "core/request_sender.h"
#include "foundation/joined_text.h"
#include "foundation/log.h"
#include "foundation/record_text.h"
#include "webapi/monitor_list.h"
#include "webapi/monitored_interface.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

// The steps report as the one function that callers know.
constexpr char kReporter[] = "KEVAZORSetMonitor";

constexpr uint32_t kLinkChangedCommand = 16;
constexpr uint32_t kServiceChangedCommand = 35;
constexpr size_t kChoiceSize = 144;

// A row of the request, whose name may lack its NUL.
class RequestRow {
  public:
    explicit RequestRow(const ZORMonitorItem &row) : enabled_(row.enabled ? 1 : 0) {
        CopyRecordText(&row, offsetof(ZORMonitorItem, name), sizeof row.name, name_);
    }

    const char *Name() const { return name_; }
    bool IsNamed(const char *name) const { return strcmp(name_, name) == 0; }
    int32_t Enabled() const { return enabled_; }

  private:
    const int32_t enabled_;
    char name_[sizeof(ZORMonitorItem::name) + 1];
};

template <size_t Count>
bool StoreChoice(uint32_t key, const int32_t (&flags)[Count]) {
    char text[kChoiceSize];
    JoinedText choice(text, sizeof text);
    for (const int32_t flag : flags) choice.Add(flag ? "yes" : "no");
    if (ZORSetHAConf(ZOR_HOST_CLUSTER, key, text) >= 0) return true;
    ZOR_ERROR_OF(kReporter, "Failed to set ha.conf");
    return false;
}

// --- Services

struct ServiceChoice {
    ZORMonitorItem listed[ZOR_SERVICE_COUNT] = {};
    int32_t count = 0;
    int32_t flags[ZOR_SERVICE_COUNT] = {};
};

// A name that no service has is passed over.
bool ApplyToServices(const RequestRow &row, ServiceChoice *choice) {
    for (int32_t slot = 0; slot < choice->count; ++slot) {
        const ZORMonitorItem &service = choice->listed[slot];
        if (!row.IsNamed(service.name)) continue;
        if (row.Enabled() && !choice->flags[slot] && service.state == ZOR_UI_STATE_ERROR) {
            ZOR_ERROR_OF(kReporter, "Set enable to a error service");
            return false;
        }
        choice->flags[slot] = row.Enabled();
    }
    return true;
}

int32_t SetServices(const ZORMonitorItem *rows, int32_t n) {
    ServiceChoice choice;
    if (ZORListMonitorService(choice.listed, ZOR_SERVICE_COUNT, &choice.count) != 0) {
        ZOR_ERROR_OF(kReporter, "Failed to list original monitor services");
        return -1;
    }
    for (int32_t slot = 0; slot < choice.count; ++slot)
        choice.flags[slot] = choice.listed[slot].enabled;
    for (int32_t index = 0; index < n; ++index) {
        if (!ApplyToServices(RequestRow(rows[index]), &choice)) return -1;
    }
    if (!StoreChoice(ZOR_CONF_MONITOR_SERVICE, choice.flags)) return -1;
    if (SendCommand(kServiceChangedCommand, nullptr, 0) < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to send service chagned");
        return -1;
    }
    return 0;
}

// --- Interfaces

struct InterfaceChoice {
    ZORIfInfo info;
    int32_t flags[ZOR_IF_TABLE_SIZE];
};

const ZORIfEntry *FindInterface(const ZORIfInfo &info, const RequestRow &row) {
    for (int32_t number = 0; number < info.interfaceCount; ++number) {
        const ZORIfEntry &entry = info.interfaces[number];
        if (row.IsNamed(entry.name))
            return entry.index >= 0 && entry.index < ZOR_IF_TABLE_SIZE ? &entry : nullptr;
    }
    return nullptr;
}

// A bond has no item of its own: its ports have.
void SetFlags(const ZORIfEntry &entry, int32_t enabled, InterfaceChoice *choice) {
    if (!entry.isBond) {
        choice->flags[entry.index] = enabled;
        return;
    }
    for (int32_t port = 0; port < ZOR_IF_TABLE_SIZE; ++port) {
        if (choice->info.ports[port].bond == entry.index) choice->flags[port] = enabled;
    }
}

// "Monitored before" means before the request, whatever its other rows say.
bool ApplyToInterfaces(const RequestRow &row, InterfaceChoice *choice) {
    const ZORIfEntry *entry = FindInterface(choice->info, row);
    if (!entry) {
        ZOR_ERROR_OF(kReporter, "Setting unknown interfaces: %s", row.Name());
        return false;
    }
    if (row.Enabled() && entry->monitored != 1 && !IsInterfaceActive(choice->info, *entry)) {
        ZOR_ERROR_OF(kReporter, "Set enable to a not active interface %s", row.Name());
        return false;
    }
    SetFlags(*entry, row.Enabled(), choice);
    return true;
}

int32_t SetInterfaces(const ZORMonitorItem *rows, int32_t n) {
    InterfaceChoice choice;
    if (ZORGetConfIfInfo(&choice.info) != 0) {
        ZOR_ERROR_OF(kReporter, "Failed to get original netinfo");
        return -1;
    }
    for (int32_t port = 0; port < ZOR_IF_TABLE_SIZE; ++port)
        choice.flags[port] = choice.info.ports[port].monitored;
    for (int32_t index = 0; index < n; ++index) {
        if (!ApplyToInterfaces(RequestRow(rows[index]), &choice)) return -1;
    }
    if (!StoreChoice(ZOR_CONF_MONITOR_IF, choice.flags)) return -1;
    if (SendCommand(kLinkChangedCommand, nullptr, 0) < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to send link chagned");
        return -1;
    }
    return 0;
}

}  // namespace

extern "C" int32_t KEVAZORSetMonitor(uint32_t type, const ZORMonitorItem *rows, int32_t n) {
    if (!rows || n < 1) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    if (type == ZOR_MONITOR_SYSTEM) {
        ZOR_ERROR("Not allow to modify system monitor items");
        return -1;
    }
    if (type == ZOR_MONITOR_SERVICE) return SetServices(rows, n);
    if (type == ZOR_MONITOR_NETWORK) return SetInterfaces(rows, n);
    ZOR_ERROR("Unknown type: %d", static_cast<int>(type));
    return -1;
}
