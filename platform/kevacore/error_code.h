// The error code of the calling thread.
#pragma once

namespace kevacore {

// Codes of failed system calls are this base plus errno.
constexpr int kSystemErrorBase = 4096;

// Stores the code for a bad argument; returns -1, the result that goes with it.
int BadParameter(const char *source, int line);

// Stores the code for the present errno, which is left as it is; returns -1.
int SystemError(const char *source, int line);

}  // namespace kevacore
