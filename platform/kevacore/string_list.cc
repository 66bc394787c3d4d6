// Ordered lists of strings.

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "error_code.h"
#include "inline_memory.h"
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::SystemError;

// The items stand one behind the other in one text, each with its NUL. A text of the
// usual length is split without an allocation.
struct VLIBCSzList {
    static constexpr size_t kUsualText = 384;
    static constexpr size_t kUsualItems = 16;
    static constexpr size_t kMemory = kUsualText + kUsualItems * sizeof(size_t);

    kevacore::InlineMemory<kMemory> memory;
    kevacore::InlineText<kMemory> text{&memory};
    kevacore::InlineVector<size_t, kMemory> begins{&memory};  // of the items, in their order

    VLIBCSzList() {
        text.reserve(kUsualText - 1);
        begins.reserve(kUsualItems);
    }

    const char *At(size_t index) const { return text.data() + begins[index]; }
};

namespace {

constexpr char kSource[] = "string_list";

int OutOfMemory() {
    errno = ENOMEM;
    return SystemError(kSource, __LINE__);
}

// Appends the items of a text; when memory is short, nothing.
int AppendItems(const char *text, const char *separator, VLIBCSzList *list) {
    const size_t old_count = list->begins.size();
    const size_t old_size = list->text.size();
    const char first = *separator;
    const size_t width = separator[1] == '\0' ? 1 : strlen(separator);
    try {
        // Copied whole; each separator becomes the NUL of the item before it.
        list->text.append(text, strlen(text) + 1);
        char *const base = list->text.data();
        list->begins.push_back(old_size);
        for (char *at = base + old_size; *at != '\0';) {
            if (*at != first || (width > 1 && strncmp(at, separator, width) != 0)) {
                ++at;
                continue;
            }
            *at = '\0';
            at += width;
            list->begins.push_back(static_cast<size_t>(at - base));
        }
    } catch (const std::bad_alloc &) {
        list->begins.resize(old_count);
        list->text.resize(old_size);
        return OutOfMemory();
    }
    return static_cast<int>(list->begins.size() - old_count);
}

}  // namespace

extern "C" {

VLIBCSzList *VLIBCSzListAlloc(int /*size*/) try {
    return new VLIBCSzList;
} catch (const std::bad_alloc &) {
    OutOfMemory();
    return nullptr;
}

const char *VLIBCSzListGet(const VLIBCSzList *list, int index) {
    const auto place = static_cast<size_t>(index);  // a negative one is beyond any end
    if (!list || place >= list->begins.size()) {
        BadParameter(kSource, __LINE__);
        return nullptr;
    }
    return list->At(place);
}

int VLIBCSzListFind(const VLIBCSzList *list, const char *text) {
    if (!list || !text) return BadParameter(kSource, __LINE__);
    for (size_t index = 0; index < list->begins.size(); ++index) {
        if (strcmp(list->At(index), text) == 0) return static_cast<int>(index);
    }
    return -1;
}

int VLIBCSzListPush(VLIBCSzList **list, const char *text) {
    return VLIBCSzListInsert(list, INT_MAX, text);
}

int VLIBCSzListInsert(VLIBCSzList **list, int index, const char *text) try {
    if (!list || !*list || !text) return BadParameter(kSource, __LINE__);
    auto &begins = (*list)->begins;
    const auto place =
        std::clamp<std::ptrdiff_t>(index, 0, static_cast<std::ptrdiff_t>(begins.size()));
    const size_t begin = (*list)->text.size();
    (*list)->text.append(text, strlen(text) + 1);
    begins.insert(begins.begin() + place, begin);
    return 0;
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

void VLIBCSzListRemoveAll(VLIBCSzList *list) {
    if (!list) return;
    list->text.clear();
    list->begins.clear();
}

int VLIBCSzListDump2Str(const VLIBCSzList *list, const char *separator, char *buffer,
                        unsigned int size) {
    if (!list || !separator || !buffer || size == 0) return BadParameter(kSource, __LINE__);
    // Not a null one: it is copied from.
    std::string_view between = "";  // NOLINT(readability-redundant-string-init)
    size_t length = 0;
    buffer[0] = '\0';
    for (size_t index = 0; index < list->begins.size(); ++index) {
        const std::string_view item = list->At(index);
        if (between.size() + item.size() >= size - length) {
            buffer[0] = '\0';
            return BadParameter(kSource, __LINE__);
        }
        memcpy(buffer + length, between.data(), between.size());
        length += between.size();
        memcpy(buffer + length, item.data(), item.size() + 1);
        length += item.size();
        between = separator;
    }
    return static_cast<int>(length);
}

void VLIBCSzListFree(VLIBCSzList *list) {
    delete list;
}

int VLIBCStrSep(const char *text, const char *separator, VLIBCSzList **list) {
    if (!text || !separator || *separator == '\0' || !list || !*list)
        return BadParameter(kSource, __LINE__);
    return AppendItems(text, separator, *list);
}

}  // extern "C"
