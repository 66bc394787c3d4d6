// The names of network interfaces.

#include "support/node_test.h"
#include "zor_core.h"

namespace {

using InterfaceName = NodeTest;

TEST_F(InterfaceName, NumberIsParsedByTheEnabledPatterns) {
    struct Row {
        const char *name;
        int32_t eth;
        int32_t bond;
        int32_t result;
        int32_t number;
    };
    const Row rows[] = {
        {"eth3", 1, 0, 0, 3},      {"ovs_eth3", 1, 0, 0, 3},  {"bond2", 0, 1, 0, 2},
        {"ovs_bond2", 0, 1, 0, 2}, {"eth3", 1, 1, 0, 3},      {"bond2", 1, 1, 0, 2},
        {"eth3", 0, 1, -1, 77},    {"bond2", 1, 0, -1, 77},   {"eth", 1, 0, -1, 77},
        {"Eth3", 1, 0, -1, 77},    {"xeth3", 1, 0, -1, 77},   {"", 1, 1, -1, 77},
        {"eth12", 1, 0, 0, 12},    {"eth3:eth4", 1, 0, 0, 3}, {"eth-1", 1, 0, 0, -1},
    };
    for (const Row &row : rows) {
        int32_t number = 77;
        EXPECT_EQ(ZORParseIFIndex(row.name, &number, row.eth, row.bond), row.result) << row.name;
        EXPECT_EQ(number, row.number) << row.name;
    }
    ExpectLog({});
}

TEST_F(InterfaceName, BadArgumentsOfParseAreReported) {
    int32_t number = 77;
    EXPECT_EQ(ZORParseIFIndex(nullptr, &number, 1, 0), -1);
    EXPECT_EQ(ZORParseIFIndex("eth0", nullptr, 1, 0), -1);
    EXPECT_EQ(ZORParseIFIndex(nullptr, nullptr, 0, 0), -1);
    EXPECT_EQ(ZORParseIFIndex("eth0", &number, 0, 0), -1);
    ExpectLog({"ERROR zor_core(ZORParseIFIndex): Error parameter",
               "ERROR zor_core(ZORParseIFIndex): Error parameter",
               "ERROR zor_core(ZORParseIFIndex): Error parameter",
               "ERROR zor_core(ZORParseIFIndex): Nothing to check"});
}

TEST_F(InterfaceName, PrefixIsAllThatIsValidated) {
    for (const char *name : {"eth", "eth0", "ethernet", "ovs_eth", "ovs_ethx"}) {
        EXPECT_EQ(ZORValidateIFPrefix(name, 1, 0), 1) << name;
        EXPECT_EQ(ZORValidateIFPrefix(name, 0, 1), 0) << name;
        EXPECT_EQ(ZORValidateIFPrefix(name, 1, 1), 1) << name;
    }
    for (const char *name : {"bond", "bond0:eth1", "bondage", "ovs_bond7"}) {
        EXPECT_EQ(ZORValidateIFPrefix(name, 0, 1), 1) << name;
        EXPECT_EQ(ZORValidateIFPrefix(name, 1, 0), 0) << name;
    }
    for (const char *name : {"", "et", "bon", "ovs_", "lo", " eth0", "ETH0"})
        EXPECT_EQ(ZORValidateIFPrefix(name, 1, 1), 0) << name;
    ExpectLog({});
}

TEST_F(InterfaceName, BadArgumentsOfValidateAreReported) {
    EXPECT_EQ(ZORValidateIFPrefix(nullptr, 1, 1), 0);
    EXPECT_EQ(ZORValidateIFPrefix("eth0", 0, 0), 0);
    ExpectLog({"ERROR zor_core(ZORValidateIFPrefix): Error parameter",
               "ERROR zor_core(ZORValidateIFPrefix): Nothing to validate"});
}

}  // namespace
