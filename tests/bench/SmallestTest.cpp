#include "services/ctl/Shrink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Selection = std::vector<size_t>;

/** Will do as soon as all of `wanted` are there, in their order. */
struct Planted {
    Selection wanted;
    size_t tries = 0;

    std::optional<size_t> operator()(const Selection& some) {
        ++tries;
        size_t found = 0;
        for (size_t i = 0; i < some.size(); ++i) {
            found += some[i] == wanted[found];
            if (found == wanted.size()) {
                return i + 1;
            }
        }
        return std::nullopt;
    }
};

Selection found(Planted& planted, size_t count) {
    return ctl::smallest(count, [&](const Selection& some) { return planted(some); });
}

} // namespace

TEST(Smallest, FindsWhatIsNeededAndNothingElse) {
    for (const Selection& wanted : {Selection{0}, Selection{499}, Selection{3, 4, 5}, Selection{0, 250, 499},
                                    Selection{1, 60, 61, 200, 333, 334, 400, 498}}) {
        Planted planted{wanted};
        EXPECT_EQ(found(planted, 500), wanted);
        EXPECT_LT(planted.tries, 150u);
    }
}

TEST(Smallest, AllAreKeptWhereAllAreNeeded) {
    Planted planted{{0, 1, 2}};
    EXPECT_THAT(found(planted, 3), ElementsAre(0, 1, 2));
    EXPECT_THAT(ctl::smallest(0, [](const Selection&) { return std::nullopt; }), IsEmpty());
}

TEST(Smallest, OneOfTwoThatWillDoIsEnough) {
    const auto left = ctl::smallest(100, [](const Selection& some) -> std::optional<size_t> {
        const auto at = std::find_if(some.begin(), some.end(), [](size_t i) { return i == 20 || i == 70; });
        return at == some.end() ? std::nullopt : std::optional(static_cast<size_t>(at - some.begin()) + 1);
    });
    EXPECT_THAT(left, ElementsAre(testing::AnyOf(20u, 70u)));
}

} // namespace zm::test
