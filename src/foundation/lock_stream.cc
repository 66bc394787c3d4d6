#include "foundation/lock_stream.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

#include "foundation/descriptor.h"

namespace {

constexpr int kOpenFlags =
    O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

bool IsRegularFile(int fd) {
    struct stat status;
    if (fstat(fd, &status) != 0) return false;
    if (S_ISREG(status.st_mode)) return true;
    errno = EINVAL;
    return false;
}

}  // namespace

FILE *OpenLockStream(const char *path) {
    Descriptor file(open(path, kOpenFlags, 0666));
    if (!file.IsOpen() || !IsRegularFile(file.Get())) return nullptr;
    FILE *stream = fdopen(file.Get(), "w+");
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

bool TryLockStream(FILE *stream) {
    return flock(fileno(stream), LOCK_EX | LOCK_NB) == 0;
}

bool UnlockStream(FILE *stream) {
    return flock(fileno(stream), LOCK_UN) == 0;
}
