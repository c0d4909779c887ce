#pragma once

#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zm::test {

/** A runtime folder of its own, and what the application logs into it. */
class ModelTest : public testing::Test {
protected:
    ModelTest() {
        char name[] = "/tmp/zm-model-XXXXXX";
        m_dir = mkdtemp(name);
        setenv("ZM_RUNTIME", m_dir.c_str(), 1);
        unsetenv("ZM_CATALOGUE");
        m_log.emplace(zm::logFile(m_dir));
    }
    ~ModelTest() override { std::filesystem::remove_all(m_dir); }

    /** Messages since the last call, oldest first: "[function]-text" of the application's, all of severity 6.
     */
    std::vector<std::string> logged() {
        const std::string tag = "_PLATEN_";
        std::vector<std::string> texts;
        for (const auto& entry : m_log->readNew()) {
            if (entry.text.starts_with(tag)) {
                EXPECT_EQ(entry.severity, 6) << entry.text;
                texts.push_back(entry.text.substr(tag.size()));
            }
        }
        return texts;
    }
    void forgetLog() { m_log->readNew(); }

    std::string m_dir;
    std::optional<zm::LogReader> m_log;
};

} // namespace zm::test
