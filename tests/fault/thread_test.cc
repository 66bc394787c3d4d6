// Every query from eight threads at once, beside a writer that rewrites their files.

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <map>
#include <random>
#include <thread>

#include "fault/call_table.h"
#include "fault/working_node.h"
#include "kevacore.h"
#include "support/command_run.h"
#include "support/slow_build.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_status.h"

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = kIsSlowBuild ? 20 : 100;
constexpr unsigned kSeed = 20;

class Threads : public NodeTest {
  protected:
    Threads() {
        MakeWorkingNode();
        // A second of waiting for a lock takes a moment, so that none is given up.
        virtual_time::Start([](int) { usleep(100000); });
        ZORPrepareCachedConf();
    }

    // Rewrites every file that queries read, with nothing in it changed.
    static void RewriteAll() {
        ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, "10.0.0.1,10.0.0.2");
        ZORSetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, "yes,yes,no,no,no,no,no,no,no");
        ZORSetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, "samba");
        VLIBCFileSetSectionValue(kHardwareFile, "COMMON", "CrashedSpaces", "0");
    }

    // What each query answers when nothing else goes on; the second answer is the one
    // that stays: the first may be what fills a cache.
    static std::map<std::string, int> Answers(const std::vector<ExportedCall> &queries) {
        std::map<std::string, int> answers;
        for (int round = 0; round < 2; ++round) {
            for (const ExportedCall &query : queries) answers[query.Name()] = query.call();
        }
        return answers;
    }
};

TEST_F(Threads, QueriesBesideAWriterAnswerAsAlone) {
    RewriteAll();
    const std::vector<ExportedCall> queries = CallsWith(kQuery);
    const std::map<std::string, int> answers = Answers(queries);
    std::atomic<int> running = kThreads;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            std::vector<ExportedCall> own = queries;
            std::shuffle(own.begin(), own.end(), std::mt19937(kSeed + thread));
            for (int round = 0; round < kRounds; ++round) {
                for (const ExportedCall &query : own) {
                    const int answer = query.call();
                    if (answer == answers.at(query.Name()) || query.Name() == "ZORGetTimeCode")
                        continue;
                    if (++wrong < 10) printf("  %s: %d\n", query.Name().c_str(), answer);
                }
            }
            --running;
        });
    }
    int writes = 0;
    for (; running > 0; ++writes) RewriteAll();
    for (std::thread &thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
    printf(
        "figure: %zu queries from %d threads, %d calls, %d rewrites beside them, %d wrong, "
        "seed %u\n",
        queries.size(), kThreads, static_cast<int>(queries.size()) * kThreads * kRounds, writes,
        wrong.load(), kSeed);
    ExpectLog({});
}

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)

// The method sees two threads that write without a word to each other.
TEST(Race, DISABLED_OfTwoThreads) {
    int value = 0;
    std::thread other([&] { ++value; });
    ++value;
    other.join();
}

TEST(ThreadsControl, RaceIsCaught) {
    const CommandResult result =
        RunCommand({"/proc/self/exe", "--gtest_filter=Race.DISABLED_OfTwoThreads",
                    "--gtest_also_run_disabled_tests"});
    EXPECT_NE(result.exit_code, 0);
    EXPECT_NE((result.output + result.errors).find("data race"), std::string::npos)
        << result.errors;
}

#endif
#endif

}  // namespace
