#include "device_folder.h"

#include <sys/mount.h>
#include <unistd.h>

#include "node.h"

namespace {

constexpr const char *kDevices[] = {"null", "zero", "full", "random", "urandom", "tty"};

struct Link {
    const char *name;
    const char *target;
};

constexpr Link kLinks[] = {
    {"fd", "/proc/self/fd"},       {"stdin", "/proc/self/fd/0"}, {"stdout", "/proc/self/fd/1"},
    {"stderr", "/proc/self/fd/2"}, {"ptmx", "pts/ptmx"},
};

}  // namespace

void MakeDeviceFolder(const std::string &folder) {
    Mount("zornode", folder, "tmpfs", MS_NOSUID, "mode=0755");
    for (const char *device : kDevices) {
        const std::string target = folder + "/" + device;
        MakeMountFile(target);
        Mount(std::string("/dev/") + device, target, nullptr, MS_BIND);
    }
    for (const Link &link : kLinks) {
        if (symlink(link.target, (folder + "/" + link.name).c_str()) != 0)
            ThrowErrno(std::string("cannot link ") + link.name);
    }
    MakeFolders(folder + "/pts");
    Mount("devpts", folder + "/pts", "devpts", MS_NOSUID | MS_NOEXEC,
          "newinstance,ptmxmode=0666,mode=0620");
    MakeFolders(folder + "/shm");
    Mount("zornode", folder + "/shm", "tmpfs", MS_NOSUID | MS_NODEV, "mode=1777");
}
