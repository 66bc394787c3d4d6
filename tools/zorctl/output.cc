#include "output.h"

#include <algorithm>
#include <cstdio>

void PrintJson(const Json &object) {
    Json output = {{"schema_version", kSchemaVersion}};
    output.update(object);
    puts(output.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

void PrintTable(const std::vector<std::string> &heading,
                const std::vector<std::vector<std::string>> &rows) {
    std::vector<size_t> widths(heading.size());
    const auto measure = [&](const std::vector<std::string> &row) {
        for (size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    };
    const auto print = [&](const std::vector<std::string> &row) {
        std::string line;
        for (size_t column = 0; column < row.size(); ++column) {
            line += row[column];
            if (column + 1 < row.size())
                line += std::string(widths[column] - row[column].size() + 2, ' ');
        }
        puts(line.c_str());
    };
    measure(heading);
    for (const auto &row : rows) measure(row);
    print(heading);
    for (const auto &row : rows) print(row);
}

std::string Words(const Json &value) {
    if (value.is_null()) return "unknown";
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (value.is_string()) return value.get<std::string>().empty() ? "-" : value.get<std::string>();
    return value.dump();
}
