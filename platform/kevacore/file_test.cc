// Questions about files, and the touch that makes flag files.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "descriptor.h"
#include "error_code.h"
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::Descriptor;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "file_test";
constexpr mode_t kNewFileMode = 0644;

}  // namespace

extern "C" {

// A flag that is a link to nothing is there: the link itself is what counts.
int VLIBCFileExist(const char *path) {
    if (!path) {
        BadParameter(kSource, __LINE__);
        return 0;
    }
    struct stat status;
    return lstat(path, &status) == 0 ? 1 : 0;
}

int VLIBCFileCheckDir(const char *path) {
    if (!path) {
        BadParameter(kSource, __LINE__);
        return 0;
    }
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode) ? 1 : 0;
}

// An existing file is touched by its name, which keeps its inode and takes one
// call. Of a symbolic link the link itself is touched.
int VLIBCFileTouch(const char *path) {
    if (!path) return BadParameter(kSource, __LINE__);
    if (utimensat(AT_FDCWD, path, nullptr, AT_SYMLINK_NOFOLLOW) == 0) return 0;
    if (errno != ENOENT) return SystemError(kSource, __LINE__);
    const Descriptor file(
        open(path, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kNewFileMode));
    return file.IsOpen() ? 0 : SystemError(kSource, __LINE__);
}

}  // extern "C"
