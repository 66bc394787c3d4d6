#include "string_hash.h"

#include <cerrno>
#include <new>

#include "error_code.h"
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "string_hash";

}  // namespace

const std::string *VLIBCSzHash::Find(std::string_view key) const {
    for (const auto &pair : pairs) {
        if (pair.first == key) return &pair.second;
    }
    return nullptr;
}

void VLIBCSzHash::Set(std::string_view key, std::string_view value) {
    for (auto &pair : pairs) {
        if (pair.first != key) continue;
        pair.second = value;
        return;
    }
    pairs.emplace_back(key, value);
}

extern "C" {

VLIBCSzHash *VLIBCSzHashAlloc(int /*size*/) {
    auto *hash = new (std::nothrow) VLIBCSzHash;
    if (!hash) {
        errno = ENOMEM;
        SystemError(kSource, __LINE__);
    }
    return hash;
}

const char *VLIBCSzHashGetValue(const VLIBCSzHash *hash, const char *key) {
    if (!hash || !key) {
        BadParameter(kSource, __LINE__);
        return nullptr;
    }
    const std::string *value = hash->Find(key);
    return value ? value->c_str() : nullptr;
}

int VLIBCSzHashSetValue(VLIBCSzHash **hash, const char *key, const char *value) try {
    if (!hash || !*hash || !key || !value) return BadParameter(kSource, __LINE__);
    (*hash)->Set(key, value);
    return 0;
} catch (const std::bad_alloc &) {
    errno = ENOMEM;
    return SystemError(kSource, __LINE__);
}

void VLIBCHashRemoveAll(VLIBCSzHash *hash) {
    if (hash) hash->pairs.clear();
}

void VLIBCSzHashFree(VLIBCSzHash *hash) {
    delete hash;
}

}  // extern "C"
