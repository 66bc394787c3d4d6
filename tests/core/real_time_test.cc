// The two long waits, in real time.

#include <chrono>
#include <cstdio>

#include "core/command_fixture.h"

namespace {

using std::chrono::duration;
using std::chrono::steady_clock;

class RealTime : public CommandTest {
  protected:
    RealTime() { virtual_time::Stop(); }

    static double Measure(int32_t (*wait)(), int32_t expected) {
        const auto begin = steady_clock::now();
        EXPECT_EQ(wait(), expected);
        const double seconds = duration<double>(steady_clock::now() - begin).count();
        printf("waited %.1f s\n", seconds);
        return seconds;
    }
};

// At least the stated waits; how much longer depends on the machine.

TEST_F(RealTime, HealthCheckGivesUpAfterFifteenSeconds) {
    EXPECT_GE(Measure([] { return ZORCheckHealthyStatus(nullptr); }, -1), 15.0);
    log_.Take();
}

TEST_F(RealTime, RemoteShutdownGivesUpAfterThirtySeconds) {
    WriteStatus("local_role=\"1\"\nis_remote_alive_by_net=\"yes\"\n");
    EXPECT_GE(Measure(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive, -4), 30.0);
    log_.Take();
}

}  // namespace
