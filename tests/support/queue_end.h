// The manager's end of the message queues, for tests that play the manager.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zor_core.h"

namespace queue_end {

constexpr int kRequests = 1;
constexpr int kAnswers = 2;

// Removes all seven queues of the family.
void RemoveAll();

// Takes the next request, or any message of a queue, without waiting.
std::optional<ZORMgrMessage> Take(int project = kRequests);

// Puts a message on a queue; size is what the queue is told.
void Put(int project, const ZORMgrMessage &message, size_t size = 32536);

// The same, and false when the queue refuses it.
bool TryPut(int project, const ZORMgrMessage &message, size_t size = 32536);

// The number of messages on a queue.
int Count(int project);

// The answer that a well-behaved manager gives.
ZORMgrMessage AnswerTo(const ZORMgrMessage &request, uint32_t result,
                       const std::string &payload = "");

}  // namespace queue_end
