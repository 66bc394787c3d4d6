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

    // Reads the file with one open and one read when it is smaller than the inner
    // buffer; it stays open as long as the image lives. Anything but a regular file
    // is refused, without ever blocking and without following a symbolic link.
    // A read may give less than there is: who does not find what he looks for
    // asks for the rest.
    Outcome Load(const char *path);

    // Reads what Load has left, which is nothing but for a read cut short.
    Outcome LoadRest();

    // The whole file, with its mode and owner, for a caller that will replace it.
    Outcome LoadAll(const char *path, struct stat *status);

    std::string_view Text() const { return text_; }

  private:
    Outcome Read();
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
