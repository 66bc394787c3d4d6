#include "chassis.h"

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <initializer_list>

namespace {

struct StateWord {
    const char *word;
    int32_t value;
};

// What people write for a state; a number stands for itself.
constexpr StateWord kStateWords[] = {
    {"ok", ZOR_HARDWARE_NORMAL}, {"failed", 0}, {"unknown", ZOR_HARDWARE_UNKNOWN}};

[[noreturn]] void Refuse(const YAML::Node &node, const std::string &reason) {
    throw ChassisError("line " + std::to_string(node.Mark().line + 1) + ": " + reason);
}

// A misspelt key would be ignored in silence, so only known ones are allowed.
void CheckKeys(const YAML::Node &node, std::initializer_list<std::string> known) {
    if (!node.IsMap()) Refuse(node, "a map of keys is expected here");
    for (const auto &pair : node) {
        const auto key = pair.first.as<std::string>();
        if (std::find(known.begin(), known.end(), key) == known.end())
            Refuse(pair.first, "unknown key '" + key + "'");
    }
}

int32_t ReadNumber(const YAML::Node &node, const char *key, int32_t fallback) {
    const YAML::Node value = node[key];
    if (!value) return fallback;
    int32_t number;
    if (!YAML::convert<int32_t>::decode(value, number))
        Refuse(value, std::string(key) + " is no number");
    return number;
}

int32_t ReadState(const YAML::Node &node) {
    if (!node.IsScalar()) Refuse(node, "a state is expected here");
    for (const StateWord &state : kStateWords) {
        if (node.Scalar() == state.word) return state.value;
    }
    int32_t number;
    if (!YAML::convert<int32_t>::decode(node, number))
        Refuse(node, "'" + node.Scalar() + "' is no state: ok, failed, unknown or a number");
    return number;
}

// A list of states, all unknown when the key is absent.
template <size_t Count>
void ReadStates(const YAML::Node &enclosure, const char *key, int32_t (&states)[Count]) {
    std::fill(std::begin(states), std::end(states), ZOR_HARDWARE_UNKNOWN);
    const YAML::Node list = enclosure[key];
    if (!list) return;
    if (!list.IsSequence() || list.size() != Count)
        Refuse(list, std::string(key) + " must be a list of " + std::to_string(Count));
    for (size_t index = 0; index < Count; ++index) states[index] = ReadState(list[index]);
}

void ReadDisks(const YAML::Node &enclosure, ZORHWEncInfo *record) {
    const YAML::Node list = enclosure["disks"];
    if (!list) return;
    if (!list.IsSequence() || list.size() > ZOR_ENC_DISK_COUNT)
        Refuse(list, "disks must be a list of at most " + std::to_string(ZOR_ENC_DISK_COUNT));
    record->MaxDisk = static_cast<int32_t>(list.size());
    for (size_t slot = 0; slot < list.size(); ++slot) {
        if (!YAML::convert<int32_t>::decode(list[slot], record->DiskTypes[slot]))
            Refuse(list[slot], "the type of a disk is a number, 0 for an empty slot");
    }
}

ZORHWEncInfo ReadEnclosure(const YAML::Node &node) {
    CheckKeys(node, {"serial", "model", "temperature", "disks", "fans", "power"});
    ZORHWEncInfo record = {};
    const std::string serial = node["serial"] ? node["serial"].as<std::string>() : "";
    if (serial.empty() || serial.size() >= sizeof record.EncSN ||
        serial.find_first_of(",]\n") != std::string::npos)
        Refuse(node, "an enclosure needs a serial of 1 to 35 characters, none of them , or ]");
    memcpy(record.EncSN, serial.c_str(), serial.size() + 1);
    record.ModelID = ReadNumber(node, "model", 0);
    record.TempStatus = node["temperature"] ? ReadState(node["temperature"]) : ZOR_HARDWARE_UNKNOWN;
    ReadDisks(node, &record);
    ReadStates(node, "fans", record.FanStatus);
    ReadStates(node, "power", record.PowerStatus);
    return record;
}

void ReadControllers(const YAML::Node &list, Chassis *chassis) {
    if (!list.IsSequence() || list.size() > 2) Refuse(list, "there are one or two controllers");
    for (const YAML::Node &node : list) {
        CheckKeys(node, {"position", "visible_disks", "used_disks"});
        const ChassisController controller = {ReadNumber(node, "position", 0),
                                              ReadNumber(node, "visible_disks", 0),
                                              ReadNumber(node, "used_disks", 0)};
        if (controller.position != ZOR_HOST_TYPE_FIRST &&
            controller.position != ZOR_HOST_TYPE_SECOND)
            Refuse(node, "the position of a controller is 8 or 16");
        for (const ChassisController &other : chassis->controllers) {
            if (other.position == controller.position)
                Refuse(node, "two controllers cannot have the same position");
        }
        chassis->controllers.push_back(controller);
    }
}

void ReadEnclosures(const YAML::Node &list, Chassis *chassis) {
    if (!list.IsSequence() || list.size() > ZOR_ENC_TABLE_SIZE)
        Refuse(list, "there are at most " + std::to_string(ZOR_ENC_TABLE_SIZE) + " enclosures");
    for (const YAML::Node &node : list) {
        chassis->enclosures.push_back(ReadEnclosure(node));
        for (size_t other = 0; other + 1 < chassis->enclosures.size(); ++other) {
            if (strcmp(chassis->enclosures[other].EncSN, chassis->enclosures.back().EncSN) == 0)
                Refuse(node, "two enclosures cannot have the same serial");
        }
    }
}

// A chain that is not said to be broken is in order.
void ReadChain(const YAML::Node &chain, Chassis *chassis) {
    const auto length = static_cast<int32_t>(chassis->enclosures.size());
    chassis->linked = length;
    if (!chain) return;
    CheckKeys(chain, {"status", "linked"});
    chassis->linked = ReadNumber(chain, "linked", length);
    if (chassis->linked < 0 || chassis->linked > length)
        Refuse(chain, "linked is a number of enclosures");
    chassis->chain_status = ReadNumber(chain, "status", chassis->linked == length ? 1 : 0);
}

DamageCount ReadDamage(const YAML::Node &node) {
    if (!node) return {};
    CheckKeys(node, {"degraded", "crashed"});
    return {ReadNumber(node, "degraded", 0), ReadNumber(node, "crashed", 0)};
}

Chassis ReadChassis(const YAML::Node &root) {
    Chassis chassis;
    if (root.IsNull()) return chassis;
    CheckKeys(root, {"controllers", "chain", "spaces", "flash_caches", "enclosures"});
    if (root["controllers"]) ReadControllers(root["controllers"], &chassis);
    if (root["enclosures"]) ReadEnclosures(root["enclosures"], &chassis);
    ReadChain(root["chain"], &chassis);
    chassis.spaces = ReadDamage(root["spaces"]);
    chassis.flash_caches = ReadDamage(root["flash_caches"]);
    return chassis;
}

}  // namespace

Chassis LoadChassis(const std::string &path) try {
    if (!std::filesystem::exists(path)) return {};
    return ReadChassis(YAML::LoadFile(path));
} catch (const YAML::Exception &error) {
    throw ChassisError(error.what());
}

ZORHWHostInfo DescribeHost(const Chassis &chassis, size_t controller, int64_t memory_mib) {
    ZORHWHostInfo host = {};
    if (controller > 0 && controller >= chassis.controllers.size()) return host;
    host.Memory = static_cast<int32_t>(memory_mib);
    if (controller >= chassis.controllers.size()) return host;
    host.HostType = chassis.controllers[controller].position;
    host.VisibleDisk = chassis.controllers[controller].visible_disks;
    host.UsedDisk = chassis.controllers[controller].used_disks;
    host.EncListStatus = chassis.chain_status;
    host.EncListLength = static_cast<int32_t>(chassis.enclosures.size());
    host.EncListStatusLastCorretPos = chassis.linked;
    std::copy(chassis.enclosures.begin(), chassis.enclosures.end(), host.Encs);
    return host;
}
