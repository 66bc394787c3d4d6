// What is on the manager's message queues.
#pragma once

#include <vector>

struct QueueState {
    int project;
    bool exists;
    unsigned long messages;
    unsigned long bytes;
    unsigned long bytes_limit;
};

constexpr int kMessageQueues = 7;

// The queues of projects 1 to 7; empty when there is no key file.
std::vector<QueueState> ReadQueues();

// The kernel's limits of this IPC namespace; 0 when they cannot be read.
struct QueueLimits {
    int largest_message;  // kernel.msgmax
    int queue_bytes;      // kernel.msgmnb
};
QueueLimits ReadQueueLimits();
