// zorctl doctor: why this node does not work.

#include <cstdio>

#include "command.h"
#include "doctor_checks.h"
#include "exit_code.h"
#include "output.h"

namespace {

const char *Word(Verdict verdict) {
    switch (verdict) {
        case Verdict::kGood:
            return "ok";
        case Verdict::kNote:
            return "note";
        case Verdict::kProblem:
            return "PROBLEM";
    }
    return "";
}

int Examine(bool json) {
    int problems = 0;
    Json output = Json::array();
    for (const Finding &finding : RunAllChecks()) {
        problems += finding.verdict == Verdict::kProblem;
        output.push_back({{"check", finding.check},
                          {"verdict", Word(finding.verdict)},
                          {"finding", finding.text},
                          {"advice", finding.advice}});
        if (json) continue;
        printf("%-8s %-15s %s\n", Word(finding.verdict), finding.check, finding.text.c_str());
        if (!finding.advice.empty()) printf("%-24s %s\n", "", finding.advice.c_str());
    }
    if (json)
        PrintJson({{"findings", output}});
    else
        printf("%s\n", problems == 0 ? "This node can work." : "This node cannot work as it is.");
    return problems == 0 ? kExitSuccess : kExitFailure;
}

}  // namespace

void AddDoctorCommand(const Verb &app) {
    const Verb doctor = app.Add("doctor", "find out why this node does not work");
    doctor.AddJsonFlag();
    doctor.Runs([=] { return Examine(doctor.PrintsJson()); });
}
