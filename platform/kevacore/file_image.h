// The whole content of a small file, read in one piece.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <memory>
#include <string_view>

#include "descriptor.h"

namespace kevacore {

class FileImage {
  public:
    enum class Outcome {
        kLoaded,
        kAbsent,
        kFailed  // errno says why
    };

    // Reads the file with one open and one read when it is smaller than the inner
    // buffer; it stays open as long as the image lives. Anything but a regular file
    // is refused, without ever blocking and without following a symbolic link.
    // A read may give less than there is: who does not find what he looks for
    // asks for the rest.
    // Inlined, with whom it calls: a return behind a system call, which no processor
    // foresees, costs as much as half a search.
    [[gnu::always_inline]] Outcome Load(const char *path) {
        file_.Reset(open(path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
        if (!file_.IsOpen()) return errno == ENOENT ? Outcome::kAbsent : Outcome::kFailed;
        const ssize_t count = ReadAt(inner_, kInnerSize, 0);
        if (count < 0) return Outcome::kFailed;
        text_ = {inner_, static_cast<size_t>(count)};
        // Nothing or a full buffer: an empty or a large file, or no regular file at all.
        return count > 0 && text_.size() < kInnerSize ? Outcome::kLoaded : ReadLarge();
    }

    // Reads what Load has left, which is nothing but for a read cut short.
    Outcome LoadRest();

    // The whole file, with its mode and owner, for a caller that will replace it.
    Outcome LoadAll(const char *path, struct stat *status);

    std::string_view Text() const { return text_; }

  private:
    // pread, because it refuses pipes and sockets instead of draining them.
    [[gnu::always_inline]] ssize_t ReadAt(char *buffer, size_t size, size_t offset) const {
        ssize_t count;
        do {
            count = pread(file_.Get(), buffer, size, static_cast<off_t>(offset));
        } while (count < 0 && errno == EINTR);
        return count;
    }

    Outcome ReadLarge();

    static constexpr size_t kInnerSize = size_t{16} * 1024;
    static constexpr size_t kLargest = size_t{16} * 1024 * 1024;

    Descriptor file_;
    std::string_view text_;
    bool is_whole_ = false;
    std::unique_ptr<char[]> large_;
    char inner_[kInnerSize];  // uninitialised on purpose: only what was read is looked at
};

}  // namespace kevacore
