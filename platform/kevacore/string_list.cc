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
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::SystemError;

struct VLIBCSzList {
    std::vector<std::string> items;
};

namespace {

constexpr char kSource[] = "string_list";

int OutOfMemory() {
    errno = ENOMEM;
    return SystemError(kSource, __LINE__);
}

// Appends the items of a text; on a failure the list is as it was.
int AppendItems(std::string_view text, std::string_view separator,
                std::vector<std::string> *items) {
    const size_t old_size = items->size();
    try {
        for (;;) {
            const size_t end = text.find(separator);
            items->emplace_back(text.substr(0, end));
            if (end == std::string_view::npos) break;
            text.remove_prefix(end + separator.size());
        }
    } catch (const std::bad_alloc &) {
        items->resize(old_size);
        return OutOfMemory();
    }
    return static_cast<int>(items->size() - old_size);
}

}  // namespace

extern "C" {

VLIBCSzList *VLIBCSzListAlloc(int /*size*/) {
    auto *list = new (std::nothrow) VLIBCSzList;
    if (!list) OutOfMemory();
    return list;
}

const char *VLIBCSzListGet(const VLIBCSzList *list, int index) {
    if (!list || index < 0 || static_cast<size_t>(index) >= list->items.size()) {
        BadParameter(kSource, __LINE__);
        return nullptr;
    }
    return list->items[static_cast<size_t>(index)].c_str();
}

int VLIBCSzListFind(const VLIBCSzList *list, const char *text) {
    if (!list || !text) return BadParameter(kSource, __LINE__);
    const auto found = std::find(list->items.begin(), list->items.end(), text);
    return found == list->items.end() ? -1 : static_cast<int>(found - list->items.begin());
}

int VLIBCSzListPush(VLIBCSzList **list, const char *text) {
    return VLIBCSzListInsert(list, INT_MAX, text);
}

int VLIBCSzListInsert(VLIBCSzList **list, int index, const char *text) try {
    if (!list || !*list || !text) return BadParameter(kSource, __LINE__);
    auto &items = (*list)->items;
    const auto place =
        std::clamp<std::ptrdiff_t>(index, 0, static_cast<std::ptrdiff_t>(items.size()));
    items.emplace(items.begin() + place, text);
    return 0;
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

void VLIBCSzListRemoveAll(VLIBCSzList *list) {
    if (list) list->items.clear();
}

int VLIBCSzListDump2Str(const VLIBCSzList *list, const char *separator, char *buffer,
                        unsigned int size) {
    if (!list || !separator || !buffer || size == 0) return BadParameter(kSource, __LINE__);
    std::string_view between = "";  // not a null one: it is copied from
    size_t length = 0;
    buffer[0] = '\0';
    for (const std::string &item : list->items) {
        if (between.size() + item.size() >= size - length) {
            buffer[0] = '\0';
            return BadParameter(kSource, __LINE__);
        }
        memcpy(buffer + length, between.data(), between.size());
        length += between.size();
        memcpy(buffer + length, item.c_str(), item.size() + 1);
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
    return AppendItems(text, separator, &(*list)->items);
}

}  // extern "C"
