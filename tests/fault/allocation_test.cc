// Every exported function with its first, second, ... allocation failing, alone or
// with all after it: the stated message and result, nothing thrown, nothing lost.

#include <cstdio>
#include <exception>

#include "fault/call_table.h"
#include "fault/working_node.h"
#include "support/allocation.h"
#include "support/queue_end.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define KEVAZOR_LEAKS __lsan_do_recoverable_leak_check()
#endif
#endif
#ifndef KEVAZOR_LEAKS
#define KEVAZOR_LEAKS 0
#endif

namespace {

class Starved : public NodeTest, public testing::WithParamInterface<ExportedCall> {
  protected:
    Starved() { GrantRequests(); }
    ~Starved() override { queue_end::RemoveAll(); }

    struct Sweep {
        int points = 0;
        int failures = 0;
        Lines faults;  // what must not be
    };

    static void Prepare(const ExportedCall &call) {
        MakeWorkingNode();
        if (call.Is(kOnPassive)) BePassive();
    }

    // One call; false when it asked for fewer allocations than that.
    bool Run(const ExportedCall &call, int nth, bool is_sticky, Sweep *sweep) {
        Prepare(call);
        log_.Take();
        const int descriptors = CountDescriptors();
        bool has_thrown = false;
        int result = 0;
        allocation::FailAt(nth, is_sticky);
        try {
            result = call.call();
        } catch (const std::exception &) {
            has_thrown = true;
        }
        if (allocation::Stop() < nth) return false;
        ++sweep->points;
        sweep->failures += result < 0;
        const Lines lines = log_.Take();
        const auto check = [&](bool holds, const std::string &what) {
            if (!holds) sweep->faults.push_back(what + " at " + std::to_string(nth));
        };
        check(!has_thrown, "thrown");
        check(result >= 0 || !lines.empty() || is_sticky, "not reported");
        check(CountDescriptors() == descriptors, "a descriptor left");
        check(HeldLocks().empty(), "locked");
        return true;
    }

    Sweep SweepOver(const ExportedCall &call) {
        Sweep sweep;
        for (const bool is_sticky : {false, true}) {
            for (int nth = 1; Run(call, nth, is_sticky, &sweep); ++nth) {
            }
        }
        return sweep;
    }
};

TEST_P(Starved, FailsAsStatedAndLosesNothing) {
    if (!allocation::CanFail()) GTEST_SKIP() << "this sanitizer keeps the allocator to itself";
    const ExportedCall &call = GetParam();
    const Sweep sweep = SweepOver(call);
    EXPECT_EQ(sweep.faults, Lines{});
    EXPECT_EQ(KEVAZOR_LEAKS, 0);
    Prepare(call);
    EXPECT_EQ(call.call() >= 0, !call.Is(kTimesOut)) << "with memory again";
    printf("figure: %s with %d allocations failing, %d calls failed, %zu faults\n",
           call.Name().c_str(), sweep.points, sweep.failures, sweep.faults.size());
}

INSTANTIATE_TEST_SUITE_P(Fault, Starved, testing::ValuesIn(kExportedCalls), CallName);

// The method sees what throws.
class StarvedControl : public Starved {};

int Throw() {
    return std::string(1000, 'x').empty() ? -1 : 0;
}

TEST_P(StarvedControl, ExceptionIsCaught) {
    if (!allocation::CanFail()) GTEST_SKIP() << "this sanitizer keeps the allocator to itself";
    EXPECT_FALSE(SweepOver(GetParam()).faults.empty());
}

INSTANTIATE_TEST_SUITE_P(Fault, StarvedControl, testing::Values(ExportedCall{{"Throw"}, Throw}),
                         CallName);

}  // namespace
