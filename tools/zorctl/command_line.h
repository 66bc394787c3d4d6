// The command line of zorctl: verbs, their options, and what each does. One file
// knows the parser, whose headers take seconds to compile.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// What is wrong with a word of the command line; empty when nothing is.
using WordCheck = std::function<std::string(const std::string &word)>;

class Option {
  public:
    // What the words of each option may be, for whoever completes a command line.
    using Suggestions = std::map<const CLI::Option *, std::vector<std::string>>;

    Option(CLI::Option *option, Suggestions *suggestions)
        : option_(option), suggestions_(suggestions) {}

    const Option &Required() const;
    const Option &OneOf(const std::vector<std::string> &words) const;
    const Option &CheckedBy(const WordCheck &check) const;
    const Option &Suggests(const std::vector<std::string> &words) const;
    const Option &ShowsDefault() const;
    const Option &Excludes(const Option &other) const;
    bool IsGiven() const;

  private:
    CLI::Option *option_;
    Suggestions *suggestions_;
};

class Verb {
  public:
    // Example: the words behind the verb in the example that its help ends with.
    Verb Add(const std::string &name, const std::string &description,
             const std::string &example = "") const;
    void NeedsVerb() const;
    void AddFooter(const std::string &text) const;

    // The value outlives the command line.
    Option AddOption(const std::string &name, std::string &value,
                     const std::string &description) const;
    Option AddOption(const std::string &name, std::vector<std::string> &values,
                     const std::string &description) const;
    Option AddOption(const std::string &name, int &value, const std::string &description) const;
    Option AddOption(const std::string &name, int64_t &value, const std::string &description) const;
    // Hands the word over instead of storing it.
    Option AddOption(const std::string &name, const WordCheck &take,
                     const std::string &description) const;
    Option AddFlag(const std::string &name, bool &value, const std::string &description) const;

    // The flag that every reading verb has.
    void AddJsonFlag() const;
    bool PrintsJson() const;

    // What the verb does when it is the last one given; returns the exit code.
    void Runs(const std::function<int()> &action) const;

  private:
    friend class CommandLine;
    struct Chosen {
        bool json = false;
        std::function<int()> action;
        Option::Suggestions suggestions;
    };
    Verb(CLI::App *app, Chosen *chosen) : app_(app), chosen_(chosen) {}

    CLI::App *app_;
    Chosen *chosen_;
};

// Thrown by an action whose command line lacks something.
struct MissingArgument {
    std::string name;
};

class CommandLine {
  public:
    CommandLine(const std::string &name, const std::string &description);
    ~CommandLine();
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    Verb Root() const;

    // What the last word may become, each with what it means behind a tab.
    std::vector<std::string> Complete(const std::vector<std::string> &words) const;

    // Does what the words ask for. Returns the exit code.
    int Run(int argc, char **argv) const;

  private:
    std::unique_ptr<CLI::App> app_;
    std::unique_ptr<Verb::Chosen> chosen_;
};
