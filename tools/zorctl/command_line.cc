#include "command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "exit_code.h"

const Option &Option::Required() const {
    option_->required();
    return *this;
}

const Option &Option::OneOf(const std::vector<std::string> &words) const {
    option_->check(CLI::IsMember(words));
    return *this;
}

const Option &Option::CheckedBy(const WordCheck &check) const {
    option_->check(check);
    return *this;
}

const Option &Option::ShowsDefault() const {
    option_->capture_default_str();
    return *this;
}

const Option &Option::Excludes(const Option &other) const {
    option_->excludes(other.option_);
    return *this;
}

bool Option::IsGiven() const {
    return option_->count() > 0;
}

Verb Verb::Add(const std::string &name, const std::string &description) const {
    return {app_->add_subcommand(name, description), chosen_};
}

void Verb::NeedsVerb() const {
    app_->require_subcommand(1);
}

void Verb::AddFooter(const std::string &text) const {
    app_->footer(text);
}

Option Verb::AddOption(const std::string &name, std::string &value,
                       const std::string &description) const {
    return Option(app_->add_option(name, value, description));
}

Option Verb::AddOption(const std::string &name, std::vector<std::string> &values,
                       const std::string &description) const {
    return Option(app_->add_option(name, values, description));
}

Option Verb::AddOption(const std::string &name, int &value, const std::string &description) const {
    return Option(app_->add_option(name, value, description));
}

Option Verb::AddOption(const std::string &name, int64_t &value,
                       const std::string &description) const {
    return Option(app_->add_option(name, value, description));
}

Option Verb::AddOption(const std::string &name, const WordCheck &take,
                       const std::string &description) const {
    const auto parse = [name, take](const std::string &word) {
        const std::string wrong = take(word);
        if (!wrong.empty()) throw CLI::ValidationError(name, wrong);
    };
    return Option(app_->add_option_function<std::string>(name, parse, description));
}

Option Verb::AddFlag(const std::string &name, bool &value, const std::string &description) const {
    return Option(app_->add_flag(name, value, description));
}

void Verb::AddJsonFlag() const {
    app_->add_flag("--json", chosen_->json, "print JSON");
}

bool Verb::PrintsJson() const {
    return chosen_->json;
}

void Verb::Runs(const std::function<int()> &action) const {
    app_->callback([app = app_, chosen = chosen_, action] {
        if (app->get_subcommands().empty()) chosen->action = action;
    });
}

CommandLine::CommandLine(const std::string &name, const std::string &description)
    : app_(std::make_unique<CLI::App>(description, name)),
      chosen_(std::make_unique<Verb::Chosen>()) {}

CommandLine::~CommandLine() = default;

Verb CommandLine::Root() const {
    return {app_.get(), chosen_.get()};
}

int CommandLine::Run(int argc, char **argv) const {
    try {
        app_->parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app_->exit(error) == 0 ? kExitSuccess : kExitUsage;
    }
    try {
        return chosen_->action();
    } catch (const MissingArgument &missing) {
        return app_->exit(CLI::RequiredError(missing.name)) == 0 ? kExitSuccess : kExitUsage;
    } catch (const std::exception &error) {
        fprintf(stderr, "zorctl: %s\n", error.what());
        return kExitFailure;
    }
}
