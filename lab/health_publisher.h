// The health word, computed from the node's true conditions, and the lists that
// go with it.
#pragma once

#include <cstdint>
#include <string>

class StatusPublisher;

class HealthPublisher {
  public:
    explicit HealthPublisher(StatusPublisher &status) : status_(status) {}

    // Computes the word and writes what has changed. Returns the word.
    uint32_t Publish();

    // The same on request: the one flag is taken away and the other put up.
    uint32_t Answer();

  private:
    StatusPublisher &status_;
};
