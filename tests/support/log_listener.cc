#include "support/log_listener.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <stdexcept>

namespace {

constexpr char kLogSocket[] = "/dev/log";
constexpr char kEndMark[] = "test-end-mark";

struct sockaddr_un LogAddress() {
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    strcpy(address.sun_path, kLogSocket);
    return address;
}

void SendEndMark() {
    const int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const struct sockaddr_un address = LogAddress();
    sendto(sender, kEndMark, strlen(kEndMark), 0,
           reinterpret_cast<const struct sockaddr *>(&address), sizeof address);
    close(sender);
}

LogLine Parse(const std::string &raw) {
    static const std::regex form(R"(^<(\d+)>\w{3} [ \d]\d \d\d:\d\d:\d\d ([^:]*): ([^]*)$)");
    std::smatch match;
    if (!std::regex_match(raw, match, form)) return {-1, "", raw, 0};
    return {std::stoi(match[1]), match[2], match[3], 0};
}

std::string Shorten(const LogLine &line) {
    static const std::regex prefix(
        R"(^\[ZOR-(ERROR|NOTICE)\] (zor_\w+):([1-9]\d*)\((\w+)\): ([^]*)$)");
    std::smatch match;
    if (!std::regex_match(line.text, match, prefix)) return line.text;
    const int expected = LOG_USER | (match[1] == "ERROR" ? LOG_ERR : LOG_NOTICE);
    if (line.priority != expected)
        return "wrong priority " + std::to_string(line.priority) + ": " + line.text;
    return match[1].str() + " " + match[2].str() + "(" + match[4].str() + "): " + match[5].str();
}

}  // namespace

LogListener::LogListener() {
    closelog();  // a socket that was bound before is gone; connect anew
    unlink(kLogSocket);
    socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const struct sockaddr_un address = LogAddress();
    if (socket_ < 0 ||
        bind(socket_, reinterpret_cast<const struct sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot bind /dev/log");
    // Connected now, so that no test counts a first line's socket as a leak.
    openlog(nullptr, LOG_NDELAY, LOG_USER);
    thread_ = std::thread(&LogListener::Receive, this);
}

LogListener::~LogListener() {
    stopping_ = true;
    SendEndMark();  // wakes the receiver
    thread_.join();
    close(socket_);
    unlink(kLogSocket);
    closelog();
}

std::vector<LogLine> LogListener::TakeRaw() {
    WaitForAllSent();
    std::vector<std::string> raw;
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        raw.swap(lines_);
    }
    std::erase(raw, kEndMark);
    std::vector<LogLine> lines;
    std::transform(raw.begin(), raw.end(), std::back_inserter(lines), Parse);
    return lines;
}

std::vector<std::string> LogListener::Take() {
    std::vector<std::string> lines;
    for (const LogLine &line : TakeRaw()) lines.push_back(Shorten(line));
    return lines;
}

void LogListener::Receive() {
    char buffer[8192];
    struct pollfd input = {socket_, POLLIN, 0};
    while (!stopping_) {
        if (poll(&input, 1, 20) <= 0) continue;
        const ssize_t size = recv(socket_, buffer, sizeof buffer, MSG_DONTWAIT);
        if (size < 0) continue;
        const std::lock_guard<std::mutex> guard(mutex_);
        lines_.emplace_back(buffer, static_cast<size_t>(size));
    }
}

// Everything that was sent before the mark is received before it.
void LogListener::WaitForAllSent() {
    SendEndMark();
    for (;;) {
        {
            const std::lock_guard<std::mutex> guard(mutex_);
            if (!lines_.empty() && lines_.back() == kEndMark) return;
        }
        std::this_thread::yield();
    }
}
