#include "interface_lists.h"

#include <algorithm>

#include "machine.h"

namespace {

void Append(std::string *list, const std::string &item, char separator = ',') {
    if (!list->empty()) *list += separator;
    *list += item;
}

class ListBuilder {
  public:
    ListBuilder() : ports_(ReadPorts()), bonds_(ReadBonds()) {}

    // Ports that are in no bond, and bonds with their members.
    std::vector<std::string> MachineNames() const {
        std::vector<std::string> names;
        for (const Port &port : ports_) {
            if (port.bond.empty()) names.push_back(port.name);
        }
        for (const Bond &bond : bonds_) {
            std::string name = bond.name;
            for (const Port &port : ports_) {
                if (port.bond == bond.kernel_name) Append(&name, port.name, ':');
            }
            names.push_back(name);
        }
        return names;
    }

    InterfaceLists Build(const std::vector<std::string> &names, bool has_heartbeat) const {
        InterfaceLists lists;
        lists.speeds = std::to_string(has_heartbeat ? FastestPort() : -1);
        bool is_first = true;
        for (const std::string &name : names) {
            const std::vector<std::string> fields = SplitText(name, ':');
            const char *const comma = is_first ? "" : ",";
            lists.names += comma + name;
            lists.addresses += comma + AddressOf(fields[0]);
            lists.states += std::string(comma) + (IsUp(fields) ? "up" : "down");
            lists.statics += std::string(comma) + (HasStaticIp(fields[0]) ? "yes" : "no");
            lists.speeds += "," + SpeedsOf(fields);
            is_first = false;
        }
        return lists;
    }

  private:
    const Port *FindPort(const std::string &name) const {
        const auto found = std::find_if(ports_.begin(), ports_.end(),
                                        [&](const Port &port) { return port.name == name; });
        return found == ports_.end() ? nullptr : &*found;
    }

    const Bond *FindBond(const std::string &name) const {
        const auto found = std::find_if(bonds_.begin(), bonds_.end(),
                                        [&](const Bond &bond) { return bond.name == name; });
        return found == bonds_.end() ? nullptr : &*found;
    }

    std::string AddressOf(const std::string &name) const {
        if (const Port *port = FindPort(name)) return port->address;
        const Bond *bond = FindBond(name);
        return bond ? bond->address : "";
    }

    bool HasStaticIp(const std::string &name) const {
        if (const Port *port = FindPort(name)) return port->has_static_ip;
        const Bond *bond = FindBond(name);
        return bond && bond->has_static_ip;
    }

    // A bond is up when one of its members is.
    bool IsUp(const std::vector<std::string> &fields) const {
        return std::any_of(fields.begin(), fields.end(), [&](const std::string &field) {
            const Port *port = FindPort(field);
            return port && port->is_up;
        });
    }

    int SpeedOf(const std::string &name) const {
        const Port *port = FindPort(name);
        return port ? port->speed_mbit : -1;
    }

    // The bond's own place holds 0 and is never read.
    std::string SpeedsOf(const std::vector<std::string> &fields) const {
        if (fields.size() == 1) return std::to_string(SpeedOf(fields[0]));
        std::string speeds = "0";
        for (size_t member = 1; member < fields.size(); ++member)
            Append(&speeds, std::to_string(SpeedOf(fields[member])), ':');
        return speeds;
    }

    int FastestPort() const {
        int fastest = -1;
        for (const Port &port : ports_) fastest = std::max(fastest, port.speed_mbit);
        return fastest;
    }

    const std::vector<Port> ports_;
    const std::vector<Bond> bonds_;
};

}  // namespace

InterfaceLists ListInterfaces(const std::vector<std::string> &names, bool has_heartbeat) {
    const ListBuilder builder;
    return builder.Build(names.empty() ? builder.MachineNames() : names, has_heartbeat);
}

std::string ListMacAddresses() {
    std::string list;
    for (const Port &port : ReadPorts()) Append(&list, port.mac);
    return list;
}

std::vector<std::string> SplitText(const std::string &text, char separator) {
    std::vector<std::string> items;
    size_t begin = 0;
    for (size_t end; (end = text.find(separator, begin)) != std::string::npos; begin = end + 1)
        items.push_back(text.substr(begin, end - begin));
    items.push_back(text.substr(begin));
    return items;
}
