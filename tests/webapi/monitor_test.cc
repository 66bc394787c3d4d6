// What is monitored, listed and changed.

#include <algorithm>
#include <vector>

#include "webapi/webapi_fixture.h"

namespace {

using base_library::Call;

constexpr char kLister[] = "KEVAZORListMonitor";
constexpr char kSetter[] = "KEVAZORSetMonitor";
constexpr char kServices[] = "ZORListMonitorService";
constexpr char kNetwork[] = "ZORListMonitorNetwork";

class Monitor : public WebapiTest {
  protected:
    Monitor() {
        status_["monitor_service_status"] = "running,stopped,error,running,stopped";
        conf_["monitor_service"] = Choice("yes,no,no,yes,yes", 16);
        status_["local_host_ifname"] = "eth0,eth1,bond0:eth2:eth3";
        status_["local_if_has_static_ip"] = "yes,no,yes";
        status_["local_host_if_speed"] = "1000,1000,1000,0:1000:1000";
        status_["remote_host_if_speed"] = "1000,1000,1000,1000,1000";
        conf_["monitor_if"] = "yes,yes,no,no,no,no,no,no,no";
        Write();
    }

    static std::string Choice(std::string text, int items) {
        for (auto count = std::count(text.begin(), text.end(), ',') + 1; count < items; ++count)
            text += ",no";
        return text;
    }

    int32_t List(uint32_t type, int32_t capacity = 16) {
        return KEVAZORListMonitor(type, rows_, capacity, &count_);
    }

    void ExpectRow(int row, int32_t enabled, const char *name, int32_t state) {
        EXPECT_EQ(rows_[row].enabled, enabled) << name;
        EXPECT_STREQ(rows_[row].name, name);
        EXPECT_EQ(rows_[row].state, state) << name;
    }

    static ZORMonitorItem Item(const char *name, int32_t enabled) {
        ZORMonitorItem item = {};
        item.enabled = enabled;
        snprintf(item.name, sizeof item.name, "%s", name);
        return item;
    }

    static int32_t SetAll(uint32_t type, const std::vector<ZORMonitorItem> &items) {
        return KEVAZORSetMonitor(type, items.data(), static_cast<int32_t>(items.size()));
    }

    std::string Stored(const std::string &name) const {
        const std::string conf = ReadText(kConfFile);
        const size_t begin = conf.find(name + "=\"") + name.size() + 2;
        return conf.substr(begin, conf.find('"', begin) - begin);
    }

    void ExpectRequest(uint32_t command) {
        const auto request = queue_end::Take();
        ASSERT_TRUE(request.has_value());
        EXPECT_EQ(request->commandId, command);
        EXPECT_EQ(request->wait, 0u);
        EXPECT_EQ(request->payloadLength, 0u);
    }

