#include "zmcar/ArgvDecode.h"

#include <gmock/gmock.h>

#include <vector>

using Oro::ZMCAR::ArgvDecode;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using Params = std::map<std::string, std::string>;

Params fromText(const std::string& text) {
    Params params{{"old", "value"}};
    const int count = ArgvDecode::GetOpt_LongParams(text, params);
    EXPECT_EQ(count, static_cast<int>(params.size()));
    return params;
}

Params fromArguments(std::vector<std::string> arguments) {
    std::vector<char*> argv{const_cast<char*>("Platen")};
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    Params params{{"old", "value"}};
    const int count = ArgvDecode::GetOpt_LongParams(static_cast<int>(argv.size()), argv.data(), params);
    EXPECT_EQ(count, static_cast<int>(params.size()));
    return params;
}

} // namespace

TEST(ArgvDecode, AnEmptyQuotedValueEndsAtOnce) {
    EXPECT_THAT(fromText("--song=\"\" --singer=\"x\""),
                UnorderedElementsAre(Pair("song", ""), Pair("singer", "x")));
}

TEST(ArgvDecode, TakesBothForms) {
    EXPECT_THAT(fromText("--song=abc --singer xyz"),
                UnorderedElementsAre(Pair("song", "abc"), Pair("singer", "xyz")));
    EXPECT_THAT(fromArguments({"disc", "--song=abc", "--singer", "xyz"}),
                UnorderedElementsAre(Pair("song", "abc"), Pair("singer", "xyz")));
}

TEST(ArgvDecode, TakesQuotedValues) {
    EXPECT_THAT(fromText("--song=\"a b\" --singer 'c d'"),
                UnorderedElementsAre(Pair("song", "a b"), Pair("singer", "c d")));
    EXPECT_THAT(fromText("--a=\"it's\" --b='say \"x\"' --c=''"),
                UnorderedElementsAre(Pair("a", "it's"), Pair("b", "say \"x\""), Pair("c", "")));
    EXPECT_THAT(fromArguments({"--song='a b'", "--singer", "\"c d\""}),
                UnorderedElementsAre(Pair("song", "a b"), Pair("singer", "c d")));
}

TEST(ArgvDecode, AQuoteThatIsNotClosedIsACharacter) {
    EXPECT_THAT(fromText("--song=don't --singer=\"x y"),
                UnorderedElementsAre(Pair("song", "don't"), Pair("singer", "\"x")));
    EXPECT_THAT(fromText("--song='it's fine'"), UnorderedElementsAre(Pair("song", "it's fine")));
}

TEST(ArgvDecode, ALaterValueWins) {
    EXPECT_THAT(fromText("--song=a --song b"), UnorderedElementsAre(Pair("song", "b")));
}

TEST(ArgvDecode, AKeyWithoutAValueIsEmpty) {
    EXPECT_THAT(fromText("--song --singer=x --last"),
                UnorderedElementsAre(Pair("song", ""), Pair("singer", "x"), Pair("last", "")));
    EXPECT_THAT(fromArguments({"--song", "", "--last"}),
                UnorderedElementsAre(Pair("song", ""), Pair("last", "")));
}

TEST(ArgvDecode, AQuotedValueMayLookLikeAKey) {
    EXPECT_THAT(fromText("--song \"--b\" --c=--d"),
                UnorderedElementsAre(Pair("song", "--b"), Pair("c", "--d")));
}

TEST(ArgvDecode, ValuesMayHoldEqualSignsAndBeginWithADash) {
    EXPECT_THAT(fromText("--song=a=b --n -5"), UnorderedElementsAre(Pair("song", "a=b"), Pair("n", "-5")));
}

TEST(ArgvDecode, AnythingElseIsSkipped) {
    EXPECT_THAT(fromText("disc -v x --song=a y -- --=z"), UnorderedElementsAre(Pair("song", "a")));
    EXPECT_THAT(fromText(""), IsEmpty());
    EXPECT_THAT(fromText("   "), IsEmpty());
    EXPECT_THAT(fromArguments({}), IsEmpty());
}

TEST(ArgvDecode, TheProgramsNameIsNoParameter) {
    char name[] = "--song=x";
    char* argv[] = {name, nullptr};
    Params params;
    EXPECT_EQ(ArgvDecode::GetOpt_LongParams(1, argv, params), 0);
    EXPECT_EQ(ArgvDecode::GetOpt_LongParams(0, nullptr, params), 0);
}

TEST(ArgvDecode, WordsMayBeSeparatedByAnyBlanks) {
    EXPECT_THAT(fromText("\t--song\n a  \r\n--b=c "),
                UnorderedElementsAre(Pair("song", "a"), Pair("b", "c")));
}
