// An owned list of the base library, filled by splitting texts and by inserting.
#pragma once

#include <cstring>

#include "kevacore.h"

class StringList {
  public:
    StringList() : list_(VLIBCSzListAlloc(kAllocation)) {}
    ~StringList() {
        if (list_) VLIBCSzListFree(list_);
    }
    StringList(const StringList &) = delete;
    StringList &operator=(const StringList &) = delete;

    // False when memory is short; nothing else may be called then.
    bool IsAllocated() const { return list_ != nullptr; }

    // Replaces the content by the items of the text. Their number, or negative.
    int Split(const char *text, const char *separator) {
        Clear();
        const int count = VLIBCStrSep(text, separator, &list_);
        count_ = count > 0 ? count : 0;
        return count;
    }

    void Clear() {
        VLIBCSzListRemoveAll(list_);
        count_ = 0;
    }

    int Count() const { return count_; }

    bool Has(const char *text) const { return VLIBCSzListFind(list_, text) != -1; }

    // False on a failure.
    bool Insert(int index, const char *text) {
        if (VLIBCSzListInsert(&list_, index, text) < 0) return false;
        ++count_;
        return true;
    }

    // Null when there is no such item.
    const char *Item(int index) const {
        return index >= 0 && index < count_ ? VLIBCSzListGet(list_, index) : nullptr;
    }

    bool IsYes(int index) const {
        const char *item = Item(index);
        return item && strcmp(item, "yes") == 0;
    }

  private:
    static constexpr int kAllocation = 1024;

    VLIBCSzList *list_;
    int count_ = 0;
};
