// What zorctl tells shells and people of itself: completion, help, exit codes.

#include <filesystem>
#include <sstream>

#include "support/command_run.h"
#include "support/node_test.h"

namespace {

class ZorCtlWords : public NodeTest {
  protected:
    ZorCtlWords() {
        UseBuiltPrograms();
        virtual_time::Stop();
    }

    static CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin(), "zorctl");
        return RunCommand(words);
    }

    // What the last of the words may become, each with its meaning behind a tab.
    static Lines Complete(Lines words) {
        words.insert(words.begin(), {"completion", "words", "--"});
        std::istringstream output(Run(words).output);
        Lines found;
        for (std::string line; std::getline(output, line);) found.push_back(line);
        return found;
    }

    // The verbs below one, from what can stand behind it.
    static Lines VerbsBelow(Lines words) {
        words.push_back("");
        Lines verbs;
        for (const std::string &line : Complete(words)) {
            const size_t tab = line.find('\t');
            if (tab != std::string::npos) verbs.push_back(line.substr(0, tab));
        }
        return verbs;
    }

    // Checks the help of a verb and of all below it; returns how many.
    static int CheckHelp(const Lines &words) {
        Lines asked = words;
        asked.push_back("--help");
        const CommandResult help = Run(asked);
        std::string path = "zorctl";
        for (const std::string &word : words) path += " " + word;
        EXPECT_EQ(help.exit_code, 0) << path;
        EXPECT_NE(help.output.find("Example: " + path.substr(0, path.rfind(' '))),
                  std::string::npos)
            << path << ": " << help.output;
        EXPECT_EQ(help.output.find('\033'), std::string::npos) << path;
        int checked = 1;
        for (const std::string &verb : VerbsBelow(words)) {
            Lines below = words;
            below.push_back(verb);
            checked += CheckHelp(below);
        }
        return checked;
    }
};

TEST_F(ZorCtlWords, VerbsOptionsAndNamesAreCompleted) {
    EXPECT_EQ(Complete({"disk"}), Lines{"disks\tthe disks that hold the system"});
    EXPECT_EQ(Complete({"lock", "t"}), Lines{"try\ttake a lock and release it"});
    EXPECT_EQ(Complete({"lock", "try", "sy"}), Lines{"system-disk"});
    EXPECT_EQ(Complete({"get", "local_ro"}), Lines{"local_role"});
    EXPECT_EQ(Complete({"conf", "get", "remote-s"}), Lines{"remote-serial"});
    EXPECT_EQ(Complete({"cluster", "--j"}), Lines{"--json\tprint JSON"});
    EXPECT_EQ(Complete({"nonsense", "x"}), Lines{});
}

TEST_F(ZorCtlWords, BashCompletesWithTheScript) {
    const CommandResult result = RunCommand(
        {"bash", "-c",
         "source <(zorctl completion bash); COMP_WORDS=(zorctl conf get local-s); COMP_CWORD=3; "
         "_zorctl; echo \"${COMPREPLY[@]}\"; complete -p zorctl"});
    EXPECT_EQ(result.output, "local-serial\ncomplete -o default -F _zorctl zorctl\n")
        << result.errors;
}

TEST_F(ZorCtlWords, OtherShellsAskTheSameWords) {
    for (const char *shell : {"zsh", "fish"}) {
        const CommandResult result = Run({"completion", shell});
        EXPECT_EQ(result.exit_code, 0);
        EXPECT_NE(result.output.find("zorctl completion words -- "), std::string::npos) << shell;
    }
}

TEST_F(ZorCtlWords, EveryHelpEndsWithAnExample) {
    int checked = 0;
    for (const std::string &verb : VerbsBelow({})) checked += CheckHelp({verb});
    EXPECT_GT(checked, 60);
}

// Nobody gives this node a manager, so that only what needs none can succeed.
TEST_F(ZorCtlWords, ExitCodesWithoutAManager) {
    std::filesystem::remove_all("/tmp/zor");
    struct Row {
        int code;
        Lines words;
    };
    for (const Row &row : {Row{0, {"completion", "bash"}}, Row{0, {"--help"}}, Row{1, {"doctor"}},
                           Row{4, {"status"}}, Row{64, {}}, Row{64, {"nonsense"}}, Row{64, {"get"}},
                           Row{64, {"get", "nonsense"}}, Row{64, {"lock", "try"}},
                           Row{64, {"upgrade", "start", "6.2"}}}) {
        const CommandResult result = Run(row.words);
        EXPECT_EQ(result.exit_code, row.code) << result.output << result.errors;
        if (row.code == 64) {
            EXPECT_EQ(result.output, "") << "usage goes to the errors";
        }
    }
}

TEST_F(ZorCtlWords, ExitCodesWithAManager) {
    std::filesystem::remove_all("/tmp/zor");
    RunCommand({"sh", "-c", "zorlab manager --peer in-process >/dev/null 2>&1 &"});
    ASSERT_TRUE(WaitFor([] { return Run({"get", "is_local_handler_ready"}).output == "yes\n"; }));
    RunCommand({"zorlab", "tell", "24", "drop"});
    struct Row {
        int code;
        Lines words;
    };
    for (const Row &row :
         {Row{0, {"status"}}, Row{0, {"request", "1000", "--wait", "--payload", "hello"}},
          Row{1, {"sync", "set", "/nonexistent"}}, Row{2, {"request", "upgrade", "--wait"}},
          Row{5, {"get", "remote_boot_error"}}}) {
        const CommandResult result = Run(row.words);
        EXPECT_EQ(result.exit_code, row.code) << row.words[0] << result.output << result.errors;
        EXPECT_EQ((result.output + result.errors).find('\033'), std::string::npos);
    }
    RunCommand({"zorlab", "stop"});
}

}  // namespace
