#include "behaviour.h"

#include <kevacore.h>

#include <charconv>

namespace {

constexpr char kBehaviourFile[] = "/tmp/zor/lab.behaviour";
constexpr char kDelayPrefix[] = "delay:";

struct Word {
    const char *text;
    Conduct conduct;
};

constexpr Word kWords[] = {
    {"ordinary", Conduct::kOrdinary},
    {"refuse", Conduct::kRefuse},
    {"drop", Conduct::kDrop},
    {"twice", Conduct::kTwice},
    {"wrong-time", Conduct::kWrongTime},
    {"oversized", Conduct::kOversized},
};

}  // namespace

std::vector<std::string> BehaviourWords() {
    std::vector<std::string> words;
    for (const Word &word : kWords) words.emplace_back(word.text);
    words.emplace_back(std::string(kDelayPrefix) + "SECONDS");
    return words;
}

bool ParseBehaviour(const std::string &text, Behaviour *behaviour) {
    for (const Word &word : kWords) {
        if (text != word.text) continue;
        *behaviour = {word.conduct, 0};
        return true;
    }
    if (!text.starts_with(kDelayPrefix)) return false;
    const char *const end = text.data() + text.size();
    int seconds = 0;
    const auto [stop, error] = std::from_chars(text.data() + sizeof kDelayPrefix - 1, end, seconds);
    if (error != std::errc() || stop != end || seconds < 0) return false;
    *behaviour = {Conduct::kDelay, seconds};
    return true;
}

Behaviour BehaviourOf(uint32_t command) {
    char text[64];
    Behaviour behaviour;
    const std::string key = std::to_string(command);
    if (VLIBCFileGetKeyValue(kBehaviourFile, key.c_str(), text, sizeof text, 0) > 0)
        ParseBehaviour(text, &behaviour);
    return behaviour;
}

bool TellBehaviour(uint32_t command, const std::string &text) {
    const std::string key = std::to_string(command);
    return VLIBCFileSetKeyValue(kBehaviourFile, key.c_str(), text.c_str(), "%s=\"%s\"\n") == 1;
}
