// The files that an appliance has and a Debian machine has not, and the small
// helpers that make files and mounts.

#include "node_files.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

// Everything an appliance keeps at fixed places; a machine that is one keeps
// its own out of the node.
constexpr const char *kAppliancePaths[] = {
    "/tmp/zor",      "/usr/keva",          "/var/lib/zor", "/.flash_version",
    "/etc.defaults", "/etc/kevainfo.conf", "/dual_glibc",
};

constexpr const char *kApplianceFolders[] = {
    "/usr/keva/etc/kevazor",
    "/usr/keva/kevazor/bin",
    "/var/lib/zor",
    "/etc.defaults",
};

struct ApplianceFile {
    const char *path;
    const char *text;
};

constexpr ApplianceFile kApplianceFiles[] = {
    {"/.flash_version", "flash_version=\"6.1-1000\"\n"},
    {"/etc.defaults/VERSION", "majorversion=\"6\"\nminorversion=\"1\"\nbuildnumber=\"1000\"\n"},
    {"/etc/kevainfo.conf", "buzzeroffcfg=\"volume_crash,fan_fail\"\n"},
};

}  // namespace

void ThrowErrno(const std::string &what) {
    const int error = errno;
    const std::string text = what + ": " + strerror(error);
    if (error == ENOENT) throw NoSuchFile(text);
    throw NodeError(text);
}

void WriteFile(const std::string &path, const std::string &text) {
    std::ofstream file(path, std::ios::trunc);
    file << text << std::flush;
    if (!file) throw NodeError("cannot write " + path);
}

void MakeFolders(const std::string &path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) throw NodeError("cannot make " + path + ": " + error.message());
}

void Mount(const std::string &source, const std::string &target, const char *type,
           unsigned long flags, const std::string &data) {
    if (mount(source.c_str(), target.c_str(), type, flags, data.c_str()) != 0)
        ThrowErrno("cannot mount " + source + " on " + target);
}

void MakeMountFile(const std::string &path) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) ThrowErrno("cannot make " + path);
    close(fd);
}

void MakeApplianceFiles() {
    for (const char *path : kAppliancePaths) {
        std::error_code error;
        fs::remove_all(path, error);
        if (error) throw NodeError(std::string("cannot hide ") + path + ": " + error.message());
    }
    for (const char *path : kApplianceFolders) MakeFolders(path);
    for (const ApplianceFile &file : kApplianceFiles) WriteFile(file.path, file.text);
}

void MakeNodeMarker() {
    std::error_code error;
    const fs::path name_space = fs::read_symlink("/proc/self/ns/mnt", error);
    if (error) throw NodeError("cannot read /proc/self/ns/mnt: " + error.message());
    WriteFile("/.zornode", name_space.string() + "\n");
}
