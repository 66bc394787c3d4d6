// The state of the enclosures, and the halt check.

#include <memory>

#include "webapi/webapi_fixture.h"
#include "zor_filelock.h"

namespace {

using base_library::Call;

class EnclosureView : public WebapiTest {
  protected:
    int32_t Get() {
        record_ = {77, {78, 79}, 80, 81};
        return KEVAZORGetEnclosure(&record_);
    }

    void ExpectStates(int32_t status, int32_t power, int32_t fan) {
        EXPECT_EQ(record_.status, status);
        EXPECT_EQ(record_.powerStatus, power);
        EXPECT_EQ(record_.fanStatus, fan);
        EXPECT_EQ(record_.reserved[0], 78);
        EXPECT_EQ(record_.reserved[1], 79);
    }

    ZOREnclosureStatus record_;
};

TEST_F(EnclosureView, WordsOfTheList) {
    struct Row {
        const char *words;
        int32_t status, power, fan;
    };
    for (const Row &row :
         {Row{"", 2, 2, 2}, Row{"fan", 3, 2, 3}, Row{"power", 3, 3, 2}, Row{"fan,power", 3, 3, 3},
          Row{"power,fan", 3, 3, 3}, Row{"disk", 2, 2, 2}, Row{"fans", 2, 2, 2},
          Row{"Fan,POWER", 2, 2, 2}, Row{",,fan", 3, 2, 3}}) {
        Set("failed_enc_hardware", row.words);
        EXPECT_EQ(Get(), 0);
        ExpectStates(row.status, row.power, row.fan);
    }
    ExpectLog({});
}

TEST_F(EnclosureView, AbsentListIsNotNormal) {
    EXPECT_EQ(Get(), 0);
    ExpectStates(3, 9, 9);
    ExpectLog({});
}

TEST_F(EnclosureView, FailuresAreReported) {
    constexpr char kFunction[] = "KEVAZORGetEnclosure";
    EXPECT_EQ(KEVAZORGetEnclosure(nullptr), -1);
    ExpectLog({Error(kFunction, "Bad parameter")});
    for (const char *role : {"0", "2", "4"}) {
        Set("local_role", role);
        EXPECT_EQ(Get(), -1);
        ExpectStates(77, 9, 9);
        ExpectLog({Error(kFunction, "This function only support active.")});
    }
    Set("local_role", "1");
    Set("failed_enc_hardware", "fan");
    base_library::Fail(Call::kListAlloc);
    EXPECT_EQ(Get(), -1);
    ExpectStates(77, 9, 9);
    ExpectLog({Error(kFunction, "Failed to alloc memory")});
    base_library::Fail(Call::kStrSep);
    EXPECT_EQ(Get(), -1);
    ExpectStates(77, 9, 9);
    ExpectLog({Error(kFunction, "Failed to str sep")});
}

// --- The halt check

class HaltCheck : public WebapiTest {
  protected:
    HaltCheck() {
        record_->local.blocked = 5;
        answer_->which = 3;
        answer_->local.blocked = 1;
        strcpy(answer_->local.tasks, "volume repair");
        answer_->remote.blocked = 1;
        strcpy(answer_->remote.tasks, "upgrade");
    }

    int32_t Check(int32_t which, int32_t store) {
        AnswerWith(Bytes(*answer_));
        return KEVAZORCheckHaltOpt(which, record_.get(), store);
    }

    // "-" for an absent entry.
    static std::string Published(const std::string &name) {
        const std::string status = ReadText(kStatusFile);
        const size_t at = status.find("blocking_tasks_" + name + "=\"");
        if (at == std::string::npos) return "-";
        const size_t begin = status.find('"', at) + 1;
        return status.substr(begin, status.find('"', begin) - begin);
    }

