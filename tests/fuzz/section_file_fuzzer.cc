// Feeds the stand-in's sectioned files with any content: whatever is in a file,
// what is written reads back, and the other sections keep what they have.
//
// The first byte chooses the operation; the rest is the file.

#include <kevacore.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/require.h"
#include "support/node_files.h"

namespace {

constexpr char kFile[] = "/tmp/zor/fuzzed";
constexpr char kFormat[] = "\t%s=%s\n";
constexpr char kValue[] = "a=b\"c";

// Negative results count as absent.
std::string Value(const char *section, const char *key) {
    char value[64];
    return VLIBCFileGetSectionValue(kFile, section, key, value, sizeof value) > 0 ? value
                                                                                  : "(none)";
}

class Hash {
  public:
    Hash() : hash_(VLIBCSzHashAlloc(1024)) {}
    ~Hash() { VLIBCSzHashFree(hash_); }
    Hash(const Hash &) = delete;
    Hash &operator=(const Hash &) = delete;

    VLIBCSzHash **Holder() { return &hash_; }
    VLIBCSzHash *Get() { return hash_; }

  private:
    VLIBCSzHash *hash_;
};

void SetValue() {
    Require(VLIBCFileSetSectionValue(kFile, "ONE", "key", kValue) >= 0);
    Require(Value("ONE", "key") == kValue);
}

void ReadAndReplace() {
    Hash hash;
    const int found = VLIBCFileGetSection(kFile, "ONE", hash.Holder());
    Require(found >= 0);
    Require(VLIBCSzHashSetValue(hash.Holder(), "key", kValue) >= 0);
    // Negative when a value that is there could not be written, which must not happen
    // to what was read from a file without NULs.
    const int done = VLIBCFileSetSection(kFile, "ONE", 0, hash.Get(), kFormat);
    Require((done == 0) == (found == 0));
    if (done > 0) Require(Value("ONE", "key") == kValue);
}

void Remove() {
    Require(VLIBCFileRemoveSection(kFile, "ONE") >= 0);
}

void Add() {
    Hash hash;
    Require(VLIBCSzHashSetValue(hash.Holder(), "key", kValue) >= 0);
    Hash present;
    const bool is_there = VLIBCFileGetSection(kFile, "ONE", present.Holder()) > 0;
    const bool is_added = VLIBCFileAddSection(kFile, "ONE", hash.Get(), kFormat) >= 0;
    Require(is_added != is_there);
    if (is_added) Require(Value("ONE", "key") == kValue);
}

constexpr void (*kOperations[])() = {SetValue, ReadAndReplace, Remove, Add};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    RequirePrivateNode();
    WriteNodeFile(kFile, {reinterpret_cast<const char *>(data) + 1, size - 1});
    const std::string other = Value("TWO", "key");
    kOperations[data[0] % std::size(kOperations)]();
    Require(Value("TWO", "key") == other);
    return 0;
}
