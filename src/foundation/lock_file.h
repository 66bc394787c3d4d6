// Lock files: opening one, and the lock on it. Nothing here logs; errno is that of
// the failing call.
#pragma once

#include <cstdint>
#include <cstdio>

// Opens a lock file, creating or emptying it, for this process alone: started
// programs do not inherit it, a symbolic link is not followed, and nothing but
// a regular file is accepted. -1 on a failure.
int OpenLockFile(const char *path);

// One attempt at the exclusive lock, without waiting.
bool TryLockFile(int file);

bool UnlockFile(int file);

// The same file as the stream that callers of the interface keep. Null on a
// failure.
FILE *OpenLockStream(const char *path);

// Closes the stream in the handle, if there is one, and stores null.
void CloseLockStream(FILE **handle);
