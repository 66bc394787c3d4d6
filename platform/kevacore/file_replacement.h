// The crash-safe replacement of a file by new content.
//
// The new content goes into a uniquely named temporary file beside the old one
// and takes its place by rename, so that a reader sees the old file or the new
// one, and a crash leaves the old one or the new one. A failure leaves the old
// file as it is and removes the temporary one.
#pragma once

#include <sys/stat.h>
#include <sys/uio.h>

#include <climits>
#include <string_view>

#include "descriptor.h"
#include "file_image.h"

namespace kevacore {

// A piece of the new content; the text must outlive the replacement.
inline struct iovec FilePiece(std::string_view text) {
    return {const_cast<char *>(text.data()), text.size()};
}

class FileReplacement {
  public:
    // The old image fills itself.
    // cppcheck-suppress uninitMemberVar
    explicit FileReplacement(const char *path) : path_(path) { temporary_path_[0] = '\0'; }
    ~FileReplacement();
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;

    // Loads the present file, whose mode and owner the new one will have. An
    // absent file counts as an empty one. False with errno on a failure.
    bool LoadOld();
    std::string_view OldText() const { return old_.Text(); }

    // Writes the pieces one after the other and puts the new file in place.
    // The pieces may lie in the old text; they are used up. False with errno
    // on a failure.
    bool Commit(struct iovec *pieces, int count);

  private:
    bool CreateTemporary();
    bool KeepModeAndOwner();
    bool OpenFolderIfDurable();

    const char *path_;
    FileImage old_;
    bool has_old_ = false;
    struct stat old_status_;  // set when has_old_ is
    Descriptor temporary_;
    Descriptor folder_;
    char temporary_path_[PATH_MAX];  // empty: there is none
};

}  // namespace kevacore