    std::unique_ptr<ZORHaltCheck> record_ = std::make_unique<ZORHaltCheck>();
    std::unique_ptr<ZORHaltCheck> answer_ = std::make_unique<ZORHaltCheck>();
};

constexpr char kFunction[] = "KEVAZORCheckHaltOpt";

TEST_F(HaltCheck, RecordGoesOutAndComesBack) {
    EXPECT_EQ(Check(3, 0), 0);
    EXPECT_EQ(request_.commandId, 60u);
    EXPECT_EQ(request_.wait, 1u);
    ASSERT_EQ(request_.payloadLength, 2060u);
    ZORHaltCheck sent;
    memcpy(&sent, request_.payload, sizeof sent);
    EXPECT_EQ(sent.which, 3);
    EXPECT_EQ(sent.local.blocked, 5) << "the caller's record, whole";
    EXPECT_EQ(Bytes(*record_), Bytes(*answer_));
    EXPECT_EQ(Published("local"), "-");
    EXPECT_EQ(Published("remote"), "-");
    ExpectLog({});
}

TEST_F(HaltCheck, WhatWasAskedForIsPublished) {
    answer_->which = 0;
    EXPECT_EQ(Check(1, 1), 0);
    EXPECT_EQ(Published("local"), "volume repair");
    EXPECT_EQ(Published("remote"), "-");
    EXPECT_EQ(Check(2, 1), 0);
    EXPECT_EQ(Published("remote"), "upgrade");
    answer_->remote.blocked = 0;
    EXPECT_EQ(Check(2, 7), 0);
    EXPECT_EQ(Published("remote"), "-");
    EXPECT_EQ(Published("local"), "volume repair") << "was not asked for";
    answer_->local.tasks[0] = '\0';
    EXPECT_EQ(Check(1, 1), 0) << "blocked by nothing that has a name";
    EXPECT_EQ(Published("local"), "-");
    EXPECT_EQ(Check(4, 1), 0) << "neither node";
    ExpectLog({});
}

TEST_F(HaltCheck, TasksWithoutTheirNulAreBounded) {
    memset(answer_->local.tasks, 'x', sizeof answer_->local.tasks);
    EXPECT_EQ(Check(1, 1), 0);
    EXPECT_EQ(Published("local"), std::string(1024, 'x'));
}

TEST_F(HaltCheck, FailuresToPublishAreReported) {
    strcpy(answer_->local.tasks, "two\nlines");
    EXPECT_EQ(Check(1, 1), 0);
    EXPECT_EQ(log_.Take().back(),
              Error("storeHaltCheckResult", "Failed to set ha status for blocking tasks"));
    Set("blocking_tasks_local", "old");
    answer_->local.blocked = 0;
    FILE *lock = nullptr;
    AnswerWith(Bytes(*answer_));
    ASSERT_EQ(ZORFileLock(1, 0, &lock), 0);
    EXPECT_EQ(KEVAZORCheckHaltOpt(1, record_.get(), 1), 0);
    ZORFileUnlock(&lock);
    EXPECT_EQ(log_.Take().back(), Error("storeHaltCheckResult", "Remote ha status failed"));
    EXPECT_EQ(Published("local"), "old");
}

TEST_F(HaltCheck, AnswersOfTheWrongSizeAreRefused) {
    const std::string before = Bytes(*record_);
    for (const size_t size : {0u, 1u, 56u, 2059u, 2061u}) {
        AnswerWith(std::string(size, 'a'));
        EXPECT_EQ(KEVAZORCheckHaltOpt(1, record_.get(), 1), -1);
        ExpectLog({Error(kFunction, "wrongin size of return, 56 " + std::to_string(size))});
    }
    EXPECT_EQ(Bytes(*record_).substr(4), before.substr(4));
}

TEST_F(HaltCheck, FailedQuestionIsNoticed) {
    virtual_time::Start();
    EXPECT_EQ(KEVAZORCheckHaltOpt(1, record_.get(), 1), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 11) << "ten seconds";
    ExpectLog({Notice(kFunction, "Failed to command ask node info for ui with return code: -3")});
    AnswerWith("", 0);
    EXPECT_EQ(KEVAZORCheckHaltOpt(1, record_.get(), 1), -1);
    ExpectLog({Notice(kFunction, "Failed to command ask node info for ui with return code: -2")});
}

TEST_F(HaltCheck, ArgumentsAreChecked) {
    EXPECT_EQ(KEVAZORCheckHaltOpt(1, nullptr, 1), -1);
    EXPECT_EQ(KEVAZORCheckHaltOpt(0, record_.get(), 1), -1);
    ExpectLog({Error(kFunction, "Bad parameter"), Error(kFunction, "Bad parameter")});
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
}

}  // namespace
