#include "tests/model/LogTest.h"

#include "Log.h"
#include "tests/model/ModelTest.h"

#include <fstream>

namespace zm::test {

using testing::ElementsAre;

class LogTest : public ModelTest {
protected:
    /** Codes and texts, as they stand in the log's file. */
    std::vector<std::string> lines() const {
        std::ifstream file(logFile(m_dir));
        std::vector<std::string> result;
        for (std::string line; std::getline(file, line);) {
            result.push_back(line.substr(line.find(" 0x") + 1));
        }
        return result;
    }
    /** The numbers that lines begin with, as "0x00104e22": a count in the upper 12 bits, then the code. */
    static std::vector<unsigned> countsAndCode(const std::vector<std::string>& lines) {
        std::vector<unsigned> result;
        for (const std::string& line : lines) {
            result.push_back(static_cast<unsigned>(std::stoul(line, nullptr, 16)));
        }
        return result;
    }
    static constexpr unsigned NEXT = 1u << 20; ///< one message further
};

static void logHere(const char* text) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", text);
}

TEST_F(LogTest, AMessageHasTagAndFunction) {
    LOGBASE(LOG_LEV_TRACE, "OnShow", "[DiscView::%s] %d\n", "OnShow", 3);
    auto entries = LogReader(logFile(m_dir)).last(9);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].text, "_PLATEN_[OnShow]-[DiscView::OnShow] 3");
    EXPECT_EQ(entries[0].severity, 6);
}

TEST_F(LogTest, LevelsAreSeverities) {
    LOGBASE(LOG_LEV_ERROR, "f", "a");
    LOGBASE(LOG_LEV_BANNER, "f", "b");
    LOGBASE(LOG_LEV_TRACE, "f", "c");
    std::vector<int> severities;
    for (const auto& entry : LogReader(logFile(m_dir)).last(9)) {
        severities.push_back(entry.severity);
    }
    EXPECT_THAT(severities, ElementsAre(2, 5, 6));
}

TEST_F(LogTest, EverySourceFileCountsItsOwnMessages) {
    logHere("a");
    logHere("b");
    logInOtherFile("c");
    logHere("d");
    logInOtherFile("e");
    const std::vector<unsigned> codes = countsAndCode(lines());
    ASSERT_EQ(codes.size(), 5u);
    const unsigned here = codes[0];
    const unsigned other = codes[2];
    EXPECT_THAT(codes, ElementsAre(here, here + NEXT, other, here + 2 * NEXT, other + NEXT));
    EXPECT_EQ(here % NEXT, 20002u);
    EXPECT_EQ(other % NEXT, 20002u);
}

TEST_F(LogTest, TheCountRunsOverTheSignBitAndRound) {
    for (int i = 0; i < 4098; ++i) {
        logHere("x");
    }
    const std::vector<unsigned> codes = countsAndCode(lines());
    ASSERT_EQ(codes.size(), 4098u);
    for (size_t i = 1; i < codes.size(); ++i) {
        ASSERT_EQ(codes[i], codes[i - 1] + NEXT) << i << ": from 0xfff on to 0, in 32 bits";
    }
}

TEST_F(LogTest, AMessageHas511BytesAtMostWithItsPrefix) {
    logHere(std::string(5000, 'y').c_str());
    auto texts = logged();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ("_PLATEN_" + texts[0], "_PLATEN_[logHere]-" + std::string(511 - 18, 'y'));
}

TEST_F(LogTest, AnOverlongFunctionNameFillsTheMessage) {
    std::string name(600, 'f');
    LOGBASE(LOG_LEV_TRACE, name.c_str(), "%s", "text");
    EXPECT_THAT(logged(), ElementsAre("[" + std::string(511 - 9, 'f')));
}

TEST_F(LogTest, WithoutARuntimeFolderNothingHappens) {
    std::filesystem::remove_all(m_dir);
    logHere("lost");
    EXPECT_FALSE(std::filesystem::exists(m_dir));
}

} // namespace zm::test