    ZORMonitorItem rows_[16] = {};
    int32_t count_ = -7;
};

// --- Listing

TEST_F(Monitor, SystemItemsAreFixed) {
    EXPECT_EQ(List(0, 2), 0);
    EXPECT_EQ(count_, 2);
    ExpectRow(0, 1, "host_error", 2);
    ExpectRow(1, 1, "volume_crash", 2);
    ExpectLog({});
    EXPECT_EQ(List(0, 1), -1);
    ExpectLog({Error(kLister, "size not enought 2")});
}

TEST_F(Monitor, ServicesWithTheirStates) {
    EXPECT_EQ(List(1), 0);
    EXPECT_EQ(count_, 5);
    ExpectRow(0, 1, "samba", 7);
    ExpectRow(1, 0, "iscsitrg", 8);
    ExpectRow(2, 0, "ftpd", 4);
    ExpectRow(3, 1, "atalk", 7);
    ExpectRow(4, 1, "nfsd", 8);
    ExpectLog({});
}

TEST_F(Monitor, InterfacesWithTheirStates) {
    EXPECT_EQ(List(2), 0);
    EXPECT_EQ(count_, 3);
    ExpectRow(0, 1, "eth0", 2);
    ExpectRow(1, 0, "eth1", 4);
    ExpectRow(2, 0, "bond0", 2);
    ExpectLog({});
}

TEST_F(Monitor, InterfaceIsActiveWithLinksAndAStaticAddress) {
    struct Row {
        const char *local, *remote, *statics, *alive;
        int32_t state;
    };
    for (const Row &row : {Row{"1000", "1000", "yes", "yes", 2}, Row{"-1", "1000", "yes", "yes", 4},
                           Row{"1000", "-1", "yes", "yes", 4}, Row{"1000", "-1", "yes", "no", 2},
                           Row{"1000", "1000", "no", "yes", 4}, Row{"-1", "-1", "no", "no", 4}}) {
        status_["local_host_ifname"] = "eth0";
        status_["local_if_has_static_ip"] = row.statics;
        status_["local_host_if_speed"] = std::string("1000,") + row.local;
        status_["remote_host_if_speed"] = std::string("1000,") + row.remote;
        status_["is_remote_alive_by_net"] = "no";
        Set("is_remote_alive_by_expander_hb", row.alive);
        EXPECT_EQ(List(2), 0);
        EXPECT_EQ(rows_[0].state, row.state) << row.local << row.remote << row.statics;
    }
}

TEST_F(Monitor, ArgumentsOfTheListAreChecked) {
    for (uint32_t type = 0; type < 4; ++type) {
        EXPECT_EQ(KEVAZORListMonitor(type, nullptr, 4, &count_), -1);
        EXPECT_EQ(KEVAZORListMonitor(type, rows_, 4, nullptr), -1);
        EXPECT_EQ(List(type, 0), -1);
        EXPECT_EQ(List(type, -1), -1);
        ExpectLog(Lines(4, Error(kLister, "Bad paramter")));
    }
    EXPECT_EQ(List(3), 0);
    EXPECT_EQ(count_, -7) << "an unknown type leaves everything alone";
    ExpectLog({});
}

TEST_F(Monitor, ListsMustFit) {
    const auto expect = [this](uint32_t type, int32_t capacity, const std::string &function,
                               const std::string &message) {
        EXPECT_EQ(List(type, capacity), -1);
        ExpectLog({Error(function, message),
                   Error(kLister, type == 1 ? "Failed to list monitor service"
                                            : "Failed to list monitor network")});
    };
    expect(1, 4, kServices, "input size not enought 4 < 5");
    expect(2, 2, kNetwork, "input size not enought 2 < 2");
    conf_["monitor_service"] = "yes,no,no,yes";
    Write();
    expect(1, 16, kServices, "Size too much? 5 > 4");
    conf_["monitor_service"] = Choice("yes", 17);
    Set("monitor_service_status", Choice("running", 17));
    expect(1, 16, kServices, "Size not equal 16 17");
}

TEST_F(Monitor, ListsMustBeReadable) {
    const auto expect = [this](const std::string &message) {
        EXPECT_EQ(List(1), -1);
        ExpectLog({Error(kServices, message), Error(kLister, "Failed to list monitor service")});
    };
    for (const int nth : {1, 2}) {
        base_library::Fail(Call::kListAlloc, nth);
        expect("Failed to alloc memory");
        base_library::Fail(Call::kStrSep, nth);
        expect("Failed to strsep");
    }
    Unset("monitor_service_status");
    expect("Failed to read ha.status for service status");
    conf_.erase("monitor_service");
    Write();
    expect("Failed to read monitor service");
    Unset("local_host_ifname");
    EXPECT_EQ(List(2), -1);
    const Lines lines = log_.Take();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2],
              Error(kNetwork, "Failed to read netinfo from conf andd stats"));
    EXPECT_EQ(lines.back(), Error(kLister, "Failed to list monitor network"));
}

// --- Changing

TEST_F(Monitor, SystemItemsAndUnknownTypesCannotBeChanged) {
    const std::string before = ReadText(kConfFile);
    EXPECT_EQ(SetAll(0, {Item("host_error", 0)}), -1);
    ExpectLog({Error(kSetter, "Not allow to modify system monitor items")});
    EXPECT_EQ(SetAll(3, {Item("samba", 1)}), -1);
    ExpectLog({Error(kSetter, "Unknown type: 3")});
    EXPECT_EQ(KEVAZORSetMonitor(1, nullptr, 1), -1);
    EXPECT_EQ(KEVAZORSetMonitor(1, rows_, 0), -1);
    EXPECT_EQ(KEVAZORSetMonitor(0, rows_, -1), -1);
    ExpectLog(Lines(3, Error(kSetter, "Bad parameter")));
    EXPECT_EQ(ReadText(kConfFile), before);
}

TEST_F(Monitor, ServicesAreStoredAndAnnounced) {
    EXPECT_EQ(SetAll(1, {Item("samba", 0), Item("iscsitrg", 7), Item("nobody", 1)}), 0);
    EXPECT_EQ(Stored("monitor_service"), Choice("no,yes,no,yes,yes", 16));
    ExpectRequest(35);
    ExpectLog({});
}

