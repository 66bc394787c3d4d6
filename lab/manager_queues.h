// The manager's ends of the message queues.
#pragma once

#include "zor_core.h"

constexpr char kMsgQueueKeyFile[] = "/tmp/zor/.msg_queue_key_file";

// Removes the queues of the present key file, all seven of the family.
void RemoveManagerQueues();

class ManagerQueues {
  public:
    // Opens both queues by the key file; throws std::runtime_error.
    ManagerQueues();

    ~ManagerQueues() { RemoveManagerQueues(); }
    ManagerQueues(const ManagerQueues &) = delete;
    ManagerQueues &operator=(const ManagerQueues &) = delete;

    // Takes the next request, without waiting.
    bool TakeRequest(ZORMgrMessage *message);

    // False, with a line on standard error, when the answer does not go out.
    bool SendAnswer(const ZORMgrMessage &answer);

  private:
    int requests_;
    int answers_;
};
