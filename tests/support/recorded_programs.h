// The programs that the library runs, replaced in this node by stand-ins at the
// very same paths that write down how they are run.
#pragma once

#include <string>
#include <vector>

constexpr char kProgramRecord[] = "/run/program.record";
constexpr char kProgramExitCodes[] = "/run/program.exit.";  // and the name of a program
constexpr char kRealPrograms[] = "/run/program.real.";      // and the name of a program

class RecordedPrograms {
  public:
    // Copying and moving files is still done for real.
    RecordedPrograms();

    // What was run since the last call, each as "PATH ARGUMENT ..."; a descriptor
    // that was inherited is named too.
    std::vector<std::string> Take();

    // From now on the program of this name does nothing and ends with the code.
    void SetExitCode(const std::string &name, int code);
};
