#include "pending_answers.h"

#include <algorithm>

namespace {

constexpr size_t kMost = 256;  // dropped requests are forgotten, the oldest first

}  // namespace

void PendingAnswers::Delay(const ZORMgrMessage &answer, std::chrono::seconds delay) {
    Add(answer, Clock::now() + delay);
}

void PendingAnswers::Drop(const ZORMgrMessage &answer) {
    Add(answer, Clock::time_point::max());
}

void PendingAnswers::TakeDue(const std::function<void(const ZORMgrMessage &)> &send) {
    const auto now = Clock::now();
    std::erase_if(entries_, [&](const Entry &entry) {
        if (entry.due > now) return false;
        send(entry.answer);
        return true;
    });
}

bool PendingAnswers::Cancel(const ZORCancelPayload &cancel) {
    return std::erase_if(entries_, [&](const Entry &entry) {
               return entry.answer.commandId == cancel.commandId &&
                      entry.answer.identity == cancel.identity &&
                      entry.answer.sendTime == cancel.sendTime;
           }) > 0;
}

void PendingAnswers::Add(const ZORMgrMessage &answer, Clock::time_point due) {
    if (entries_.size() == kMost) entries_.erase(entries_.begin());
    entries_.push_back({answer, due});
}
