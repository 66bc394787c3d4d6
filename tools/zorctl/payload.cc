#include "payload.h"

#include <algorithm>
#include <cctype>
#include <charconv>

std::optional<std::string> FromHex(const std::string &text) {
    if (text.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (size_t at = 0; at < text.size(); at += 2) {
        unsigned char byte = 0;
        const char *const end = text.data() + at + 2;
        const auto [stop, error] = std::from_chars(text.data() + at, end, byte, 16);
        if (error != std::errc() || stop != end) return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string ToHex(const std::string &bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

bool IsPrintable(const std::string &bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](unsigned char c) { return isprint(c) || c == '\n' || c == '\t'; });
}
