#include "support/base_library.h"

#include <dlfcn.h>
#include <kevacore.h>

#include <array>
#include <cstdlib>

namespace {

using base_library::Call;

// Calls that are still to pass before one fails; 0: none fails.
std::array<int, static_cast<size_t>(Call::kCount)> countdowns = {};

bool IsToFail(Call call) {
    int &countdown = countdowns[static_cast<size_t>(call)];
    return countdown > 0 && --countdown == 0;
}

template <typename Function>
Function *Next(Function * /*own*/, const char *name) {
    void *next = dlsym(RTLD_NEXT, name);
    if (!next) abort();
    return reinterpret_cast<Function *>(next);
}

}  // namespace

namespace base_library {

void Fail(Call call, int nth) {
    countdowns[static_cast<size_t>(call)] = nth;
}

bool Reset() {
    bool are_reached = true;
    for (int &countdown : countdowns) {
        are_reached = are_reached && countdown == 0;
        countdown = 0;
    }
    return are_reached;
}

}  // namespace base_library

// The arguments of each operation are passed on as they are.
#define KEVAZOR_PASS_ON(call, failure, name, ...) \
    (IsToFail(Call::call) ? (failure) : Next(name, #name)(__VA_ARGS__))

extern "C" {

VLIBCSzList *VLIBCSzListAlloc(int size) {
    return KEVAZOR_PASS_ON(kListAlloc, nullptr, VLIBCSzListAlloc, size);
}

int VLIBCSzListInsert(VLIBCSzList **list, int index, const char *text) {
    return KEVAZOR_PASS_ON(kListInsert, -1, VLIBCSzListInsert, list, index, text);
}

int VLIBCStrSep(const char *text, const char *separator, VLIBCSzList **list) {
    return KEVAZOR_PASS_ON(kStrSep, -1, VLIBCStrSep, text, separator, list);
}

VLIBCSzHash *VLIBCSzHashAlloc(int size) {
    return KEVAZOR_PASS_ON(kHashAlloc, nullptr, VLIBCSzHashAlloc, size);
}

int VLIBCSzHashSetValue(VLIBCSzHash **hash, const char *key, const char *value) {
    return KEVAZOR_PASS_ON(kHashSetValue, -1, VLIBCSzHashSetValue, hash, key, value);
}

int VLIBCFileGetSection(const char *path, const char *section, VLIBCSzHash **hash) {
    return KEVAZOR_PASS_ON(kGetSection, -1, VLIBCFileGetSection, path, section, hash);
}

int VLIBCFileSetSection(const char *path, const char *section, int flags, VLIBCSzHash *hash,
                        const char *format) {
    return KEVAZOR_PASS_ON(kSetSection, -1, VLIBCFileSetSection, path, section, flags, hash,
                           format);
}

int VLIBCFileAddSection(const char *path, const char *section, VLIBCSzHash *hash,
                        const char *format) {
    return KEVAZOR_PASS_ON(kAddSection, -1, VLIBCFileAddSection, path, section, hash, format);
}

int VLIBCFileRemoveSection(const char *path, const char *section) {
    return KEVAZOR_PASS_ON(kRemoveSection, -1, VLIBCFileRemoveSection, path, section);
}

int VLIBCFileGetSectionValue(const char *path, const char *section, const char *key, char *buffer,
                             unsigned int size) {
    return KEVAZOR_PASS_ON(kGetSectionValue, -1, VLIBCFileGetSectionValue, path, section, key,
                           buffer, size);
}

int VLIBCFileSetSectionValue(const char *path, const char *section, const char *key,
                             const char *value) {
    return KEVAZOR_PASS_ON(kSetSectionValue, -1, VLIBCFileSetSectionValue, path, section, key,
                           value);
}

}  // extern "C"
