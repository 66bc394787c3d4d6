// Streams on lock files. Nothing here logs; errno is that of the failing call.
#pragma once

#include <cstdint>
#include <cstdio>

// Opens a lock file, creating or emptying it, for this process alone: started
// programs do not inherit it, a symbolic link is not followed, and nothing but
// a regular file is accepted. Null on a failure.
FILE *OpenLockStream(const char *path);

// Closes the stream in the handle, if there is one, and stores null.
void CloseLockStream(FILE **handle);

// One attempt at the exclusive lock, without waiting.
bool TryLockStream(FILE *stream);

bool UnlockStream(FILE *stream);
