// The System V queues that the manager's messages travel on. Nothing here waits;
// errno is that of the failing call.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zor_core.h"

constexpr int kRequestProject = 1;  // to the manager
constexpr int kAnswerProject = 2;   // from the manager
constexpr int kLastProject = 7;     // the others are only ever cleaned

// What the queue calls are told: the message less its type.
constexpr size_t kMsgQueueSize = sizeof(ZORMgrMessage) - sizeof(ZORMgrMessage::identity);
static_assert(kMsgQueueSize == 32536);

// Opens the queue of a project, creating it if it is missing. -1 on a failure,
// which is logged as the reporting function's.
int OpenMsgQueue(int project, const char *reporter);

bool SendMsg(int queue, const ZORMgrMessage &message);

// Takes one message of the type off the queue, as msgrcv selects it. What a
// short message lacks is zeroed: it must not show the rest of the one before.
bool ReceiveMsg(int queue, int64_t type, ZORMgrMessage *message);

// Whether the queue holds no message; false when that cannot be told.
bool IsMsgQueueEmpty(int queue);
