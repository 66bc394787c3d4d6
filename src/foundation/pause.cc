#include "foundation/pause.h"

#include <cerrno>
#include <ctime>

namespace {

void Pause(struct timespec rest) {
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

}  // namespace

void PauseSeconds(unsigned seconds) {
    Pause({static_cast<time_t>(seconds), 0});
}

void PauseMilliseconds(unsigned milliseconds) {
    Pause({static_cast<time_t>(milliseconds / 1000), (milliseconds % 1000) * 1000000L});
}
