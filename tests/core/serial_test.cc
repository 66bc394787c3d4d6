// The serial numbers of this node.

#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "kevacore.h"
#include "support/node_test.h"
#include "zor_core.h"

namespace fs = std::filesystem;

namespace {

constexpr int kBadParameter = 3328;

class Serial : public NodeTest {
  protected:
    Serial() {
        memset(buffer_, '#', sizeof buffer_);
        VLIBCErrSetEx(0, "test", 0);
    }
    ~Serial() override { EXPECT_EQ(log_.Take(), Lines{}) << "the serial readers never log"; }

    char buffer_[64];
};

struct Reader {
    int32_t (*read)(char *, uint32_t);
    const char *file;
};

constexpr Reader kReaders[] = {
    {ZORGetOriginalSerialNumber, kSerialFile},
    {KEVAZORGetOriginalSN, kSerialFile},
    {ZORGetCustomSerialNumber, kCustomSerialFile},
    {KEVAZORGetCustomSN, kCustomSerialFile},
};

TEST_F(Serial, EachReaderReadsItsKernelFile) {
    WriteText(kSerialFile, "FACTORY01\n");
    WriteText(kCustomSerialFile, "CUSTOM01\n");
    for (const Reader &reader : kReaders) {
        EXPECT_EQ(reader.read(buffer_, 36), 0);
        EXPECT_STREQ(buffer_, reader.file == kSerialFile ? "FACTORY01" : "CUSTOM01");
    }
    EXPECT_EQ(VLIBCErrGet(), 0);
}

TEST_F(Serial, TextFitsWithItsTerminatorOrTheBufferIsEmptied) {
    WriteText(kSerialFile, "ABC123\n");
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 36), 0);
    EXPECT_STREQ(buffer_, "ABC123");
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 7), 0);
    EXPECT_STREQ(buffer_, "ABC123");
    EXPECT_EQ(VLIBCErrGet(), 0);

    memset(buffer_, '#', sizeof buffer_);
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 6), 0);
    EXPECT_EQ(std::string(buffer_, 7), std::string(6, '\0') + "#");
    EXPECT_EQ(VLIBCErrGet(), kBadParameter);
}

TEST_F(Serial, FinalNewlineIsOptional) {
    WriteText(kSerialFile, "ABC123");
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 36), 0);
    EXPECT_STREQ(buffer_, "ABC123");
    WriteText(kSerialFile, "ABC\n\n");
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 36), 0);
    EXPECT_STREQ(buffer_, "ABC\n") << "one newline is removed";
}

TEST_F(Serial, LongTextIsCutToThirtyFiveCharacters) {
    WriteText(kSerialFile, std::string(35, 'A') + "BBB\n");
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, sizeof buffer_), 0);
    EXPECT_EQ(std::string(buffer_), std::string(35, 'A'));
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 36), 0);
    EXPECT_EQ(std::string(buffer_), std::string(35, 'A'));
}

TEST_F(Serial, EmptyFileIsAnEmptySerial) {
    for (const char *text : {"", "\n"}) {
        WriteText(kSerialFile, text);
        memset(buffer_, '#', sizeof buffer_);
        EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 1), 0);
        EXPECT_STREQ(buffer_, "");
    }
    EXPECT_EQ(VLIBCErrGet(), 0);
}

TEST_F(Serial, BadArgumentsSetTheErrorCode) {
    for (const Reader &reader : kReaders) {
        VLIBCErrSetEx(0, "test", 0);
        EXPECT_EQ(reader.read(nullptr, 36), -1);
        EXPECT_EQ(VLIBCErrGet(), kBadParameter);
        VLIBCErrSetEx(0, "test", 0);
        EXPECT_EQ(reader.read(buffer_, 0), -1);
        EXPECT_EQ(VLIBCErrGet(), kBadParameter);
        EXPECT_EQ(buffer_[0], '#');
    }
}

TEST_F(Serial, MissingKernelFileFailsWithoutAnErrorCode) {
    fs::remove(kSerialFile);
    fs::remove(kCustomSerialFile);
    for (const Reader &reader : kReaders) EXPECT_EQ(reader.read(buffer_, 36), -1);
    EXPECT_EQ(VLIBCErrGet(), 0);
    EXPECT_EQ(buffer_[0], '#');
}

TEST_F(Serial, UnreadableKernelFileFails) {
    fs::remove(kSerialFile);
    fs::create_directory(kSerialFile);
    const int before = CountDescriptors();
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 36), -1);
    EXPECT_EQ(CountDescriptors(), before);
    fs::remove(kSerialFile);
}

TEST_F(Serial, WorksWithoutAManager) {
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(ZORGetOriginalSerialNumber(buffer_, 36), 0);
    EXPECT_STREQ(buffer_, "NODE0001");
}

}  // namespace
