#include "log_collector.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "node.h"

namespace {

constexpr int kAppend = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;

volatile sig_atomic_t stop_asked = 0;

int OpenForAppend(const std::string &path) {
    const int fd = open(path.c_str(), kAppend, 0644);
    if (fd < 0) ThrowErrno("cannot open " + path);
    return fd;
}

int BindLogSocket() {
    const int log = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    strcpy(address.sun_path, "/dev/log");
    if (log < 0 || bind(log, reinterpret_cast<struct sockaddr *>(&address), sizeof address) != 0 ||
        chmod(address.sun_path, 0666) != 0)
        ThrowErrno("cannot make /dev/log");
    return log;
}

// A terminal, because a console is one: what is written to it comes out of the
// returned end unchanged.
int MakeConsole() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    char name[64];
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 ||
        ptsname_r(master, name, sizeof name) != 0)
        ThrowErrno("cannot make the console");
    struct termios mode;
    if (tcgetattr(master, &mode) == 0) {
        cfmakeraw(&mode);
        tcsetattr(master, TCSANOW, &mode);
    }
    MakeMountFile("/dev/console");
    Mount(name, "/dev/console", nullptr, MS_BIND);
    return master;
}

void AppendAll(int fd, const char *text, size_t size) {
    while (size > 0) {
        const ssize_t written = write(fd, text, size);
        if (written <= 0) return;
        text += written;
        size -= static_cast<size_t>(written);
    }
}

}  // namespace

LogCollector::LogCollector(const std::string &copy_path) {
    if (!copy_path.empty()) copy_ = OpenForAppend(copy_path);
}

void LogCollector::Start() {
    const int log = BindLogSocket();
    const int console = MakeConsole();
    process_ = fork();
    if (process_ < 0) ThrowErrno("cannot start the log collector");
    if (process_ == 0) {
        Run(log, console);
        _exit(0);
    }
    close(log);
    // The console's own end is not held open here; the collector's keeps it alive.
    close(console);
    if (copy_ >= 0) close(copy_);
}

void LogCollector::Stop() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

void LogCollector::Run(int log, int console) {
    // A signal at the terminal is meant for the command; its last lines matter.
    signal(SIGINT, SIG_IGN);
    struct sigaction stop = {};
    stop.sa_handler = [](int) { stop_asked = 1; };
    sigaction(SIGTERM, &stop, nullptr);
    const int log_file = OpenForAppend(kNodeLogFile);
    const int console_file = OpenForAppend(kNodeConsoleFile);
    // Held open so that the console never reports a hang-up.
    const int console_end = open("/dev/console", O_RDWR | O_NOCTTY | O_CLOEXEC);
    struct pollfd inputs[] = {{log, POLLIN, 0}, {console, POLLIN, 0}};
    char line[8192 + 1];
    for (;;) {
        const int ready = poll(inputs, 2, stop_asked ? 0 : 100);
        if (ready == 0 && stop_asked) break;
        if (inputs[0].revents & POLLIN) {
            ssize_t size = recv(log, line, sizeof line - 1, MSG_DONTWAIT);
            if (size > 0) {
                if (line[size - 1] != '\n') line[size++] = '\n';
                AppendAll(log_file, line, static_cast<size_t>(size));
                if (copy_ >= 0) AppendAll(copy_, line, static_cast<size_t>(size));
            }
        }
        if (inputs[1].revents & POLLIN) {
            const ssize_t size = read(console, line, sizeof line);
            if (size > 0) AppendAll(console_file, line, static_cast<size_t>(size));
        }
    }
    close(console_end);
}
