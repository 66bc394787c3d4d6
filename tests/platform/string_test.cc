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

TEST_F(StringList, SplitTakesASeparatorAsAWhole) {
    EXPECT_EQ(VLIBCStrSep("a, b,c, ", ", ", &list_), 3);
    EXPECT_EQ(Items(), (Texts{"a", "b,c", ""}));
}

TEST_F(StringList, ManyAndLongItemsAreKept) {
    Texts items;
    std::string joined;
    for (int number = 0; number < 100; ++number) {
        items.push_back(std::to_string(number) + std::string(static_cast<size_t>(number), 'x'));
        joined += (number == 0 ? "" : ",") + items.back();
    }
    EXPECT_EQ(VLIBCStrSep(joined.c_str(), ",", &list_), 100);
    EXPECT_EQ(Items(), items);
    VLIBCSzListRemoveAll(list_);
    EXPECT_EQ(VLIBCStrSep("a,b", ",", &list_), 2);
    EXPECT_EQ(Items(), (Texts{"a", "b"}));
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

TEST(StringHash, ManyAndLongValuesAreKept) {
    VLIBCSzHash *hash = VLIBCSzHashAlloc(1024);
    const auto key = [](int number) { return "key" + std::to_string(number); };
    const auto value = [](int number) { return std::string(static_cast<size_t>(number), 'x'); };
    for (int number = 0; number < 100; ++number)
        EXPECT_GE(VLIBCSzHashSetValue(&hash, key(number).c_str(), value(number).c_str()), 0);
    for (int number = 0; number < 100; number += 2)  // half of them grow, half of those twice
        EXPECT_GE(VLIBCSzHashSetValue(&hash, key(number).c_str(), value(150).c_str()), 0);
    for (int number = 0; number < 100; number += 4)
        EXPECT_GE(VLIBCSzHashSetValue(&hash, key(number).c_str(), value(500).c_str()), 0);
    for (int number = 0; number < 100; ++number) {
        const int length = number % 4 == 0 ? 500 : number % 2 == 0 ? 150 : number;
        EXPECT_EQ(VLIBCSzHashGetValue(hash, key(number).c_str()), value(length)) << number;
    }
    VLIBCSzHashFree(hash);
}

TEST(StringHash, AValueOfItsOwnCanBeSet) {
    VLIBCSzHash *hash = VLIBCSzHashAlloc(1024);
    const std::string longest(300, 'x');
    EXPECT_GE(VLIBCSzHashSetValue(&hash, "a", longest.c_str()), 0);
    EXPECT_GE(VLIBCSzHashSetValue(&hash, "b", ""), 0);
    for (const char *key : {"b", "c", "a"})
        EXPECT_GE(VLIBCSzHashSetValue(&hash, key, VLIBCSzHashGetValue(hash, "a")), 0);
    for (const char *key : {"a", "b", "c"}) EXPECT_EQ(VLIBCSzHashGetValue(hash, key), longest);
    VLIBCSzHashFree(hash);
}

}  // namespace
