#include "line_format.h"

#include <cstring>

namespace kevacore {

bool LineFormat::Parse(const char *format) {
    const std::string_view text = format;
    const size_t key = text.find("%s");
    if (key == std::string_view::npos) return false;
    const size_t value = text.find("%s", key + 2);
    if (value == std::string_view::npos) return false;
    before_key = text.substr(0, key);
    between = text.substr(key + 2, value - key - 2);
    after_value = text.substr(value + 2);
    if (!after_value.ends_with('\n')) return false;
    const std::string_view last_line_part = after_value.substr(0, after_value.size() - 1);
    for (std::string_view literal : {before_key, between, last_line_part}) {
        if (literal.find_first_of("%\n") != std::string_view::npos) return false;
    }
    return true;
}

bool IsWritableKey(const char *key) {
    return *key != '\0' && strpbrk(key, "=\n") == nullptr;
}

bool IsWritableValue(const char *value) {
    return strchr(value, '\n') == nullptr;
}

}  // namespace kevacore
