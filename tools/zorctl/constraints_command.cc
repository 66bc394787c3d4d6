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
        PrintJson(output);
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

void AddConstraintsCommand(CLI::App &app, CommandContext &context) {
    CLI::App *constraints = app.add_subcommand("constraints", "what is recorded about failovers");
    constraints->require_subcommand(1);
    const auto arguments = std::make_shared<ConstraintArguments>();
    const auto add_place = [arguments](CLI::App *verb) {
        verb->add_option("node", arguments->node, "local or remote")
            ->required()
            ->check(CLI::IsMember({"local", "remote"}));
        verb->add_option("kind", arguments->kind, "failed-services or failover-from")
            ->required()
            ->check(CLI::IsMember({"failed-services", "failover-from"}));
    };

    CLI::App *list = constraints->add_subcommand("list", "all constraints");
    AddJsonFlag(list, context);
    list->callback([&context] { context.action = [&context] { return List(context.json); }; });

    CLI::App *set = constraints->add_subcommand("set", "record a constraint");
    add_place(set);
    set->add_option("value", arguments->value, "its text")->required();
    set->callback([=, &context] {
        context.action = [=] {
            return Set(Find(arguments->node, arguments->kind), arguments->value);
        };
    });

    CLI::App *clear = constraints->add_subcommand("clear", "remove a constraint");
    add_place(clear);
    clear->callback([=, &context] {
        context.action = [=] { return Clear(Find(arguments->node, arguments->kind)); };
    });
}
