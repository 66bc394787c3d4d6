// The names of temporary files, and the removal of those that a killed process left.
//
// The temporary file of /folder/name is /folder/.name.THREAD.NUMBER.temp, with the
// id of the writing thread. The number is 0 unless that file is there already: a
// thread that writes again uses its old name, which the kernel still knows.
#pragma once

#include <cstddef>

namespace kevacore {

// Stores the folder of a path, "." when it names none.
void FolderOf(const char *path, char *folder, size_t size);

// Stores the calling thread's name for a temporary file of the path. False with
// errno when it does not fit.
bool MakeTemporaryName(const char *path, unsigned number, char *name, size_t size);

// Removes old temporary files of threads that are gone, once for each folder in
// the life of this process. errno stays as it is.
void SweepLeftovers(const char *path);

}  // namespace kevacore
