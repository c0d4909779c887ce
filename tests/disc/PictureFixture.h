#pragma once

#include "base/ScreenSize.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

namespace zm::test {

inline constexpr Colour red{255, 0, 0};
inline constexpr Colour green{0, 255, 0};
inline constexpr Colour blue{0, 0, 255};
inline constexpr Colour yellow{255, 255, 0};
inline constexpr Colour white{255, 255, 255};
inline constexpr Colour black{0, 0, 0};
inline const int MiddleX = screenSize().width / 2;
inline const int MiddleY = screenSize().height / 2;

/** A disc in a folder, the service that plays it, and what is seen of it. */
class Pictures : public testing::Test {
protected:
#ifdef __SANITIZE_THREAD__
    void SetUp() override {
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
    }
#endif
    Published nextFile(int file) {
        return m_unit.next("trackinfo",
                           [=](const Published& each) { return each.json()["curmediaid"] == file; });
    }
    void play() {
        m_unit.play(m_disc.path().string());
    }
    bool shows(Colour colour) {
        return m_unit.pictures().waitFor(MiddleX, MiddleY, colour);
    }

    TempFolder m_disc;
    DiscUnit m_unit;
};

} // namespace zm::test
