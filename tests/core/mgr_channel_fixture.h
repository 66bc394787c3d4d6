// The fixture of the request channel's tests. The test plays the manager: what
// the hook of the virtual clock does happens while the library sleeps.
#pragma once

#include <cstdlib>
#include <string>

#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_core.h"

constexpr uint32_t kUngrouped = 17;
constexpr uint32_t kGrouped = 24;

class MgrChannel : public NodeTest {
  protected:
    MgrChannel() {
        queue_end::RemoveAll();
        WriteText(kStatusFile, "is_local_handler_ready=\"yes\"\n");
        request_.commandId = kUngrouped;
    }
    ~MgrChannel() override {
        free(request_.outputData);
        queue_end::RemoveAll();
    }

    // Sends, with the manager doing something during the first sleep.
    template <typename Manager>
    int32_t SendWith(Manager manager) {
        request_.wait = 1;
        virtual_time::Start([=](int sleep) {
            if (sleep == 0) manager(*queue_end::Take());
        });
        return ZORSendReqToMgr(&request_);
    }

    ZORMgrRequest request_ = {};
};

// A line of ZORSendReqToMgr.
inline std::string Sender(const std::string &level, const std::string &message) {
    return level + " zor_core(ZORSendReqToMgr): " + message;
}
