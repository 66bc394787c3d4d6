// Every exported function that writes a file, as a call that can be repeated.
#pragma once

#include <ostream>
#include <string>
#include <vector>

// What the contract says of a function, beyond what holds for all.
enum WriterTrait : unsigned {
    kSilent = 1,   // a failure shows in the result alone
    kGuesses = 2,  // what cannot be read counts as absent, and nothing is said of it
    kGoesOn = 4,   // later steps are done when an earlier one has failed
    kOnce = 8,     // a second call makes something else of the files than one alone
};

struct Writer {
    const char *name;
    int (*call)();
    std::vector<const char *> files;  // that it may change
    int contents;  // that the files have during the call, the first and the last included
    unsigned traits = 0;
    void (*prepare)() = nullptr;  // what the node lacks for it

    bool Is(WriterTrait trait) const { return (traits & trait) != 0; }
};

extern const std::vector<Writer> kWriters;

// What a test must catch: it looks at no result, and says nothing.
extern const Writer kBlindWriter;

// How GoogleTest prints a row.
inline void PrintTo(const Writer &writer, std::ostream *out) {
    *out << writer.name;
}
