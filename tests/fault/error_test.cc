// Every writer, with an error at each of its system calls, and with a read or a
// write that moves fewer bytes than asked for. What is reported as done is done; what
// fails is reported in the log and leaves the files as after the last good write.

#include <sys/syscall.h>

#include <cerrno>
#include <cstdio>

#include "fault/every_writer.h"

namespace {

constexpr int kErrors[] = {ENOSPC, EIO, EINTR, EMFILE, EACCES};

// A writer with more calls than this gets one of the errors at each, in turn.
constexpr int kManyCalls = 100;

class Failing : public EveryWriter {
  protected:
    struct Sweep {
        int points = 0;
        int failures = 0;  // calls that said that they failed
        Lines faults;      // what must not be
    };

    // The log's own calls: a fault in them costs a line and nothing else.
    static bool IsLogCall(long call) {
        return call == SYS_sendto || call == SYS_connect || call == SYS_socket;
    }

    void Run(const Writer &writer, const Course &course, const Fault &fault, Sweep *sweep) {
        Prepare(writer);
        log_.Take();
        const TracedCall run = RunTraced(writer.call, fault);
        if (!run.was_hit) return;
        ++sweep->points;
        const Lines lines = log_.Take();
        const FileState state = StateOf(writer.files);
        const bool has_failed = run.result < 0;
        sweep->failures += has_failed;
        const auto check = [&](bool holds, const char *what) {
            if (!holds)
                sweep->faults.push_back(std::string(what) + " at " + std::to_string(fault.at) +
                                        ", system call " + std::to_string(run.faulted_call) +
                                        ", error " + std::to_string(fault.error) + "; " +
                                        Join(lines));
        };
        check(IsWhole(course, state), "torn");
        const bool is_told = !lines.empty() || IsLogCall(run.faulted_call);
        const bool is_quiet = has_failed ? writer.Is(kSilent) : writer.Is(kGuesses);
        if (has_failed || state != course.states.back()) check(is_told || is_quiet, "not reported");
        check(HeldLocks().empty(), "locked");
        check(TemporaryFiles().empty() || run.faulted_call == SYS_unlink, "left a file");
        // A step that was left out is not always made good: nobody knows of it any more.
        check(writer.Is(kGoesOn) ? writer.call() >= 0 : WorksAgain(writer, course), "stuck");
    }

    Sweep SweepErrors(const Writer &writer, const Course &course) {
        Sweep sweep;
        const bool is_long = course.system_calls > kManyCalls;
        for (int at = 1; at <= course.system_calls; at += StrideOf(course)) {
            if (is_long) {
                Run(writer, course, Fault::Error(at, kErrors[static_cast<size_t>(at) % 5]), &sweep);
                continue;
            }
            for (const int error : kErrors) Run(writer, course, Fault::Error(at, error), &sweep);
        }
        return sweep;
    }

    Sweep SweepShort(const Writer &writer, const Course &course) {
        Sweep sweep;
        for (int at = 1; at <= course.system_calls; at += StrideOf(course))
            Run(writer, course, Fault::Short(at), &sweep);
        return sweep;
    }
};

TEST_P(Failing, ErrorsAreReportedAndNothingIsLost) {
    const Writer &writer = GetParam();
    const Sweep sweep = SweepErrors(writer, Undisturbed(writer));
    EXPECT_GT(sweep.points, 0);
    EXPECT_EQ(sweep.faults, Lines{});
    printf("figure: %s with an error at %d system calls, %d failed, %zu lost or unreported\n",
           writer.name, sweep.points, sweep.failures, sweep.faults.size());
}

TEST_P(Failing, ShortReadsAndWritesAreCompletedOrReported) {
    const Writer &writer = GetParam();
    const Sweep sweep = SweepShort(writer, Undisturbed(writer));
    EXPECT_EQ(sweep.faults, Lines{});
    printf("figure: %s with %d short reads and writes, %d failed, %zu lost or unreported\n",
           writer.name, sweep.points, sweep.failures, sweep.faults.size());
}

INSTANTIATE_TEST_SUITE_P(Fault, Failing, testing::ValuesIn(kWriters), WriterName);

// The method sees a writer that looks at no result.
class FailingControl : public Failing {};

TEST_P(FailingControl, BlindWriterIsCaught) {
    const Course course = Undisturbed(GetParam());
    EXPECT_FALSE(SweepErrors(GetParam(), course).faults.empty());
    EXPECT_FALSE(SweepShort(GetParam(), course).faults.empty());
}

INSTANTIATE_TEST_SUITE_P(Fault, FailingControl, testing::Values(kBlindWriter), WriterName);

}  // namespace
