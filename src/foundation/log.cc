#include <syslog.h>

#include <cerrno>
#include <cstdarg>

#include "zor_filelock.h"

extern "C" void __zorlog(int32_t priority, const char *format, ...) {
    const int saved = errno;
    openlog(nullptr, LOG_PID | LOG_CONS, LOG_USER);
    va_list arguments;
    va_start(arguments, format);
    errno = saved;
    vsyslog(priority, format, arguments);
    va_end(arguments);
    errno = saved;
}
