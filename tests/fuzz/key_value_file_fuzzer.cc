// Feeds the stand-in's key/value files with any content: what is written reads back,
// and the other keys keep what they have.
//
// The first byte chooses the operation and the length of the value; the next bytes
// are the value, the rest is the file.

#include <kevacore.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>

#include "fuzz/require.h"
#include "support/node_files.h"

namespace {

constexpr char kFile[] = "/tmp/zor/fuzzed";
constexpr char kFormat[] = "%s=\"%s\"\n";

// Longer than any line of an input.
std::string Read(const char *key) {
    static char value[4096];
    const int found = VLIBCFileGetKeyValue(kFile, key, value, sizeof value, 0);
    Require(found >= 0);
    return found > 0 ? value : "(none)";
}

void Set(const std::string &value) {
    const bool is_writable = value.find('\n') == std::string::npos;
    Require((VLIBCFileSetKeyValue(kFile, "key", value.c_str(), kFormat) == 1) == is_writable);
    if (is_writable) Require(Read("key") == value);
}

void Remove(const std::string &) {
    Require(VLIBCFileRemoveKey(kFile, "key") >= 0);
    Require(Read("key") == "(none)");
}

// A buffer of the value's length keeps all of it but its last character.
void Cut(const std::string &value) {
    Require(VLIBCFileSetKeyValue(kFile, "key", "0123456789", kFormat) == 1);
    std::string buffer(value.size() % 10 + 1, '?');
    Require(VLIBCFileGetKeyValue(kFile, "key", buffer.data(), static_cast<unsigned>(buffer.size()),
                                 0) == 1);
    Require(buffer == std::string("0123456789", buffer.size() - 1) + '\0');
}

constexpr void (*kOperations[])(const std::string &value) = {Set, Remove, Cut};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    RequirePrivateNode();
    const size_t length = std::min<size_t>(data[0] / 8, size - 1);
    const auto *const text = reinterpret_cast<const char *>(data) + 1;
    const std::string value(text, strnlen(text, length));
    WriteNodeFile(kFile, {text + length, size - 1 - length});
    const std::string other = Read("other");
    kOperations[data[0] % std::size(kOperations)](value);
    Require(Read("other") == other);
    return 0;
}
