// Text goes into a caller's buffer cut to its size less one, and terminated.
#pragma once

#include <cstddef>
#include <cstring>

inline void CopyText(char *buffer, size_t size, const char *text) {
    const size_t length = strnlen(text, size - 1);
    memcpy(buffer, text, length);
    buffer[length] = '\0';
}
