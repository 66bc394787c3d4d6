// The manager's ends of the message queues.
#pragma once

#include "zor_core.h"

constexpr char kMsgQueueKeyFile[] = "/tmp/zor/.msg_queue_key_file";

class ManagerQueues {
  public:
    // Opens both queues by the key file; throws std::runtime_error.
    ManagerQueues();

    // Removes all seven queues of the family.
    ~ManagerQueues();
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
