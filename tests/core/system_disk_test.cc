// The list of system disks.

#include <string>
#include <vector>

#include "support/node_test.h"
#include "zor_core.h"

namespace {

class SystemDisk : public NodeTest {
  protected:
    SystemDisk() : list_(VLIBCSzListAlloc(1024)) { SetStatus(""); }
    ~SystemDisk() override { VLIBCSzListFree(list_); }

    static void SetStatus(const std::string &lines, int role = 1) {
        WriteText(kStatusFile, "local_role=\"" + std::to_string(role) + "\"\n" + lines);
    }

    std::vector<std::string> Items() const {
        std::vector<std::string> items;
        while (const char *item = VLIBCSzListGet(list_, static_cast<int>(items.size())))
            items.emplace_back(item);
        return items;
    }

    VLIBCSzList *list_;
};

using Texts = std::vector<std::string>;

std::string Get(const std::string &message) {
    return "ERROR zor_core(KEVAZORGetSystemDiskList): " + message;
}
std::string Set(const std::string &message) {
    return "ERROR zor_core(KEVAZORSetSystemDiskList): " + message;
}

TEST_F(SystemDisk, ListIsStoredJoinedAndReadBack) {
    for (const char *disk : {"sda", "sdb"}) VLIBCSzListPush(&list_, disk);
    EXPECT_EQ(KEVAZORSetSystemDiskList(list_), 0);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"1\"\nsystem_disk_list=\"sda,sdb\"\n");
    EXPECT_EQ(KEVAZORGetSystemDiskList(&list_), 0);
    EXPECT_EQ(Items(), (Texts{"sda", "sdb", "sda", "sdb"})) << "a get appends";
    ExpectLog({});
}

TEST_F(SystemDisk, EmptyListIsStoredAndCannotBeRead) {
    EXPECT_EQ(KEVAZORSetSystemDiskList(list_), 0);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"1\"\nsystem_disk_list=\"\"\n");
    EXPECT_EQ(KEVAZORGetSystemDiskList(&list_), -1);
    ExpectLog({Get("Get empty string from sys disk list")});
}

TEST_F(SystemDisk, OnlyTheActiveNodeMayUseIt) {
    for (const int role : {0, 2, 4}) {
        SetStatus("system_disk_list=\"sda\"\n", role);
        const std::string before = ReadText(kStatusFile);
        EXPECT_EQ(KEVAZORSetSystemDiskList(list_), -1);
        EXPECT_EQ(KEVAZORGetSystemDiskList(&list_), -1);
        EXPECT_EQ(ReadText(kStatusFile), before);
        ExpectLog({Set("Set system disk list only support on active"),
                   Get("Get system disk list only support on active")});
    }
}

TEST_F(SystemDisk, JoinedListHas3059CharactersAtMost) {
    VLIBCSzListPush(&list_, std::string(3059, 'd').c_str());
    EXPECT_EQ(KEVAZORSetSystemDiskList(list_), 0);
    VLIBCSzListRemoveAll(list_);
    EXPECT_EQ(KEVAZORGetSystemDiskList(&list_), 0);
    EXPECT_EQ(Items(), Texts{std::string(3059, 'd')});
    VLIBCSzListRemoveAll(list_);
    VLIBCSzListPush(&list_, std::string(3060, 'd').c_str());
    EXPECT_EQ(KEVAZORSetSystemDiskList(list_), -1);
    EXPECT_EQ(KEVAZORSetSystemDiskList(nullptr), -1);
    ExpectLog({Set("Fail to dump list to string"), Set("Fail to dump list to string")});
}

TEST_F(SystemDisk, FailedWriteShowsTheText) {
    VLIBCSzListPush(&list_, "sda\nsdb");
    EXPECT_EQ(KEVAZORSetSystemDiskList(list_), -1);
    EXPECT_EQ(log_.Take().back(), Set("Failed to set ha status for sys disk list: sda\nsdb"));
}

TEST_F(SystemDisk, ListMustBeAllocated) {
    VLIBCSzList *none = nullptr;
    EXPECT_EQ(KEVAZORGetSystemDiskList(nullptr), -1);
    EXPECT_EQ(KEVAZORGetSystemDiskList(&none), -1);
    ExpectLog({Get("Bad parameter. input list is null or not alloc"),
               Get("Bad parameter. input list is null or not alloc")});
}

TEST_F(SystemDisk, AbsentListIsReported) {
    EXPECT_EQ(KEVAZORGetSystemDiskList(&list_), -1);
    ExpectLog({Get("Failed to get disk list")});
}

}  // namespace
