// The format of a key/value line: text with two "%s", for the key and the value.
#pragma once

#include <string_view>

namespace kevacore {

struct LineFormat {
    std::string_view before_key;
    std::string_view between;
    std::string_view after_value;

    // False unless the format has exactly two "%s" and no other conversion,
    // and is one line that ends in a newline.
    bool Parse(const char *format);
};

// Whether a key can be written and found again: not empty, one line, no '='.
bool IsWritableKey(const char *key);

// Whether a value can be written without starting another line.
bool IsWritableValue(const char *value);

}  // namespace kevacore
