// Failover constraints.

#include "zor_constraint.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

#include "kevacore.h"
#include "support/command_run.h"
#include "support/node_test.h"

namespace fs = std::filesystem;

namespace {

constexpr char kFile[] = "/var/lib/zor/zor.constraint";

std::string Of(const std::string &function, const std::string &message) {
    return "ERROR zor_constraint(" + function + "): " + message;
}

class Constraint : public NodeTest {
  protected:
    Constraint() {
        WriteText(kStatusFile, "local_role=\"1\"\n");
        WriteText(kConfFile, "sn0=\"NODE0001\"\nsn1=\"NODE0002\"\n");
    }
    char value_[144] = "before";
};

TEST_F(Constraint, SetGetAndCleanByNodeAndKind) {
    struct Row {
        int32_t node;
        int32_t kind;
        const char *line;
    };
    for (const Row &row : {Row{2, 0, "failed_services_NODE0001=\"v\"\n"},
                           Row{4, 0, "failed_services_NODE0002=\"v\"\n"},
                           Row{2, 1, "failover_from_NODE0001=\"v\"\n"},
                           Row{4, 1, "failover_from_NODE0002=\"v\"\n"}}) {
        EXPECT_EQ(ZORGetConstraint(row.node, row.kind, value_, sizeof value_), 0);
        EXPECT_EQ(ZORSetConstraint(row.node, row.kind, "v"), 1);
        EXPECT_EQ(ReadText(kFile), row.line);
        EXPECT_EQ(ZORGetConstraint(row.node, row.kind, value_, sizeof value_), 1);
        EXPECT_STREQ(value_, "v");
        EXPECT_GE(ZORCleanConstraint(row.node, row.kind), 0);
        EXPECT_EQ(ZORGetConstraint(row.node, row.kind, value_, sizeof value_), 0);
        EXPECT_GE(ZORCleanConstraint(row.node, row.kind), 0);
    }
    ExpectLog({});
}

TEST_F(Constraint, LongSerialIsCutInTheKey) {
    WriteText(kSerialFile, std::string(35, 'S') + "\n");
    WriteText(kConfFile, "sn0=\"" + std::string(35, 'S') + "\"\n");
    EXPECT_EQ(ZORSetConstraint(2, 0, "v"), 1);
    EXPECT_EQ(ReadText(kFile), "failed_services_" + std::string(35, 'S') + "=\"v\"\n");
}

TEST_F(Constraint, OnlyTheActiveNodeMayUseIt) {
    for (const char *role : {"0", "2", "4"}) {
        WriteText(kStatusFile, std::string("local_role=\"") + role + "\"\n");
        EXPECT_EQ(ZORGetConstraint(2, 0, value_, sizeof value_), -1);
        EXPECT_EQ(ZORSetConstraint(2, 0, "v"), -1);
        EXPECT_EQ(ZORCleanConstraint(2, 0), -1);
        ExpectLog({Of("ZORGetConstraint", "Constraint only be used in active"),
                   Of("ZORSetConstraint", "Constraint only be used in active"),
                   Of("ZORCleanConstraint", "Constraint only be used in active")});
    }
    EXPECT_FALSE(Exists(kFile));
}

TEST_F(Constraint, OtherSelectorsAreRefused) {
    for (const int32_t node : {0, 1, 3, -1}) {
        const std::string role =
            Of("ZORGetConstraintKey", "Get error role: " + std::to_string(node));
        EXPECT_EQ(ZORGetConstraint(node, 0, value_, sizeof value_), -1);
        ExpectLog({role, Of("ZORGetConstraint", "Failed to get key")});
        EXPECT_EQ(ZORSetConstraint(node, 0, "v"), -1);
        ExpectLog({role, Of("ZORSetConstraint", "Failed to get key at role for set constrint: " +
                                                    std::to_string(node) + ", iRet:-1")});
        EXPECT_EQ(ZORCleanConstraint(node, 0), -1);
        ExpectLog({role, Of("ZORCleanConstraint", "Failed to get key at role for set constrint: " +
                                                      std::to_string(node))});
    }
    EXPECT_FALSE(Exists(kFile));
}

TEST_F(Constraint, UnknownRemoteNodeHasNone) {
    WriteText(kConfFile, "sn0=\"NODE0001\"\n");
    EXPECT_EQ(ZORGetConstraint(4, 0, value_, sizeof value_), 0);
    EXPECT_EQ(ZORSetConstraint(4, 0, "v"), 0);
    EXPECT_EQ(ZORCleanConstraint(4, 0), 0);
    EXPECT_STREQ(value_, "before");
    EXPECT_FALSE(Exists(kFile));
    ExpectLog({});
}

TEST_F(Constraint, LocalSerialMustBeKnown) {
    WriteText(kConfFile, "sn0=\"A\"\nsn1=\"B\"\n");
    EXPECT_EQ(ZORGetConstraint(2, 0, value_, sizeof value_), -1);
    ExpectLog({"ERROR zor_conf(ZORGetConfKey): Error",
               "ERROR zor_conf(ZORGetHAConf): Failed to get key",
               Of("ZORGetConstraintKey", "Failed to read sn"),
               Of("ZORGetConstraint", "Failed to get key")});
}

TEST_F(Constraint, KindIsCheckedAfterTheSerial) {
    for (const int32_t kind : {2, -1}) {
        EXPECT_EQ(ZORSetConstraint(2, kind, "v"), -1);
        ExpectLog(
            {Of("ZORGetConstraintKey", "Error key (" + std::to_string(kind) + ")"),
             Of("ZORSetConstraint", "Failed to get key at role for set constrint: 2, iRet:-1")});
    }
    WriteText(kConfFile, "sn0=\"NODE0001\"\n");
    EXPECT_EQ(ZORGetConstraint(4, 2, value_, sizeof value_), 0) << "no serial, no kind to look at";
    ExpectLog({});
}

TEST_F(Constraint, ArgumentsAreCheckedBeforeTheRole) {
    WriteText(kStatusFile, "local_role=\"2\"\n");
    EXPECT_EQ(ZORGetConstraint(2, 0, nullptr, 8), -1);
    EXPECT_EQ(ZORGetConstraint(2, 0, value_, 0), -1);
    EXPECT_EQ(ZORSetConstraint(2, 0, nullptr), -1);
    ExpectLog({Of("ZORGetConstraint", "Error parameter"), Of("ZORGetConstraint", "Error parameter"),
               Of("ZORSetConstraint", "Error parameter")});
}

TEST_F(Constraint, FailuresOfTheFileAreReported) {
    const FolderInTheWay folder(kFile);
    EXPECT_EQ(ZORGetConstraint(2, 0, value_, sizeof value_), -1);
    EXPECT_EQ(ZORSetConstraint(2, 0, "v"), -1);
    EXPECT_LT(ZORCleanConstraint(2, 0), 0);
    ExpectLog(
        {Of("ZORGetConstraint", "Failed to get key value"),
         Of("ZORSetConstraint", "Failed to set key value, key:failed_services_NODE0001 value:v"),
         Of("ZORCleanConstraint", "Failed to remove key, key:failed_services_NODE0001")});
}

// The serial number in the key comes from ha.conf, under its lock; a writer that
// finds that lock taken at each of its attempts gives up.
bool IsOfALockedConf(const std::string &line) {
    static const Lines expected = {
        "ERROR zor_conf(ZORGetHAConf): failed to get filelock for get ha.conf",
        Of("ZORGetConstraintKey", "Failed to read sn"),
        Of("ZORSetConstraint", "Failed to get key at role for set constrint: 2, iRet:-1")};
    return std::find(expected.begin(), expected.end(), line) != expected.end();
}

// No lock guards the file: whoever writes last wins, and the file stays whole.
TEST_F(Constraint, UnlockedWritersLeaveAWholeFile) {
    constexpr int kReads = 100000;
    constexpr char kKey[] = "failed_services_NODE0001";
    const std::string a(120, 'a');
    const std::string b(90, 'b');
    virtual_time::Start([](int) { SleepMilliseconds(1); });
    ASSERT_EQ(ZORSetConstraint(2, 0, a.c_str()), 1);
    std::atomic<bool> done{false};
    std::atomic<long> writes{0};
    std::vector<std::thread> writers;
    for (const std::string *text : {&a, &b}) {
        writers.emplace_back([&, text] {
            while (!done) writes += ZORSetConstraint(2, 0, text->c_str()) == 1;
        });
    }
    long wrong = 0;
    for (int round = 0; round < kReads; ++round) {
        wrong += VLIBCFileGetKeyValue(kFile, kKey, value_, sizeof value_, 0) != 1 ||
                 (a != value_ && b != value_);
    }
    done = true;
    for (std::thread &writer : writers) writer.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(writes, 0);
    printf("figure: %d reads beside %ld writes without a lock: %ld torn or absent\n", kReads,
           writes.load(), wrong);
    for (const std::string &line : log_.Take()) EXPECT_TRUE(IsOfALockedConf(line)) << line;
}

}  // namespace
