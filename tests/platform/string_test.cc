// The stand-in's string lists and hashes.

#include <kevacore.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "support/node_test.h"

namespace {

class StringList : public testing::Test {
  protected:
    StringList() : list_(VLIBCSzListAlloc(1024)) {}
    ~StringList() override { VLIBCSzListFree(list_); }

    std::vector<std::string> Items() const {
        std::vector<std::string> items;
        while (const char *item = VLIBCSzListGet(list_, static_cast<int>(items.size())))
            items.emplace_back(item);
        return items;
    }

    VLIBCSzList *list_;
};

using Texts = std::vector<std::string>;

TEST_F(StringList, PushAndInsertKeepTheOrder) {
    EXPECT_GE(VLIBCSzListPush(&list_, "b"), 0);
    EXPECT_GE(VLIBCSzListPush(&list_, "d"), 0);
    EXPECT_GE(VLIBCSzListInsert(&list_, 1, "c"), 0);
    EXPECT_GE(VLIBCSzListInsert(&list_, 0, "a"), 0);
    EXPECT_EQ(Items(), (Texts{"a", "b", "c", "d"}));
}

TEST_F(StringList, InsertOutsideMeansTheNearerEnd) {
    EXPECT_GE(VLIBCSzListInsert(&list_, -1, "b"), 0);
    EXPECT_GE(VLIBCSzListInsert(&list_, INT_MIN, "a"), 0);
    EXPECT_GE(VLIBCSzListInsert(&list_, INT_MAX, "c"), 0);
    EXPECT_EQ(Items(), (Texts{"a", "b", "c"}));
}

TEST_F(StringList, GetOutsideIsNothing) {
    VLIBCSzListPush(&list_, "a");
    EXPECT_EQ(VLIBCSzListGet(list_, -1), nullptr);
    EXPECT_EQ(VLIBCSzListGet(list_, 1), nullptr);
    EXPECT_EQ(VLIBCSzListGet(list_, INT_MAX), nullptr);
    EXPECT_EQ(VLIBCSzListGet(nullptr, 0), nullptr);
}

TEST_F(StringList, FindReturnsTheFirstIndex) {
    for (const char *item : {"a", "b", "a"}) VLIBCSzListPush(&list_, item);
    EXPECT_EQ(VLIBCSzListFind(list_, "a"), 0);
    EXPECT_EQ(VLIBCSzListFind(list_, "b"), 1);
    EXPECT_EQ(VLIBCSzListFind(list_, "A"), -1);
}

TEST_F(StringList, SplitAppendsAndCountsItsItems) {
    EXPECT_EQ(VLIBCStrSep("a,b", ",", &list_), 2);
    EXPECT_EQ(VLIBCStrSep("", ",", &list_), 1);
    EXPECT_EQ(VLIBCStrSep(",,", ",", &list_), 3);
    EXPECT_EQ(VLIBCStrSep("bond0:eth1", ":", &list_), 2);
    EXPECT_EQ(Items(), (Texts{"a", "b", "", "", "", "", "bond0", "eth1"}));
}

TEST_F(StringList, DumpJoinsOrRefuses) {
    char text[6] = "#####";
    EXPECT_EQ(VLIBCSzListDump2Str(list_, ",", text, sizeof text), 0);
    EXPECT_STREQ(text, "");
    for (const char *item : {"a", "", "bc"}) VLIBCSzListPush(&list_, item);
    EXPECT_EQ(VLIBCSzListDump2Str(list_, ",", text, 6), 5);
    EXPECT_STREQ(text, "a,,bc");
    EXPECT_LT(VLIBCSzListDump2Str(list_, ",", text, 5), 0);
    EXPECT_LT(VLIBCSzListDump2Str(list_, ",", text, 1), 0);
    EXPECT_LT(VLIBCSzListDump2Str(list_, ",", text, 0), 0);
}

TEST_F(StringList, RemoveAllEmpties) {
    VLIBCSzListPush(&list_, "a");
    VLIBCSzListRemoveAll(list_);
    EXPECT_EQ(Items(), Texts{});
    VLIBCSzListRemoveAll(nullptr);
    VLIBCSzListFree(nullptr);
}

TEST_F(StringList, NullArgumentsAreRefused) {
    VLIBCSzList *none = nullptr;
    EXPECT_LT(VLIBCSzListPush(nullptr, "a"), 0);
    EXPECT_LT(VLIBCSzListPush(&none, "a"), 0);
    EXPECT_LT(VLIBCSzListPush(&list_, nullptr), 0);
    EXPECT_EQ(VLIBCSzListFind(nullptr, "a"), -1);
    EXPECT_LT(VLIBCStrSep(nullptr, ",", &list_), 0);
    EXPECT_LT(VLIBCStrSep("a", "", &list_), 0);
    EXPECT_LT(VLIBCStrSep("a", ",", &none), 0);
}

TEST(StringHash, SetsAndGetsByKey) {
    VLIBCSzHash *hash = VLIBCSzHashAlloc(1024);
    EXPECT_EQ(VLIBCSzHashGetValue(hash, "a"), nullptr);
    EXPECT_GE(VLIBCSzHashSetValue(&hash, "a", "1"), 0);
    EXPECT_GE(VLIBCSzHashSetValue(&hash, "b", "2"), 0);
    EXPECT_GE(VLIBCSzHashSetValue(&hash, "a", "3"), 0);
    EXPECT_STREQ(VLIBCSzHashGetValue(hash, "a"), "3");
    EXPECT_STREQ(VLIBCSzHashGetValue(hash, "b"), "2");
    EXPECT_LT(VLIBCSzHashSetValue(&hash, nullptr, "1"), 0);
    EXPECT_LT(VLIBCSzHashSetValue(&hash, "a", nullptr), 0);
    EXPECT_LT(VLIBCSzHashSetValue(nullptr, "a", "1"), 0);
    EXPECT_EQ(VLIBCSzHashGetValue(nullptr, "a"), nullptr);
    VLIBCHashRemoveAll(hash);
    EXPECT_EQ(VLIBCSzHashGetValue(hash, "a"), nullptr);
    VLIBCHashRemoveAll(nullptr);
    VLIBCSzHashFree(nullptr);
    VLIBCSzHashFree(hash);
}

}  // namespace
