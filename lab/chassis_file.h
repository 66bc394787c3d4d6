// The file of a chassis, read again whenever it has changed.
#pragma once

#include <sys/stat.h>

#include <string>

#include "chassis.h"

class ChassisFile {
  public:
    explicit ChassisFile(std::string path) : path_(std::move(path)) {}

    // Reads the file if it has changed since the last call. A file that is no
    // description throws once, and the chassis stays as it was.
    void Refresh();

    const Chassis &Get() const { return chassis_; }

  private:
    // What tells one content of the file from the next.
    struct Stamp {
        ino_t inode = 0;
        off_t size = -1;
        struct timespec changed = {};
        bool operator==(const Stamp &other) const;
    };
    Stamp Look() const;

    const std::string path_;
    Stamp seen_;
    bool is_read_ = false;
    Chassis chassis_;
};
