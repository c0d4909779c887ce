#include "services/ctl/CommandTexts.h"
#include "services/bench/CommandProcessor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm {

TEST(CommandTexts, EveryCommandThatIsExplainedExists) {
    for (const auto& text : commandTexts()) {
        EXPECT_EQ(CommandProcessor::knows(text.name), text.name != "help") << text.name;
    }
}

TEST(CommandTexts, EveryCommandIsExplainedWithAnExample) {
    for (const auto subject : {ppsCommandRows, launcherCommandRows, vehicleCommandRows, inputCommandRows,
                               discCommandRows, screenCommandRows, systemCommandRows}) {
        for (const auto& row : subject()) {
            const CommandText* text = findCommandText(row.name);
            ASSERT_NE(text, nullptr) << row.name;
            EXPECT_TRUE(text->usage.starts_with(row.name)) << row.name;
            EXPECT_THAT(std::string(text->help),
                        testing::HasSubstr("\nExample: zmctl " + std::string(row.name)));
        }
    }
}

TEST(CommandTexts, AUsageHasALineForEachForm) {
    EXPECT_EQ(usageText(*findCommandText("catalogue")),
              "usage: zmctl catalogue hold ROWS\n       zmctl catalogue release\n");
    EXPECT_EQ(findCommandText("dance"), nullptr);
}

} // namespace zm
