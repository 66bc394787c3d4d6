#include "hardware_publisher.h"

#include <kevacore.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <type_traits>

#include "machine.h"
#include "peer.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";
constexpr char kLocalSection[] = "LOCAL_HOST";
constexpr char kRemoteSection[] = "REMOTE_HOST";
constexpr char kCommonSection[] = "COMMON";
constexpr int kHashAllocation = 1024;
constexpr size_t kSerialListSize = 1024;

struct NumberKey {
    const char *key;
    int32_t ZORHWHostInfo::*field;
};

// Of a host whose place in a chassis is known. Its memory always is.
constexpr NumberKey kNumberKeys[] = {
    {"VisibleDisk", &ZORHWHostInfo::VisibleDisk},
    {"UsedDisk", &ZORHWHostInfo::UsedDisk},
    {"HostType", &ZORHWHostInfo::HostType},
    {"EncListStatus", &ZORHWHostInfo::EncListStatus},
    {"EncListLength", &ZORHWHostInfo::EncListLength},
    {"EncListStatusLastCorretPos", &ZORHWHostInfo::EncListStatusLastCorretPos},
};

bool WriteHost(const char *section, const ZORHWHostInfo &host) {
    const std::unique_ptr<VLIBCSzHash, decltype(&VLIBCSzHashFree)> owner(
        VLIBCSzHashAlloc(kHashAllocation), VLIBCSzHashFree);
    VLIBCSzHash *hash = owner.get();
    const auto set = [&hash](const char *key, const std::string &value) {
        return VLIBCSzHashSetValue(&hash, key, value.c_str()) >= 0;
    };
    bool is_set = set("Memory", std::to_string(host.Memory));
    if (host.HostType != ZOR_HOST_TYPE_UNKNOWN) {
        for (const NumberKey &number : kNumberKeys)
            is_set = is_set && set(number.key, std::to_string(host.*number.field));
        char serials[kSerialListSize] = "";
        ZORHWUtilGetEncListStr(&host, serials, sizeof serials);
        if (host.EncListLength > 0) is_set = is_set && set("EncList", serials);
    }
    return is_set && HWSetSection(section, hash) == 0;
}

bool WriteCounter(const char *key, int32_t count) {
    return VLIBCFileSetSectionValue(kHardwareFile, kCommonSection, key,
                                    std::to_string(count).c_str()) >= 0;
}

bool WriteRemoteHost(const ZORHWHostInfo &remote) {
    return remote.HostType == ZOR_HOST_TYPE_UNKNOWN
               ? VLIBCFileRemoveSection(kHardwareFile, kRemoteSection) >= 0
               : WriteHost(kRemoteSection, remote);
}

class HardwareLock {
  public:
    HardwareLock() : is_held_(ZORHWWaitAndLock(&handle_) == 0) {}
    ~HardwareLock() {
        if (is_held_) ZORHWUnlock(&handle_);
    }
    HardwareLock(const HardwareLock &) = delete;
    HardwareLock &operator=(const HardwareLock &) = delete;

    bool IsHeld() const { return is_held_; }

  private:
    FILE *handle_ = nullptr;
    const bool is_held_;
};

}  // namespace

bool HardwarePublisher::Publish() {
    const Picture picture = Look();
    static_assert(std::is_trivially_copyable_v<Picture>);
    if (is_written_ && memcmp(&picture, &written_, sizeof picture) == 0) return false;
    is_written_ = Write(picture);
    written_ = picture;
    return is_written_;
}

HardwarePublisher::Picture HardwarePublisher::Look() {
    try {
        chassis_.Refresh();
    } catch (const ChassisError &error) {
        report_(error.what());
    }
    Picture picture;
    picture.local = DescribeHost(chassis_.Get(), 0, ReadMemoryMib());
    picture.spaces = chassis_.Get().spaces;
    picture.flash_caches = chassis_.Get().flash_caches;
    peer_.SendHardware(picture.local);
    peer_.TakeHardware(&remote_);
    if (peer_.IsAliveByNet() || peer_.IsAliveByExpander()) picture.remote = remote_;
    return picture;
}

bool HardwarePublisher::Write(const Picture &picture) {
    {
        const HardwareLock lock;
        if (!lock.IsHeld() || !WriteHost(kLocalSection, picture.local) ||
            !WriteRemoteHost(picture.remote) ||
            !WriteCounter("DegradedSpaces", picture.spaces.degraded) ||
            !WriteCounter("CrashedSpaces", picture.spaces.crashed) ||
            !WriteCounter("DegradedFCache", picture.flash_caches.degraded) ||
            !WriteCounter("CrashedFCache", picture.flash_caches.crashed) ||
            HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &picture.local) != 0 ||
            HWWriteEncInfoToFile(ZOR_HOST_REMOTE, &picture.remote) != 0)
            return false;
    }
    if (picture.local.HostType == ZOR_HOST_TYPE_UNKNOWN) return true;
    ZORHWHostInfo merged = picture.local;
    return ZORHWWriteFanPowerStatus(&merged, &picture.remote) == 0;
}
