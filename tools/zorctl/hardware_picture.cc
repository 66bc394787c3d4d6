#include "hardware_picture.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr int32_t kNotRead = -1;  // a link state that no reader sets
constexpr int32_t kAllRead = 3;
constexpr int32_t kNoEnclosures = 1;

// What an item of a list is called.
struct ListLabel {
    const char *key;
    const char *item;
};

constexpr ListLabel kListLabels[] = {{"fans", "fan"}, {"power", "supply"}, {"disk_types", "slot"}};

int32_t Length(const ZORHWHostInfo &host) {
    return std::clamp(host.EncListLength, 0, ZOR_ENC_TABLE_SIZE);
}

bool ReadNode(int32_t selector, NodeHardware *node) {
    for (ZORHWEncInfo &enclosure : node->host.Encs) enclosure.LinkState = kNotRead;
    const int32_t result = HWReadEncList(selector, &node->host);
    if (result < 0) return false;
    node->is_known = result > 0;
    node->is_whole = result == kNoEnclosures || result == kAllRead;
    for (int32_t index = 0; index < Length(node->host); ++index)
        node->is_whole = node->is_whole && node->host.Encs[index].LinkState != kNotRead;
    return true;
}

Json Positive(int32_t number) {
    return number > 0 ? Json(number) : Json(nullptr);
}

Json State(int32_t value) {
    if (value == ZOR_HARDWARE_NORMAL) return "normal";
    if (value == ZOR_HARDWARE_UNKNOWN) return nullptr;
    return "failed (" + std::to_string(value) + ")";
}

template <size_t Count>
Json States(const int32_t (&values)[Count]) {
    Json states = Json::array();
    for (const int32_t value : values) states.push_back(State(value));
    return states;
}

std::string Serial(const ZORHWEncInfo &enclosure) {
    return {enclosure.EncSN, strnlen(enclosure.EncSN, sizeof enclosure.EncSN)};
}

// --- The nodes

Json Hosts(const HardwarePicture &picture) {
    Json rows = Json::array();
    for (const NodeHardware *node : {&picture.local, &picture.remote}) {
        const ZORHWHostInfo &host = node->host;
        // Without a position the node's section is not filled yet.
        const auto if_filled = [&host](int32_t number) {
            return host.HostType == ZOR_HOST_TYPE_UNKNOWN ? Json(nullptr) : Json(number);
        };
        Json row = {{"node", node->node}, {"known", node->is_known}};
        if (node->is_known) {
            row.update({{"model", host.Model},
                        {"position", Positive(host.HostType)},
                        {"memory_mib", Positive(host.Memory)},
                        {"visible_disks", if_filled(host.VisibleDisk)},
                        {"used_disks", if_filled(host.UsedDisk)},
                        {"enclosures", if_filled(host.EncListLength)}});
        }
        rows.push_back(row);
    }
    return rows;
}

// The link from an enclosure to the next one.
Json Link(const ZORHWHostInfo &host, int32_t index) {
    switch (host.Encs[index].LinkState) {
        case kNotRead:
            return nullptr;
        case 2:
            return "linked";
        case 1:
            return "broken";
        default:
            return index + 1 == host.EncListStatusLastCorretPos ? "end of the chain" : "not linked";
    }
}

Json Chain(const HardwarePicture &picture) {
    Json rows = Json::array();
    for (const NodeHardware *node : {&picture.local, &picture.remote}) {
        for (int32_t index = 0; index < Length(node->host); ++index) {
            rows.push_back({{"node", node->node},
                            {"chain_status", node->host.EncListStatus},
                            {"place", index + 1},
                            {"enclosure", Serial(node->host.Encs[index])},
                            {"link", Link(node->host, index)}});
        }
    }
    return rows;
}

// --- The enclosures, each once

struct EnclosureView {
    const ZORHWEncInfo *record;
    std::string nodes;
};

std::vector<EnclosureView> ListEnclosures(const HardwarePicture &picture) {
    std::vector<EnclosureView> views;
    for (const NodeHardware *node : {&picture.local, &picture.remote}) {
        for (int32_t index = 0; index < Length(node->host); ++index) {
            const ZORHWEncInfo &record = node->host.Encs[index];
            const auto known = std::find_if(views.begin(), views.end(), [&](const auto &view) {
                return Serial(*view.record) == Serial(record);
            });
            if (known == views.end())
                views.push_back({&record, node->node});
            else
                known->nodes += std::string(" ") + node->node;
        }
    }
    return views;
}

// A row for each enclosure, with what its function adds when it was read.
template <typename AddColumns>
Json EnclosureRows(const HardwarePicture &picture, const AddColumns &add_columns) {
    Json rows = Json::array();
    for (const EnclosureView &view : ListEnclosures(picture)) {
        const bool is_read = view.record->LinkState != kNotRead;
        Json row = {{"enclosure", Serial(*view.record)}, {"readable", is_read}};
        if (is_read) add_columns(view, &row);
        rows.push_back(row);
    }
    return rows;
}

