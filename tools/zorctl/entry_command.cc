// zorctl get, set, rm: single entries of ha.status.

#include <cstdio>
#include <string>

#include "command.h"
#include "entry_name.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_status.h"

namespace {

constexpr size_t kValueSize = 4096;

struct EntryArguments {
    std::string name;
    std::string value;
};

// The check of an argument that names an entry.
std::string CheckEntryName(const std::string &name) {
    return FindEntry(name) ? "" : "there is no entry '" + name + "'; see zorctl get --list";
}

int Absent(const std::string &name) {
    fprintf(stderr, "zorctl: %s is not set\n", name.c_str());
    return kExitAbsent;
}

int Get(const std::string &name, bool remove, bool json) {
    const EntryName &entry = *FindEntry(name);
    char value[kValueSize] = {};
    const int32_t found =
        remove ? ZORGetAndRemoveHAStatus(entry.selector, entry.key, value, sizeof value)
               : ZORGetHAStatus(entry.selector, entry.key, value, sizeof value);
    if (found < 0) {
        ReportFailure("cannot read " + name);
        return kExitFailure;
    }
    if (json) {
        const Json output = {{"entry", name}, {"value", found > 0 ? Json(value) : Json(nullptr)}};
        PrintJson(output);
        return found > 0 ? kExitSuccess : kExitAbsent;
    }
    if (found == 0) return Absent(name);
    puts(value);
    return kExitSuccess;
}

int List() {
    for (const EntryName &entry : EntryNames()) puts(entry.name);
    return kExitSuccess;
}

int Set(const std::string &name, const std::string &value) {
    const EntryName &entry = *FindEntry(name);
    if (ZORSetHAStatus(entry.selector, entry.key, value.c_str()) == 0) return kExitSuccess;
    ReportFailure("cannot set " + name);
    return kExitFailure;
}

int Remove(const std::string &name) {
    const EntryName &entry = *FindEntry(name);
    if (ZORRemoveHAStatus(entry.selector, entry.key) == 0) return kExitSuccess;
    ReportFailure("cannot remove " + name);
    return kExitFailure;
}

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const EntryName &entry : EntryNames()) names.push_back(entry.name);
    return names;
}

}  // namespace

void AddEntryCommands(const Verb &app) {
    const auto arguments = std::make_shared<EntryArguments>();

    const Verb get = app.Add("get", "print an entry of ha.status", "local_role");
    const auto remove = std::make_shared<bool>(false);
    const auto list = std::make_shared<bool>(false);
    const Option name = get.AddOption("entry", arguments->name, "its name, for example local_role")
                            .CheckedBy(CheckEntryName)
                            .Suggests(Names());
    get.AddFlag("--remove", *remove, "and remove it in the same step");
    get.AddFlag("--list", *list, "print the names of all entries").Excludes(name);
    get.AddJsonFlag();
    get.Runs([=] {
        if (*list) return List();
        if (arguments->name.empty()) throw MissingArgument{"entry"};
        return Get(arguments->name, *remove, get.PrintsJson());
    });

    const Verb set = app.Add("set", "set an entry of ha.status", "local_boot_stage 3");
    set.AddOption("entry", arguments->name, "its name")
        .Required()
        .CheckedBy(CheckEntryName)
        .Suggests(Names());
    set.AddOption("value", arguments->value, "the new value, may be empty").Required();
    set.Runs([=] { return Set(arguments->name, arguments->value); });

    const Verb rm = app.Add("rm", "remove an entry of ha.status", "local_boot_stage");
    rm.AddOption("entry", arguments->name, "its name")
        .Required()
        .CheckedBy(CheckEntryName)
        .Suggests(Names());
    rm.Runs([=] { return Remove(arguments->name); });
}
