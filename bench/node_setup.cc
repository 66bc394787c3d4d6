#include "node_setup.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

bool IsInPrivateNode() {
    std::ifstream marker("/.zornode");
    std::string name_space;
    std::error_code error;
    return std::getline(marker, name_space) &&
           name_space == fs::read_symlink("/proc/self/ns/mnt", error);
}

}  // namespace

void SetUpNode() {
    if (!IsInPrivateNode()) {
        fprintf(stderr, "kevazor_bench: run me in a private node: scripts/bench\n");
        exit(2);
    }
    fs::create_directories("/tmp/zor");
    std::ofstream(kKeyFile).flush();
    std::ofstream(kChangeFlag).flush();
    std::ofstream status(kStatusFile);
    for (int number = 0; number < 42; ++number) {
        if (number == 21) status << kEntry << "=\"10.0.0.1,10.0.0.2\"\n";
        status << "some_entry_of_the_status_" << number << "=\"" << std::string(28, 'v') << "\"\n";
    }
    status << "is_local_handler_ready=\"yes\"\n";
}
