// The receiving end of /dev/log: the exact lines that reach the system log.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A line taken apart. Of lines in another form only the text is set.
struct LogLine {
    int priority = -1;    // facility and level, as sent
    std::string program;  // with the process id: "name[123]"
    std::string text;     // behind the program
    int source_line = 0;  // of a line with the library's prefix
};

class LogListener {
  public:
    LogListener();
    ~LogListener();
    LogListener(const LogListener &) = delete;
    LogListener &operator=(const LogListener &) = delete;

    // The lines since the last call, each as "LEVEL module(function): message"
    // when it has the library's prefix and a priority that goes with its level,
    // else as it came.
    std::vector<std::string> Take();

    // The same lines, taken apart but with their prefix.
    std::vector<LogLine> TakeRaw();

  private:
    void Receive();
    void WaitForAllSent();

    int socket_ = -1;
    std::atomic<bool> stopping_{false};
    std::mutex mutex_;
    std::vector<std::string> lines_;
    std::thread thread_;
};
