#pragma once

#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace zm::test {

/** A runtime folder of its own, and what the application logs into it. */
class ModelTest : public testing::Test {
protected:
    /** Messages since the last call, oldest first: "[function]-text" of the application's,
     * all of severity 6. */
    std::vector<std::string> logged() {
        const std::string tag = "_PLATEN_";
        std::vector<std::string> texts;
        for (const auto& entry : m_log.readNew()) {
            if (entry.text.starts_with(tag)) {
                EXPECT_EQ(entry.severity, 6) << entry.text;
                texts.push_back(entry.text.substr(tag.size()));
            }
        }
        return texts;
    }
    void forgetLog() { m_log.readNew(); }

    RuntimeFolder m_folder;
    const std::string& m_dir = m_folder.path();
    LogReader m_log{logFile(m_dir)};
};

} // namespace zm::test
