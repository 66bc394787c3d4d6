#include "machine.h"

#include <kevacore.h>
#include <sys/sysinfo.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "address_table.h"

namespace fs = std::filesystem;

namespace {

constexpr char kNetFolder[] = "/sys/class/net";
constexpr char kVersionFile[] = "/etc.defaults/VERSION";
constexpr int kEthernet = 1;  // as the kernel numbers kinds of links
constexpr size_t kMaxPorts = 8;

struct Link {
    std::string name;
    int index;
    int wanted_number;  // of an "ethK" name, else -1
};

std::string ReadWord(const fs::path &path) {
    std::ifstream file(path);
    std::string word;
    file >> word;
    return word;
}

int ReadNumber(const fs::path &path, int otherwise) {
    std::ifstream file(path);
    int number = otherwise;
    return file >> number ? number : otherwise;
}

int EthernetNumber(const std::string &name) {
    int number = -1;
    int length = 0;
    const bool matches = sscanf(name.c_str(), "eth%d%n", &number, &length) == 1 &&
                         static_cast<size_t>(length) == name.size();
    return matches && number >= 0 && static_cast<size_t>(number) < kMaxPorts ? number : -1;
}

// Ports with hardware behind them, and whatever is called like one.
bool IsPort(const fs::path &folder, int number) {
    if (ReadNumber(folder / "type", 0) != kEthernet) return false;
    return number >= 0 || (fs::exists(folder / "device") && !fs::exists(folder / "wireless"));
}

std::vector<Link> ReadLinks() {
    std::vector<Link> links;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(kNetFolder, error)) {
        const std::string name = entry.path().filename();
        const int number = EthernetNumber(name);
        if (!IsPort(entry.path(), number)) continue;
        links.push_back({name, ReadNumber(entry.path() / "ifindex", 0), number});
    }
    std::sort(links.begin(), links.end(),
              [](const Link &a, const Link &b) { return a.index < b.index; });
    return links;
}

std::string ReadVersionKey(const char *key) {
    char value[32];
    return VLIBCFileGetKeyValue(kVersionFile, key, value, sizeof value, 0) > 0 ? value : "";
}

// A virtual port that is up has no speed of its own.
int SpeedOf(const fs::path &folder) {
    constexpr int kVirtualSpeed = 1000;
    const int speed = ReadNumber(folder / "speed", -1);
    return speed > 0 ? speed : kVirtualSpeed;
}

}  // namespace

std::vector<Port> ReadPorts() {
    const auto addresses = ReadAddresses();
    std::array<const Link *, kMaxPorts> numbered = {};
    const std::vector<Link> links = ReadLinks();
    for (const Link &link : links) {
        if (link.wanted_number >= 0) numbered[static_cast<size_t>(link.wanted_number)] = &link;
    }
    for (const Link &link : links) {  // the others take the numbers that are free
        const auto place = std::find(numbered.begin(), numbered.end(), nullptr);
        if (link.wanted_number < 0 && place != numbered.end()) *place = &link;
    }
    std::vector<Port> ports;
    for (size_t number = 0; number < numbered.size(); ++number) {
        if (!numbered[number]) continue;
        const std::string &name = numbered[number]->name;
        const fs::path folder = fs::path(kNetFolder) / name;
        Port port;
        port.name = "eth" + std::to_string(number);
        port.kernel_name = name;
        const auto address = addresses.find(name);
        if (address != addresses.end()) {
            port.address = address->second.text;
            port.has_static_ip = address->second.is_static;
        }
        port.mac = ReadWord(folder / "address");
        std::error_code error;
        port.bond = fs::read_symlink(folder / "master", error).filename();
        port.is_up = ReadNumber(folder / "carrier", 0) == 1;
        port.speed_mbit = port.is_up ? SpeedOf(folder) : -1;
        ports.push_back(port);
    }
    return ports;
}

std::vector<Bond> ReadBonds() {
    const auto addresses = ReadAddresses();
    std::vector<Bond> bonds;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(kNetFolder, error)) {
        if (!fs::exists(entry.path() / "bonding")) continue;
        Bond bond;
        bond.kernel_name = entry.path().filename();
        bond.name = "bond" + std::to_string(bonds.size());
        const auto address = addresses.find(bond.kernel_name);
        if (address != addresses.end()) {
            bond.address = address->second.text;
            bond.has_static_ip = address->second.is_static;
        }
        bonds.push_back(bond);
    }
    return bonds;
}

std::set<std::string> ReadProcessNames() {
    std::set<std::string> names;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator("/proc", error))
        names.insert(ReadWord(entry.path() / "comm"));
    return names;
}

int64_t ReadMemoryMib() {
    struct sysinfo info;
    if (sysinfo(&info) != 0) return 0;
    return static_cast<int64_t>(info.totalram) * info.mem_unit / (1024 * 1024);
}

std::string ReadSystemVersion() {
    const std::string major = ReadVersionKey("majorversion");
    const std::string minor = ReadVersionKey("minorversion");
    if (major.empty() || minor.empty()) return "";
    const std::string build = ReadVersionKey("buildnumber");
    return major + "." + minor + (build.empty() ? "" : "-" + build);
}
