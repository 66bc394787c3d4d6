#include "support/command_run.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "support/node_test.h"

namespace {

std::string NewOutputFile() {
    char path[] = "/run/command.XXXXXX";
    close(mkstemp(path));
    return path;
}

pid_t Start(const std::vector<std::string> &words, const std::string &output,
            const std::string &errors) {
    const pid_t child = fork();
    if (child != 0) return child;
    dup2(open("/dev/null", O_RDONLY), 0);
    dup2(open(output.c_str(), O_WRONLY | O_TRUNC), 1);
    dup2(open(errors.c_str(), O_WRONLY | O_APPEND), 2);
    std::vector<char *> arguments;
    for (const std::string &word : words) arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

int WaitForEnd(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string> &words) {
    const std::string output = NewOutputFile();
    const std::string errors = NewOutputFile();
    CommandResult result;
    result.exit_code = WaitForEnd(Start(words, output, errors));
    result.output = ReadText(output);
    result.errors = ReadText(errors);
    unlink(output.c_str());
    unlink(errors.c_str());
    return result;
}

BackgroundCommand::BackgroundCommand(const std::vector<std::string> &words)
    : output_file_(NewOutputFile()) {
    process_ = Start(words, output_file_, output_file_);
}

BackgroundCommand::~BackgroundCommand() {
    if (process_ > 0) End(SIGKILL);
    unlink(output_file_.c_str());
}

int BackgroundCommand::End(int signal) {
    kill(process_, signal);
    const int exit_code = WaitForEnd(process_);
    process_ = -1;
    return exit_code;
}

std::string BackgroundCommand::Output() const {
    return ReadText(output_file_);
}

void UseBuiltPrograms() {
    setenv("PATH", (std::string(KEVAZOR_PROGRAM_PATH ":") + getenv("PATH")).c_str(), 1);
}

void SleepMilliseconds(int milliseconds) {
    const struct timespec time = {milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    clock_nanosleep(CLOCK_MONOTONIC, 0, &time, nullptr);
}
