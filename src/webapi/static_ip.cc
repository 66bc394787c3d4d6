#include "webapi/static_ip.h"

#include <cstdlib>

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr uint32_t kListSize = 306;
constexpr int kAllocation = 1024;

// A list that goes to the caller only when it is complete.
class NewList {
  public:
    NewList() : list_(VLIBCSzListAlloc(kAllocation)) {}
    ~NewList() {
        if (list_) VLIBCSzListFree(list_);
    }
    NewList(const NewList &) = delete;
    NewList &operator=(const NewList &) = delete;

    bool IsAllocated() const { return list_ != nullptr; }
    bool Push(const char *text) { return VLIBCSzListPush(&list_, text) >= 0; }
    bool Has(const char *text) const { return VLIBCSzListFind(list_, text) != -1; }

    VLIBCSzList *Release() {
        VLIBCSzList *list = list_;
        list_ = nullptr;
        return list;
    }

    // Takes over what ZORGetStaticIPList makes.
    bool Load() {
        if (list_) VLIBCSzListFree(list_);
        list_ = nullptr;
        return ZORGetStaticIPList(&list_) == 0;
    }

  private:
    VLIBCSzList *list_;
};

}  // namespace

int32_t ZORGetStaticIPList(VLIBCSzList **list) {
    if (!list || *list) {
        ZOR_ERROR("Bad @param ppStaticIPList");
        return -1;
    }
    StringList flags;
    StringList addresses;
    NewList statics;
    if (!flags.IsAllocated() || !addresses.IsAllocated() || !statics.IsAllocated()) {
        ZOR_ERROR("Failed to alloc memory");
        return -1;
    }
    char flagText[kListSize] = {};
    if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_IF_HAS_STATIC_IP, flagText, sizeof flagText) <
        1) {
        ZOR_ERROR("Failed to read local is static ip in ha.status");
        return -1;
    }
    char addressText[kListSize] = {};
    if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, addressText, sizeof addressText) < 1) {
        ZOR_ERROR("Failed to read local ip in ha.status");
        return -1;
    }
    if (flags.Split(flagText, ",") < 1 || addresses.Split(addressText, ",") < 1) {
        ZOR_ERROR("Failed to strsep");
        return -1;
    }
    if (flags.Count() != addresses.Count()) {
        ZOR_NOTICE("length of IsStaticIPList is not eq to LocalIPList");
        return -1;
    }
    for (int index = 0; index < flags.Count(); ++index) {
        const char *address = addresses.Item(index);
        if (!flags.IsYes(index) || !address) continue;
        if (!statics.Push(address)) {
            ZOR_ERROR("Failed to push '%s' to list", address);
            return -1;
        }
    }
    *list = statics.Release();
    return 0;
}

bool ZORLoginIPIsStaticIP(int32_t *isStatic) {
    NewList statics;
    if (!statics.Load()) {
        ZOR_NOTICE("Failed to get static ip list");
        return false;
    }
    const char *address = getenv("SERVER_ADDR");
    if (!address) {
        ZOR_ERROR("Failed to get env 'SERVER_ADDR'");
        return false;
    }
    *isStatic = statics.Has(address) ? 1 : 0;
    return true;
}
