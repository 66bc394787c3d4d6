#include "error_code.h"

#include <cerrno>

#include "kevacore.h"

namespace {

thread_local int last_error = 0;

}  // namespace

namespace kevacore {

int BadParameter(const char *source, int line) {
    VLIBCErrSetEx(VLIBC_ERR_BAD_PARAMETER, source, line);
    return -1;
}

int SystemError(const char *source, int line) {
    VLIBCErrSetEx(kSystemErrorBase + errno, source, line);
    return -1;
}

}  // namespace kevacore

extern "C" {

// The place is part of the interface for the sake of debuggers; only the code is kept.
void VLIBCErrSetEx(int code, const char * /*source*/, int /*line*/) {
    last_error = code;
}

int VLIBCErrGet(void) {
    return last_error;
}

}  // extern "C"
