// An owned hash of the base library.
#pragma once

#include "kevacore.h"

class StringHash {
  public:
    StringHash() : hash_(VLIBCSzHashAlloc(kAllocation)) {}
    ~StringHash() {
        if (hash_) VLIBCSzHashFree(hash_);
    }
    StringHash(const StringHash &) = delete;
    StringHash &operator=(const StringHash &) = delete;

    // False when memory is short; nothing else may be called then.
    bool IsAllocated() const { return hash_ != nullptr; }

    // Null when the key is absent.
    const char *Value(const char *key) const { return VLIBCSzHashGetValue(hash_, key); }

    // False on a failure.
    bool Set(const char *key, const char *value) {
        return VLIBCSzHashSetValue(&hash_, key, value) >= 0;
    }

    void Clear() { VLIBCHashRemoveAll(hash_); }

    // For the calls of the base library that fill or read a whole hash.
    VLIBCSzHash *Get() { return hash_; }
    VLIBCSzHash **Holder() { return &hash_; }

  private:
    static constexpr int kAllocation = 1024;

    VLIBCSzHash *hash_;
};
