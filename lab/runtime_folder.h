// The runtime folder /tmp/zor, which is there while a manager runs.
#pragma once

#include <sys/types.h>

// Makes the folder and the key file for the life of the object, and removes
// everything in it at the end. What a crashed manager left is removed first.
class RuntimeFolder {
  public:
    // Throws std::runtime_error when another manager runs or the folder cannot
    // be made.
    RuntimeFolder();
    ~RuntimeFolder();
    RuntimeFolder(const RuntimeFolder &) = delete;
    RuntimeFolder &operator=(const RuntimeFolder &) = delete;

    // The process id of the manager that runs; 0 when none does.
    static pid_t RunningManager();

  private:
    int pid_file_ = -1;  // locked while the manager lives
};
