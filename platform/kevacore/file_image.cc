#include "file_image.h"

#include <fcntl.h>

#include <cerrno>
#include <new>

namespace kevacore {

namespace {

constexpr int kReadFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;

// pread, because it refuses pipes and sockets instead of draining them.
ssize_t ReadAt(int fd, char *buffer, size_t size, size_t offset) {
    ssize_t count;
    do {
        count = pread(fd, buffer, size, static_cast<off_t>(offset));
    } while (count < 0 && errno == EINTR);
    return count;
}

}  // namespace

FileImage::Outcome FileImage::Load(const char *path) {
    file_.Reset(open(path, kReadFlags));
    if (!file_.IsOpen()) return errno == ENOENT ? Outcome::kAbsent : Outcome::kFailed;
    const Outcome outcome = Read();
    file_.Reset(-1);
    return outcome;
}

FileImage::Outcome FileImage::LoadAndHold(const char *path, struct stat *status) {
    file_.Reset(open(path, kReadFlags));
    if (!file_.IsOpen()) return errno == ENOENT ? Outcome::kAbsent : Outcome::kFailed;
    if (fstat(file_.Get(), status) != 0) return Outcome::kFailed;
    return Read();
}

FileImage::Outcome FileImage::Read() {
    const ssize_t count = ReadAt(file_.Get(), inner_, kInnerSize, 0);
    if (count < 0) return Outcome::kFailed;
    if (count > 0 && static_cast<size_t>(count) < kInnerSize) {
        text_ = {inner_, static_cast<size_t>(count)};
        return Outcome::kLoaded;
    }
    // Nothing or a full buffer: an empty or a large file, or no regular file at all.
    struct stat status;
    if (fstat(file_.Get(), &status) != 0) return Outcome::kFailed;
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return Outcome::kFailed;
    }
    if (count == 0) return Outcome::kLoaded;
    return ReadLarge(static_cast<size_t>(status.st_size));
}

FileImage::Outcome FileImage::ReadLarge(size_t size) {
    if (size > kLargest) {
        errno = EFBIG;
        return Outcome::kFailed;
    }
    large_.reset(new (std::nothrow) char[size]);
    if (!large_) {
        errno = ENOMEM;
        return Outcome::kFailed;
    }
    size_t filled = 0;
    while (filled < size) {
        const ssize_t count = ReadAt(file_.Get(), large_.get() + filled, size - filled, filled);
        if (count < 0) return Outcome::kFailed;
        if (count == 0) break;
        filled += static_cast<size_t>(count);
    }
    text_ = {large_.get(), filled};
    return Outcome::kLoaded;
}

}  // namespace kevacore
