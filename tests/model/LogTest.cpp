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
    EXPECT_THAT(lines(),
                ElementsAre("0x00004e22 _PLATEN_[logHere]-a", "0x00104e22 _PLATEN_[logHere]-b",
                            "0x00004e22 _PLATEN_[logInOtherFile]-c", "0x00204e22 _PLATEN_[logHere]-d",
                            "0x00104e22 _PLATEN_[logInOtherFile]-e"));
}

TEST_F(LogTest, TheCountRunsOverTheSignBitAndRound) {
    for (int i = 0; i < 4097; ++i) {
        logHere("x");
    }
    EXPECT_EQ(lines().at(2048), "0x80004e22 _PLATEN_[logHere]-x");
    EXPECT_EQ(lines().at(4095), "0xfff04e22 _PLATEN_[logHere]-x");
    EXPECT_EQ(lines().at(4096), "0x00004e22 _PLATEN_[logHere]-x");
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
