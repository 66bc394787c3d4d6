// The kernel's limits on message queues.
#pragma once

// Tells on standard error which limit is too small for the manager's messages
// and what to do about it. True when messages can be sent.
bool CheckQueueLimits();
