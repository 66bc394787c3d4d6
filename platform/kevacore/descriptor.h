// An owned file descriptor.
#pragma once

#include <unistd.h>

#include <cerrno>

namespace kevacore {

class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    ~Descriptor() { Reset(-1); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    int Get() const { return fd_; }

    // Closes the descriptor that is held; errno stays that of an earlier failure.
    void Reset(int fd) {
        if (fd_ >= 0) {
            const int saved = errno;
            close(fd_);
            errno = saved;
        }
        fd_ = fd;
    }

  private:
    int fd_;
};

}  // namespace kevacore
