// The names of temporary files, and the removal of those that a killed process left.
//
// The temporary file of /folder/name is /folder/.name.PID.NUMBER.temp, with the
// id of the writing process and a number that counts up within it.
#pragma once

#include <cstddef>

namespace kevacore {

// Stores the folder of a path, "." when it names none.
void FolderOf(const char *path, char *folder, size_t size);

// Stores a name that this process has not used before. False with errno when
// it does not fit.
bool MakeTemporaryName(const char *path, char *name, size_t size);

// Removes old temporary files of processes that are gone, once for each folder
// in the life of this process. errno stays as it is.
void SweepLeftovers(const char *path);

}  // namespace kevacore
