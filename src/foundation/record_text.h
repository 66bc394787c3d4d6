// Text in a record that comes from elsewhere: it may fill its field to the last
// byte and lack its NUL.
#pragma once

#include <cstddef>
#include <cstring>

// Stores the text of a field and terminates it; copy holds width + 1 bytes.
inline void CopyRecordText(const void *record, size_t offset, size_t width, char *copy) {
    const char *text = static_cast<const char *>(record) + offset;
    const size_t length = strnlen(text, width);
    memcpy(copy, text, length);
    copy[length] = '\0';
}
