// Every exported function, called again and again: descriptors, memory and messages
// end where they began.

#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>

#include "fault/call_table.h"
#include "fault/working_node.h"
#include "support/queue_end.h"
#include "support/slow_build.h"

namespace {

// The long version is for a person who has ten minutes.
int RoundsOf(const ExportedCall &call) {
    const bool is_long = getenv("KEVAZOR_SOAK") != nullptr;
    if (call.Is(kStartsPrograms)) return is_long ? 2'000 : 20;
    return is_long ? 100'000 : kIsSlowBuild ? 100 : 5'000;
}

struct Holdings {
    int descriptors;
    size_t bytes;  // of the heap; 0 where a sanitizer keeps it
    int messages;

    static Holdings Now() {
        int messages = 0;
        for (int queue = 1; queue <= 7; ++queue) messages += queue_end::Count(queue);
        return {CountDescriptors(), mallinfo2().uordblks, messages};
    }
};

class Repeated : public NodeTest, public testing::WithParamInterface<ExportedCall> {
  protected:
    Repeated() {
        queue_end::RemoveAll();
        MakeWorkingNode();
        if (GetParam().Is(kOnPassive)) BePassive();
        GrantRequests();
    }
    ~Repeated() override { queue_end::RemoveAll(); }

    // What is sent and not waited for is taken, as a manager would.
    void Round(const ExportedCall &call) {
        call.call();
        while (queue_end::Take()) {
        }
    }

    // What the calls leave behind, beyond what the first ones set up for good.
    Holdings Growth(const ExportedCall &call, int rounds) {
        for (int round = 0; round < 10; ++round) Round(call);
        log_.Take();
        const Holdings before = Holdings::Now();
        for (int round = 0; round < rounds; ++round) {
            Round(call);
            if (round % 100 == 0) log_.Take();
        }
        log_.Take();
        const Holdings after = Holdings::Now();
        return {after.descriptors - before.descriptors, after.bytes - before.bytes,
                after.messages - before.messages};
    }
};

// The test's own bookkeeping may hold some bytes more or less; the smallest block of
// a heap takes 32.
bool HasGrown(size_t bytes, int rounds) {
    const size_t slack = 8192 + static_cast<size_t>(rounds) * 8;
    return bytes > slack && bytes < SIZE_MAX / 2;
}

TEST_P(Repeated, EndsWhereItBegan) {
    const ExportedCall &call = GetParam();
    const int rounds = RoundsOf(call);
    const Holdings growth = Growth(call, rounds);
    EXPECT_EQ(growth.descriptors, 0);
    EXPECT_EQ(growth.messages, 0);
    EXPECT_FALSE(HasGrown(growth.bytes, rounds)) << growth.bytes << " bytes";
    EXPECT_EQ(HeldLocks(), Lines{});
    printf("figure: %s called %d times, %d descriptors and %d messages left\n", call.Name().c_str(),
           rounds, growth.descriptors, growth.messages);
}

// A call that fails at its first step would prove little.
TEST_P(Repeated, WorksInAWorkingNode) {
    const int result = GetParam().call();
    EXPECT_EQ(result >= 0, !GetParam().Is(kTimesOut)) << result;
    for (const std::string &line : log_.Take()) {
        EXPECT_TRUE(!line.starts_with("ERROR") || GetParam().Is(kTimesOut) ||
                    GetParam().Is(kOnPassive))
            << line;
    }
}

INSTANTIATE_TEST_SUITE_P(Fault, Repeated, testing::ValuesIn(kExportedCalls), CallName);

// The method sees what leaks.
class RepeatedControl : public Repeated {};

std::vector<std::unique_ptr<char[]>> kept_blocks;
std::vector<int> kept_descriptors;

int Leak() {
    kept_blocks.push_back(std::make_unique<char[]>(256));
    kept_descriptors.push_back(dup(STDERR_FILENO));
    return 0;
}

TEST_P(RepeatedControl, LeakIsCaught) {
    const Holdings growth = Growth(GetParam(), 200);
    EXPECT_EQ(growth.descriptors, 200);
    EXPECT_TRUE(HasGrown(growth.bytes, 200) || growth.bytes == 0)
        << "a sanitizer keeps its own heap";
    for (const int descriptor : kept_descriptors) close(descriptor);
}

INSTANTIATE_TEST_SUITE_P(Fault, RepeatedControl, testing::Values(ExportedCall{{"Leak"}, Leak}),
                         CallName);

// A function that is missing in the table would be missing in the proof.
TEST(CallTable, HasEveryExportedName) {
    std::set<std::string> listed;
    std::ifstream list(KEVAZOR_SOURCE_FOLDER "/src/exports.list");
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && line[0] != '#') listed.insert(line);
    }
    std::set<std::string> called;
    for (const ExportedCall &call : kExportedCalls) {
        for (const std::string &name : call.names)
            EXPECT_TRUE(called.insert(name).second) << name << " stands twice";
    }
    EXPECT_EQ(called, listed);
}

}  // namespace
