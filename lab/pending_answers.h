// Requests that were taken and not answered yet: those whose answer is delayed,
// and those that were dropped.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "zor_core.h"

class PendingAnswers {
  public:
    using Clock = std::chrono::steady_clock;

    // An answer to be sent later.
    void Delay(const ZORMgrMessage &answer, std::chrono::seconds delay);

    // A request that will get none; remembered so that its cancellation can be
    // told from one of nothing.
    void Drop(const ZORMgrMessage &answer);

    // Hands out the answers whose time has come.
    void TakeDue(const std::function<void(const ZORMgrMessage &)> &send);

    // Forgets the request that a cancellation names. False when there is none.
    bool Cancel(const ZORCancelPayload &cancel);

  private:
    struct Entry {
        ZORMgrMessage answer;
        Clock::time_point due;
    };
    void Add(const ZORMgrMessage &answer, Clock::time_point due);

    std::vector<Entry> entries_;
};
