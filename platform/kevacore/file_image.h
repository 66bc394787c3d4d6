// The whole content of a small file, read in one piece.
#pragma once

#include <sys/stat.h>

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

    // Reads the file with one open, one read and one close when it is smaller
    // than the inner buffer. Anything but a regular file is refused, without
    // ever blocking and without following a symbolic link.
    Outcome Load(const char *path);

    // The same, and keeps the descriptor open; for a caller that will replace
    // the file and wants its mode and owner.
    Outcome LoadAndHold(const char *path, struct stat *status);

    std::string_view Text() const { return text_; }

  private:
    Outcome Read();
    Outcome ReadLarge(size_t size);

    static constexpr size_t kInnerSize = 16 * 1024;
    static constexpr size_t kLargest = 16 * 1024 * 1024;

    Descriptor file_;
    std::string_view text_;
    std::unique_ptr<char[]> large_;
    char inner_[kInnerSize];  // uninitialised on purpose: only what was read is looked at
};

}  // namespace kevacore
