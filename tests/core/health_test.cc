// The health word.

#include <cstring>
#include <filesystem>

#include "core/command_fixture.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

constexpr char kNeedUpdate[] = "/tmp/zor/.zor.healthy.status.need.update";
constexpr char kUpdateDone[] = "/tmp/zor/.zor.healthy.status.update.done";

class Health : public CommandTest {
  protected:
    static void SetHealth(const std::string &word) {
        WriteStatus("healthy_status=\"" + word + "\"\n");
    }

    // What the manager does with a request, once it gets to it.
    static void Recompute(const std::string &word) {
        SetHealth(word);
        fs::remove(kNeedUpdate);
        WriteText(kUpdateDone, "");
    }

    uint32_t health_ = 77;
};

TEST_F(Health, WordIsReadAsANumber) {
    for (const auto &[text, expected] : {std::pair<const char *, uint32_t>{"0", 0},
                                         {"9", 9},
                                         {"1153202631", 1153202631u},
                                         {"4294967295", 0xffffffffu},
                                         {"4294967296", 0},
                                         {"x", 0},
                                         {"12x", 12},
                                         {"-1", 0xffffffffu}}) {
        SetHealth(text);
        EXPECT_EQ(ZORGetHealthyStatus(&health_), 0);
        EXPECT_EQ(health_, expected) << text;
    }
    ExpectLog({});
}

TEST_F(Health, AbsentOrEmptyWordIsNone) {
    EXPECT_EQ(ZORGetHealthyStatus(&health_), -1);
    SetHealth("");
    EXPECT_EQ(ZORGetHealthyStatus(&health_), -1);
    EXPECT_EQ(health_, 77u);
    ExpectLog({});
}

TEST_F(Health, FailuresAreToldApart) {
    EXPECT_EQ(ZORGetHealthyStatus(nullptr), -2);
    ExpectLog({Error("ZORGetHealthyStatus", "Bad parameter")});
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORGetHealthyStatus(&health_), -2);
    const Lines lines = log_.Take();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(),
              Error("ZORGetHealthyStatus", "Failed to get ha.status for healthy status"));
}

TEST_F(Health, EveryBitHasItsClass) {
    constexpr uint32_t kErrors = 0x3000638;
    constexpr uint32_t kWarnings = 0x44bc79c7;
    const auto overview = [](uint32_t word) {
        SetHealth(std::to_string(word));
        char text[16] = "########";
        const int32_t length = KEVAZORGetOverviewStatus(text, sizeof text);
        EXPECT_EQ(length, static_cast<int32_t>(strlen(text)));
        return std::string(text);
    };
    for (uint32_t bit = 1; bit != 0; bit <<= 1)
        EXPECT_EQ(overview(bit), bit & kErrors     ? "error"
                                 : bit & kWarnings ? "warning"
                                                   : "healthy")
            << bit;
    EXPECT_EQ(overview(0), "healthy");
    EXPECT_EQ(overview(0x8000), "healthy");
    EXPECT_EQ(overview(8), "error");
    EXPECT_EQ(overview(1), "warning");
    EXPECT_EQ(overview(9), "error") << "an error comes before a warning";
    EXPECT_EQ(overview(0xffffffff), "error");
    ExpectLog({});
}

TEST_F(Health, OverviewIsCutToTheBufferAndCleared) {
    SetHealth("1");
    for (uint32_t size = 1; size <= 10; ++size) {
        char text[16];
        memset(text, '#', sizeof text);
        EXPECT_EQ(KEVAZORGetOverviewStatus(text, size), 7);
        EXPECT_EQ(std::string(text), std::string("warning").substr(0, size - 1));
        for (uint32_t at = static_cast<uint32_t>(strlen(text)); at < size; ++at)
            EXPECT_EQ(text[at], '\0');
        EXPECT_EQ(text[size], '#');
    }
}

TEST_F(Health, OverviewWithoutAWordIsEmpty) {
    char text[8];
    memset(text, '#', sizeof text);
    EXPECT_EQ(KEVAZORGetOverviewStatus(text, sizeof text), -1);
    EXPECT_EQ(std::string(text, sizeof text), std::string(sizeof text, '\0'));
    EXPECT_EQ(KEVAZORGetOverviewStatus(nullptr, 8), -1);
    ExpectLog({});
}

