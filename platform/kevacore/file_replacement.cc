#include "file_replacement.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <cerrno>

#include "temporary_name.h"

namespace kevacore {

namespace {

constexpr mode_t kNewFileMode = 0644;
constexpr unsigned kMaxTemporaries = 100;

bool WriteAll(int fd, struct iovec *pieces, int count) {
    while (count > 0) {
        const ssize_t written = writev(fd, pieces, count);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        size_t rest = static_cast<size_t>(written);
        while (count > 0 && rest >= pieces->iov_len) {
            rest -= pieces->iov_len;
            ++pieces;
            --count;
        }
        if (count > 0 && written == 0) {
            errno = EIO;  // nothing taken and nothing said: not to be tried for ever
            return false;
        }
        if (count > 0) {
            pieces->iov_base = static_cast<char *>(pieces->iov_base) + rest;
            pieces->iov_len -= rest;
        }
    }
    return true;
}

}  // namespace

FileReplacement::~FileReplacement() {
    if (temporary_path_[0] == '\0') return;
    const int saved = errno;
    unlink(temporary_path_);
    errno = saved;
}

bool FileReplacement::LoadOld() {
    const FileImage::Outcome outcome = old_.LoadAll(path_, &old_status_);
    has_old_ = outcome == FileImage::Outcome::kLoaded;
    return outcome != FileImage::Outcome::kFailed;
}

bool FileReplacement::Commit(struct iovec *pieces, int count) {
    if (!CreateTemporary()) return false;
    if (has_old_ && !KeepModeAndOwner()) return false;
    if (!OpenFolderIfDurable()) return false;
    if (!WriteAll(temporary_.Get(), pieces, count)) return false;
    if (folder_.IsOpen() && fdatasync(temporary_.Get()) != 0) return false;
    if (rename(temporary_path_, path_) != 0) return false;
    temporary_path_[0] = '\0';
    // The new file is in place: a folder that cannot be synchronised is no
    // failure of a change that has happened.
    if (folder_.IsOpen()) fsync(folder_.Get());
    return true;
}

bool FileReplacement::CreateTemporary() {
    SweepLeftovers(path_);
    const mode_t mode = has_old_ ? old_status_.st_mode & 07777 : kNewFileMode;
    for (unsigned number = 0; number < kMaxTemporaries; ++number) {
        if (!MakeTemporaryName(path_, number, temporary_path_, sizeof temporary_path_)) break;
        temporary_.Reset(
            open(temporary_path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (temporary_.IsOpen()) return true;
        if (errno != EEXIST) break;
    }
    temporary_path_[0] = '\0';
    return false;
}

bool FileReplacement::KeepModeAndOwner() {
    struct stat status;
    if (fstat(temporary_.Get(), &status) != 0) return false;
    // The owner first: changing it clears the set-id bits of the mode.
    const bool same_owner =
        status.st_uid == old_status_.st_uid && status.st_gid == old_status_.st_gid;
    if (!same_owner && fchown(temporary_.Get(), old_status_.st_uid, old_status_.st_gid) != 0)
        return false;
    const bool same_mode = status.st_mode == old_status_.st_mode;
    return (same_owner && same_mode) || fchmod(temporary_.Get(), old_status_.st_mode & 07777) == 0;
}

// A file in memory does not survive a power cut, so nothing is synchronised
// there. The folder is opened before anything is written, because after the
// rename nothing may fail.
bool FileReplacement::OpenFolderIfDurable() {
    struct statfs file_system;
    if (fstatfs(temporary_.Get(), &file_system) != 0) return false;
    if (file_system.f_type == TMPFS_MAGIC || file_system.f_type == RAMFS_MAGIC) return true;
    char folder[PATH_MAX];
    FolderOf(path_, folder, sizeof folder);
    folder_.Reset(open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder_.IsOpen();
}

}  // namespace kevacore
