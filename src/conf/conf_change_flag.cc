// The flag that says that ha.conf was written since a reader last cleaned it.

#include <unistd.h>

#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_conf.h"

extern "C" {

int32_t ZORSetHAConfChangeFlag(void) {
    return VLIBCFileTouch(kConfChangeFlag);
}

int32_t ZORIsConfChanged(void) {
    return VLIBCFileExist(kConfChangeFlag);
}

int32_t ZORCleanConfChangeFlag(void) {
    return unlink(kConfChangeFlag);
}

}  // extern "C"
