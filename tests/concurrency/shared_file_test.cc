// Many processes and threads on the status file at once.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <thread>
#include <vector>

#include "kevacore.h"
#include "support/node_test.h"
#include "support/slow_build.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

class SharedFile : public NodeTest {
  protected:
    // A second of waiting for a lock takes a moment, so that the contention is
    // real and the test is not slow.
    SharedFile() {
        virtual_time::Start([](int) { usleep(50); });
    }

    static pid_t Fork(const std::function<bool()> &work) {
        const pid_t child = fork();
        if (child == 0) _exit(work() ? 0 : 1);
        return child;
    }

    static void ExpectSuccess(pid_t child) {
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
};

// Takes a lock, however long it takes.
class Patience {
  public:
    explicit Patience(int32_t id) {
        while (ZORFileLock(id, 1000, &handle_) != 0) {
        }
    }
    ~Patience() { ZORFileUnlock(&handle_); }

  private:
    FILE *handle_ = nullptr;
};

bool Increment() {
    const Patience lock(ZOR_LOCK_BOOT_PROCEDURE);
    char value[16] = "0";
    if (ZORGetHAStatus(1, ZOR_STATUS_SERVICE_CHANGED, value, sizeof value) < 0) return false;
    const std::string next = std::to_string(atoi(value) + 1);
    return ZORSetHAStatus(1, ZOR_STATUS_SERVICE_CHANGED, next.c_str()) == 0;
}

TEST_F(SharedFile, LockedIncrementsOfEightProcessesAreAllThere) {
    constexpr int kProcesses = 8;
    constexpr int kIncrements = 1000;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(Fork([] {
            for (int number = 0; number < kIncrements; ++number) {
                if (!Increment()) return false;
            }
            return true;
        }));
    }
    for (const pid_t child : children) ExpectSuccess(child);
    char value[16] = "";
    EXPECT_EQ(ZORGetHAStatus(1, ZOR_STATUS_SERVICE_CHANGED, value, sizeof value), 1);
    EXPECT_EQ(atoi(value), kProcesses * kIncrements);
    printf("figure: %d locked increments of %d processes, %s there\n", kProcesses * kIncrements,
           kProcesses, value);
}

// A value that shows a tear: one letter, many times.
std::string Uniform(int round) {
    return std::string(static_cast<size_t>(200 + round % 300), static_cast<char>('a' + round % 26));
}

bool IsUniform(const char *value) {
    const size_t length = strlen(value);
    return length >= 200 && strspn(value, std::string(1, value[0]).c_str()) == length;
}

struct ReadCounts {
    std::atomic<long> reads{0};
    std::atomic<long> torn{0};
    std::atomic<long> absent{0};
};

void ReadUntil(const std::atomic<bool> &done, long enough, ReadCounts *counts) {
    char value[1024];
    while (!done || counts->reads < enough) {
        if (ZORGetHAStatus(2, ZOR_STATUS_HOST_IP, value, sizeof value) != 1)
            ++counts->absent;
        else if (!IsUniform(value))
            ++counts->torn;
        ++counts->reads;
    }
}

TEST_F(SharedFile, LockFreeReadersBesideAWriterSeeNothingTornOrAbsent) {
    const long enough = kIsSlowBuild ? 100000 : 1000000;
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(0).c_str()), 0);
    std::atomic<bool> done{false};
    ReadCounts counts;
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 4; ++reader)
        readers.emplace_back([&] { ReadUntil(done, enough, &counts); });
    int writes = 0;
    while (counts.reads < enough) {
        ++writes;
        ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(writes).c_str()), 0);
    }
    done = true;
    for (std::thread &reader : readers) reader.join();
    EXPECT_EQ(counts.torn, 0);
    EXPECT_EQ(counts.absent, 0);
    printf("figure: %ld reads by 4 readers beside %d writes: %ld torn, %ld absent\n",
           counts.reads.load(), writes, counts.torn.load(), counts.absent.load());
}

// The method must be able to find a tear: a writer that truncates and writes.
TEST_F(SharedFile, ReadersDoSeeTheTearsOfAWriterThatTruncates) {
    WriteText(kStatusFile, "local_host_IP=\"" + Uniform(0) + "\"\n");
    std::atomic<bool> done{false};
    ReadCounts counts;
    std::thread reader([&] { ReadUntil(done, 0, &counts); });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (int round = 0; counts.torn + counts.absent == 0; ++round) {
        WriteText(kStatusFile, "local_host_IP=\"" + Uniform(round) + "\"\n");
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
    }
    done = true;
    reader.join();
    log_.Take();
}

