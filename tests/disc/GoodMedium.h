#pragma once

#include "services/disc/medium/OpenMedium.h"

#include <gtest/gtest.h>

namespace zm::test {

/** The medium at a path, which has to be one; null and a failed test otherwise. */
inline std::shared_ptr<disc::medium::Medium> openGood(const std::string& path) {
    auto medium = disc::medium::openMedium(path);
    EXPECT_TRUE(medium) << (medium ? "" : medium.error());
    return medium ? *medium : nullptr;
}

} // namespace zm::test