TEST_F(Monitor, ServiceInErrorCannotBeEnabled) {
    const std::string before = ReadText(kConfFile);
    EXPECT_EQ(SetAll(1, {Item("samba", 0), Item("ftpd", 1)}), -1);
    ExpectLog({Error(kSetter, "Set enable to a error service")});
    EXPECT_EQ(ReadText(kConfFile), before) << "nothing is stored";
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
    EXPECT_EQ(SetAll(1, {Item("ftpd", 0)}), 0);
    conf_["monitor_service"] = Choice("no,no,yes", 16);
    Write();
    EXPECT_EQ(SetAll(1, {Item("ftpd", 1)}), 0) << "it is enabled already";
    EXPECT_EQ(SetAll(1, {Item("ftpd", 0), Item("ftpd", 1)}), -1) << "not any more";
    log_.Take();
}

TEST_F(Monitor, ChoiceIsStoredEvenWhenNobodyCanBeTold) {
    Unset("is_local_handler_ready");
    EXPECT_EQ(SetAll(1, {Item("samba", 0)}), -1);
    EXPECT_EQ(Stored("monitor_service"), Choice("no,no,no,yes,yes", 16));
    EXPECT_EQ(log_.Take().back(), Error(kSetter, "Failed to send service chagned"));
    EXPECT_EQ(SetAll(2, {Item("eth0", 0)}), -1);
    EXPECT_EQ(Stored("monitor_if"), "yes,no,no,no,no,no,no,no,no");
    EXPECT_EQ(log_.Take().back(), Error(kSetter, "Failed to send link chagned"));
}

TEST_F(Monitor, ChoiceThatCannotBeStoredIsReported) {
    Set("local_role", "2");
    EXPECT_EQ(SetAll(1, {Item("samba", 0)}), -1);
    EXPECT_EQ(log_.Take().back(), Error(kSetter, "Failed to set ha.conf"));
    EXPECT_EQ(SetAll(2, {Item("eth0", 0)}), -1);
    EXPECT_EQ(log_.Take().back(), Error(kSetter, "Failed to set ha.conf"));
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
}

TEST_F(Monitor, ListsThatCannotBeReadEndTheChange) {
    Unset("monitor_service_status");
    EXPECT_EQ(SetAll(1, {Item("samba", 0)}), -1);
    EXPECT_EQ(log_.Take().back(), Error(kSetter, "Failed to list original monitor services"));
    Unset("local_host_ifname");
    EXPECT_EQ(SetAll(2, {Item("eth0", 0)}), -1);
    EXPECT_EQ(log_.Take().back(), Error(kSetter, "Failed to get original netinfo"));
}

TEST_F(Monitor, PortsAndBondsAreStoredByPort) {
    EXPECT_EQ(SetAll(2, {Item("bond0", 1)}), 0);
    EXPECT_EQ(Stored("monitor_if"), "yes,yes,no,yes,yes,no,no,no,no");
    ExpectRequest(16);
    EXPECT_EQ(SetAll(2, {Item("eth0", 0), Item("bond0", 0)}), 0);
    EXPECT_EQ(Stored("monitor_if"), "yes,no,no,no,no,no,no,no,no");
    ExpectRequest(16);
    ExpectLog({});
}

TEST_F(Monitor, InactiveInterfaceCannotBeEnabledAnew) {
    EXPECT_EQ(SetAll(2, {Item("eth1", 1)}), -1);
    ExpectLog({Error(kSetter, "Set enable to a not active interface eth1")});
    EXPECT_EQ(SetAll(2, {Item("eth1", 0)}), 0);
    Set("local_if_has_static_ip", "no,no,no");
    EXPECT_EQ(SetAll(2, {Item("eth0", 1)}), 0) << "it is monitored already";
    EXPECT_EQ(SetAll(2, {Item("eth0", 0), Item("eth0", 1)}), 0) << "before the request";
    ExpectLog({});
}

TEST_F(Monitor, UnknownInterfaceEndsTheChange) {
    const std::string before = ReadText(kConfFile);
    for (const char *name : {"eth7", "bond1", "heartbeat", ""}) {
        EXPECT_EQ(SetAll(2, {Item("eth0", 0), Item(name, 0)}), -1);
        ExpectLog({Error(kSetter, std::string("Setting unknown interfaces: ") + name)});
    }
    ZORMonitorItem endless = Item("", 0);
    memset(endless.name, 'x', sizeof endless.name);
    EXPECT_EQ(SetAll(2, {endless}), -1);
    ExpectLog({Error(kSetter, "Setting unknown interfaces: " + std::string(64, 'x'))});
    EXPECT_EQ(ReadText(kConfFile), before);
}

}  // namespace
