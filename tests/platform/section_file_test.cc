// The stand-in's sectioned files.

#include <kevacore.h>

#include <cstring>
#include <memory>

#include "support/node_test.h"

namespace {

constexpr char kFile[] = "/tmp/zor/file";
constexpr char kFormat[] = "\t%s=%s\n";

constexpr char kTwoSections[] =
    "[ONE]\n"
    "\ta=1\n"
    "\tb=2\n"
    "[TWO]\n"
    "\ta=3\n";

class SectionFile : public NodeTest {
  protected:
    SectionFile() : hash_(VLIBCSzHashAlloc(1024)) {}
    ~SectionFile() override { VLIBCSzHashFree(hash_); }

    void Fill(std::initializer_list<std::pair<const char *, const char *>> pairs) {
        VLIBCHashRemoveAll(hash_);
        for (const auto &[key, value] : pairs)
            ASSERT_EQ(VLIBCSzHashSetValue(&hash_, key, value), 0);
    }

    std::string Value(const char *section, const char *key) {
        char buffer[256] = "unset";
        result_ = VLIBCFileGetSectionValue(kFile, section, key, buffer, sizeof buffer);
        return result_ > 0 ? buffer : "";
    }

    VLIBCSzHash *hash_;
    int result_ = 0;
};

TEST_F(SectionFile, GetReadsOneSection) {
    WriteText(kFile, kTwoSections);
    EXPECT_GT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    EXPECT_STREQ(VLIBCSzHashGetValue(hash_, "a"), "1");
    EXPECT_STREQ(VLIBCSzHashGetValue(hash_, "b"), "2");
    VLIBCHashRemoveAll(hash_);
    EXPECT_GT(VLIBCFileGetSection(kFile, "TWO", &hash_), 0);
    EXPECT_STREQ(VLIBCSzHashGetValue(hash_, "a"), "3");
    EXPECT_EQ(VLIBCSzHashGetValue(hash_, "b"), nullptr);
    EXPECT_EQ(VLIBCFileGetSection(kFile, "THREE", &hash_), 0);
    EXPECT_EQ(VLIBCFileGetSection(kFile, "ON", &hash_), 0);
    EXPECT_EQ(VLIBCFileGetSection(kFile, "ONE]", &hash_), 0);
    EXPECT_EQ(VLIBCFileGetSection(kFile, "ONE]\n\ta=1", &hash_), 0) << "over a line";
    EXPECT_EQ(VLIBCFileGetSection(kFile, "", &hash_), 0);
}

TEST_F(SectionFile, ABracketInsideALineStartsNoSection) {
    WriteText(kFile, "x[ONE]\n\ta=1\n [ONE]\n\ta=2\n[ONE]\n\tb=[TWO]\n\ta=3[\n");
    EXPECT_EQ(Value("ONE", "a"), "3[");
    EXPECT_EQ(Value("ONE", "b"), "[TWO]");
    Value("TWO", "a");
    EXPECT_EQ(result_, 0);
}

TEST_F(SectionFile, MissingFileHasNoSections) {
    EXPECT_EQ(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    Value("ONE", "a");
    EXPECT_EQ(result_, 0);
    EXPECT_EQ(VLIBCFileRemoveSection(kFile, "ONE"), 0);
    EXPECT_EQ(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_FALSE(Exists(kFile));
}

TEST_F(SectionFile, SetReplacesTheSectionAndKeepsTheOthers) {
    WriteText(kFile, kTwoSections);
    Fill({{"z", "9"}, {"a", "8"}});
    EXPECT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\tz=9\n\ta=8\n[TWO]\n\ta=3\n");
    EXPECT_EQ(VLIBCFileSetSection(kFile, "THREE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\tz=9\n\ta=8\n[TWO]\n\ta=3\n");
}

TEST_F(SectionFile, ReadAndSetKeepsTheOrderOfKeys) {
    WriteText(kFile, "[ONE]\n\tc=1\n\ta=2\n\tb=3\n");
    ASSERT_GT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    ASSERT_EQ(VLIBCSzHashSetValue(&hash_, "a", "changed"), 0);
    ASSERT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\tc=1\n\ta=changed\n\tb=3\n");
}

TEST_F(SectionFile, OfARepeatedKeyTheLastLineCountsInThePlaceOfTheFirst) {
    WriteText(kFile, "[ONE]\n\ta=1\n\tb=2\n\ta=3\n\ta=4\n");
    ASSERT_GT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    EXPECT_STREQ(VLIBCSzHashGetValue(hash_, "a"), "4");
    ASSERT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\ta=4\n\tb=2\n");
    ASSERT_EQ(VLIBCSzHashSetValue(&hash_, "a", "longer"), 0);
    ASSERT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\ta=longer\n\tb=2\n");
}

TEST_F(SectionFile, ASecondSectionIsReadOverTheFirst) {
    WriteText(kFile, "[ONE]\n\ta=1\n\tb=2\n[TWO]\n\tb=3\n\tc=4\n");
    ASSERT_GT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    ASSERT_GT(VLIBCFileGetSection(kFile, "TWO", &hash_), 0);
    EXPECT_STREQ(VLIBCSzHashGetValue(hash_, "b"), "3");
    ASSERT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\ta=1\n\tb=3\n\tc=4\n[TWO]\n\tb=3\n\tc=4\n");
}

TEST_F(SectionFile, LargeSectionIsReadAndSetWhole) {
    std::string text = "[ONE]\n";
    for (int number = 0; number < 200; ++number)
        text += "\tkey" + std::to_string(number) + "=" +
                std::string(static_cast<size_t>(number), 'v') + "\n";
    WriteText(kFile, text + "[TWO]\n\ta=1\n");
    ASSERT_GT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    ASSERT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), text + "[TWO]\n\ta=1\n");
}

TEST_F(SectionFile, AddAppendsASection) {
    WriteText(kFile, "[ONE]\n\ta=1");
    Fill({{"b", "2"}});
    EXPECT_GE(VLIBCFileAddSection(kFile, "TWO", hash_, kFormat), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\ta=1\n[TWO]\n\tb=2\n");
    EXPECT_LT(VLIBCFileAddSection(kFile, "ONE", hash_, kFormat), 0) << "it is there already";
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\ta=1\n[TWO]\n\tb=2\n");
}

TEST_F(SectionFile, RemoveTakesHeaderAndLines) {
    WriteText(kFile, kTwoSections);
    EXPECT_GE(VLIBCFileRemoveSection(kFile, "ONE"), 0);
    EXPECT_EQ(ReadText(kFile), "[TWO]\n\ta=3\n");
    EXPECT_EQ(VLIBCFileRemoveSection(kFile, "ONE"), 0);
}

TEST_F(SectionFile, GetValueTellsFoundFromAbsent) {
    WriteText(kFile, "[ONE]\n\ta=1\n\tempty=\n[TWO]\n\tb=2\n");
    EXPECT_EQ(Value("ONE", "a"), "1");
    EXPECT_EQ(Value("ONE", "empty"), "");
    EXPECT_GT(result_, 0);
    Value("ONE", "b");
    EXPECT_EQ(result_, 0);
    Value("THREE", "a");
    EXPECT_EQ(result_, 0);
}

TEST_F(SectionFile, GetValueCutsToTheBuffer) {
    WriteText(kFile, "[ONE]\n\ta=12345\n");
    char buffer[8] = "#######";
    EXPECT_GT(VLIBCFileGetSectionValue(kFile, "ONE", "a", buffer, 4), 0);
    EXPECT_STREQ(buffer, "123");
    EXPECT_EQ(buffer[4], '#');
}

TEST_F(SectionFile, SetValueReplacesOrAddsKeyAndSection) {
    EXPECT_GE(VLIBCFileSetSectionValue(kFile, "ONE", "a", "1"), 0);
    EXPECT_GE(VLIBCFileSetSectionValue(kFile, "TWO", "a", "2"), 0);
    EXPECT_GE(VLIBCFileSetSectionValue(kFile, "ONE", "b", "3"), 0);
    EXPECT_GE(VLIBCFileSetSectionValue(kFile, "ONE", "a", "4"), 0);
    EXPECT_EQ(ReadText(kFile), "[ONE]\n\ta=4\n\tb=3\n[TWO]\n\ta=2\n");
}

TEST_F(SectionFile, ValuesRoundTrip) {
    for (const std::string value :
         {"", "x", "a=b", "==", "\"quoted\"", " padded ", "[no header]", "tab\there", "cr\r"}) {
        ASSERT_GE(VLIBCFileSetSectionValue(kFile, "ONE", "key", value.c_str()), 0);
        EXPECT_EQ(Value("ONE", "key"), value);
        Fill({{"key", value.c_str()}});
        ASSERT_GT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
        VLIBCHashRemoveAll(hash_);
        ASSERT_GT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
        EXPECT_EQ(VLIBCSzHashGetValue(hash_, "key"), value);
    }
}

TEST_F(SectionFile, OddFilesAreReadWithoutHarm) {
    for (const std::string &text :
         {std::string("[ONE"), std::string("[ONE]"), std::string("]ONE[\n"), std::string("[\n"),
          std::string("[]\n"), std::string("\ta=1\n"), std::string("[ONE]\n\ta"),
          std::string("[ONE]\n\t=\n"), std::string("[ONE]\n\0\0\n", 9),
          "[ONE]\n\ta=" + std::string(1 << 20, 'x')}) {
        WriteText(kFile, text);
        EXPECT_GE(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
        Value("ONE", "a");
        EXPECT_GE(result_, 0);
        EXPECT_GE(VLIBCFileSetSectionValue(kFile, "ONE", "k", "v"), 0);
        EXPECT_EQ(Value("ONE", "k"), "v");
    }
}

TEST_F(SectionFile, WhatWouldCorruptTheFileIsRefused) {
    WriteText(kFile, kTwoSections);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "ONE", "a", "1\n[X]"), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "ONE", "a=b", "1"), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "ONE", "", "1"), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "A]B", "a", "1"), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "A\nB", "a", "1"), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "", "a", "1"), 0);
    Fill({{"a", "1\n[X]"}});
    EXPECT_LT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_LT(VLIBCFileAddSection(kFile, "NEW", hash_, kFormat), 0);
    EXPECT_LT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, "%s"), 0);
    EXPECT_EQ(ReadText(kFile), kTwoSections);
}

