#include "services/disc/log/LibraryMessages.h"

#include "base/Paths.h"
#include "services/disc/medium/OpenMedium.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace zm::test;

namespace {

class LibraryMessages : public testing::Test {
protected:
    std::string log() const { return readFile(zm::logFile(m_unit.runtime())); }
    static size_t count(const std::string& text, const std::string& part) {
        size_t found = 0;
        for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++found;
        }
        return found;
    }
    DiscUnit m_unit;
};

} // namespace

TEST_F(LibraryMessages, GoToTheLogALineEach) {
    testing::internal::CaptureStderr();
    {
        const zm::disc::log::LibraryMessages messages;
        std::fprintf(stderr, "a block is %s", "damaged");
        std::fputs(" there\nand here\n", stderr);
    }
    std::fputs("as before\n", stderr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "as before\n");
    EXPECT_NE(log().find("a library says: a block is damaged there\n"), std::string::npos) << log();
    EXPECT_NE(log().find("a library says: and here\n"), std::string::npos) << log();
}

TEST_F(LibraryMessages, AFloodOfThemDoesNotFillTheLog) {
    const zm::disc::log::LibraryMessages messages;
    for (int i = 0; i < 1000; ++i) {
        std::fprintf(stderr, "line %d %s\n", i, std::string(10000, 'x').c_str());
    }
    EXPECT_EQ(count(log(), "a library says"), 20u);
    EXPECT_LT(log().size(), 30000u);
    EXPECT_NE(log().find("what follows now is left out"), std::string::npos);
}
