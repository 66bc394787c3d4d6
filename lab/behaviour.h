// How the development manager misbehaves, command by command, on demand.
//
// The file /tmp/zor/lab.behaviour holds one line for each command that does not
// get its ordinary answer; it is read afresh for every request, so that a
// running manager can be told otherwise.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class Conduct {
    kOrdinary,
    kRefuse,
    kDelay,      // the ordinary answer, some seconds later
    kDrop,       // no answer
    kTwice,      // the ordinary answer, two times
    kWrongTime,  // an answer with another send time, then the ordinary one
    kOversized   // an answer that claims more payload than there can be
};

struct Behaviour {
    Conduct conduct = Conduct::kOrdinary;
    int delay_s = 0;
};

// Every word that Parse understands, for help texts.
std::vector<std::string> BehaviourWords();

// "refuse", "drop", ..., "delay:SECONDS". False when the text is none.
bool ParseBehaviour(const std::string &text, Behaviour *behaviour);

// What a command has been told; ordinary when nothing.
Behaviour BehaviourOf(uint32_t command);

// Tells a command how to behave from now on. False on a failure.
bool TellBehaviour(uint32_t command, const std::string &text);
