#include "tests/system/SystemTest.h"

#include "services/ctl/Names.h"

#include <filesystem>
#include <fstream>

namespace zm::test {

/** What cannot be is refused with a sentence that names what can. */
using Refusal = SystemTest;

TEST_F(Refusal, ATouchBesideTheScreenNamesTheNearestPlace) {
    startManual();
    for (const Words& words : {Words{"touch", "9000", "9000"}, Words{"press", "9000", "9000"},
                               Words{"drag", "9000", "9000", "10", "10"}}) {
        EXPECT_THAT(mustFail(words), HasSubstr("the nearest place is 799 479")) << words[0];
    }
    EXPECT_THAT(mustFail({"touch", "-1", "20"}), HasSubstr("the nearest place is 0 20"));
    must({"touch", "799", "479"});
    must({"touch", "0", "0"});
    // A finger that is down may leave the screen.
    must({"press", "400", "240"});
    must({"move", "400", "-20"});
    must({"release", "400", "-20"});
    must({"drag", "400", "240", "400", "-200"});
}

TEST_F(Refusal, ALanguageWithoutTextsIsNotTaken) {
    startManual();
    EXPECT_THAT(mustFail({"language", "fr"}), HasSubstr("no language \"fr\"; there is en, de, zh, ar"));
    EXPECT_THAT(mustFail({"language", "deu"}), HasSubstr("did you mean \"de\"?"));
    must({"language", "de"});
}

TEST_F(Refusal, AKeysNameThatIsNoneNamesTheNearest) {
    startManual();
    const auto text = mustFail({"key", "nxt"}, 2);
    EXPECT_THAT(text, HasSubstr("there is no key \"nxt\"; did you mean \"next\"?"));
    EXPECT_THAT(text, HasSubstr("usage: zmctl key"));
    mustFail({"key", "99999999999"}, 2);
}

TEST_F(Refusal, ACodeThatNoKeyHasIsGivenToTheApplicationAndSaysSo) {
    startManual();
    EXPECT_THAT(must({"key", "9999"}), HasSubstr("there is no key 9999; the nearest is 163 (again)"));
    EXPECT_THAT(must({"log"}), HasSubstr("[DiscView::OnKeyboard]: nKey=9999"));
    EXPECT_EQ(must({"key", "20"}), "");
}

TEST_F(Refusal, EveryKeyGoesByItsName) {
    startManual();
    playMusic();
    for (const auto& row : ctl::hardKeys()) {
        EXPECT_EQ(must({"key", std::string(row.name)}), "");
        EXPECT_THAT(must({"log", "-n", "60"}), HasSubstr("nKey=" + std::to_string(row.number))) << row.name;
    }
}

TEST_F(Refusal, EveryVehicleValueGoesByItsName) {
    startManual();
    must({"device", "temperature", "-52"});
    settle();
    EXPECT_EQ(item(1, 20)["text"], "-5.2");
    must({"device", "--silent", "parking", "0"});
    EXPECT_THAT(mustFail({"device", "parked", "1"}, 2), HasSubstr("did you mean \"parking\"?"));
    EXPECT_THAT(mustFail({"device", "85", "1"}), HasSubstr("no device 85; the nearest is 86 (bluetooth)"));
}

TEST_F(Refusal, APageThatAViewDoesNotHaveNamesTheNearest) {
    startManual();
    EXPECT_THAT(mustFail({"screen", "main", "7"}), HasSubstr("there is no page 7; the nearest is 6"));
    EXPECT_THAT(mustFail({"screen", "main", "-1"}), HasSubstr("the nearest is 1"));
    EXPECT_TRUE(Json::parse(must({"screen", "main", "0"}))["main"]["windows"].empty())
        << "0 stands for no page";
}

TEST_F(Refusal, AWordThatFitsNoFormNamesTheNearest) {
    startManual();
    EXPECT_THAT(mustFail({"app", "resum"}, 2), HasSubstr("did you mean \"resume\"?"));
    EXPECT_THAT(mustFail({"theme", "nigth"}, 2), HasSubstr("did you mean \"night\"?"));
    EXPECT_THAT(mustFail({"kill", "bench"}, 2), HasSubstr("what fits is app, disc"));
    EXPECT_THAT(mustFail({"scren"}, 2), HasSubstr("did you mean \"screen\"?"));
    EXPECT_THAT(mustFail({"monkey", "--sead", "3"}, 2), HasSubstr("did you mean \"--seed\"?"));
}

TEST_F(Refusal, AnEmptyWordIsNoName) {
    startManual();
    EXPECT_THAT(mustFail({"tap", ""}, 2), HasSubstr("an empty text is on every item"));
    EXPECT_THAT(mustFail({"insert", ""}, 2), HasSubstr("does not fit behind \"zmctl insert\""));
    EXPECT_THAT(mustFail({"language", ""}), HasSubstr("there is en, de, zh, ar"));
}

TEST_F(Refusal, WithoutABenchThoseThatRunAreNamed) {
    startManual();
    const TemporaryFolder other;
    Process process({"zmctl", "--runtime", other.path(), "ps"}, other.path());
    EXPECT_EQ(process.wait(), 1);
    const std::string text = process.err();
    EXPECT_THAT(text, HasSubstr("no bench runs in " + other.path()));
    EXPECT_THAT(text, HasSubstr("--runtime:"));
    EXPECT_THAT(text, HasSubstr("\n  " + folder + "\n"));
}

TEST_F(Refusal, AShotIsWhatItsNameSays) {
    startManual();
    const auto beginning = [&](const std::string& name) {
        must({"shot", folder + "/" + name});
        std::string head(4, '\0');
        std::ifstream(folder + "/" + name, std::ios::binary).read(head.data(), 4);
        return head;
    };
    EXPECT_EQ(beginning("a.png"), "\x89PNG");
    EXPECT_EQ(beginning("a"), "\x89PNG");
    EXPECT_EQ(beginning("a.jpg").substr(0, 3), "\xFF\xD8\xFF");
    EXPECT_EQ(beginning("a.jpeg").substr(0, 3), "\xFF\xD8\xFF");
    EXPECT_THAT(mustFail({"shot", folder + "/a.gif"}),
                HasSubstr("a.gif: pictures end with .png, .jpg or .jpeg"));
    EXPECT_FALSE(std::filesystem::exists(folder + "/a.gif"));
}

TEST_F(Refusal, TheLogTellsItsTime) {
    startManual();
    for (const auto& line : lines({"log", "--time", "-n", "5"})) {
        EXPECT_THAT(line, MatchesRegex("20..-..-..T..:..:......? [0-7] .*"));
    }
}

} // namespace zm::test
