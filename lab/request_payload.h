// The payload of a request, within its bounds.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>

#include "zor_core.h"

inline std::string PayloadText(const ZORMgrMessage &request) {
    const auto length = std::min<uint32_t>(request.payloadLength, sizeof request.payload);
    return {reinterpret_cast<const char *>(request.payload), length};
}

// Reads a payload of exactly one record.
template <typename Record>
bool ReadPayload(const ZORMgrMessage &request, Record *record) {
    static_assert(std::is_trivially_copyable_v<Record>);
    if (request.payloadLength != sizeof *record) return false;
    memcpy(record, request.payload, sizeof *record);
    return true;
}
