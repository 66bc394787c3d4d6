#include "library_log.h"

#include <dlfcn.h>
#include <syslog.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

using VSyslog = void (*)(int, const char *, va_list);
using VSyslogChk = void (*)(int, int, const char *, va_list);

std::mutex mutex;
std::vector<std::string> lines;

// The formats are the library's, checked where they stand.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

void Keep(const char *format, va_list arguments) {
    const int saved = errno;
    char line[8192];
    va_list copy;
    va_copy(copy, arguments);
    vsnprintf(line, sizeof line, format, copy);
    va_end(copy);
    const std::lock_guard<std::mutex> guard(mutex);
    lines.emplace_back(line);
    errno = saved;
}

}  // namespace

std::vector<std::string> TakeLibraryLines() {
    const std::lock_guard<std::mutex> guard(mutex);
    std::vector<std::string> taken;
    taken.swap(lines);
    return taken;
}

void ReportFailure(const std::string &text) {
    fprintf(stderr, "zorctl: %s\n", text.c_str());
    for (const std::string &line : TakeLibraryLines()) fprintf(stderr, "  %s\n", line.c_str());
}

// The library's calls arrive here, because a program's own functions come first.
#pragma GCC visibility push(default)
extern "C" {

void vsyslog(int priority, const char *format, va_list arguments) {
    Keep(format, arguments);
    static const auto next = reinterpret_cast<VSyslog>(dlsym(RTLD_NEXT, "vsyslog"));
    if (next) next(priority, format, arguments);
}

// What vsyslog is called in a fortified build.
void __vsyslog_chk(int priority, int flag, const char *format, va_list arguments) {
    Keep(format, arguments);
    static const auto next = reinterpret_cast<VSyslogChk>(dlsym(RTLD_NEXT, "__vsyslog_chk"));
    if (next) next(priority, flag, format, arguments);
}

}  // extern "C"
#pragma GCC visibility pop
