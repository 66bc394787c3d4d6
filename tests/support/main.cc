// The main of every test program: it refuses to run outside a private node,
// where the fixed paths are the machine's own.

#include <gtest/gtest.h>

#include <cstdio>

#include "zornode/private_node.h"

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests) && !IsInPrivateNode()) {
        fprintf(stderr, "%s: refusing to run outside a private node; use: zornode -- %s\n", argv[0],
                argv[0]);
        return 2;
    }
    return RUN_ALL_TESTS();
}
