#include "foundation/lock_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

#include "foundation/descriptor.h"

namespace {

constexpr int kOpenFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// A lock file is there already, and empty, all but the first time: to create and
// truncate only on need is a third cheaper.
int OpenOrCreate(const char *path) {
    const int fd = open(path, kOpenFlags);
    return fd < 0 && errno == ENOENT ? open(path, kOpenFlags | O_CREAT, 0666) : fd;
}

bool IsEmptyRegularFile(int fd) {
    struct stat status;
    if (fstat(fd, &status) != 0) return false;
    if (S_ISREG(status.st_mode)) return status.st_size == 0 || ftruncate(fd, 0) == 0;
    errno = EINVAL;
    return false;
}

}  // namespace

int OpenLockFile(const char *path) {
    Descriptor file(OpenOrCreate(path));
    return file.IsOpen() && IsEmptyRegularFile(file.Get()) ? file.Release() : -1;
}

bool TryLockFile(int file) {
    return flock(file, LOCK_EX | LOCK_NB) == 0;
}

bool UnlockFile(int file) {
    return flock(file, LOCK_UN) == 0;
}

FILE *OpenLockStream(const char *path) {
    Descriptor file(OpenLockFile(path));
    FILE *stream = file.IsOpen() ? fdopen(file.Get(), "w+") : nullptr;
    if (stream) file.Release();
    return stream;
}

void CloseLockStream(FILE **handle) {
    if (!*handle) return;
    const int saved = errno;
    fclose(*handle);
    errno = saved;
    *handle = nullptr;
}
