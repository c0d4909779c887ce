#include "sys/slog.h"
#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class SlogTest : public testing::Test {
protected:
    static std::vector<std::string> texts(const std::vector<zm::LogEntry>& entries) {
        std::vector<std::string> result;
        for (const auto& entry : entries) {
            result.push_back(entry.text);
        }
        return result;
    }
    std::vector<std::string> all() const { return texts(zm::LogReader(m_path).last(1'000'000)); }
    std::string fileText(const std::string& path) const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    zm::test::RuntimeFolder m_folder;
    const std::string& m_dir = m_folder.path();
    const std::string m_path = zm::logFile(m_dir);
};

TEST_F(SlogTest, AMessageKeepsItsFields) {
    int code = _SLOG_SETCODE(3, 20002);
    EXPECT_EQ(slogf(code, _SLOG_DEBUG1, "number %d, %s", 7, "text"), 14);
    auto entries = zm::LogReader(m_path).last(10);
    ASSERT_THAT(entries, SizeIs(1));
    EXPECT_EQ(entries[0].process, "test_slog");
    EXPECT_EQ(entries[0].pid, getpid());
    EXPECT_EQ(entries[0].severity, 6);
    EXPECT_EQ(entries[0].text, "number 7, text");
    EXPECT_THAT(entries[0].time,
                testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}"));
    EXPECT_THAT(fileText(m_path), testing::HasSubstr(" 6 0x00304e22 number 7, text\n"));
}

TEST_F(SlogTest, TheProcessIsOneWordWhateverItsName) {
    char* const name = program_invocation_short_name;
    for (const char* odd : {"two words", "two\nlines", ""}) {
        program_invocation_short_name = const_cast<char*>(odd);
        slogf(1, _SLOG_ERROR, "text");
    }
    program_invocation_short_name = name;
    std::vector<std::string> processes;
    for (const auto& entry : zm::LogReader(m_path).last(10)) {
        processes.push_back(entry.process);
    }
    EXPECT_THAT(processes, ElementsAre("two_words", "two_lines", "-"));
}

