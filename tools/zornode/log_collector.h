// The system log and the console of a node.
#pragma once

#include <sys/types.h>

#include <string>

constexpr const char *kNodeLogFile = "/var/log/messages";
constexpr const char *kNodeConsoleFile = "/var/log/console";

class LogCollector {
  public:
    // Opens the copy of the log on the machine, if one is wanted; called before
    // the node's root is entered.
    explicit LogCollector(const std::string &copy_path);

    // Binds /dev/log and /dev/console and starts the process behind them, which
    // appends every line to the node's log file and console file.
    void Start();

    // Takes in what is still under way and ends the process.
    void Stop();

  private:
    void Run(int log, int console);

    int copy_ = -1;
    pid_t process_ = -1;
};
