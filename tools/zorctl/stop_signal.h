// Ends a verb that runs until it is told to: SIGINT and SIGTERM only ask.
#pragma once

class StopSignal {
  public:
    // From now on the signals ask; one for the life of the process.
    StopSignal();

    bool IsAsked() const;
};
