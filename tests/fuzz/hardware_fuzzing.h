// What the fuzz targets of the hardware records have in common.
#pragma once

#include <cstdint>
#include <cstring>

#include "fuzz/require.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";

// A record between two guards.
struct GuardedHost {
    uint64_t before = 0x5a5a5a5a5a5a5a5a;
    ZORHWHostInfo host = {};
    uint64_t after = 0x5a5a5a5a5a5a5a5a;

    void Check() const {
        Require(before == 0x5a5a5a5a5a5a5a5a && after == before);
        Require(memchr(host.Model, '\0', sizeof host.Model) != nullptr);
        for (const ZORHWEncInfo &enclosure : host.Encs) {
            Require(memchr(enclosure.EncSN, '\0', sizeof enclosure.EncSN) != nullptr);
            Require(enclosure.LinkState >= 0 && enclosure.LinkState <= 2);
            Require(enclosure.PeerLinkState == 0);
        }
    }
};

// Every question, whose answers must be in their ranges.
inline void AskEverything() {
    ZORHWGetHostNodeType();
    for (const int32_t selector : {ZOR_HOST_LOCAL, ZOR_HOST_REMOTE}) {
        ZORHWGetEncListStatus(selector);
        const int32_t memory = ZORHWGetMemory(selector);
        Require(memory == -1 || memory > 0);
    }
    uint32_t flags = 0;
    ZORHWGetVolumnStatus(&flags);
    Require((flags & ~uint32_t{63}) == 0);
    char failed[16] = "";
    ZORHWGetFailedEncHardware(failed, sizeof failed);
    Require(strcmp(failed, "") == 0 || strcmp(failed, "power") == 0 || strcmp(failed, "fan") == 0 ||
            strcmp(failed, "power,fan") == 0);
}
