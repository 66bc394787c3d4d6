#include "stop_signal.h"

#include <signal.h>

namespace {

volatile sig_atomic_t stop_asked = 0;

}  // namespace

StopSignal::StopSignal() {
    struct sigaction stop = {};
    stop.sa_handler = [](int) { stop_asked = 1; };
    sigaction(SIGINT, &stop, nullptr);
    sigaction(SIGTERM, &stop, nullptr);
}

bool StopSignal::IsAsked() const {
    return stop_asked != 0;
}