int32_t Slots(const ZORHWEncInfo &record) {
    return std::clamp(record.MaxDisk, 0, ZOR_ENC_DISK_COUNT);
}

Json Enclosures(const HardwarePicture &picture) {
    return EnclosureRows(picture, [](const EnclosureView &view, Json *row) {
        row->update({{"seen_by", view.nodes},
                     {"model", view.record->ModelID},
                     {"slots", view.record->MaxDisk}});
    });
}

Json Fans(const HardwarePicture &picture) {
    return EnclosureRows(picture, [](const EnclosureView &view, Json *row) {
        (*row)["fans"] = States(view.record->FanStatus);
    });
}

Json Power(const HardwarePicture &picture) {
    return EnclosureRows(picture, [](const EnclosureView &view, Json *row) {
        (*row)["power"] = States(view.record->PowerStatus);
    });
}

Json Temperatures(const HardwarePicture &picture) {
    return EnclosureRows(picture, [](const EnclosureView &view, Json *row) {
        (*row)["temperature"] = State(view.record->TempStatus);
    });
}

Json Disks(const HardwarePicture &picture) {
    return EnclosureRows(picture, [](const EnclosureView &view, Json *row) {
        Json types = Json::array();
        for (int32_t slot = 0; slot < Slots(*view.record); ++slot)
            types.push_back(view.record->DiskTypes[slot]);
        (*row)["disk_types"] = types;
    });
}

// --- What the library's questions are answered

struct VolumeBit {
    uint32_t bit;
    const char *words;
};

constexpr VolumeBit kVolumeBits[] = {
    {ZOR_VOLUME_SPACE_CRASHED, "storage space crashed"},
    {ZOR_VOLUME_SPACE_DEGRADED, "storage space degraded"},
    {ZOR_VOLUME_SPACE_REMOTE_HAS_MORE_DISKS, "the remote node has more disks for it"},
    {ZOR_VOLUME_FCACHE_CRASHED, "flash cache crashed"},
    {ZOR_VOLUME_FCACHE_DEGRADED, "flash cache degraded"},
    {ZOR_VOLUME_FCACHE_REMOTE_HAS_MORE_DISKS, "the remote node has more disks for the cache"},
};

Json VolumeWords() {
    uint32_t flags = 0;
    if (ZORHWGetVolumnStatus(&flags) != 0) return nullptr;
    std::string words;
    for (const VolumeBit &bit : kVolumeBits) {
        if (flags & bit.bit) words += (words.empty() ? "" : ", ") + std::string(bit.words);
    }
    return words.empty() ? "in order" : words;
}

Json FailedHardware() {
    char failed[32] = "";
    if (ZORHWGetFailedEncHardware(failed, sizeof failed) != 0) return nullptr;
    return *failed ? failed : "none";
}

Json Answers(const HardwarePicture & /*picture*/) {
    return {
        {{"question", "position of this controller"}, {"answer", Positive(ZORHWGetHostNodeType())}},
        {{"question", "local chain status"},
         {"answer", Positive(ZORHWGetEncListStatus(ZOR_HOST_LOCAL))}},
        {{"question", "remote chain status"},
         {"answer", Positive(ZORHWGetEncListStatus(ZOR_HOST_REMOTE))}},
        {{"question", "local memory in MiB"}, {"answer", Positive(ZORHWGetMemory(ZOR_HOST_LOCAL))}},
        {{"question", "remote memory in MiB"},
         {"answer", Positive(ZORHWGetMemory(ZOR_HOST_REMOTE))}},
        {{"question", "failed enclosure hardware"}, {"answer", FailedHardware()}},
        {{"question", "volumes"}, {"answer", VolumeWords()}},
    };
}

}  // namespace

const HardwarePart kHardwareParts[] = {
    {"hosts", "the nodes", Hosts},
    {"chain", "the enclosures of each node, in chain order", Chain},
    {"enclosures", "every enclosure", Enclosures},
    {"fans", "the fans of every enclosure", Fans},
    {"power", "the power supplies of every enclosure", Power},
    {"temperatures", "the temperature of every enclosure", Temperatures},
    {"disks", "the type of the disk in each slot", Disks},
    {"answers", "what the library answers on hardware and volumes", Answers},
};
const size_t kHardwarePartCount = std::size(kHardwareParts);

std::string HardwareLabel(const std::string &key) {
    for (const ListLabel &list : kListLabels) {
        if (key == list.key) return list.item;
    }
    std::string label = key;
    std::replace(label.begin(), label.end(), '_', ' ');
    return label;
}

bool ReadHardware(HardwarePicture *picture) {
    FILE *lock = nullptr;
    if (ZORHWWaitAndLock(&lock) != 0) return false;
    const bool is_read =
        ReadNode(ZOR_HOST_LOCAL, &picture->local) && ReadNode(ZOR_HOST_REMOTE, &picture->remote);
    ZORHWUnlock(&lock);
    return is_read;
}
