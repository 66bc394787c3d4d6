#include "machine.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <kevacore.h>
#include <sys/sysinfo.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

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

int ReadNumber(const fs::path &path, int otherwise) {
    std::ifstream file(path);
    int number;
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

std::map<std::string, std::string> ReadAddresses() {
    std::map<std::string, std::string> addresses;
    struct ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0) return addresses;
    const std::unique_ptr<struct ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
    for (const struct ifaddrs *item = list; item; item = item->ifa_next) {
        if (!item->ifa_addr || item->ifa_addr->sa_family != AF_INET) continue;
        char text[INET_ADDRSTRLEN];
        const auto *address = reinterpret_cast<const struct sockaddr_in *>(item->ifa_addr);
        if (inet_ntop(AF_INET, &address->sin_addr, text, sizeof text))
            addresses.emplace(item->ifa_name, text);
    }
    return addresses;
}

std::string ReadVersionKey(const char *key) {
    char value[32];
    return VLIBCFileGetKeyValue(kVersionFile, key, value, sizeof value, 0) > 0 ? value : "";
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
        if (address != addresses.end()) port.address = address->second;
        port.is_up = ReadNumber(folder / "carrier", 0) == 1;
        port.speed_mbit = port.is_up ? ReadNumber(folder / "speed", -1) : -1;
        ports.push_back(port);
    }
    return ports;
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
