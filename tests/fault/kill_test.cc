// Every writer, killed at each of its system calls: its files are old or new, of
// several writes each is done or not begun, no lock is held, and the next call works.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "fault/every_writer.h"

namespace {

class Killed : public EveryWriter {
  protected:
    struct Sweep {
        int points = 0;
        int torn = 0;    // files that hold what they never hold
        int locked = 0;  // locks that stayed
        int stuck = 0;   // next calls that do not work
    };

    Sweep SweepOver(const Writer &writer, const Course &course) {
        Sweep sweep;
        for (int at = 1;; at += StrideOf(course)) {
            Prepare(writer);
            if (!RunTraced(writer.call, Fault::Kill(at)).was_killed) break;
            ++sweep.points;
            sweep.torn += !course.Has(StateOf(writer.files));
            sweep.locked += !HeldLocks().empty();
            sweep.stuck += !WorksAgain(writer, course);
        }
        return sweep;
    }
};

TEST_P(Killed, LeavesOldOrNew) {
    const Writer &writer = GetParam();
    const Course course = Undisturbed(writer);
    EXPECT_GE(static_cast<int>(course.states.size()), writer.contents);
    const Sweep sweep = SweepOver(writer, course);
    EXPECT_GT(sweep.points, 1);
    EXPECT_EQ(sweep.torn, 0);
    EXPECT_EQ(sweep.locked, 0);
    EXPECT_EQ(sweep.stuck, 0);
    printf("figure: %s killed at %d system calls, %d torn, %d locked\n", writer.name, sweep.points,
           sweep.torn, sweep.locked);
}

INSTANTIATE_TEST_SUITE_P(Fault, Killed, testing::ValuesIn(kWriters), WriterName);

// The method sees a writer that is not safe.
class KilledControl : public Killed {};

int TruncateAndWrite() {
    const std::string text = "local_role=\"2\"\n" + ReadText(kStatusFile);
    const int file = open(kStatusFile, O_WRONLY | O_TRUNC | O_CLOEXEC);
    const bool is_written =
        write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    return is_written ? 0 : -1;
}

TEST_P(KilledControl, TruncatingWriterIsCaught) {
    const Writer &writer = GetParam();
    Prepare(writer);
    Course course;
    course.states.push_back(StateOf(writer.files));
    ASSERT_EQ(writer.call(), 0);
    course.states.push_back(StateOf(writer.files));
    int torn = 0;
    for (int at = 1;; ++at) {
        Prepare(writer);
        if (!RunTraced(writer.call, Fault::Kill(at)).was_killed) break;
        torn += !course.Has(StateOf(writer.files));
    }
    EXPECT_GT(torn, 0);
}

INSTANTIATE_TEST_SUITE_P(Fault, KilledControl,
                         testing::Values(Writer{"Truncating", TruncateAndWrite, {kStatusFile}, 2}),
                         WriterName);

}  // namespace
