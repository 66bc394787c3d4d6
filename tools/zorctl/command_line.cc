#include "command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "exit_code.h"

namespace {

// The words that lead to a verb.
std::string PathOf(const CLI::App *verb) {
    const CLI::App *const parent = verb->get_parent();
    return (parent ? PathOf(parent) + " " : "") + verb->get_name();
}

bool StartsWith(const std::string &text, const std::string &beginning) {
    return text.rfind(beginning, 0) == 0;
}

// A line's worth of what an option or a verb means.
std::string Candidate(const std::string &word, const std::string &meaning) {
    return meaning.empty() ? word : word + "\t" + meaning;
}

}  // namespace

const Option &Option::Required() const {
    option_->required();
    return *this;
}

const Option &Option::OneOf(const std::vector<std::string> &words) const {
    option_->check(CLI::IsMember(words));
    return Suggests(words);
}

const Option &Option::CheckedBy(const WordCheck &check) const {
    option_->check(check);
    return *this;
}

const Option &Option::Suggests(const std::vector<std::string> &words) const {
    (*suggestions_)[option_] = words;
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

Verb Verb::Add(const std::string &name, const std::string &description,
               const std::string &example) const {
    CLI::App *const verb = app_->add_subcommand(name, description);
    verb->footer("Example: " + PathOf(verb) + (example.empty() ? "" : " " + example));
    // A group's example is that of its first verb.
    if (app_->get_parent() && app_->get_footer() == "Example: " + PathOf(app_))
        app_->footer(verb->get_footer());
    return {verb, chosen_};
}

void Verb::NeedsVerb() const {
    app_->require_subcommand(1);
}

void Verb::AddFooter(const std::string &text) const {
    app_->footer(text);
}

Option Verb::AddOption(const std::string &name, std::string &value,
                       const std::string &description) const {
    return {app_->add_option(name, value, description), &chosen_->suggestions};
}

Option Verb::AddOption(const std::string &name, std::vector<std::string> &values,
                       const std::string &description) const {
    return {app_->add_option(name, values, description), &chosen_->suggestions};
}

Option Verb::AddOption(const std::string &name, int &value, const std::string &description) const {
    return {app_->add_option(name, value, description), &chosen_->suggestions};
}

Option Verb::AddOption(const std::string &name, int64_t &value,
                       const std::string &description) const {
    return {app_->add_option(name, value, description), &chosen_->suggestions};
}

Option Verb::AddOption(const std::string &name, const WordCheck &take,
                       const std::string &description) const {
    const auto parse = [name, take](const std::string &word) {
        const std::string wrong = take(word);
        if (!wrong.empty()) throw CLI::ValidationError(name, wrong);
    };
    return {app_->add_option_function<std::string>(name, parse, description),
            &chosen_->suggestions};
}

Option Verb::AddFlag(const std::string &name, bool &value, const std::string &description) const {
    return {app_->add_flag(name, value, description), &chosen_->suggestions};
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

std::vector<std::string> CommandLine::Complete(const std::vector<std::string> &words) const {
    const CLI::App *verb = app_.get();
    for (size_t index = 0; index + 1 < words.size(); ++index) {
        for (const CLI::App *child : verb->get_subcommands([](const CLI::App *) { return true; })) {
            if (child->get_name() == words[index]) verb = child;
        }
    }
    const std::string beginning = words.empty() ? "" : words.back();
    std::vector<std::string> found;
    const auto offer = [&](const std::string &word, const std::string &meaning) {
        if (StartsWith(word, beginning)) found.push_back(Candidate(word, meaning));
    };
    for (const CLI::App *child : verb->get_subcommands([](const CLI::App *) { return true; }))
        offer(child->get_name(), child->get_description());
    for (const CLI::Option *option : verb->get_options()) {
        for (const std::string &name : option->get_lnames())
            if (StartsWith(beginning, "-")) offer("--" + name, option->get_description());
        const auto suggested = chosen_->suggestions.find(option);
        if (suggested == chosen_->suggestions.end()) continue;
        for (const std::string &word : suggested->second) offer(word, "");
    }
    return found;
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