TEST_F(SharedFile, KilledWritersLeaveAWholeFileAndAFreeLock) {
    constexpr int kRounds = 150;
    constexpr unsigned kSeed = 20240;
    std::mt19937 random(kSeed);
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(0).c_str()), 0);
    for (int round = 0; round < kRounds; ++round) {
        const pid_t child = Fork([round]() -> bool {
            for (int number = 0;; ++number)
                ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(round + number).c_str());
        });
        usleep(static_cast<useconds_t>(random() % 3000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        char value[1024] = "";
        ASSERT_EQ(ZORGetHAStatus(2, ZOR_STATUS_HOST_IP, value, sizeof value), 1) << round;
        ASSERT_TRUE(IsUniform(value)) << round;
        FILE *handle = nullptr;
        ASSERT_EQ(ZORFileLock(ZOR_LOCK_HA_STATUS, 0, &handle), 0) << round;
        ZORFileUnlock(&handle);
        ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(round).c_str()), 0);
    }
    printf("figure: %d writers killed, 0 torn, seed %u\n", kRounds, kSeed);
}

TEST_F(SharedFile, WritersWithoutALockLeaveAWholeFile) {
    constexpr char kFile[] = "/tmp/zor/unlocked";
    constexpr int kWrites = kIsSlowBuild ? 500 : 5000;
    ASSERT_EQ(VLIBCFileSetKeyValue(kFile, "key", Uniform(0).c_str(), "%s=\"%s\"\n"), 1);
    std::vector<std::thread> writers;
    std::atomic<int> failed{0};
    std::atomic<int> torn{0};
    for (int writer = 0; writer < 4; ++writer) {
        writers.emplace_back([&, writer] {
            char value[1024];
            for (int round = 0; round < kWrites; ++round) {
                const std::string text = Uniform(round * 4 + writer);
                failed += VLIBCFileSetKeyValue(kFile, "key", text.c_str(), "%s=\"%s\"\n") != 1;
                const int found = VLIBCFileGetKeyValue(kFile, "key", value, sizeof value, 0);
                torn += found != 1 || !IsUniform(value);
            }
        });
    }
    for (std::thread &writer : writers) writer.join();
    EXPECT_EQ(failed, 0);
    EXPECT_EQ(torn, 0);
}

TEST_F(SharedFile, LockRemovedWhileHeldTearsNothing) {
    std::atomic<bool> done{false};
    std::thread breaker([&] {
        while (!done) {
            ZORForceFileUnlock(ZOR_LOCK_HA_STATUS);
            usleep(200);
        }
    });
    std::atomic<int> torn{0};
    std::vector<std::thread> writers;
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(0).c_str()), 0);
    for (int writer = 0; writer < 3; ++writer) {
        writers.emplace_back([&, writer] {
            char value[1024];
            for (int round = 0; round < 1000; ++round) {
                ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(round * 3 + writer).c_str());
                torn += ZORGetHAStatus(2, ZOR_STATUS_HOST_IP, value, sizeof value) != 1 ||
                        !IsUniform(value);
            }
        });
    }
    for (std::thread &writer : writers) writer.join();
    done = true;
    breaker.join();
    EXPECT_EQ(torn, 0);
    log_.Take();
}

TEST_F(SharedFile, StoppedHolderIsWaitedForAndGivenUp) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = Fork([&] {
        FILE *handle = nullptr;
        const char byte = ZORFileLock(ZOR_LOCK_HA_STATUS, 0, &handle) == 0 ? 'y' : 'n';
        if (write(ready[1], &byte, 1) != 1) return false;
        raise(SIGSTOP);
        return true;
    });
    char byte = 'n';
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(byte, 'y');
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), 0) << "the kernel frees a dead holder's lock";
    log_.Take();
}

TEST_F(SharedFile, QueriesOfEightThreadsBesideAWriterAreWhole) {
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_ROLE, "1"), 0);
    ASSERT_EQ(ZORSetHAStatus(4, ZOR_STATUS_ROLE, "2"), 0);
    ASSERT_EQ(ZORSetHAStatus(1, ZOR_STATUS_RUNTIME_STATUS, "98"), 0);
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_BOOT_STAGE, "7"), 0);
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_REMOTE_BOOT_DONE_STATUS, "3"), 0);
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_IS_REMOTE_ALIVE_BY_NET, "yes"), 0);
    ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB, "no"), 0);
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 8; ++reader) {
        readers.emplace_back([&] {
            while (!done) {
                uint32_t alive = 0;
                wrong += ZORGetLocalRole() != 1 || KEVAZORGetLocalRole() != 1;
                wrong += ZORGetRemoteRole() != 2 || KEVAZORGetRemoteRole() != 2;
                wrong += ZORGetRuntimeStatus().transition != 0x60;
                wrong += ZORGetLocalBootStage() != 7;
                wrong += ZORIsRemoteBootDoneAndCommNormal() != 1;
                wrong += KEVAZORIsRemoteAlive(&alive) != 0 || alive != 1;
                wrong += ZORIsRemoteAliveByExpanderHB() != 0;
            }
        });
    }
    for (int round = 0; round < (kIsSlowBuild ? 300 : 3000); ++round)
        ASSERT_EQ(ZORSetHAStatus(2, ZOR_STATUS_HOST_IP, Uniform(round).c_str()), 0);
    done = true;
    for (std::thread &reader : readers) reader.join();
    EXPECT_EQ(wrong, 0);
    ExpectLog({});
}

}  // namespace
