// What a private node is made of. The parts fail by throwing NodeError, which
// main reports; nothing of a half-made node outlives the process.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

struct NodeOptions {
    std::string serial = "ZORNODE0000001";
    std::string custom_serial = "CUSTOM-NODE-01";
    std::string log_file;  // a copy of the log lines on the machine; may be empty
    bool raise_queue_limits = true;
    int ports = 0;  // of a network of its own; none: the machine's network
    std::vector<std::string> shared_folders;  // of the machine, writable from the node
    std::vector<std::string> command;
};

class NodeError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Something is not there, or not any more.
class NoSuchFile : public NodeError {
  public:
    using NodeError::NodeError;
};

// Throws NodeError, or NoSuchFile, with the text and the meaning of errno.
[[noreturn]] void ThrowErrno(const std::string &what);

// Writes a small file, replacing what is there.
void WriteFile(const std::string &path, const std::string &text);

// Makes a folder and those above it.
void MakeFolders(const std::string &path);

void Mount(const std::string &source, const std::string &target, const char *type,
           unsigned long flags, const std::string &data = "");

// An empty file in memory to mount something on.
void MakeMountFile(const std::string &path);
