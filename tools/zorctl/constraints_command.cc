// zorctl constraints: what is recorded about failovers, on the active node.

#include <cstdio>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_constraint.h"
#include "zor_status.h"

namespace {

constexpr size_t kValueSize = 1024;

struct Place {
    const char *node_name;
    int32_t node;
    const char *kind_name;
    int32_t kind;
};

constexpr Place kPlaces[] = {
    {"local", ZOR_HOST_LOCAL, "failed-services", ZOR_CONSTRAINT_FAILED_SERVICES},
    {"local", ZOR_HOST_LOCAL, "failover-from", ZOR_CONSTRAINT_FAILOVER_FROM},
    {"remote", ZOR_HOST_REMOTE, "failed-services", ZOR_CONSTRAINT_FAILED_SERVICES},
    {"remote", ZOR_HOST_REMOTE, "failover-from", ZOR_CONSTRAINT_FAILOVER_FROM},
};

const Place &Find(const std::string &node, const std::string &kind) {
    for (const Place &place : kPlaces) {
        if (node == place.node_name && kind == place.kind_name) return place;
    }
    return kPlaces[0];
}

int List(bool json) {
    Json output = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const Place &place : kPlaces) {
        char value[kValueSize] = {};
        const int32_t found = ZORGetConstraint(place.node, place.kind, value, sizeof value);
        if (found < 0) {
            ReportFailure("cannot read the constraints");
            return kExitFailure;
        }
        output.push_back({{"node", place.node_name},
                          {"kind", place.kind_name},
                          {"value", found > 0 ? Json(value) : Json(nullptr)}});
        rows.push_back({place.node_name, place.kind_name, found > 0 ? value : "none"});
    }
    if (json)
        PrintJson({{"constraints", output}});
    else
        PrintTable({"NODE", "KIND", "VALUE"}, rows);
    return kExitSuccess;
}

int Set(const Place &place, const std::string &value) {
    const int32_t written = ZORSetConstraint(place.node, place.kind, value.c_str());
    if (written > 0) return kExitSuccess;
    ReportFailure(written == 0 ? "the remote node is not known yet" : "cannot set the constraint");
    return kExitFailure;
}

int Clear(const Place &place) {
    if (ZORCleanConstraint(place.node, place.kind) >= 0) return kExitSuccess;
    ReportFailure("cannot clear the constraint");
    return kExitFailure;
}

struct ConstraintArguments {
    std::string node;
    std::string kind;
    std::string value;
};

}  // namespace

void AddConstraintsCommand(const Verb &app) {
    const Verb constraints = app.Add("constraints", "what is recorded about failovers");
    constraints.NeedsVerb();
    const auto arguments = std::make_shared<ConstraintArguments>();
    const auto add_place = [arguments](const Verb &verb) {
        verb.AddOption("node", arguments->node, "local or remote")
            .Required()
            .OneOf({"local", "remote"});
        verb.AddOption("kind", arguments->kind, "failed-services or failover-from")
            .Required()
            .OneOf({"failed-services", "failover-from"});
    };

    const Verb list = constraints.Add("list", "all constraints");
    list.AddJsonFlag();
    list.Runs([=] { return List(list.PrintsJson()); });

    const Verb set = constraints.Add("set", "record a constraint", "local failed-services samba");
    add_place(set);
    set.AddOption("value", arguments->value, "its text").Required();
    set.Runs([=] { return Set(Find(arguments->node, arguments->kind), arguments->value); });

    const Verb clear = constraints.Add("clear", "remove a constraint", "local failed-services");
    add_place(clear);
    clear.Runs([=] { return Clear(Find(arguments->node, arguments->kind)); });
}
