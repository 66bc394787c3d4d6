// The serial numbers of this node, as the kernel publishes them.

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "foundation/descriptor.h"
#include "foundation/paths.h"
#include "foundation/text.h"
#include "kevacore.h"
#include "zor_core.h"

namespace {

constexpr char kSource[] = "zor_core";

constexpr int32_t kFactory = 0;
constexpr int32_t kCustom = 1;
constexpr const char *kSerialFiles[] = {kFactorySerialFile, kCustomSerialFile};

// Reads to the end of the line or of the file.
bool ReadLine(int fd, char *buffer, size_t size) {
    for (size_t filled = 0; filled < size && !memchr(buffer, '\n', filled);) {
        const ssize_t count = read(fd, buffer + filled, size - filled);
        if (count < 0 && errno != EINTR) return false;
        if (count == 0) break;
        if (count > 0) filled += static_cast<size_t>(count);
    }
    return true;
}

int32_t ZORReadSerialFromKernel(char *buffer, uint32_t size, int32_t kind) {
    if (!buffer || size < 1) {
        VLIBCErrSetEx(VLIBC_ERR_BAD_PARAMETER, kSource, __LINE__);
        return -1;
    }
    if (kind != kFactory && kind != kCustom) return -1;
    const Descriptor file(open(kSerialFiles[kind], O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.IsOpen()) return -1;
    char text[ZOR_SERIAL_SIZE] = {};
    if (!ReadLine(file.Get(), text, sizeof text - 1)) return -1;
    size_t length = strlen(text);
    if (length > 0 && text[length - 1] == '\n') text[--length] = '\0';
    if (size > length) {
        CopyText(buffer, size, text);
    } else {
        // An empty serial and a success: callers test the text.
        memset(buffer, 0, size);
        VLIBCErrSetEx(VLIBC_ERR_BAD_PARAMETER, kSource, __LINE__);
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t ZORGetOriginalSerialNumber(char *buffer, uint32_t size) {
    return ZORReadSerialFromKernel(buffer, size, kFactory);
}

int32_t ZORGetCustomSerialNumber(char *buffer, uint32_t size) {
    return ZORReadSerialFromKernel(buffer, size, kCustom);
}

int32_t KEVAZORGetOriginalSN(char *buffer, uint32_t size) {
    return ZORGetOriginalSerialNumber(buffer, size);
}

int32_t KEVAZORGetCustomSN(char *buffer, uint32_t size) {
    return ZORGetCustomSerialNumber(buffer, size);
}

}  // extern "C"
