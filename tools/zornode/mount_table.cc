#include "mount_table.h"

#include <fstream>
#include <sstream>

#include "node.h"

namespace {

// Spaces and the like stand in the table as three octal digits.
std::string Unescape(const std::string &text) {
    std::string plain;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\\' && at + 3 < text.size()) {
            plain += static_cast<char>(std::stoi(text.substr(at + 1, 3), nullptr, 8));
            at += 3;
        } else {
            plain += text[at];
        }
    }
    return plain;
}

}  // namespace

std::vector<std::string> ReadMountPoints() {
    std::ifstream table("/proc/self/mountinfo");
    if (!table) throw NodeError("cannot read /proc/self/mountinfo");
    std::vector<std::string> points;
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string id, parent, device, root, point;
        if (fields >> id >> parent >> device >> root >> point) points.push_back(Unescape(point));
    }
    return points;
}

bool IsWithin(const std::string &path, const std::string &folder) {
    if (folder == "/") return true;
    return path == folder || path.starts_with(folder + "/");
}
