#include "BuildPaths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace zm::test {

namespace fs = std::filesystem;

/** The application may be taken to the target: it sees its own headers, the platform's and the language's
 * only. */
class IncludesTest : public testing::Test {
protected:
    static constexpr const char* STANDARD[] = {
        "algorithm", "array",       "atomic",   "cerrno",     "chrono",   "climits",          "clocale",
        "cmath",     "cstdarg",     "cstddef",  "cstdint",    "cstdio",   "cstdlib",          "cstring",
        "ctime",     "cwchar",      "cwctype",  "functional", "iterator", "limits",           "list",
        "map",       "memory",      "optional", "set",        "span",     "string",           "string_view",
        "tuple",     "type_traits", "utility",  "variant",    "vector",   "initializer_list", "numeric",
        "cctype",    "sstream",     "csignal",  "charconv",
    };
    static constexpr const char* POSIX[] = {"pthread.h", "unistd.h", "sys/time.h", "signal.h", "getopt.h"};

    static std::vector<fs::path> filesBelow(const fs::path& folder) {
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp") {
                files.push_back(entry.path());
            }
        }
        return files;
    }
    static std::string text(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool isPermitted(const fs::path& file, const std::string& name) const {
        if (name.find("..") != std::string::npos) {
            return false;
        }
        return std::ranges::find(STANDARD, name) != std::end(STANDARD) ||
               std::ranges::find(POSIX, name) != std::end(POSIX) || fs::exists(m_platform / name) ||
               fs::exists(m_application / name) || fs::exists(file.parent_path() / name);
    }

    const fs::path m_root{ZM_SOURCE_DIR};
    const fs::path m_application = m_root / "mpu/apps/Platen";
    const fs::path m_platform = m_root / "platform/include";
};

TEST_F(IncludesTest, TheApplicationNamesNothingElse) {
    const std::regex include(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])", std::regex::multiline);
    auto files = filesBelow(m_application);
    ASSERT_GT(files.size(), 30u);
    for (const fs::path& file : files) {
        const std::string source = text(file);
        for (std::sregex_iterator it(source.begin(), source.end(), include), end; it != end; ++it) {
            EXPECT_TRUE(isPermitted(file, (*it)[1])) << file << " includes " << (*it)[1];
        }
    }
}

TEST_F(IncludesTest, FoldersKnowOnlyThoseBelowThem) {
    // The lowest first; what lies beside the folders is below them all but the views themselves.
    const std::vector<std::string> folders = {"parts",  "overlay", "video",    "pages", "lists",
                                              "search", "disc",    "launcher", "input"};
    const std::regex include(R"re(#include "(?:(\w+)/)?(\w+\.h)")re");
    for (size_t level = 0; level < folders.size(); ++level) {
        for (const fs::path& file : filesBelow(m_application / folders[level])) {
            const std::string source = text(file);
            for (std::sregex_iterator it(source.begin(), source.end(), include), end; it != end; ++it) {
                const auto place = std::ranges::find(folders, (*it)[1].str());
                EXPECT_TRUE(place == folders.end() || place - folders.begin() <= static_cast<long>(level))
                    << file << " includes " << (*it)[0];
                EXPECT_FALSE((*it)[2] == "DiscView.h" || (level < 2 && (*it)[2] == "DiscOsdView.h") ||
                             (*it)[2] == "DiscViewParts.h")
                    << file;
            }
        }
    }
}

TEST_F(IncludesTest, ThePlatformsInterfaceNamesOnlyItselfAndTheLanguage) {
    const std::regex include(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])", std::regex::multiline);
    std::set<std::string> permitted{"stdarg.h", "stdbool.h", "stdint.h"};
    permitted.insert(std::begin(STANDARD), std::end(STANDARD));
    for (const fs::path& file : filesBelow(m_platform)) {
        const std::string source = text(file);
        for (std::sregex_iterator it(source.begin(), source.end(), include), end; it != end; ++it) {
            EXPECT_TRUE(permitted.contains((*it)[1]) || fs::exists(m_platform / (*it)[1].str()))
                << file << " includes " << (*it)[1];
        }
    }
}

TEST_F(IncludesTest, TheApplicationIsCompiledWithTwoIncludePathsOnly) {
    auto commands = nlohmann::json::parse(text(fs::path(ZM_BINARY_DIR) / "compile_commands.json"));
    int sources = 0;
    for (const auto& entry : commands) {
        const std::string file = entry.at("file");
        if (!file.starts_with(m_application.string()) || fs::path(file).filename() == "main.cpp") {
            continue;
        }
        const std::string command = entry.at("command");
        if (command.find("/platen_app.dir/") == std::string::npos) {
            continue; // a fuzz target that has a few of its files
        }
        ++sources;
        std::set<std::string> paths;
        std::istringstream words(command);
        for (std::string word; words >> word;) {
            if (word.starts_with("-I")) {
                paths.insert(word.substr(2));
            }
            EXPECT_FALSE(word == "-isystem" || word == "-iquote" || word == "-include") << file;
        }
        EXPECT_THAT(paths, testing::ElementsAre(m_application.string(), m_platform.string())) << file;
    }
    EXPECT_GT(sources, 20);
}

} // namespace zm::test
