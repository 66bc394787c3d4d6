#include "private_root.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "device_folder.h"
#include "mount_table.h"

namespace fs = std::filesystem;

namespace {

// Where the root is put together: an empty place of the machine, covered in
// this namespace alone.
constexpr const char *kStagingCandidates[] = {"/mnt", "/media", "/srv", "/opt"};

// Folders that a node has of its own; what is mounted there stays outside.
constexpr const char *kOwnFolders[] = {"/proc", "/sys", "/dev", "/run", "/tmp"};

std::string ChooseStaging(const std::vector<std::string> &mounts) {
    for (const char *candidate : kStagingCandidates) {
        const bool is_free = std::none_of(mounts.begin(), mounts.end(), [&](const auto &point) {
            return IsWithin(point, candidate);
        });
        if (is_free && fs::is_directory(candidate)) return candidate;
    }
    throw NodeError("no free folder to build the node's root in (tried /mnt, /media, /srv, /opt)");
}

class RootBuilder {
  public:
    explicit RootBuilder(std::string staging)
        : staging_(std::move(staging)), root_(staging_ + "/root") {}

    void Build(const NodeOptions &options, const std::vector<std::string> &mounts) {
        Mount("zornode", staging_, "tmpfs", MS_NOSUID, "mode=0755");
        MakeFolders(root_);
        Overlay("/", root_);
        for (const std::string &point : mounts) Carry(point);
        MakeOwnFolders(options);
        for (const std::string &folder : options.shared_folders) Share(folder);
    }

    const std::string &Root() const { return root_; }

  private:
    // Shows a folder of the machine; changes go to memory.
    void Overlay(const std::string &folder, const std::string &target) {
        const std::string layer = staging_ + "/layer" + std::to_string(layers_++);
        MakeFolders(layer + "/upper");
        MakeFolders(layer + "/work");
        struct stat status;
        if (stat(folder.c_str(), &status) == 0)
            chmod((layer + "/upper").c_str(), status.st_mode & 07777);
        Mount("overlay", target, "overlay", 0,
              "lowerdir=" + folder + ",upperdir=" + layer + "/upper,workdir=" + layer + "/work");
    }

    // Shows a file or a folder that cannot have a layer, read-only.
    void BindReadOnly(const std::string &source, const std::string &target) {
        Mount(source, target, nullptr, MS_BIND);
        Mount("none", target, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY);
    }

    // A mount of the machine outside the folders that a node has of its own.
    void Carry(const std::string &point) {
        const bool is_own = std::any_of(std::begin(kOwnFolders), std::end(kOwnFolders),
                                        [&](const char *own) { return IsWithin(point, own); });
        if (point == "/" || is_own || !fs::exists(root_ + point)) return;
        if (!fs::is_directory(point)) {
            BindReadOnly(point, root_ + point);
            return;
        }
        try {
            Overlay(point, root_ + point);
        } catch (const NodeError &) {  // a file system that overlays refuse
            BindReadOnly(point, root_ + point);
        }
    }

    void MakeOwnFolders(const NodeOptions &options) {
        Mount("proc", root_ + "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC);
        if (options.ports > 0)  // the machine's shows the machine's network
            Mount("sysfs", root_ + "/sys", "sysfs", MS_NOSUID | MS_NODEV | MS_NOEXEC | MS_RDONLY);
        else
            Mount("/sys", root_ + "/sys", nullptr, MS_BIND | MS_REC);
        Mount("zornode", root_ + "/run", "tmpfs", MS_NOSUID | MS_NODEV, "mode=0755");
        MakeDeviceFolder(root_ + "/dev");
        MakeTemporaryFolder();
    }

    // /tmp is plain memory, for the sake of /tmp/zor; what else the machine has
    // there can be seen.
    void MakeTemporaryFolder() {
        const std::string target = root_ + "/tmp";
        Mount("zornode", target, "tmpfs", MS_NOSUID | MS_NODEV, "mode=1777");
        for (const fs::directory_entry &entry : fs::directory_iterator("/tmp")) {
            const std::string shown = target + "/" + entry.path().filename().string();
            try {
                if (entry.path() != "/tmp/zor") ShowTemporary(entry, shown);
            } catch (const NoSuchFile &) {  // temporary files come and go
                std::error_code not_made;
                fs::remove(shown, not_made);
            }
        }
    }

    void ShowTemporary(const fs::directory_entry &entry, const std::string &shown) {
        std::error_code gone;
        const fs::file_status status = entry.symlink_status(gone);
        if (fs::is_directory(status)) {
            MakeFolders(shown);
            Overlay(entry.path(), shown);
        } else if (fs::is_regular_file(status)) {
            MakeMountFile(shown);
            BindReadOnly(entry.path(), shown);
        }
    }

    void Share(const std::string &folder) {
        const std::string target = root_ + folder;
        MakeFolders(target);
        Mount(folder, target, nullptr, MS_BIND | MS_REC);
    }

    const std::string staging_;
    const std::string root_;
    int layers_ = 0;
};

void SwitchRoot(const std::string &root) {
    if (chdir(root.c_str()) != 0) ThrowErrno("cannot enter " + root);
    // The old root lands on top of the new one and is taken off again.
    if (syscall(SYS_pivot_root, ".", ".") != 0) ThrowErrno("cannot switch to the node's root");
    if (umount2(".", MNT_DETACH) != 0) ThrowErrno("cannot leave the machine's root");
}

}  // namespace

void EnterPrivateRoot(const NodeOptions &options) {
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        ThrowErrno("cannot make the mounts private");
    const fs::path folder = fs::current_path();
    const std::vector<std::string> mounts = ReadMountPoints();
    RootBuilder builder(ChooseStaging(mounts));
    builder.Build(options, mounts);
    SwitchRoot(builder.Root());
    if (chdir(folder.c_str()) != 0) ThrowErrno("cannot return to " + folder.string());
}
