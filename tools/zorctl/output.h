// How zorctl prints what it read.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

using Json = nlohmann::ordered_json;

// Of all that zorctl prints as JSON; docs/json.md says when it changes.
constexpr int kSchemaVersion = 1;

// JSON alone on standard output, an object, under the version of its schema; bytes
// that are no text are replaced.
void PrintJson(const Json &object);

// Rows under a heading, in columns as wide as they need to be.
void PrintTable(const std::vector<std::string> &heading,
                const std::vector<std::vector<std::string>> &rows);

// "yes", "no", "unknown" for null, "-" for an empty text, else the value.
std::string Words(const Json &value);
