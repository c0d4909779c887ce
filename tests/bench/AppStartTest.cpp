#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnitServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

TEST(AppStart, IsRefusedWhereTheApplicationIsStartedByOthers) {
    RuntimeFolder folder;
    bench::unit::HeadUnitOptions options;
    options.runtimeDir = folder.path();
    UnitServer unit(options);
    ASSERT_EQ(unit.start(), "");
    const auto answer = unit.run({"app", "start"});
    EXPECT_EQ(answer.exit, 1);
    EXPECT_THAT(answer.err, testing::HasSubstr("this bench starts no programs"));
}

} // namespace zm::test
