// Stands in for a program that the library runs: writes down what it was called
// as and with, and which descriptors it found open, then does what the program
// of its name would do, if that was kept, or ends with the exit code it was told.

#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/recorded_programs.h"

namespace fs = std::filesystem;

namespace {

std::string OpenDescriptors() {
    std::string numbers;
    DIR *folder = opendir("/proc/self/fd");
    while (const dirent *entry = folder ? readdir(folder) : nullptr) {
        const int number = atoi(entry->d_name);
        if (entry->d_name[0] != '.' && number > 2 && number != dirfd(folder))
            numbers += std::string(" ") + entry->d_name;
    }
    if (folder) closedir(folder);
    return numbers;
}

}  // namespace

int main(int argc, char **argv) {
    const std::string descriptors = OpenDescriptors();
    std::string line = "run";
    for (int index = 0; index < argc; ++index) line += std::string(" ") + argv[index];
    std::ofstream record(kProgramRecord, std::ios::app);
    record << line << (descriptors.empty() ? "" : " with descriptors" + descriptors) << "\n"
           << std::flush;
    const std::string name = fs::path(argv[0]).filename();
    std::ifstream exit_file(std::string(kProgramExitCodes) + name);
    int exit_code = 0;
    if (exit_file >> exit_code) return exit_code;
    const std::string real = std::string(kRealPrograms) + name;
    if (fs::exists(real)) execv(real.c_str(), argv);
    return 0;
}
