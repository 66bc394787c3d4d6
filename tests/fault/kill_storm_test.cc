// Writers that are killed again and again, at no chosen moment, while others write
// and readers look; five minutes of it in the long version.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "fault/every_writer.h"
#include "kevacore.h"
#include "zor_status.h"

namespace {

constexpr unsigned kSeed = 2026;

class KillStorm : public NodeTest {
  protected:
    static std::chrono::seconds Duration() {
        return std::chrono::seconds(getenv("KEVAZOR_SOAK") ? 300 : kIsSlowBuild ? 2 : 5);
    }

    // Writes values of one letter, each longer than a cut would leave.
    static pid_t StartWriter(char letter) {
        const pid_t writer = fork();
        if (writer != 0) return writer;
        virtual_time::Start([](int) { usleep(1000); });
        const std::string value(60, letter);
        for (;;) ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_ZOR_IP, value.c_str());
    }

    static bool IsWhole() {
        const std::string text = ReadText(kStatusFile);
        char value[128] = "";
        return !text.empty() && text.back() == '\n' &&
               text.find("healthy_status=\"10\"\n") != std::string::npos &&
               ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_ZOR_IP, value, sizeof value) == 1 &&
               std::string(value) == std::string(60, value[0]);
    }
};

TEST_F(KillStorm, NothingIsTornAndNoLockStays) {
    MakeWorkingNode();
    ASSERT_EQ(ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_ZOR_IP, std::string(60, 'a').c_str()),
              0);
    std::mt19937 random(kSeed);
    const auto end = std::chrono::steady_clock::now() + Duration();
    int kills = 0;
    int torn = 0;
    int locked = 0;
    while (std::chrono::steady_clock::now() < end) {
        pid_t writers[4];
        for (pid_t &writer : writers) writer = StartWriter(static_cast<char>('a' + kills % 26));
        usleep(static_cast<useconds_t>(random() % 5000));
        for (const pid_t writer : writers) {
            torn += !IsWhole();
            kill(writer, SIGKILL);
            waitpid(writer, nullptr, 0);
            ++kills;
        }
        torn += !IsWhole();
        locked += !HeldLocks().empty();
    }
    EXPECT_GT(kills, 50);
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(locked, 0);
    EXPECT_EQ(ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_ZOR_IP, "10.0.0.1"), 0);
    printf("figure: kill storm with %d writers killed, %d torn, %d locked, seed %u\n", kills, torn,
           locked, kSeed);
}

}  // namespace