TEST_F(SectionFile, NullArgumentsAreRefused) {
    char value[8];
    VLIBCSzHash *none = nullptr;
    EXPECT_LT(VLIBCFileGetSection(nullptr, "ONE", &hash_), 0);
    EXPECT_LT(VLIBCFileGetSection(kFile, nullptr, &hash_), 0);
    EXPECT_LT(VLIBCFileGetSection(kFile, "ONE", nullptr), 0);
    EXPECT_LT(VLIBCFileGetSection(kFile, "ONE", &none), 0);
    EXPECT_LT(VLIBCFileSetSection(kFile, "ONE", 0, nullptr, kFormat), 0);
    EXPECT_LT(VLIBCFileAddSection(kFile, "ONE", hash_, nullptr), 0);
    EXPECT_LT(VLIBCFileRemoveSection(kFile, nullptr), 0);
    EXPECT_LT(VLIBCFileGetSectionValue(kFile, "ONE", "a", nullptr, 8), 0);
    EXPECT_LT(VLIBCFileGetSectionValue(kFile, "ONE", "a", value, 0), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "ONE", "a", nullptr), 0);
}

TEST_F(SectionFile, UnreadableFileIsAnError) {
    const FolderInTheWay folder(kFile);
    Fill({{"a", "1"}});
    EXPECT_LT(VLIBCFileGetSection(kFile, "ONE", &hash_), 0);
    EXPECT_LT(VLIBCFileSetSection(kFile, "ONE", 0, hash_, kFormat), 0);
    EXPECT_LT(VLIBCFileAddSection(kFile, "ONE", hash_, kFormat), 0);
    EXPECT_LT(VLIBCFileRemoveSection(kFile, "ONE"), 0);
    EXPECT_LT(VLIBCFileSetSectionValue(kFile, "ONE", "a", "1"), 0);
    Value("ONE", "a");
    EXPECT_LT(result_, 0);
}

}  // namespace
