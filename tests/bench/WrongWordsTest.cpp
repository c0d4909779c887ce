#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"
#include "tests/support/Harness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

using Words = std::vector<std::string>;

/** A word that may stand behind `words`; empty where none may. */
static std::string nextWord(const Words& words) {
    const auto place = ctl::placeBehind(words);
    for (const std::string& word : place.words) {
        if (!word.starts_with('-')) {
            return word;
        }
    }
    for (const char* sample : {"1", "en", "12:00", "x"}) {
        Words longer = words;
        longer.push_back(sample);
        if (ctl::placeBehind(longer).fits) {
            return sample;
        }
    }
    return "";
}

static std::string told(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

/** Each command that the bench carries out, with as many words as its forms have. */
static std::vector<Words> longestLines() {
    std::vector<Words> lines;
    for (const ctl::CommandText& text : ctl::commandTexts()) {
        if (text.place != ctl::CommandPlace::Bench) {
            continue;
        }
        std::vector<Words> open{{std::string(text.name)}};
        for (const std::string& word : ctl::placeBehind(open.front()).words) {
            open.push_back({std::string(text.name), word}); // the command's own verbs and options
        }
        for (Words& words : open) {
            for (std::string next = nextWord(words); !next.empty() && words.size() < 8;
                 next = nextWord(words)) {
                words.push_back(next);
            }
            lines.push_back(words);
        }
    }
    return lines;
}

TEST(WrongWords, TheBenchItselfTakesNoWordTooMany) {
    Unit unit;
    size_t refused = 0;
    for (Words words : longestLines()) {
        words.push_back("superfluous");
        if (ctl::whyUnfit(words).empty()) {
            continue; // its last word repeats, or is any text
        }
        const auto answer = unit.run(words);
        EXPECT_EQ(answer.exit, 2) << told(words) << ": " << answer.out << answer.err;
        ++refused;
    }
    EXPECT_GT(refused, 30u);
}

TEST(WrongWords, TheBenchItselfTakesNoLineThatIsNotComplete) {
    Unit unit;
    size_t refused = 0;
    for (Words words : longestLines()) {
        for (; !words.empty(); words.pop_back()) {
            if (!ctl::placeBehind(words).mayEnd) {
                const auto answer = unit.run(words);
                EXPECT_EQ(answer.exit, 2) << told(words) << ": " << answer.out << answer.err;
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 30u);
}

} // namespace zm::test
