#include "chassis_file.h"

void ChassisFile::Refresh() {
    const Stamp now = Look();
    if (is_read_ && now == seen_) return;
    seen_ = now;
    is_read_ = true;
    try {
        chassis_ = LoadChassis(path_);
    } catch (const ChassisError &error) {
        throw ChassisError(path_ + ": " + error.what());
    }
}

bool ChassisFile::Stamp::operator==(const Stamp &other) const {
    return inode == other.inode && size == other.size && changed.tv_sec == other.changed.tv_sec &&
           changed.tv_nsec == other.changed.tv_nsec;
}

ChassisFile::Stamp ChassisFile::Look() const {
    struct stat status;
    if (stat(path_.c_str(), &status) != 0) return {};
    return {status.st_ino, status.st_size, status.st_mtim};
}
