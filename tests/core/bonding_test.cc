// Bonding requests, and the flag of a changing network configuration.

#include <cstring>
#include <filesystem>

#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_core.h"

namespace fs = std::filesystem;
using queue_end::AnswerTo;

namespace {

class Bonding : public NodeTest {
  protected:
    Bonding() {
        queue_end::RemoveAll();
        WriteText(kStatusFile, "is_local_handler_ready=\"yes\"\n");
    }
    ~Bonding() override { queue_end::RemoveAll(); }

    // The manager answers during the first sleep.
    void AnswerWith(uint32_t result, const std::string &payload = "") {
        virtual_time::Start([this, result, payload](int sleep) {
            if (sleep != 0) return;
            request_ = *queue_end::Take();
            queue_end::Put(queue_end::kAnswers, AnswerTo(request_, result, payload));
        });
    }

    ZORMgrMessage request_ = {};
};

TEST_F(Bonding, RequestCarriesTheListAsItIs) {
    AnswerWith(1, "ignored");
    EXPECT_EQ(KEVAZORBonding("bond0:eth1:eth2", 15), 0);
    EXPECT_EQ(request_.commandId, 55u);
    EXPECT_EQ(request_.wait, 1u);
    EXPECT_EQ(request_.payloadLength, 15u);
    EXPECT_EQ(memcmp(request_.payload, "bond0:eth1:eth2", 15), 0);
    ExpectLog({});
}

TEST_F(Bonding, RefusalIsReportedWithTheList) {
    AnswerWith(0, "no");
    EXPECT_EQ(KEVAZORBonding("bond0:eth1---", 10), -1);
    ExpectLog(
        {"ERROR zor_core(KEVAZORBonding): Failed send msg to state controller, with if list "
         "[bond0:eth1]"});
}

TEST_F(Bonding, TimeOutIsThirtySeconds) {
    virtual_time::Start();
    EXPECT_EQ(KEVAZORBonding("x", 1), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 31);
    virtual_time::Start();
    EXPECT_EQ(KEVAZORBondingDone(1), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 31);
    log_.Take();
}

TEST_F(Bonding, NothingToBondIsRefused) {
    EXPECT_EQ(KEVAZORBonding(nullptr, 5), -1);
    EXPECT_EQ(KEVAZORBonding("x", 0), -1);
    ExpectLog({"ERROR zor_core(KEVAZORBonding): Error parameter",
               "ERROR zor_core(KEVAZORBonding): Error parameter"});
    EXPECT_EQ(queue_end::Count(1), 0);
}

TEST_F(Bonding, NegativeSizeIsOutOfBounds) {
    EXPECT_EQ(KEVAZORBonding("x", -1), -1);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NE(lines[0].find("is out of bounds, command id:55"), std::string::npos);
    EXPECT_EQ(lines[1],
              "ERROR zor_core(KEVAZORBonding): Failed send msg to state controller, with if list "
              "[]");
}

TEST_F(Bonding, DoneCarriesItsValue) {
    AnswerWith(1);
    EXPECT_EQ(KEVAZORBondingDone(0xdeadbeef), 0);
    EXPECT_EQ(request_.commandId, 56u);
    ASSERT_EQ(request_.payloadLength, 4u);
    EXPECT_EQ(memcmp(request_.payload, "\xef\xbe\xad\xde", 4), 0);
    AnswerWith(0);
    EXPECT_EQ(KEVAZORBondingDone(1), -1);
    ExpectLog({"ERROR zor_core(KEVAZORBondingDone): Failed send msg to state controller"});
}

TEST_F(Bonding, NetConfChangingIsAFlagFile) {
    constexpr char kFlag[] = "/tmp/zor/.zor.net.conf.changing";
    EXPECT_EQ(ZORIsNetConfChanging(), 0);
    EXPECT_EQ(ZORSetNetConfChanging(5), 0);
    EXPECT_TRUE(Exists(kFlag));
    EXPECT_NE(ZORIsNetConfChanging(), 0);
    EXPECT_EQ(ZORSetNetConfChanging(0), 0);
    EXPECT_FALSE(Exists(kFlag));
    EXPECT_EQ(ZORSetNetConfChanging(0), -1);
    fs::remove_all(kRuntimeFolder);
    EXPECT_LT(ZORSetNetConfChanging(1), 0);
    ExpectLog({});
}

}  // namespace
