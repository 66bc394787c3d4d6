// Running a program to its end, with what it printed.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

struct CommandResult {
    int exit_code = -1;  // 128 + number for a signal
    std::string output;
    std::string errors;
};

// The first word is the program, looked up in PATH.
CommandResult RunCommand(const std::vector<std::string> &words);

// A program that runs beside the test and is ended with it.
class BackgroundCommand {
  public:
    explicit BackgroundCommand(const std::vector<std::string> &words);
    ~BackgroundCommand();
    BackgroundCommand(const BackgroundCommand &) = delete;
    BackgroundCommand &operator=(const BackgroundCommand &) = delete;

    pid_t Process() const { return process_; }

    // Sends a signal and returns the exit code, as of CommandResult.
    int End(int signal);

    // What it has printed so far.
    std::string Output() const;

  private:
    pid_t process_;
    std::string output_file_;
};

// Waits until a condition holds; false after ten seconds.
template <typename Condition>
bool WaitFor(Condition condition);

// The programs of this build come first in PATH.
void UseBuiltPrograms();

void SleepMilliseconds(int milliseconds);

template <typename Condition>
bool WaitFor(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) return true;
        SleepMilliseconds(10);
    }
    return condition();
}
