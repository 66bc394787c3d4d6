// Lines of the system log.

#include <cerrno>
#include <cstring>

#include "support/node_test.h"
#include "zor_filelock.h"

using Log = NodeTest;

TEST_F(Log, LineGoesToTheUserFacilityWithProgramNameAndProcessId) {
    __zorlog(3, "[ZOR-%s] %s:%d(%s): text %d", "ERROR", "zor_core", 12, "Function", 7);
    const auto lines = log_.TakeRaw();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].priority, 8 + 3);
    EXPECT_EQ(lines[0].program,
              std::string(program_invocation_short_name) + "[" + std::to_string(getpid()) + "]");
    EXPECT_EQ(lines[0].text, "[ZOR-ERROR] zor_core:12(Function): text 7");
}

TEST_F(Log, NoticeHasPriorityFive) {
    __zorlog(5, "[ZOR-%s] %s:%d(%s): text", "NOTICE", "zor_core", 1, "Function");
    const auto lines = log_.TakeRaw();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].priority, 8 + 5);
}

TEST_F(Log, PercentMIsTheTextOfErrnoAtTheCall) {
    errno = EXDEV;
    __zorlog(3, "errno=%m");
    EXPECT_EQ(errno, EXDEV);
    ExpectLog({"errno=" + std::string(strerror(EXDEV))});
}

TEST_F(Log, NothingIsFilteredOrLimited) {
    Lines expected;
    for (int number = 0; number < 200; ++number) {
        __zorlog(5, "same line");
        expected.emplace_back("same line");
    }
    ExpectLog(expected);
}
