#include "kernel_folder.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr const char *kKernelFolder = "/proc/sys/kernel";
constexpr int kMessageSize = 32536;  // exactly: the kernel then refuses larger ones itself
constexpr int kMessagesPerQueue = 40;

void RaiseQueueLimits() {
    WriteFile(std::string(kKernelFolder) + "/msgmax", std::to_string(kMessageSize));
    WriteFile(std::string(kKernelFolder) + "/msgmnb",
              std::to_string(kMessageSize * kMessagesPerQueue));
}

// No file can be added to procfs: a folder in memory goes over it, with every
// file of the kernel's shown in it again.
void CoverKernelFolder() {
    const int kernel = open(kKernelFolder, O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (kernel < 0) ThrowErrno(std::string("cannot open ") + kKernelFolder);
    const std::string below = "/proc/self/fd/" + std::to_string(kernel);
    Mount("zornode", kKernelFolder, "tmpfs", MS_NOSUID | MS_NODEV | MS_NOEXEC, "mode=0755");
    for (const fs::directory_entry &entry : fs::directory_iterator(below + "/")) {
        const std::string name = entry.path().filename();
        const std::string target = std::string(kKernelFolder) + "/" + name;
        if (entry.is_directory())
            MakeFolders(target);
        else
            MakeMountFile(target);
        Mount(below + "/" + name, target, nullptr, MS_BIND | MS_REC);
    }
    close(kernel);
}

void PublishSerial(const char *name, const std::string &serial) {
    if (!serial.empty()) WriteFile(std::string(kKernelFolder) + "/" + name, serial + "\n");
}

}  // namespace

void MakeKernelFolder(const NodeOptions &options) {
    if (options.raise_queue_limits) RaiseQueueLimits();
    CoverKernelFolder();
    PublishSerial("keva_serial", options.serial);
    PublishSerial("keva_custom_serial", options.custom_serial);
}