TEST_F(SlogTest, LongMessagesTakeNoMemoryForEver) {
    const auto mappings = [] {
        std::ifstream maps("/proc/self/statm");
        size_t pages = 0;
        maps >> pages;
        return pages;
    };
    const std::string text(100'000, 'x');
    slogf(1, _SLOG_ERROR, "%s", text.c_str());
    const size_t before = mappings();
    for (int i = 0; i < 100; ++i) {
        slogf(1, _SLOG_ERROR, "%s", text.c_str());
    }
    EXPECT_LT(mappings(), before + 1000) << "pages of 4 kB, of which 100 messages would keep 2500 or more";
}

TEST_F(SlogTest, ACodeThatReachesTheSignBitIsWrittenUnsigned) {
    slogf(_SLOG_SETCODE(0xfffu, 20002), _SLOG_ERROR, "late");
    EXPECT_THAT(fileText(m_path), testing::HasSubstr(" 2 0xfff04e22 late\n"));
    EXPECT_THAT(all(), ElementsAre("late"));
}

TEST_F(SlogTest, InnerLineFeedsAreEscapedAndOneAtTheEndIsDropped) {
    slogf(0, 5, "\n\nbegin\n\n");
    slogf(0, 5, "plain\n");
    slogf(0, 5, "none");
    slogf(0, 5, "%s", "");
    EXPECT_THAT(all(), ElementsAre("\\n\\nbegin\\n", "plain", "none", ""));
}

TEST_F(SlogTest, ALongMessageIsKeptWhole) {
    std::string text(100'000, 'x');
    EXPECT_EQ(slogf(0, 5, "%s", text.c_str()), 100'000);
    EXPECT_THAT(all(), ElementsAre(text));
}

TEST_F(SlogTest, OddTextsComeBackAsTheyWere) {
    const std::vector<std::string> odd = {" blanks  inside ", "tab\tand\rreturn", "\xff\xfe invalid",
                                          "100 % \\n"};
    for (const auto& text : odd) {
        slogf(0, 6, "%s", text.c_str());
    }
    EXPECT_EQ(all(), odd);
}

TEST_F(SlogTest, WithoutARuntimeFolderItFailsAndWritesNowhere) {
    fs::remove_all(m_dir);
    errno = 0;
    EXPECT_EQ(slogf(0, 5, "lost"), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(fs::exists(m_dir));
}

TEST_F(SlogTest, ASuccessfulMessageLeavesErrnoAlone) {
    errno = ENODATA;
    slogf(0, 5, "text");
    EXPECT_EQ(errno, ENODATA);
    fs::remove(m_path); // the file is looked for in vain
    EXPECT_EQ(slogf(0, 5, "%s", ""), 0);
    EXPECT_EQ(errno, ENODATA);
}

TEST_F(SlogTest, TheFileIsForItsOwnerOnly) {
    slogf(0, 5, "text");
    struct stat info {};
    ASSERT_EQ(stat(m_path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
}

TEST_F(SlogTest, ARemovedFileIsBegunAgain) {
    slogf(0, 5, "first");
    fs::remove(m_path);
    slogf(0, 5, "second");
    EXPECT_THAT(all(), ElementsAre("second"));
}

TEST_F(SlogTest, ARemovedFolderIsAnErrorUntilItIsBack) {
    slogf(0, 5, "first");
    fs::remove_all(m_dir);
    EXPECT_EQ(slogf(0, 5, "second"), -1);
    fs::create_directory(m_dir);
    EXPECT_EQ(slogf(0, 5, "third"), 5);
    EXPECT_THAT(all(), ElementsAre("third"));
}

TEST_F(SlogTest, AnotherRuntimeFolderGetsItsOwnLog) {
    slogf(0, 5, "here");
    fs::create_directory(m_dir + "/other");
    setenv("ZM_RUNTIME", (m_dir + "/other").c_str(), 1);
    slogf(0, 5, "there");
    EXPECT_THAT(all(), ElementsAre("here"));
    EXPECT_THAT(texts(zm::LogReader(zm::logFile(m_dir + "/other")).last(9)), ElementsAre("there"));
}

TEST_F(SlogTest, AFullFileIsPutAsideAndOneOldOneIsKept) {
    zm::LogWriter writer(m_path, 1000);
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(writer.write(0, 6, "message " + std::to_string(i)));
    }
    EXPECT_TRUE(fs::exists(m_path + ".old"));
    EXPECT_LT(fs::file_size(m_path), 1100u);
    EXPECT_LT(fs::file_size(m_path + ".old"), 1100u);
    auto texts = all();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.back(), "message 99");
    int first = std::stoi(texts.front().substr(8));
    EXPECT_GT(first, 0) << "the oldest were dropped";
    EXPECT_EQ(static_cast<int>(texts.size()), 100 - first) << "nothing is missing in between";
}

TEST_F(SlogTest, SeveralProcessesAndThreadsLoseNothingWhileFilesAreRotated) {
    constexpr int PROCESSES = 4;
    constexpr int MESSAGES = 200;
    zm::LogReader reader(m_path);
    std::vector<pid_t> children;
    for (int process = 0; process < PROCESSES; ++process) {
        pid_t child = fork();
        if (child == 0) {
            zm::LogWriter writer(m_path, 40'000);
            bool ok = true;
            for (int i = 0; i < MESSAGES; ++i) {
                ok = writer.write(0, 6, "process " + std::to_string(process)) && ok;
            }
            _exit(ok ? 0 : 1);
        }
        children.push_back(child);
    }
    size_t seen = 0;
    for (pid_t child : children) {
        int status = 0;
        while (waitpid(child, &status, WNOHANG) == 0) {
            seen += reader.readNew().size();
        }
        EXPECT_EQ(status, 0);
    }
    seen += reader.readNew().size();
    EXPECT_EQ(seen, static_cast<size_t>(PROCESSES * MESSAGES));
}

TEST_F(SlogTest, FileThatBeganAndWasPutAsideBeforeTheFirstLookIsReadWhole) {
    zm::LogReader reader(m_path);
    zm::LogWriter writer(m_path, 1);
    writer.write(0, 6, "one");
    writer.write(0, 6, "two");
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("one", "two"));
    EXPECT_THAT(reader.readNew(), IsEmpty());
}

TEST_F(SlogTest, LinesOfAFilePutAsideBeforeTheReaderBeganAreNotNew) {
    {
        zm::LogWriter writer(m_path, 1);
        writer.write(0, 6, "before");
    }
    ASSERT_EQ(rename(m_path.c_str(), (m_path + ".old").c_str()), 0);
    zm::LogReader reader(m_path);
    zm::LogWriter(m_path).write(0, 6, "after");
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("after"));
}

TEST_F(SlogTest, ThreadsWriteWholeLines) {
    std::vector<std::thread> threads;
    const std::string text(300, 'y');
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 100; ++k) {
                slogf(0, 6, "%s", text.c_str());
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    auto texts = all();
    EXPECT_THAT(texts, SizeIs(400));
    EXPECT_THAT(texts, testing::Each(text));
}

TEST_F(SlogTest, LastGivesTheLatestOldestFirst) {
    for (int i = 0; i < 5; ++i) {
        slogf(0, 6, "%d", i);
    }
    EXPECT_THAT(texts(zm::LogReader(m_path).last(2)), ElementsAre("3", "4"));
    EXPECT_THAT(texts(zm::LogReader(m_path).last(0)), IsEmpty());
    EXPECT_THAT(texts(zm::LogReader(m_path).last(99)), SizeIs(5));
}

TEST_F(SlogTest, LastReachesBackIntoTheOldFile) {
    {
        zm::LogWriter writer(m_path, 1);
        writer.write(0, 6, "old");
        writer.write(0, 6, "new");
    }
    EXPECT_THAT(texts(zm::LogReader(m_path).last(2)), ElementsAre("old", "new"));
    EXPECT_THAT(texts(zm::LogReader(m_path).last(1)), ElementsAre("new"));
}

TEST_F(SlogTest, ReadNewGivesWhatCameSinceTheLastLook) {
    slogf(0, 6, "before");
    zm::LogReader reader(m_path);
    EXPECT_THAT(reader.readNew(), IsEmpty());
    slogf(0, 6, "one");
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("one"));
    EXPECT_THAT(reader.readNew(), IsEmpty());
    slogf(0, 6, "two");
    EXPECT_THAT(texts(reader.last(1)), ElementsAre("two"));
    slogf(0, 6, "three");
    slogf(0, 6, "four");
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("three", "four"));
    slogf(0, 6, "five");
    const auto latest = reader.readNew();
    EXPECT_THAT(texts(latest), ElementsAre("five"));
    EXPECT_THAT(latest.at(0).time, testing::MatchesRegex("[0-9]{4}-.*\\.[0-9]{3}"))
        << "nothing is left before it";
}

TEST_F(SlogTest, ReadNewWaitsForAFileThatIsNotThereYet) {
    zm::LogReader reader(m_path);
    EXPECT_THAT(reader.readNew(), IsEmpty());
    slogf(0, 6, "first of all");
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("first of all"));
}

