// zorctl health: the health word, its class, and what each bit asks for.

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "health_bit.h"
#include "library_log.h"
#include "output.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr int kBits = 32;

struct HealthOptions {
    bool refresh = false;
    bool check = false;
};

// Of a monitoring plugin, which has exit codes of its own.
struct PluginState {
    const char *overview;
    const char *word;
    int exit_code;
};

constexpr PluginState kPluginStates[] = {
    {"healthy", "OK", 0}, {"warning", "WARNING", 1}, {"error", "CRITICAL", 2}};
constexpr PluginState kUnknown = {"unknown", "UNKNOWN", 3};

const PluginState &StateOf(const std::string &overview) {
    for (const PluginState &state : kPluginStates) {
        if (overview == state.overview) return state;
    }
    return kUnknown;
}

std::string Overview() {
    char word[16] = "";
    return KEVAZORGetOverviewStatus(word, sizeof word) > 0 ? word : "unknown";
}

Json DescribeBit(int bit) {
    const auto *const end = kHealthBits + kHealthBitCount;
    const auto *const row =
        std::find_if(kHealthBits, end, [bit](const HealthBit &known) { return known.bit == bit; });
    return {{"bit", bit},
            {"class", HealthBitClass(bit)},
            {"meaning", row == end ? "not used" : row->meaning},
            {"advice", row == end ? "none" : row->advice}};
}

Json Describe(uint32_t health) {
    Json bits = Json::array();
    for (int bit = 0; bit < kBits; ++bit) {
        if (health >> bit & 1) bits.push_back(DescribeBit(bit));
    }
    return bits;
}

// One line, as monitoring systems want it.
int Check(const HealthOptions &options) {
    uint32_t health = 0;
    const bool is_read =
        options.refresh ? ZORCheckHealthyStatus(&health) == 0 : ZORGetHealthyStatus(&health) == 0;
    const PluginState &state = is_read ? StateOf(Overview()) : kUnknown;
    std::string text;
    for (const Json &bit : is_read ? Describe(health) : Json::array())
        text += (text.empty() ? ": " : ", ") + bit.at("meaning").get<std::string>();
    printf("%s%s\n", state.word, is_read ? text.c_str() : ": the health of the node is not known");
    return state.exit_code;
}

int NotKnown(bool json) {
    if (json) PrintJson({{"health", nullptr}, {"class", "unknown"}, {"bits", Json::array()}});
    const bool is_running = ZORIsTmpPathExist() != 0;
    ReportFailure(is_running ? "the health of the node is not known"
                             : "the manager is not running");
    return is_running ? kExitFailure : kExitNotRunning;
}

int Show(const HealthOptions &options, bool json) {
    if (options.check) return Check(options);
    uint32_t health = 0;
    if (options.refresh ? ZORCheckHealthyStatus(&health) != 0 : ZORGetHealthyStatus(&health) != 0)
        return NotKnown(json);
    const Json output = {{"health", health}, {"class", Overview()}, {"bits", Describe(health)}};
    if (json) {
        PrintJson(output);
        return kExitSuccess;
    }
    printf("%s (health word 0x%08x)\n", Overview().c_str(), health);
    for (const Json &bit : output.at("bits")) {
        printf("bit %2d  %-7s  %s\n                 %s\n", bit.at("bit").get<int>(),
               bit.at("class").get<std::string>().c_str(),
               bit.at("meaning").get<std::string>().c_str(),
               bit.at("advice").get<std::string>().c_str());
    }
    return kExitSuccess;
}

}  // namespace

void AddHealthCommand(const Verb &app) {
    const auto options = std::make_shared<HealthOptions>();
    const Verb health = app.Add("health", "the node's health, bit by bit", "--refresh");
    health.AddFlag("--refresh", options->refresh, "have the manager compute it anew first");
    health.AddFlag("--check", options->check,
                   "one line and the exit codes of monitoring plugins: 0 OK, 1 warning, 2 "
                   "critical, 3 unknown");
    health.AddJsonFlag();
    health.Runs([=] { return Show(*options, health.PrintsJson()); });
}
