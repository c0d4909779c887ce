// Writes which mutants each test reached, for the program that chooses the tests for a mutant.
#include "tests/mutation/Mutant.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace zm::mutation {

namespace {

/** A line for each test into the file ZM_MUTANT_TESTS: name, good or bad, milliseconds, numbers of the mutants. */
class Listener : public testing::EmptyTestEventListener {
public:
    explicit Listener(const char* path) : m_file(std::fopen(path, "we")) {}
    ~Listener() override {
        if (m_file) {
            std::fclose(m_file);
        }
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // What runs before main and before a suite's first test belongs to each of the tests.
    void OnTestProgramStart(const testing::UnitTest&) override { m_program = marks(); }

    void OnTestSuiteStart(const testing::TestSuite&) override {
        clear();
        m_first = true;
    }

    void OnTestStart(const testing::TestInfo&) override {
        if (m_first) {
            m_suite = marks();
            m_first = false;
        }
        clear();
    }

    void OnTestEnd(const testing::TestInfo& test) override {
        if (!m_file) {
            return;
        }
        const bool good = !test.result()->Failed() && !test.result()->Skipped();
        std::fprintf(m_file, "%s.%s %s %lld", test.test_suite_name(), test.name(), good ? "good" : "bad",
                     static_cast<long long>(test.result()->elapsed_time()));
        for (long number = 0; number < choice().size; number++) {
            if (choice().reached[number] || m_suite.at(number) || m_program.at(number)) {
                std::fprintf(m_file, " %ld", number);
            }
        }
        std::fputc('\n', m_file);
        std::fflush(m_file);
    }

private:
    static std::vector<unsigned char> marks() { return {choice().reached, choice().reached + choice().size}; }
    static void clear() { std::fill_n(choice().reached, choice().size, static_cast<unsigned char>(0)); }

    FILE* m_file;
    std::vector<unsigned char> m_program;
    std::vector<unsigned char> m_suite;
    bool m_first = true;
};

const bool Added = [] {
    if (const char* path = std::getenv("ZM_MUTANT_TESTS")) {
        testing::UnitTest::GetInstance()->listeners().Append(new Listener(path));
    }
    return true;
}();

} // namespace

} // namespace zm::mutation