TEST_F(SlogTest, ReadNewFollowsTwoRotationsAtOnce) {
    zm::LogWriter writer(m_path, 1);
    writer.write(0, 6, "seen");
    zm::LogReader reader(m_path);
    writer.write(0, 6, "in the old file");
    writer.write(0, 6, "in the new file");
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("in the old file", "in the new file"));
}

TEST_F(SlogTest, ALineWhoseEndIsMissingIsGivenOnceItIsWhole) {
    slogf(0, 6, "whole");
    zm::LogReader reader(m_path);
    std::ofstream file(m_path, std::ios::app);
    file << "2015-09-09T10:08:13.042 Platen 12 6 0x00004e22 half" << std::flush;
    EXPECT_THAT(reader.readNew(), IsEmpty());
    file << " and half\n" << std::flush;
    EXPECT_THAT(texts(reader.readNew()), ElementsAre("half and half"));
}

TEST_F(SlogTest, LinesThatAreNoMessagesAreSkipped) {
    slogf(0, 6, "good");
    std::ofstream(m_path, std::ios::app) << "\nrubbish\na b c d e f\n2015 x 1 notanumber 0x0 text\n";
    slogf(0, 6, "good too");
    EXPECT_THAT(all(), ElementsAre("good", "good too"));
}

TEST_F(SlogTest, AFullFileThatCannotBePutAsideTakesNoMore) {
    fs::create_directory(m_path + ".old");
    zm::LogWriter writer(m_path, 1);
    EXPECT_TRUE(writer.write(0, 6, "first"));
    EXPECT_FALSE(writer.write(0, 6, "second"));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_THAT(all(), ElementsAre("first"));
}

// Of a program that was started without a standard input.
TEST_F(SlogTest, TheFirstDescriptorIsAsGoodAsAnyOther) {
    const pid_t child = fork();
    if (child == 0) {
        ::close(STDIN_FILENO);
        const auto closed = [] { return fcntl(STDIN_FILENO, F_GETFD) < 0; };
        {
            zm::LogWriter writer(m_path);
            if (!writer.write(0, 6, "first") || closed()) {
                _exit(1);
            }
            fs::remove(m_path);
            if (!writer.write(0, 6, "second")) {
                _exit(2);
            }
        }
        _exit(closed() ? 0 : 3);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(all(), ElementsAre("second"));
}

} // namespace
