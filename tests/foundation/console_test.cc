// The operator's console.

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>

#include "support/node_test.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

constexpr char kConsole[] = "/dev/console";

// A console that is a plain file, for what is on it to be read back.
class Console : public NodeTest {
  protected:
    Console() {
        umount2(kConsole, MNT_DETACH);
        fs::remove_all(kConsole);
        WriteText(kConsole, "");
    }
};

TEST_F(Console, TextIsWrittenWithANewline) {
    EXPECT_EQ(ZORConsoleOutput("node is going down"), 0);
    EXPECT_EQ(ReadText(kConsole), "node is going down\n");
    ExpectLog({});
}

TEST_F(Console, PercentSignsInTheTextMeanNothing) {
    EXPECT_EQ(ZORConsoleOutput("100% %s %n"), 0);
    EXPECT_EQ(ReadText(kConsole), "100% %s %n\n");
}

TEST_F(Console, EmptyTextIsALoneNewline) {
    EXPECT_EQ(ZORConsoleOutput(""), 0);
    EXPECT_EQ(ReadText(kConsole), "\n");
}

TEST_F(Console, NullTextIsRefused) {
    EXPECT_EQ(ZORConsoleOutput(nullptr), -1);
    EXPECT_EQ(ReadText(kConsole), "");
    ExpectLog({"ERROR zor_filelock(ZORConsoleOutput): Bad @param"});
}

TEST_F(Console, ConsoleThatCannotBeOpenedIsReported) {
    fs::remove(kConsole);
    fs::create_directory(kConsole);
    EXPECT_EQ(ZORConsoleOutput("text"), -1);
    ExpectLog({"ERROR zor_filelock(ZORConsoleOutput): Failed to open /dev/console"});
    fs::remove(kConsole);
}

TEST_F(Console, WriteThatFailsIsReported) {
    fs::remove(kConsole);
    fs::create_symlink("/dev/full", kConsole);
    EXPECT_EQ(ZORConsoleOutput("text"), -1);
    ExpectLog({"ERROR zor_filelock(ZORConsoleOutput): Failed to fprintf"});
}

TEST_F(Console, NoDescriptorIsLeftOpen) {
    const int before = CountDescriptors();
    for (int number = 0; number < 100; ++number) ZORConsoleOutput("text");
    ZORConsoleOutput(nullptr);
    EXPECT_EQ(CountDescriptors(), before);
}

}  // namespace
