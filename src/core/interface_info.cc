// The interface information record: the ports, bonds and interfaces of both
// nodes, put together from the lists in ha.status and ha.conf.
//
// The asymmetry is deliberate: local speeds follow the position of a name in
// the list of names, remote speeds and monitor flags the number of the port.

#include <algorithm>
#include <iterator>

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "foundation/string_list.h"
#include "foundation/text.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

// The steps of the record report as the one function that callers know.
constexpr char kReporter[] = "ZORGetConfIfInfo";

constexpr uint32_t kListSize = 306;
constexpr uint32_t kSpeedSize = 72;
constexpr int32_t kNone = -1;

class InterfaceInfo {
  public:
    InterfaceInfo(int32_t localRole, ZORIfInfo *info)
        : hasMonitor_(localRole != ZOR_ROLE_UNKNOWN && localRole != ZOR_ROLE_JUNIOR),
          info_(*info) {}

    // Each step is false after its line.
    bool Build() {
        if (!AreListsAllocated() || !ReadLists() || !ReadSpeeds()) return false;
        Clear();
        for (int position = 0; position < names_.Count(); ++position) {
            if (!AddInterface(position)) return false;
        }
        AddHeartbeat();
        return true;
    }

  private:
    bool AreListsAllocated() const {
        for (const StringList *list :
             {&monitor_, &static_, &names_, &local_, &remote_, &fields_, &fieldSpeeds_}) {
            if (list->IsAllocated()) continue;
            ZOR_ERROR_OF(kReporter, "Failed to alloc memory");
            return false;
        }
        return true;
    }

