// The monitored services.

#include <cstring>

#include "support/node_test.h"
#include "support/system_calls.h"
#include "zor_conf.h"
#include "zor_filelock.h"

namespace {

constexpr const char *kServices[] = {"samba", "iscsitrg", "ftpd", "atalk", "nfsd"};

std::string Skip(const std::string &message) {
    return "ERROR zor_conf(ZORIsSkipRestartService): " + message;
}

class MonitoredService : public NodeTest {
  protected:
    static void SetChoice(const std::string &value) {
        WriteText(kConfFile, "monitor_service=\"" + value + "\"\n");
    }
};

TEST_F(MonitoredService, TablesHaveSixteenSlots) {
    ASSERT_EQ(std::size(gMonitorServiceList), 16u);
    ASSERT_EQ(std::size(gSkipRestart), 16u);
    for (size_t slot = 0; slot < 16; ++slot) {
        if (slot < 5)
            EXPECT_STREQ(gMonitorServiceList[slot], kServices[slot]);
        else
            EXPECT_EQ(gMonitorServiceList[slot], nullptr);
        EXPECT_EQ(gSkipRestart[slot], slot < 4 ? 1 : 0);
    }
}

TEST_F(MonitoredService, NamesAreListedWithBlanks) {
    char names[64];
    EXPECT_EQ(ZORGetServiceNameList(names, sizeof names), 0);
    EXPECT_STREQ(names, "samba iscsitrg ftpd atalk nfsd");
    ExpectLog({});
}

TEST_F(MonitoredService, NameListIsCutToTheBuffer) {
    const std::string all = "samba iscsitrg ftpd atalk nfsd";
    for (uint32_t size = 1; size <= all.size() + 2; ++size) {
        char names[64];
        memset(names, '#', sizeof names);
        EXPECT_EQ(ZORGetServiceNameList(names, size), 0);
        EXPECT_EQ(std::string(names), all.substr(0, size - 1)) << size;
        EXPECT_EQ(names[size], '#');
    }
}

TEST_F(MonitoredService, NameListWithoutABufferIsRefused) {
    char names[8];
    EXPECT_EQ(ZORGetServiceNameList(nullptr, 8), -1);
    EXPECT_EQ(ZORGetServiceNameList(names, 0), -1);
    ExpectLog({"ERROR zor_conf(ZORGetServiceNameList): Bad parameer",
               "ERROR zor_conf(ZORGetServiceNameList): Bad parameer"});
}

TEST_F(MonitoredService, OnlyAMonitoredNfsdMayBeRestarted) {
    SetChoice("yes,yes,yes,yes,yes");
    for (const char *service : kServices)
        EXPECT_EQ(ZORIsSkipRestartService(service), strcmp(service, "nfsd") == 0 ? 0 : 1);
    SetChoice("no,no,no,no,no");
    for (const char *service : kServices) EXPECT_EQ(ZORIsSkipRestartService(service), 1);
    SetChoice("Yes,,yess,y,YES");
    for (const char *service : kServices) EXPECT_EQ(ZORIsSkipRestartService(service), 1);
    ExpectLog({});
}

TEST_F(MonitoredService, ListsLongerThanTheTableAreFine) {
    std::string value = "yes";
    for (int item = 1; item < 36; ++item) value += ",yes";
    SetChoice(value);
    EXPECT_EQ(ZORIsSkipRestartService("nfsd"), 0);
    EXPECT_EQ(ZORIsSkipRestartService("samba"), 1);
}

TEST_F(MonitoredService, UnknownServiceMayBeRestarted) {
    SetChoice("yes,yes,yes,yes,yes");
    for (const char *name : {"httpd", "Samba", "samba ", ""})
        EXPECT_EQ(ZORIsSkipRestartService(name), 0);
    EXPECT_EQ(ZORIsSkipRestartService(nullptr), 0);
    ExpectLog({});
}

TEST_F(MonitoredService, ChoiceThatIsTooShortIsReported) {
    SetChoice("yes,yes");
    EXPECT_EQ(ZORIsSkipRestartService("ftpd"), 0);
    ExpectLog({Skip("Get null pointer when get monitor service at index: 2. on string: yes,yes")});
    EXPECT_EQ(ZORIsSkipRestartService("iscsitrg"), 1);
}

TEST_F(MonitoredService, AbsentChoiceIsReported) {
    EXPECT_EQ(ZORIsSkipRestartService("samba"), 0);
    ExpectLog({Skip("Failed to read ha.conf in service changed")});
}

TEST_F(MonitoredService, EmptyChoiceIsReported) {
    SetChoice("");
    EXPECT_EQ(ZORIsSkipRestartService("samba"), 0);
    ExpectLog({Skip("Bad input data ha.conf: in service list")});
}

TEST_F(MonitoredService, ReadingTakesTheLock) {
    SetChoice("yes");
    FILE *holder = nullptr;
    ASSERT_EQ(ZORFileLock(0, 0, &holder), 0);
    EXPECT_EQ(ZORIsSkipRestartService("samba"), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    ExpectLog({"ERROR zor_conf(ZORGetHAConf): failed to get filelock for get ha.conf",
               Skip("Failed to read ha.conf in service changed")});
    ZORFileUnlock(&holder);
}

}  // namespace
