// Numbers in files: decimal text, of which an unparsable one counts as 0.
#pragma once

#include <cstdint>
#include <cstdlib>

// Records are made of many small numbers, which need no locale and no limits.
inline int32_t ParseDecimal(const char *text) {
    constexpr int kSmallDigits = 9;
    if (*text >= '0' && *text <= '9' && text[1] == '\0') return *text - '0';
    const bool isNegative = *text == '-';
    int32_t number = 0;
    int digits = 0;
    for (const char *at = text + isNegative; *at >= '0' && *at <= '9'; ++at, ++digits) {
        if (digits == kSmallDigits) return static_cast<int32_t>(strtol(text, nullptr, 10));
        number = number * 10 + (*at - '0');
    }
    if (digits == 0) return static_cast<int32_t>(strtol(text, nullptr, 10));
    return isNegative ? -number : number;
}
