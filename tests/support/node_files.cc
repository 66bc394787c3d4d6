#include "support/node_files.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

bool IsInPrivateNode() {
    std::ifstream marker("/.zornode");
    std::string name_space;
    std::error_code error;
    return std::getline(marker, name_space) &&
           name_space == fs::read_symlink("/proc/self/ns/mnt", error);
}

void RequirePrivateNode() {
    static const bool is_private = IsInPrivateNode();
    if (is_private) return;
    fprintf(stderr, "refusing to run outside a private node; use: zornode -- PROGRAM\n");
    exit(2);
}

void WriteNodeFile(const std::string &path, const std::string &text) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream file(path, std::ios::trunc | std::ios::binary);
    file << text;
    if (!file.flush()) {
        fprintf(stderr, "cannot write %s\n", path.c_str());
        exit(1);
    }
}
