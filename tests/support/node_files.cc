#include "support/node_files.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "zornode/private_node.h"

namespace fs = std::filesystem;

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
