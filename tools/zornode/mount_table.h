// The mounts of the machine.
#pragma once

#include <string>
#include <vector>

// The mount points in the order in which they were made.
std::vector<std::string> ReadMountPoints();

// Whether a path is the folder or lies below it.
bool IsWithin(const std::string &path, const std::string &folder);
