// The names of ha.status entries, as a person types them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct EntryName {
    const char *name;
    uint32_t selector;
    uint32_t key;
};

const std::vector<EntryName> &EntryNames();

// Null when there is no entry of this name.
const EntryName *FindEntry(const std::string &name);
