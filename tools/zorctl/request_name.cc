#include "request_name.h"

#include <charconv>

const std::vector<RequestName> &RequestNames() {
    static const std::vector<RequestName> names = {
        {14, "shutdown-remote", "shut the remote node down"},
        {16, "link-changed", "monitored link changed"},
        {17, "upgrade", "upgrade or small update"},
        {18, "upgrade-failed", "upgrade or small update failed"},
        {29, "adjust-system-disk", "adjust the system disk"},
        {33, "node-information", "ask node information"},
        {34, "log-to-remote", "send a log record to the remote node"},
        {35, "service-changed", "monitored service changed"},
        {36, "buzzer-to-remote", "send the buzzer-off setting to the remote node"},
        {40, "cancel", "cancel a timed-out grouped command"},
        {42, "passwords-to-remote", "synchronise passwords to the remote node"},
        {45, "adjust-remote-fans", "adjust the remote node's fans"},
        {50, "load-snapshot", "load a management-interface snapshot"},
        {52, "notification-to-remote", "send notification data to the remote node"},
        {55, "bonding", "bonding"},
        {56, "bonding-done", "bonding done"},
        {60, "halt-check", "halt check"},
        {62, "reset-button", "reset button pressed"},
        {63, "check-health", "check the health status now"},
    };
    return names;
}

std::optional<uint32_t> ParseRequest(const std::string &text) {
    for (const RequestName &request : RequestNames()) {
        if (text == request.name) return request.id;
    }
    uint32_t id = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, id);
    if (error != std::errc() || stop != end) return std::nullopt;
    return id;
}
