// zorctl completion: what shells need to complete its command lines, from the verbs
// and options that it has.

#include <cstdio>
#include <memory>

#include "command.h"
#include "exit_code.h"

namespace {

struct Shell {
    const char *name;
    const char *description;
    const char *script;
};

// Each asks this program for the words.
constexpr Shell kShells[] = {
    {"bash", "for /usr/share/bash-completion/completions/zorctl",
     "_zorctl() {\n"
     "    local IFS=$'\\n'\n"
     "    COMPREPLY=($(zorctl completion words -- \"${COMP_WORDS[@]:1:COMP_CWORD}\" | cut -f 1))\n"
     "}\n"
     "complete -o default -F _zorctl zorctl\n"},
    {"zsh", "for a folder of fpath, as _zorctl",
     "#compdef zorctl\n"
     "local -a words_found\n"
     "words_found=(${(f)\"$(zorctl completion words -- ${words[2,CURRENT]} | tr '\\t' ':')\"})\n"
     "_describe zorctl words_found\n"},
    {"fish", "for ~/.config/fish/completions/zorctl.fish",
     "complete -c zorctl -f -a '(zorctl completion words -- (commandline -opc)[2..-1] "
     "(commandline -ct))'\n"},
};

}  // namespace

void AddCompletionCommand(const Verb &app, const CommandLine &command_line) {
    const Verb completion = app.Add("completion", "scripts for shells that complete words");
    completion.NeedsVerb();
    for (const Shell &shell : kShells) {
        completion.Add(shell.name, shell.description, "").Runs([&shell] {
            fputs(shell.script, stdout);
            return static_cast<int>(kExitSuccess);
        });
    }
    const auto words = std::make_shared<std::vector<std::string>>();
    const Verb list =
        completion.Add("words", "what the last of these words may become", "-- lock t");
    list.AddOption("word", *words, "the words of a command line");
    list.Runs([=, &command_line] {
        for (const std::string &word : command_line.Complete(*words)) puts(word.c_str());
        return static_cast<int>(kExitSuccess);
    });
}
