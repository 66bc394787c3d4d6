// The fixture of everything that sends a command and looks at its result alone.
// The test plays the manager.
#pragma once

#include <filesystem>
#include <string>

#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_core.h"

constexpr char kDualheadSetting[] = "/usr/keva/etc/kevacore-stand-in.conf";

class CommandTest : public NodeTest {
  protected:
    CommandTest() {
        queue_end::RemoveAll();
        WriteStatus("");
    }
    ~CommandTest() override { queue_end::RemoveAll(); }

    // A node whose manager is ready, with more entries.
    static void WriteStatus(const std::string &more) {
        WriteText(kStatusFile, "is_local_handler_ready=\"yes\"\n" + more);
    }

    // The next request is answered, or refused, during the first sleep.
    void AnswerWith(uint32_t result) {
        virtual_time::Start([this, result](int sleep) {
            if (sleep != 0) return;
            request_ = *queue_end::Take();
            queue_end::Put(queue_end::kAnswers, queue_end::AnswerTo(request_, result, "unread"));
        });
    }

    // Takes the request that was sent and not waited for.
    void TakeRequest() {
        const auto request = queue_end::Take();
        ASSERT_TRUE(request.has_value());
        request_ = *request;
    }

    static void RemoveManager() { std::filesystem::remove_all("/tmp/zor"); }

    static void ForbidTwoNodes() { WriteText(kDualheadSetting, "support_dualhead=\"no\"\n"); }

    static std::string Error(const std::string &function, const std::string &message) {
        return "ERROR zor_core(" + function + "): " + message;
    }
    static std::string Notice(const std::string &function, const std::string &message) {
        return "NOTICE zor_core(" + function + "): " + message;
    }
    // The channel's line when the manager is there and not ready.
    static std::string NotReady() {
        return Error("ZORSendReqToMgr",
                     "Local handler is not ready, but ZORSendReqToMgr() is called");
    }

    std::string Payload() const {
        return {reinterpret_cast<const char *>(request_.payload), request_.payloadLength};
    }

    ZORMgrMessage request_ = {};
};
