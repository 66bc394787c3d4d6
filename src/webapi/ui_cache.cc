#include "webapi/ui_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "foundation/descriptor.h"
#include "foundation/log.h"
#include "foundation/pause.h"
#include "webapi/wall_clock.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr double kFreshFor = 12;  // seconds
constexpr int kAttempts = 31;
constexpr mode_t kMode = 0644;

// The file that a record is written to, in the folder of the cache. It has no name
// until the record is whole, so that whoever else writes one at the same time, what
// bears the name is a whole record. Not every file system can do so.
class TemporaryFile {
  public:
    explicit TemporaryFile(const char *path) {
        if (path) snprintf(name_, sizeof name_, "%s.temp", path);
    }
    ~TemporaryFile() {
        const int saved = errno;
        if (isInTheFolder_) unlink(name_);
        errno = saved;
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const char *Name() const { return name_; }

    int Open() {
        char folder[sizeof name_];
        const char *const slash = strrchr(name_, '/');
        snprintf(folder, sizeof folder, "%.*s", slash ? static_cast<int>(slash - name_) : 1,
                 slash ? name_ : ".");
        int file = open(folder, O_TMPFILE | O_WRONLY | O_CLOEXEC, kMode);
        if (file < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) {
            file = open(name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kMode);
            isInTheFolder_ = hasName_ = file >= 0;
            isTaken_ = !hasName_ && errno == EEXIST;
        }
        return file;
    }

    bool GiveName(int file) {
        if (hasName_) return true;
        hasName_ = linkat(file, "", AT_FDCWD, name_, AT_EMPTY_PATH) == 0;
        if (!hasName_ && errno == ENOENT) {  // what a process without the capability gets
            char source[32];
            snprintf(source, sizeof source, "/proc/self/fd/%d", file);
            hasName_ = linkat(AT_FDCWD, source, AT_FDCWD, name_, AT_SYMLINK_FOLLOW) == 0;
        }
        isTaken_ = !hasName_ && errno == EEXIST;
        isInTheFolder_ = hasName_;
        return hasName_;
    }

    // Whether another's file has the name. It is removed at the end, as an own one is.
    bool IsTaken() {
        const int saved = errno;
        struct stat status;
        isTaken_ = isTaken_ || (!hasName_ && lstat(name_, &status) == 0);
        isInTheFolder_ = isInTheFolder_ || isTaken_;
        errno = saved;
        return isTaken_;
    }

    bool MoveTo(const char *path) {
        const bool isMoved = rename(name_, path) == 0;
        isInTheFolder_ = !isMoved;
        return isMoved;
    }

  private:
    char name_[128] = {};
    bool hasName_ = false;
    bool isTaken_ = false;
    bool isInTheFolder_ = false;
};

}  // namespace

int32_t writeObject(const char *path, const void *buffer, size_t length) {
    TemporaryFile temporary(path);
    if (!path || !buffer || length == 0) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    Descriptor file(temporary.Open());
    const bool isWritten =
        file.IsOpen() && write(file.Get(), buffer, length) == static_cast<ssize_t>(length);
    const bool isNamed = isWritten && temporary.GiveName(file.Get());
    // Reported before any other failure; asked last, because a name given tells it too.
    if (!isNamed && temporary.IsTaken()) {
        ZOR_ERROR("Error: File exist. %s", temporary.Name());
        return -1;
    }
    if (!file.IsOpen()) {
        ZOR_ERROR("Failed to fopen: %s", path);
        return -1;
    }
    int32_t result = 0;
    if (!isWritten) {
        ZOR_ERROR("Load %s failed.", path);
        result = -1;
    } else if (!isNamed || !temporary.MoveTo(path)) {
        ZOR_ERROR("Failed to mv %s %s", temporary.Name(), path);
        result = -1;
    }
    if (close(file.Release()) != 0) ZOR_ERROR("Failed to fclose: %s", path);
    return result;
}

int32_t readObject(const char *path, void *buffer, size_t length) {
    if (!buffer) return -1;
    struct stat status;
    if (lstat(path, &status) != 0) return errno == ENOENT ? 0 : -1;
    const double age = AgeOf(status);
    if (!(age >= 0 && age < kFreshFor)) return 0;
    Descriptor file(open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.IsOpen()) {
        ZOR_ERROR("Failed to fopen: %s", path);
        return -1;
    }
    int32_t result = 1;
    errno = 0;  // a short file is no error of a call
    if (read(file.Get(), buffer, length) != static_cast<ssize_t>(length)) {
        ZOR_ERROR("Load %s failed. err:%s", path, strerror(errno));
        result = -1;
    }
    if (close(file.Release()) != 0) ZOR_ERROR("Failed to fclose: %s", path);
    return result;
}

int32_t ReadWhenFresh(const char *path, void *buffer, size_t length, bool wait) {
    int32_t result = -1;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        result = path ? readObject(path, buffer, length) : -1;
        if (result > 0 || !wait) break;
        PauseSeconds(1);
    }
    return result;
}
