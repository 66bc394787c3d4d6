// The table of the cluster's ports.

#include "webapi/webapi_fixture.h"

namespace {

constexpr char kFunction[] = "KEVAZORGetNetInfo";

class NetInfo : public WebapiTest {
  protected:
    NetInfo() {
        status_["local_host_ifname"] = "eth0,bond1:eth1:eth2";
        status_["local_if_has_static_ip"] = "yes,no";
        status_["local_host_if_speed"] = "1000,100,0:-1:10000";
        status_["remote_host_if_speed"] = "1000,-1,1000,1000";
        conf_["monitor_if"] = "yes,yes,yes,no,no,no,no,no,no";
        Write();
    }

    int32_t Get(int32_t max = 9) { return KEVAZORGetNetInfo(rows_, max, &count_); }

    void ExpectRow(int row, const ZORNetInfo &expected) {
        EXPECT_EQ(Bytes(rows_[row]), Bytes(expected)) << rows_[row].name;
    }

    ZORNetInfo rows_[9] = {};
    int32_t count_ = -7;
};

TEST_F(NetInfo, OneRowForEachPort) {
    ASSERT_EQ(Get(), 0);
    EXPECT_EQ(count_, 4);
    ExpectRow(0, {"heartbeat", 1, 1000, 1, 1000, 0, -1, 2, 1});
    ExpectRow(1, {"eth0", 1, 100, 0, -1, 0, -1, 3, 1});
    ExpectRow(2, {"eth1", 0, -1, 1, 1000, 1, 1, 4, 1});
    ExpectRow(3, {"eth2", 1, 10000, 1, 1000, 1, 1, 6, 0});
    ExpectLog({});
}

TEST_F(NetInfo, RemoteSpeedsNeedBothWaysToTheNode) {
    for (const char *way : {"is_remote_alive_by_net", "is_remote_alive_by_expander_hb"}) {
        Set(way, "no");
        ASSERT_EQ(Get(), 0);
        ExpectRow(0, {"heartbeat", 1, 1000, 0, -1, 0, -1, 3, 1});
        Set(way, "yes");
    }
}

TEST_F(NetInfo, TooFewRowsAreRefused) {
    EXPECT_EQ(Get(4), 0);
    count_ = -7;
    for (const int32_t max : {3, 0, -1}) {
        EXPECT_EQ(Get(max), -1);
        ExpectLog({Error(kFunction, "The data size(4) > maxsize(" + std::to_string(max) + ")")});
    }
    EXPECT_EQ(count_, -7);
}

TEST_F(NetInfo, OnlyTheActiveNodeHasIt) {
    for (const char *role : {"0", "2", "4"}) {
        Set("local_role", role);
        EXPECT_EQ(Get(), -1);
        ExpectLog({Error(kFunction, "Failed to get local role")});
    }
}

TEST_F(NetInfo, FailuresAreReported) {
    EXPECT_EQ(KEVAZORGetNetInfo(nullptr, 9, &count_), -1);
    EXPECT_EQ(KEVAZORGetNetInfo(rows_, 9, nullptr), -1);
    ExpectLog({Error(kFunction, "Bad parameter"), Error(kFunction, "Bad parameter")});
    Unset("local_host_ifname");
    EXPECT_EQ(Get(), -1);
    EXPECT_EQ(log_.Take().back(), Error(kFunction, "Failed to read net info."));
}

}  // namespace