    bool ReadLists() {
        char names[kListSize] = {};
        char statics[kListSize] = {};
        if (hasMonitor_ && ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, monitorText_,
                                        sizeof monitorText_) < 1) {
            ZOR_ERROR_OF(kReporter, "Failed to read monitor if");
            return false;
        }
        if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IFNAME, names, sizeof names) < 1) {
            ZOR_ERROR_OF(kReporter, "Failed to read ha.status for if name");
            return false;
        }
        if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_IF_HAS_STATIC_IP, statics, sizeof statics) <
            1) {
            ZOR_ERROR_OF(kReporter, "Failed to read ha.status for is static ip");
            return false;
        }
        if ((hasMonitor_ && monitor_.Split(monitorText_, ",") < 1) ||
            static_.Split(statics, ",") < 1 || names_.Split(names, ",") < 1) {
            ZOR_ERROR_OF(kReporter, "Failed to strsep");
            return false;
        }
        if (names_.Count() > ZOR_IF_TABLE_SIZE) {
            ZOR_ERROR_OF(kReporter, "input size not enought %d < %d", ZOR_IF_TABLE_SIZE,
                         names_.Count());
            return false;
        }
        return true;
    }

    bool ReadSpeeds() {
        return ReadSpeedList(ZOR_HOST_LOCAL, &local_) && ReadSpeedList(ZOR_HOST_REMOTE, &remote_);
    }

    // An absent list is an empty one.
    static bool ReadSpeedList(uint32_t selector, StringList *list) {
        char text[kSpeedSize] = {};
        const int32_t found = ZORGetHAStatus(selector, ZOR_STATUS_HOST_IF_SPEED, text, sizeof text);
        if (found < 0) {
            ZOR_ERROR_OF(kReporter, "Get ha status if speed failed.");
            return false;
        }
        if (found == 0 || text[0] == '\0') return true;
        if (list->Split(text, ",") >= 1) return true;
        ZOR_ERROR_OF(kReporter, "Failed to strsep");
        return false;
    }

    void Clear() {
        std::fill(std::begin(info_.ports), std::end(info_.ports),
                  ZORIfPort{kNone, kNone, 0, 0, 0, kNone, kNone});
        std::fill(std::begin(info_.bonds), std::end(info_.bonds),
                  ZORIfBond{kNone, kNone, kNone, kNone, 0, 0});
        std::fill(std::begin(info_.interfaces), std::end(info_.interfaces),
                  ZORIfEntry{0, 0, kNone, {}});
        info_.portCount = info_.bondCount = info_.interfaceCount = 0;
    }

    bool AddInterface(int position) {
        const char *name = names_.Item(position);
        ZORIfEntry &entry = info_.interfaces[position];
        const bool isBond = ZORValidateIFPrefix(name, 0, 1) != 0;
        if (!(isBond ? AddBond(position, name, &entry) : AddPort(position, name, &entry)))
            return false;
        CopyText(entry.name, sizeof entry.name, isBond ? fields_.Item(0) : name);
        ++info_.interfaceCount;
        return true;
    }

    bool AddPort(int position, const char *name, ZORIfEntry *entry) {
        int32_t number;
        if (!ParsePort(name, &number)) {
            ZOR_NOTICE_OF(kReporter, "Failed to sscanf(%s)", name);
            return false;
        }
        const int32_t index = number + 1;
        ZORIfPort &port = info_.ports[index];
        entry->isBond = 0;
        entry->index = index;
        if (hasMonitor_) {
            if (index >= monitor_.Count()) {
                ZOR_ERROR_OF(kReporter, "Get eth:%d more than monitor list (%s)", number,
                             monitorText_);
                return false;
            }
            port.monitored = monitor_.IsYes(index) ? 1 : 0;
            if (port.monitored) entry->monitored = 1;
        }
        port.present = 1;
        port.index = index;
        port.bond = kNone;
        if (position < static_.Count())
            port.staticIp = static_.IsYes(position) ? 1 : 0;
        else
            ZOR_ERROR_OF(kReporter, "Static ip array not enought for read conf if info, %d %d",
                         static_.Count(), position);
        info_.portCount = std::max(info_.portCount, index);
        TakeSpeed(local_, position + 1, &port.localSpeed);
        TakeSpeed(remote_, index, &port.remoteSpeed);
        return true;
    }

    bool AddBond(int position, const char *name, ZORIfEntry *entry) {
        if (!SplitBond(name, &fields_)) return false;
        // A list of speeds that ends before this place has none for the bond.
        const char *speeds = local_.Item(position + 1);
        fieldSpeeds_.Clear();
        if (speeds && !SplitBond(speeds, &fieldSpeeds_)) return false;
        int32_t number;
        if (ZORParseIFIndex(fields_.Item(0), &number, 0, 1) != 0 || number < 0 ||
            number >= ZOR_IF_TABLE_SIZE) {
            ZOR_ERROR_OF(kReporter, "Failed to sscanf(%s)", fields_.Item(0));
            return false;
        }
        entry->isBond = 1;
        entry->index = number;
        ZORIfBond &bond = info_.bonds[number];
        bond.number = number;
        bond.memberCount = fields_.Count() - 1;
        if (position < static_.Count())
            bond.staticIp = static_.IsYes(position) ? 1 : 0;
        else
            ZOR_ERROR_OF(kReporter, "Static ip array not enought for read conf if info");
        info_.bondCount = std::max(info_.bondCount, number + 1);
        for (int field = 1; field < fields_.Count(); ++field) {
            if (!AddMember(field, &bond, entry)) return false;
        }
        return true;
    }

    bool AddMember(int field, ZORIfBond *bond, ZORIfEntry *entry) {
        const char *name = fields_.Item(field);
        int32_t number;
        if (!ParsePort(name, &number)) {
            ZOR_ERROR_OF(kReporter, "Failed to sscanf(%s) idx:%d", name, field);
            return false;
        }
        const int32_t index = number + 1;
        ZORIfPort &port = info_.ports[index];
        port.present = 1;
        port.index = index;
        port.bond = bond->number;
        // Of a member the length of the monitor list is not looked at.
        if (hasMonitor_ && monitor_.IsYes(index))
            port.monitored = bond->monitored = entry->monitored = 1;
        info_.portCount = std::max(info_.portCount, index);
        if (TakeSpeed(fieldSpeeds_, field, &port.localSpeed))
            LowerSpeed(port.localSpeed, &bond->minLocalSpeed);
        if (TakeSpeed(remote_, index, &port.remoteSpeed))
            LowerSpeed(port.remoteSpeed, &bond->minRemoteSpeed);
        return true;
    }

    void AddHeartbeat() {
        ZORIfPort &heartbeat = info_.ports[0];
        heartbeat.index = 0;
        heartbeat.bond = kNone;
        TakeSpeed(local_, 0, &heartbeat.localSpeed);
        TakeSpeed(remote_, 0, &heartbeat.remoteSpeed);
        if (hasMonitor_) heartbeat.monitored = monitor_.IsYes(0) ? 1 : 0;
        ++info_.portCount;
    }

    static bool SplitBond(const char *text, StringList *list) {
        if (list->Split(text, ":") >= 1) return true;
        ZOR_ERROR_OF(kReporter, "Failed to strsep: %s", text);
        return false;
    }

    // A number that has no place in the table is none.
    static bool ParsePort(const char *name, int32_t *number) {
        return ZORParseIFIndex(name, number, 1, 0) == 0 && *number >= 0 &&
               *number < ZOR_IF_TABLE_SIZE - 1;
    }

    static bool TakeSpeed(const StringList &speeds, int index, int32_t *speed) {
        const char *item = speeds.Item(index);
        if (item) *speed = ParseDecimal(item);
        return item != nullptr;
    }

    static void LowerSpeed(int32_t speed, int32_t *lowest) {
        if (*lowest == kNone || (speed != kNone && speed < *lowest)) *lowest = speed;
    }

    const bool hasMonitor_;
    ZORIfInfo &info_;
    char monitorText_[kListSize] = {};
    StringList monitor_, static_, names_, local_, remote_;
    StringList fields_;       // of a bond: its name and its members
    StringList fieldSpeeds_;  // field for field
};

}  // namespace

extern "C" {

int32_t ZORGetConfIfInfo(ZORIfInfo *info) {
    const int32_t localRole = ZORGetLocalRole();
    if (!info) {
        ZOR_ERROR("Bad paramter");
        return -1;
    }
    return InterfaceInfo(localRole, info).Build() ? 0 : -1;
}

int32_t ZORIsHeartbeatLinkNormal(void) {
    ZORIfInfo info;
    if (ZORGetConfIfInfo(&info) != 0) {
        ZOR_NOTICE("Failed to read netInfo");
        return 0;
    }
    return info.ports[0].localSpeed != kNone ? 1 : 0;
}

}  // extern "C"
