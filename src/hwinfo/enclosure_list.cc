// A node's record with every enclosure of its chain.

#include "foundation/joined_text.h"
#include "foundation/log.h"
#include "hwinfo/enclosure_record.h"
#include "hwinfo/enclosure_serial.h"
#include "hwinfo/hardware_lock.h"
#include "hwinfo/record_bounds.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

// Results of reading a list of enclosures.
enum : int32_t {
    kFailed = -1,
    kNoHost = 0,
    kNoEnclosures = 1,
    kUnusable = 2,
    kRead = 3
};

// Link states of an enclosure.
enum : int32_t {
    kNotLinked = 0,
    kLastLinked = 1,
    kLinked = 2
};

constexpr int32_t kLastIsNotMarked = 1;  // an EncListStatus

// A position outside the record marks nothing.
void MarkLastLinked(ZORHWHostInfo *host) {
    const int32_t position = host->EncListStatusLastCorretPos;
    if (position < 1 || position > ZOR_ENC_TABLE_SIZE) return;
    host->Encs[position - 1].LinkState =
        host->EncListStatus == kLastIsNotMarked ? kNotLinked : kLastLinked;
}

}  // namespace

extern "C" {

int32_t HWReadEncList(int32_t selector, ZORHWHostInfo *host) {
    const int32_t found = HWReadHostValue(selector, host);
    if (found < 0) {
        ZOR_ERROR("Failed to load host value");
        return kFailed;
    }
    if (found == 0) {
        ZOR_NOTICE("No host data on role:%d", selector);
        return kNoHost;
    }
    if (host->EncListLength == 0) return kNoEnclosures;
    int32_t result = kUnusable;
    const int32_t count = BoundedEnclosures(host->EncListLength);
    for (int32_t index = 0; index < count; ++index) {
        ZORHWEncInfo &enclosure = host->Encs[index];
        if (HWReadAEncInfo(enclosure.EncSN, &enclosure) < 0) {
            ZOR_ERROR("Failed to load enc info");
            return result;
        }
        enclosure.LinkState = index < host->EncListStatusLastCorretPos ? kLinked : kNotLinked;
        result = kRead;
    }
    MarkLastLinked(host);
    return result;
}

int32_t ZORHWGetEncListCached(ZORHWHostInfo *local, ZORHWHostInfo *remote) {
    if (!local || !remote) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Fail to get lock");
        return -1;
    }
    int32_t result = 0;
    if (HWReadEncList(ZOR_HOST_LOCAL, local) < 0 || HWReadEncList(ZOR_HOST_REMOTE, remote) < 0) {
        ZOR_ERROR("Failed to read enc list");
        result = -1;
    }
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock failed");
    return result;
}

int32_t ZORHWUtilGetEncListStr(const ZORHWHostInfo *host, char *buffer, uint32_t size) {
    if (!host || !buffer || size == 0) {
        ZOR_ERROR("Bad paramter %lX %d", reinterpret_cast<unsigned long>(buffer),
                  static_cast<int>(size));
        return -1;
    }
    const int32_t count = BoundedEnclosures(host->EncListLength);
    if (count == 0) return 0;
    JoinedText serials(buffer, size);
    for (int32_t index = 0; index < count; ++index)
        serials.Add(EnclosureSerial(host->Encs[index]).Text());
    return 0;
}

}  // extern "C"
