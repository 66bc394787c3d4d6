// Files of a private node, for programs that are no GoogleTest programs too.
#pragma once

#include <string>

// Ends the program with a message outside a private node.
void RequirePrivateNode();

// Writes a file, its folders included; ends the program when it cannot.
void WriteNodeFile(const std::string &path, const std::string &text);
