// The files of the snapshots: a record each, whole or not at all.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr char kClusterCache[] = "/tmp/zor/ui/.ui.zorinfo.cache";
constexpr char kLocalNodeCache[] = "/tmp/zor/ui/.ui.zornode.local.cache";
constexpr char kRemoteNodeCache[] = "/tmp/zor/ui/.ui.zornode.remote.cache";

// Replaces the file by the record. 0, or -1 after a line.
int32_t writeObject(const char *path, const void *buffer, size_t length);

// 1 read; 0 no file, or none of the last 12 seconds; -1 failed.
int32_t readObject(const char *path, void *buffer, size_t length);

// Reads, and with wait tries again each second, 31 times in all. A null path is
// one that never can be read.
int32_t ReadWhenFresh(const char *path, void *buffer, size_t length, bool wait);
