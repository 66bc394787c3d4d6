// Payloads, in and out.
#pragma once

#include <optional>
#include <string>

// The bytes of "0a1b..."; nothing when the text is no hexadecimal number.
std::optional<std::string> FromHex(const std::string &text);

std::string ToHex(const std::string &bytes);

// Whether the bytes can be shown on a terminal as they are.
bool IsPrintable(const std::string &bytes);
