#include "services/ctl/CommandTexts.h"
#include "services/bench/commands/CommandProcessor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm {

TEST(CommandTexts, EveryCommandThatIsExplainedExists) {
    for (const auto& text : commandTexts()) {
        EXPECT_EQ(CommandProcessor::knows(text.name), text.place == CommandPlace::Bench) << text.name;
    }
}

TEST(CommandTexts, EveryCommandOfTheBenchIsExplained) {
    for (const auto subject : {ppsCommandRows, launcherCommandRows, vehicleCommandRows, inputCommandRows,
                               discCommandRows, screenCommandRows, systemCommandRows}) {
        for (const auto& row : subject()) {
            EXPECT_NE(findCommandText(row.name), nullptr) << row.name;
        }
    }
}

TEST(CommandTexts, EveryCommandHasAnExample) {
    for (const auto& text : commandTexts()) {
        EXPECT_TRUE(text.usage.starts_with(text.name)) << text.name;
        EXPECT_THAT(std::string(text.help), testing::HasSubstr("\nExample: zmctl " + std::string(text.name)));
    }
}

TEST(CommandTexts, AUsageHasALineForEachForm) {
    EXPECT_EQ(usageText(*findCommandText("catalogue")),
              "usage: zmctl catalogue hold ROWS\n       zmctl catalogue release\n");
    EXPECT_EQ(findCommandText("dance"), nullptr);
}

} // namespace zm