TEST_F(Health, RequestRaisesOneFlagAndTakesTheOther) {
    WriteText(kUpdateDone, "");
    EXPECT_EQ(ZORCheckHealthyStatusNoWait(), 0);
    EXPECT_FALSE(Exists(kUpdateDone));
    EXPECT_TRUE(Exists(kNeedUpdate));
    TakeRequest();
    EXPECT_EQ(request_.commandId, 63u);
    EXPECT_EQ(request_.wait, 0u);
    EXPECT_EQ(request_.payloadLength, 0u);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    EXPECT_EQ(ZORCheckHealthyStatusNoWait(), 0) << "a flag that was left behind is no harm";
    ExpectLog({});
}

TEST_F(Health, RequestFailuresAreReported) {
    constexpr char kFunction[] = "ZORCheckHealthyStatusNoWait";
    {
        const FolderInTheWay folder(kUpdateDone);
        EXPECT_EQ(ZORCheckHealthyStatusNoWait(), -1);
        ExpectLog({Error(kFunction, "HealthyStatus: Failed to unlink update done flag")});
    }
    {
        const UntouchableFile flag(kNeedUpdate);
        EXPECT_EQ(ZORCheckHealthyStatusNoWait(), -1);
        ExpectLog({Error(kFunction, "HealthyStatus: Failed to touch need update flag")});
    }
    WriteText(kStatusFile, "");
    EXPECT_EQ(ZORCheckHealthyStatusNoWait(), -1);
    ExpectLog({NotReady(), Error(kFunction, "HealthyStatus: Failed to send req -1")});
    EXPECT_EQ(ZORCheckHealthyStatus(&health_), -1);
    ExpectLog({NotReady(), Error(kFunction, "HealthyStatus: Failed to send req -1"),
               Error("ZORCheckHealthyStatus", "HealthyStatus: Failed to check healthy status")});
}

TEST_F(Health, CheckWaitsForTheManager) {
    virtual_time::Start([](int sleep) {
        if (sleep == 2) Recompute("12");
    });
    EXPECT_EQ(ZORCheckHealthyStatus(&health_), 0);
    EXPECT_EQ(health_, 12u);
    EXPECT_EQ(virtual_time::Sleeps(), 3);
    ExpectLog({});
}

TEST_F(Health, BothFlagsCount) {
    virtual_time::Start([](int sleep) {
        if (sleep == 0) WriteText(kUpdateDone, "");
        if (sleep == 4) fs::remove(kNeedUpdate);
    });
    SetHealth("3");
    EXPECT_EQ(ZORCheckHealthyStatus(&health_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 5);
}

TEST_F(Health, CheckGivesUpAfterSixteenTests) {
    EXPECT_EQ(ZORCheckHealthyStatus(&health_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 15);
    EXPECT_EQ(virtual_time::SleptMilliseconds(), 15000);
    ExpectLog({Error("ZORCheckHealthyStatus",
                     "HealthyStatus: Failed to wait healthy status update done")});
    EXPECT_TRUE(Exists(kNeedUpdate)) << "the request stands";
    virtual_time::Start([](int sleep) {
        if (sleep == 14) Recompute("5");
    });
    EXPECT_EQ(ZORCheckHealthyStatus(&health_), 0) << "the sixteenth test sees it";
    EXPECT_EQ(health_, 5u);
}

TEST_F(Health, CheckWithoutAResultReadsNothing) {
    virtual_time::Start([](int sleep) {
        if (sleep == 0) Recompute("1");
        if (sleep == 0) WriteStatus("");
    });
    EXPECT_EQ(ZORCheckHealthyStatus(nullptr), 0);
    virtual_time::Start([](int sleep) {
        if (sleep == 0) Recompute("1");
        if (sleep == 0) WriteStatus("");
    });
    EXPECT_EQ(ZORCheckHealthyStatus(&health_), -1);
    ExpectLog({Error("ZORCheckHealthyStatus", "HealthyStatus: Failed to get healthy status")});
}

}  // namespace
