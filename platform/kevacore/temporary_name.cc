#include "temporary_name.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <string_view>

namespace kevacore {

namespace {

constexpr std::string_view kSuffix = ".temp";

// A file that is younger may belong to a process of another pid namespace.
constexpr time_t kLeftoverAge = 60;  // seconds

const char *BaseName(const char *path) {
    const char *slash = strrchr(path, '/');
    return slash ? slash + 1 : path;
}

// The thread id in a name made by MakeTemporaryName, 0 in any other name.
pid_t WriterOf(std::string_view name) {
    if (name.size() < kSuffix.size() || name.front() != '.' || !name.ends_with(kSuffix)) return 0;
    name.remove_suffix(kSuffix.size());
    const size_t number = name.rfind('.');
    if (number == 0 || number == std::string_view::npos) return 0;
    const size_t thread = name.rfind('.', number - 1);
    if (thread == 0 || thread == std::string_view::npos) return 0;
    pid_t pid = 0;
    for (char digit : name.substr(thread + 1, number - thread - 1)) {
        if (digit < '0' || digit > '9' || pid > INT_MAX / 10 - 1) return 0;
        pid = pid * 10 + (digit - '0');
    }
    return pid;
}

bool IsLeftover(int folder, const char *name) {
    const pid_t writer = WriterOf(name);
    if (writer <= 0 || kill(writer, 0) == 0 || errno != ESRCH) return false;
    struct stat status;
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
    return S_ISREG(status.st_mode) && time(nullptr) - status.st_mtime > kLeftoverAge;
}

// True once for each folder; two folders may share a bit, which saves one of
// them from a sweep and does no other harm.
bool IsFirstWriteInto(std::string_view folder) {
    static std::atomic<uint64_t> seen{0};
    const uint64_t bit = uint64_t{1} << (std::hash<std::string_view>{}(folder) % 64);
    if (seen.load(std::memory_order_relaxed) & bit) return false;
    return (seen.fetch_or(bit, std::memory_order_relaxed) & bit) == 0;
}

}  // namespace

void FolderOf(const char *path, char *folder, size_t size) {
    const char *base = BaseName(path);
    if (base == path)
        snprintf(folder, size, ".");
    else if (base == path + 1)
        snprintf(folder, size, "/");
    else
        snprintf(folder, size, "%.*s", static_cast<int>(base - path - 1), path);
}

// Without snprintf, which would cost more than the system calls around it.
bool MakeTemporaryName(const char *path, unsigned number, char *name, size_t size) {
    char digits[2][16];
    const auto decimal = [](char(&text)[16], unsigned value) {
        return std::string_view(
            text, static_cast<size_t>(std::to_chars(text, text + sizeof text, value).ptr - text));
    };
    const std::string_view base = BaseName(path);
    const std::string_view folder(path, static_cast<size_t>(base.data() - path));
    const std::string_view parts[] = {folder,
                                      ".",
                                      base,
                                      ".",
                                      decimal(digits[0], static_cast<unsigned>(gettid())),
                                      ".",
                                      decimal(digits[1], number),
                                      kSuffix};
    size_t length = 0;
    for (const std::string_view part : parts) {
        if (part.size() >= size - length) {
            errno = ENAMETOOLONG;
            return false;
        }
        memcpy(name + length, part.data(), part.size());
        length += part.size();
    }
    name[length] = '\0';
    return true;
}

void SweepLeftovers(const char *path) {
    if (!IsFirstWriteInto({path, static_cast<size_t>(BaseName(path) - path)})) return;
    const int saved = errno;
    char folder[PATH_MAX];
    FolderOf(path, folder, sizeof folder);
    if (DIR *listing = opendir(folder)) {
        while (const dirent *entry = readdir(listing)) {
            if (IsLeftover(dirfd(listing), entry->d_name))
                unlinkat(dirfd(listing), entry->d_name, 0);
        }
        closedir(listing);
    }
    errno = saved;
}

}  // namespace kevacore
