// An owned file descriptor.
#pragma once

#include <unistd.h>

#include <cerrno>

class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ < 0) return;
        const int saved = errno;
        close(fd_);
        errno = saved;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    int Get() const { return fd_; }

    // Hands the descriptor over to the caller.
    int Release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }

  private:
    int fd_;
};
