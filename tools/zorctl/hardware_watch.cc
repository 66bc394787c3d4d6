#include "hardware_watch.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>
#include <string>
#include <thread>

#include "exit_code.h"
#include "hardware_picture.h"
#include "library_log.h"
#include "stop_signal.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr milliseconds kLookPause{250};

// What can change, each with its value in words: "fans ENC1 fans 3" is "normal".
using Facts = std::map<std::string, std::string>;

void AddFacts(const std::string &name, const Json &value, Facts *facts) {
    if (!value.is_array()) {
        (*facts)[name] = Words(value);
        return;
    }
    for (size_t index = 0; index < value.size(); ++index)
        AddFacts(name + " " + std::to_string(index + 1), value[index], facts);
}

// What names a row is its first text, and its place in a chain.
std::string RowName(const Json &row) {
    std::string name = row.begin().value().get<std::string>();
    if (row.contains("place")) name += " place " + row.at("place").dump();
    return name;
}

bool ReadFacts(Facts *facts) {
    HardwarePicture picture;
    if (!ReadHardware(&picture)) return false;
    for (size_t index = 0; index < kHardwarePartCount; ++index) {
        const HardwarePart &part = kHardwareParts[index];
        for (const Json &row : part.rows(picture)) {
            const std::string name = std::string(part.name) + ": " + RowName(row);
            for (const auto &[key, value] : row.items()) {
                if (key != row.begin().key() && key != "place")
                    AddFacts(name + ", " + HardwareLabel(key), value, facts);
            }
        }
    }
    return true;
}

std::string Now() {
    char text[32];
    const time_t now = time(nullptr);
    struct tm local;
    strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S%z", localtime_r(&now, &local));
    return text;
}

void PrintLine(const Json &line) {
    puts(line.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

// Says that from now on every change is seen.
void PrintStart(size_t facts, bool json) {
    if (json)
        PrintLine({{"schema_version", kSchemaVersion}, {"time", Now()}, {"watching", facts}});
    else
        printf("%s watching %zu facts\n", Now().c_str(), facts);
    fflush(stdout);
}

void PrintChange(const std::string &item, const Json &before, const Json &after, bool json) {
    if (json) {
        PrintLine({{"time", Now()}, {"item", item}, {"before", before}, {"after", after}});
        return;
    }
    const auto words = [](const Json &value) {
        return value.is_null() ? "(not there)" : value.get<std::string>();
    };
    printf("%s %s: %s -> %s\n", Now().c_str(), item.c_str(), words(before).c_str(),
           words(after).c_str());
}

void PrintChanges(const Facts &before, const Facts &after, bool json) {
    for (const auto &[item, value] : before) {
        const auto now = after.find(item);
        if (now == after.end())
            PrintChange(item, value, nullptr, json);
        else if (now->second != value)
            PrintChange(item, value, now->second, json);
    }
    for (const auto &[item, value] : after) {
        if (!before.contains(item)) PrintChange(item, nullptr, value, json);
    }
    fflush(stdout);
}

}  // namespace

int WatchHardware(int duration_s, bool json) {
    const StopSignal stop;
    Facts known;
    if (!ReadFacts(&known)) {
        ReportFailure("cannot read the hardware");
        return kExitFailure;
    }
    PrintStart(known.size(), json);
    const auto end = steady_clock::now() + seconds(duration_s);
    while (!stop.IsAsked() && (duration_s == 0 || steady_clock::now() < end)) {
        std::this_thread::sleep_for(kLookPause);
        TakeLibraryLines();  // those of everyday looks are of no use here
        Facts now;
        if (!ReadFacts(&now)) {
            ReportFailure("cannot read the hardware");
            continue;
        }
        PrintChanges(known, now, json);
        known.swap(now);
    }
    return kExitSuccess;
}
