// What the library writes to the system log while zorctl calls it. The lines
// still go there; zorctl keeps them to show why a call failed.
#pragma once

#include <string>
#include <vector>

// The lines since the last call of either function.
std::vector<std::string> TakeLibraryLines();

// Prints them to standard error behind a text of zorctl's own.
void ReportFailure(const std::string &text);
