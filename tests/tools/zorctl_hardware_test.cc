// zorctl hardware.

#include <nlohmann/json.hpp>
#include <sstream>

#include "support/command_run.h"
#include "support/node_test.h"

using nlohmann::json;

namespace {

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";

constexpr char kLocalHost[] =
    "[LOCAL_HOST]\n\tMemory=8192\n\tHostType=8\n\tVisibleDisk=24\n\tUsedDisk=20\n"
    "\tEncListLength=2\n\tEncListStatusLastCorretPos=2\n\tEncListStatus=1\n\tEncList=E1,E2\n";
constexpr char kRemoteHost[] =
    "[REMOTE_HOST]\n\tMemory=4096\n\tHostType=16\n\tUsedDisk=30\n\tEncListLength=1\n"
    "\tEncListStatusLastCorretPos=1\n\tEncListStatus=0\n\tEncList=E1\n";
constexpr char kFirstEnclosure[] =
    "[ENCLOSURE_E1]\n\tModelID=4\n\tMaxDisk=2\n\tEncSN=E1\n\tDiskTypes=1,0\n"
    "\tFanStatus=1,-1,0,1,1,1,1,1\n\tPowerStatus=3,1\n\tTempStatus=2\n";
constexpr char kCounters[] = "[COMMON]\n\tCrashedSpaces=1\n\tDegradedFCache=2\n";

class ZorCtlHardware : public NodeTest {
  protected:
    ZorCtlHardware() { UseBuiltPrograms(); }

    static CommandResult Run(const Lines &words) {
        Lines all = {"zorctl", "hardware"};
        all.insert(all.end(), words.begin(), words.end());
        return RunCommand(all);
    }

    static json Read(const std::string &part) {
        return json::parse(Run({part, "--json"}).output).at(part);
    }

