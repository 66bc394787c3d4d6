// zorctl hardware: hosts, enclosures, fans, power supplies, temperatures, disks.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "command.h"
#include "exit_code.h"
#include "hardware_picture.h"
#include "hardware_watch.h"
#include "library_log.h"
#include "output.h"

namespace {

// A column of numbered cells for each item of a list, else one.
std::vector<std::string> Cells(const Json &value) {
    if (!value.is_array()) return {Words(value)};
    std::vector<std::string> cells;
    for (const Json &item : value) cells.push_back(Words(item));
    return cells;
}

std::string Heading(const std::string &key) {
    std::string heading = HardwareLabel(key);
    for (char &letter : heading)
        letter =
            letter == '_' ? ' ' : static_cast<char>(toupper(static_cast<unsigned char>(letter)));
    return heading;
}

// The widest row names the columns; a row without them has nothing to show there.
std::vector<std::string> Headings(const Json &rows) {
    std::vector<std::string> widest;
    for (const Json &row : rows) {
        std::vector<std::string> headings;
        for (const auto &[key, value] : row.items()) {
            const size_t count = Cells(value).size();
            for (size_t number = 1; number <= count; ++number)
                headings.push_back(Heading(key) +
                                   (value.is_array() ? " " + std::to_string(number) : ""));
        }
        if (headings.size() > widest.size()) widest = headings;
    }
    return widest;
}

void PrintRows(const Json &rows) {
    if (rows.empty()) {
        puts("none");
        return;
    }
    const std::vector<std::string> headings = Headings(rows);
    std::vector<std::vector<std::string>> cells;
    for (const Json &row : rows) {
        cells.emplace_back();
        for (const auto &[key, value] : row.items()) {
            for (const std::string &cell : Cells(value)) cells.back().push_back(cell);
        }
        cells.back().resize(headings.size());
    }
    PrintTable(headings, cells);
}

// An enclosure that could not be read leaves the library's reason.
int Finish(const HardwarePicture &picture) {
    const auto is_complete = [](const NodeHardware &node) {
        return !node.is_known || node.is_whole;
    };
    if (is_complete(picture.local) && is_complete(picture.remote)) return kExitSuccess;
    ReportFailure("not every enclosure could be read");
    return kExitFailure;
}

int Show(const std::string &name, bool json) {
    HardwarePicture picture;
    if (!ReadHardware(&picture)) {
        ReportFailure("cannot read the hardware");
        return kExitFailure;
    }
    Json all = Json::object();
    for (size_t index = 0; index < kHardwarePartCount; ++index) {
        const HardwarePart &part = kHardwareParts[index];
        if (!name.empty() && name != part.name) continue;
        const Json rows = part.rows(picture);
        if (json) {
            all[part.name] = rows;
            continue;
        }
        if (name.empty()) printf("%s-- %s\n", index > 0 ? "\n" : "", part.description);
        PrintRows(rows);
    }
    if (json) PrintJson(all);
    return Finish(picture);
}

}  // namespace

void AddHardwareCommand(const Verb &app) {
    const Verb hardware = app.Add("hardware", "hosts, enclosures, fans, power supplies, disks");
    hardware.AddJsonFlag();
    hardware.AddFooter("Without a part, all of them.\nExample: zorctl hardware fans --json");
    hardware.Runs([=] { return Show("", hardware.PrintsJson()); });
    for (size_t index = 0; index < kHardwarePartCount; ++index) {
        const HardwarePart &part = kHardwareParts[index];
        const Verb verb = hardware.Add(part.name, part.description);
        verb.AddJsonFlag();
        verb.Runs([=, &part] { return Show(part.name, verb.PrintsJson()); });
    }

    const auto seconds = std::make_shared<int>(0);
    const Verb watch = hardware.Add("watch", "say what changes, until Ctrl-C", "--seconds 10");
    watch.AddOption("--seconds", *seconds, "stop after so many seconds; 0: never").ShowsDefault();
    watch.AddJsonFlag();
    watch.Runs([=] { return WatchHardware(*seconds, watch.PrintsJson()); });
}
