// The names of the manager's commands, as a person types them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct RequestName {
    uint32_t id;
    const char *name;
    const char *meaning;
};

const std::vector<RequestName> &RequestNames();

// The command of a name or of a number; nothing when the text is neither.
std::optional<uint32_t> ParseRequest(const std::string &text);
