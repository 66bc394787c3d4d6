// A list in a text: the first item as it is, every further one behind a ",",
// cut to the size of the buffer.
#pragma once

#include <cstddef>

#include "foundation/text.h"

class JoinedText {
  public:
    // Starts with the empty text; the size is at least 1.
    JoinedText(char *buffer, size_t size) : buffer_(buffer), size_(size) { buffer_[0] = '\0'; }

    void Add(const char *item) {
        if (has_items_) Append(",");
        has_items_ = true;
        Append(item);
    }

  private:
    void Append(const char *text) {
        CopyText(buffer_ + length_, size_ - length_, text);
        length_ += strlen(buffer_ + length_);
    }

    char *const buffer_;
    const size_t size_;
    size_t length_ = 0;
    bool has_items_ = false;
};
