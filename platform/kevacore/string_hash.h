// A string hash, in the order in which its keys were first set: a section that
// is read into one and written back keeps the order of its lines.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct VLIBCSzHash {
    std::vector<std::pair<std::string, std::string>> pairs;

    const std::string *Find(std::string_view key) const;
    void Set(std::string_view key, std::string_view value);
};
