// The test program is also the application whose calls fail: it starts itself anew with a fault in its
// environment.
#include "tests/anomaly/ApplicationRun.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (zm::test::isApplication()) {
        return zm::test::applicationMain(argc, argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