    static void WriteAll() {
        WriteText(kHardwareFile,
                  std::string(kLocalHost) + kRemoteHost + kFirstEnclosure + kCounters);
    }
};

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

TEST_F(ZorCtlHardware, HostsOfBothNodes) {
    WriteAll();
    EXPECT_EQ(Read("hosts"), json({{{"node", "local"},
                                    {"known", true},
                                    {"model", "QM77000zt+"},
                                    {"position", 8},
                                    {"memory_mib", 8192},
                                    {"visible_disks", 24},
                                    {"used_disks", 20},
                                    {"enclosures", 2}},
                                   {{"node", "remote"},
                                    {"known", true},
                                    {"model", "QM77000zt+"},
                                    {"position", 16},
                                    {"memory_mib", 4096},
                                    {"visible_disks", 0},
                                    {"used_disks", 30},
                                    {"enclosures", 1}}}));
}

TEST_F(ZorCtlHardware, UnknownIsShownAsUnknown) {
    EXPECT_EQ(Read("hosts"), json({{{"node", "local"}, {"known", false}},
                                   {{"node", "remote"}, {"known", false}}}));
    WriteText(kHardwareFile, "[LOCAL_HOST]\n\tMemory=0\n");
    const json local = Read("hosts")[0];
    EXPECT_EQ(local.at("known"), true);
    for (const char *key : {"position", "memory_mib", "visible_disks", "used_disks", "enclosures"})
        EXPECT_TRUE(local.at(key).is_null()) << key;
    EXPECT_EQ(Read("fans"), json::array());
    EXPECT_EQ(Run({"fans"}).output, "none\n");
}

TEST_F(ZorCtlHardware, ChainShowsEveryLink) {
    WriteAll();
    const json chain = Read("chain");
    ASSERT_EQ(chain.size(), 3u);
    EXPECT_EQ(chain[0].at("link"), "linked");
    EXPECT_EQ(chain[1].at("link"), "end of the chain");
    EXPECT_EQ(chain[2].at("node"), "remote");
    EXPECT_EQ(chain[2].at("link"), "broken");
    WriteText(kHardwareFile,
              "[LOCAL_HOST]\n\tEncListLength=2\n\tEncListStatusLastCorretPos=1\n"
              "\tEncListStatus=0\n\tEncList=E1,E2\n");
    EXPECT_EQ(Read("chain")[1].at("link"), "not linked");
}

TEST_F(ZorCtlHardware, EveryEnclosureOnce) {
    WriteAll();
    const json enclosures = Read("enclosures");
    ASSERT_EQ(enclosures.size(), 2u);
    EXPECT_EQ(enclosures[0].at("seen_by"), "local remote");
    EXPECT_EQ(enclosures[0].at("slots"), 2);
    EXPECT_EQ(enclosures[1].at("seen_by"), "local");
    EXPECT_EQ(Read("disks")[0].at("disk_types"), json({1, 0}));
    EXPECT_EQ(Read("temperatures")[0].at("temperature"), "failed (2)");
    EXPECT_EQ(Read("power")[0].at("power"), json({"failed (3)", "normal"}));
    const json fans = Read("fans");
    EXPECT_TRUE(fans[0].at("fans")[1].is_null());
    EXPECT_EQ(fans[0].at("fans")[2], "failed (0)");
    EXPECT_TRUE(fans[1].at("fans")[0].is_null()) << "an enclosure without a section";
    const CommandResult table = Run({"fans"});
    EXPECT_EQ(table.exit_code, 0);
    EXPECT_TRUE(Contains(table.output, "FAN 8"));
    EXPECT_TRUE(Contains(table.output, "normal   unknown  failed (0)"));
}

TEST_F(ZorCtlHardware, AnswersAreThoseOfTheQueries) {
    WriteAll();
    json answers;
    for (const json &row : Read("answers"))
        answers[std::string(row.at("question"))] = row["answer"];
    EXPECT_EQ(answers.at("position of this controller"), 8);
    EXPECT_EQ(answers.at("local chain status"), 1);
    EXPECT_TRUE(answers.at("remote chain status").is_null());
    EXPECT_EQ(answers.at("remote memory in MiB"), 4096);
    EXPECT_EQ(answers.at("failed enclosure hardware"), "power,fan");
    EXPECT_EQ(answers.at("volumes"),
              "storage space crashed, the remote node has more disks for it, flash cache degraded");
    WriteText(kHardwareFile, "");
    const json none = Read("answers");
    EXPECT_EQ(none[5].at("answer"), "none");
    EXPECT_EQ(none[6].at("answer"), "in order");
}

TEST_F(ZorCtlHardware, WithoutAPartAllAreShown) {
    WriteAll();
    const json all = json::parse(Run({"--json"}).output);
    for (const char *part :
         {"hosts", "chain", "enclosures", "fans", "power", "temperatures", "disks", "answers"})
        EXPECT_TRUE(all.contains(part)) << part;
    const CommandResult table = Run({});
    EXPECT_EQ(table.exit_code, 0);
    EXPECT_TRUE(Contains(table.output, "-- the fans of every enclosure\n"));
}

TEST_F(ZorCtlHardware, UnreadableEnclosuresAreNoDefaults) {
    WriteText(kHardwareFile, std::string(kLocalHost) + "[ENCLOSURE_E1]\n\tEncSN=E1\n");
    const CommandResult result = Run({"fans", "--json"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(json::parse(result.output).at("fans"),
              json({{{"enclosure", "E1"}, {"readable", false}},
                    {{"enclosure", "E2"}, {"readable", false}}}));
    EXPECT_TRUE(Contains(result.errors, "No enc modelid in enc data."));
}

TEST_F(ZorCtlHardware, FailureShowsTheLibrarysLine) {
    const FolderInTheWay folder(kHardwareFile);
    const CommandResult result = Run({"hosts", "--json"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(Contains(result.errors, "Failed to get section :LOCAL_HOST"));
    EXPECT_EQ(Run({"watch"}).exit_code, 1);
    EXPECT_EQ(Run({"nothing"}).exit_code, 64);
}

TEST_F(ZorCtlHardware, WatchSaysWhatChanges) {
    WriteAll();
    BackgroundCommand watch({"zorctl", "hardware", "watch", "--json"});
    BackgroundCommand words({"zorctl", "hardware", "watch"});
    ASSERT_TRUE(WaitFor([&] {
        return Contains(words.Output(), "watching") && Contains(watch.Output(), "watching");
    }));
    std::string changed = ReadText(kHardwareFile);
    changed.replace(changed.find("PowerStatus=3,1"), 15, "PowerStatus=1,1");
    changed.erase(changed.find("[COMMON]"));
    const std::string aside = std::string(kHardwareFile) + ".new";
    WriteText(aside, changed);
    ASSERT_EQ(rename(aside.c_str(), kHardwareFile), 0);
    EXPECT_TRUE(WaitFor([&] {
        return Contains(words.Output(), "power: E1, supply 1: failed (3) -> normal\n") &&
               Contains(words.Output(), "-> in order\n") && Contains(watch.Output(), "in order");
    })) << words.Output()
        << watch.Output();
    json changes;
    std::istringstream lines(watch.Output());
    for (std::string line; std::getline(lines, line);) {
        const json change = json::parse(line);
        if (change.contains("item")) changes[std::string(change.at("item"))] = change;
    }
    const json &answer = changes.at("answers: failed enclosure hardware, answer");
    EXPECT_EQ(answer.at("before"), "power,fan");
    EXPECT_EQ(answer.at("after"), "fan");
    EXPECT_EQ(words.End(SIGTERM), 0);
    EXPECT_EQ(watch.End(SIGINT), 0);
}

TEST_F(ZorCtlHardware, WatchEndsAfterItsTime) {
    WriteAll();
    EXPECT_EQ(Run({"watch", "--seconds", "1"}).exit_code, 0);
}

}  // namespace
