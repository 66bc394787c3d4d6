// The flag that says that ha.status was set.

#include <sys/stat.h>
#include <utime.h>

#include <ctime>

#include "support/node_test.h"
#include "zor_status.h"

namespace {

using ChangeFlag = NodeTest;

constexpr char kFlag[] = "/tmp/zor/.zor.status.changed";

TEST_F(ChangeFlag, SetCreatesIt) {
    EXPECT_FALSE(ZORIsStatusChanged());
    EXPECT_EQ(ZORSetHAStatusChangeFlag(), 0);
    EXPECT_TRUE(ZORIsStatusChanged());
    EXPECT_TRUE(Exists(kFlag));
    ExpectLog({});
}

TEST_F(ChangeFlag, SetTouchesAnExistingOne) {
    WriteText(kFlag, "");
    const struct utimbuf old = {1000, 1000};
    ASSERT_EQ(utime(kFlag, &old), 0);
    EXPECT_EQ(ZORSetHAStatusChangeFlag(), 0);
    struct stat status;
    ASSERT_EQ(stat(kFlag, &status), 0);
    EXPECT_GT(status.st_mtime, time(nullptr) - 60);
}

TEST_F(ChangeFlag, SetThatFailsIsReportedByItsResultAlone) {
    const UntouchableFile flag(kFlag);
    EXPECT_LT(ZORSetHAStatusChangeFlag(), 0);
    ExpectLog({});
}

TEST_F(ChangeFlag, CleanRemovesIt) {
    WriteText(kFlag, "");
    ZORCleanStatusChangeFlag();
    EXPECT_FALSE(Exists(kFlag));
    ExpectLog({});
}

TEST_F(ChangeFlag, CleanOfNothingIsAnError) {
    ZORCleanStatusChangeFlag();
    ExpectLog({"ERROR zor_status(ZORCleanStatusChangeFlag): Failed to clean status change flag"});
}

}  // namespace
