#include "services/ctl/CommandTexts.h"
#include "services/bench/commands/Processor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

TEST(CommandTexts, EveryCommandThatIsExplainedExists) {
    for (const auto& text : ctl::commandTexts()) {
        EXPECT_EQ(bench::commands::Processor::knows(text.name), text.place == ctl::CommandPlace::Bench)
            << text.name;
    }
}

TEST(CommandTexts, EveryCommandOfTheBenchIsExplained) {
    for (const auto subject :
         {bench::commands::ppsRows, bench::commands::launcherRows, bench::commands::vehicleRows,
          bench::commands::inputRows, bench::commands::discRows, bench::commands::screenRows,
          bench::commands::systemRows, bench::commands::recordRows, bench::commands::snapshotRows}) {
        for (const auto& row : subject()) {
            EXPECT_NE(ctl::findCommandText(row.name), nullptr) << row.name;
        }
    }
}

TEST(CommandTexts, EveryCommandHasAnExample) {
    for (const auto& text : ctl::commandTexts()) {
        EXPECT_TRUE(text.usage.starts_with(text.name)) << text.name;
        EXPECT_THAT(std::string(text.help), testing::HasSubstr("\nExample: zmctl " + std::string(text.name)));
    }
}

TEST(CommandTexts, AUsageHasALineForEachForm) {
    EXPECT_EQ(ctl::usageText(*ctl::findCommandText("catalogue")),
              "usage: zmctl catalogue hold ROWS\n       zmctl catalogue release\n");
    EXPECT_EQ(ctl::findCommandText("dance"), nullptr);
}

} // namespace zm::test
