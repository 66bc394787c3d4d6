#include "file_image.h"

#include <new>

namespace kevacore {

FileImage::Outcome FileImage::LoadAll(const char *path, struct stat *status) {
    const Outcome outcome = Load(path);
    if (outcome != Outcome::kLoaded) return outcome;
    if (fstat(file_.Get(), status) != 0) return Outcome::kFailed;
    return text_.size() < static_cast<size_t>(status->st_size) ? LoadRest() : Outcome::kLoaded;
}

FileImage::Outcome FileImage::LoadRest() {
    while (!is_whole_) {
        const size_t filled = text_.size();
        if (filled == kInnerSize) return ReadLarge();
        const ssize_t count = ReadAt(inner_ + filled, kInnerSize - filled, filled);
        if (count < 0) return Outcome::kFailed;
        is_whole_ = count == 0;
        text_ = {inner_, filled + static_cast<size_t>(count)};
    }
    return Outcome::kLoaded;
}

FileImage::Outcome FileImage::ReadLarge() {
    struct stat status;
    if (fstat(file_.Get(), &status) != 0) return Outcome::kFailed;
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return Outcome::kFailed;
    }
    const auto size = static_cast<size_t>(status.st_size);
    if (size > kLargest) {
        errno = EFBIG;
        return Outcome::kFailed;
    }
    if (size > kInnerSize) {
        large_.reset(new (std::nothrow) char[size]);
        if (!large_) {
            errno = ENOMEM;
            return Outcome::kFailed;
        }
    }
    char *const buffer = large_ ? large_.get() : inner_;
    size_t filled = 0;
    while (filled < size) {
        const ssize_t count = ReadAt(buffer + filled, size - filled, filled);
        if (count < 0) return Outcome::kFailed;
        if (count == 0) break;
        filled += static_cast<size_t>(count);
    }
    text_ = {buffer, filled};
    is_whole_ = true;
    return Outcome::kLoaded;
}

}  // namespace kevacore
