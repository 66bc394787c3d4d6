// How a program tells that it runs in a private node, where the fixed paths are
// not the machine's own.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

// The marker names the mount namespace that it was made for; on a machine that
// has none, or in another namespace, this is no private node.
inline bool IsInPrivateNode() {
    std::ifstream marker("/.zornode");
    std::string name_space;
    std::error_code error;
    return std::getline(marker, name_space) &&
           name_space == std::filesystem::read_symlink("/proc/self/ns/mnt", error);
}
