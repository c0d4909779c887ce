// The application lives through a whole story again and again, and the first call of one kind fails, then the
// second, until a story passes in which none did. Each time it must end in order, say what was wrong where it
// could not go on as usual, leave nothing behind, and start again as if nothing had been.
#include "tests/anomaly/FaultyUnit.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>

namespace zm::test {

namespace {

using testing::IsEmpty;

/** What is demanded when a call of that kind fails. */
struct KindRow {
    FaultKind kind;
    const char* name;
    std::vector<std::string> lines; ///< one of them is logged, unless the whole story could be seen
    int limit = 200;                ///< of calls that a story may have
};

void PrintTo(const KindRow& row, std::ostream* stream) {
    *stream << row.name;
}

const std::vector<std::string> StartErrors{
    "==========view init error==========", "==========osdview init error==========",
    "==========osd joinview error==========", "==========StartEventLoop error=========="};

std::vector<std::string> with(std::vector<std::string> lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

const KindRow Rows[] = {
    {FaultKind::PpsOpen, "PpsOpen", {"?delta: made to fail", "?delta,nopersist: made to fail"}},
    {FaultKind::PpsRead, "PpsRead", {": made to fail"}},
    {FaultKind::PpsWrite, "PpsWrite", {"?delta: made to fail", "?delta,nopersist: made to fail"}},
    {FaultKind::QdbConnect, "QdbConnect", {"[OpenDb]-QDB Error: "}},
    {FaultKind::QdbStatement,
     "QdbStatement",
     {"[ExecuteSql]-QDB Error: ", "Error executing SELECT statement: "}},
    {FaultKind::QdbResult, "QdbResult", {"Error getting result: "}},
    {FaultKind::ThreadStart, "ThreadStart", with({"thread: made to fail"}, StartErrors)},
    {FaultKind::MemoryMap, "MemoryMap", StartErrors},
    {FaultKind::SharedMemory, "SharedMemory", StartErrors},
    {FaultKind::Socket, "Socket", with({"pps.sock: Too many open files"}, StartErrors)},
    {FaultKind::SocketPair, "SocketPair", {"Too many open files"}},
    {FaultKind::Connect, "Connect", with({"pps.sock: Connection refused"}, StartErrors)},
    {FaultKind::EventDescriptor, "EventDescriptor", with({"wake-up descriptor"}, StartErrors)},
};

bool sawAll(const Outcome& outcome) {
    return outcome.seen ==
           std::vector<std::string>{"started", "play-page", "list", "folders", "folder", "chosen", "ejected"};
}

class Anomaly : public testing::TestWithParam<KindRow> {
protected:
    /** What holds for every story, whatever failed. */
    void expectOrder(const Outcome& outcome) {
        EXPECT_TRUE(outcome.endedInTime);
        EXPECT_TRUE(outcome.status == 0 || outcome.status == 1) << outcome.status;
        EXPECT_THAT(outcome.broken, IsEmpty());
        EXPECT_LE(outcome.remains.descriptors, m_usual.descriptors);
        EXPECT_LE(outcome.remains.threads, m_usual.threads);
    }
    void expectWhole(const Outcome& outcome) {
        EXPECT_TRUE(sawAll(outcome));
        EXPECT_EQ(outcome.status, 0);
    }

    FaultyUnit m_unit;
    ApplicationRun::Remains m_usual;
};

} // namespace

TEST_P(Anomaly, EveryCallMayFailOnce) {
    const KindRow& row = GetParam();
    const Outcome usual = m_unit.run(row.kind, 0);
    m_usual = usual.remains;
    expectOrder(usual);
    expectWhole(usual);
    ASSERT_GT(usual.remains.calls, 0) << "the story has no such call";
    ASSERT_FALSE(HasFailure()) << usual.text();
    int number = 1;
    for (; number < row.limit; ++number) {
        const Outcome outcome = m_unit.run(row.kind, number);
        expectOrder(outcome);
        const bool failed = outcome.remains.calls >= number;
        const bool said = std::any_of(row.lines.begin(), row.lines.end(),
                                      [&](const std::string& line) { return outcome.logged(line); });
        EXPECT_TRUE(said || sawAll(outcome));
        if (!failed) {
            expectWhole(outcome);
        }
        ASSERT_FALSE(HasFailure()) << "call " << number << '\n' << outcome.text();
        if (!failed) {
            break;
        }
        if (outcome.status == 0 && sawAll(outcome)) {
            continue; // what follows is the next story anyway
        }
        const Outcome next = m_unit.run(row.kind, 0);
        expectOrder(next);
        expectWhole(next);
        ASSERT_FALSE(HasFailure()) << "the story after that in which call " << number << " failed\n"
                                   << next.text();
    }
    EXPECT_LT(number, row.limit);
    std::cout << row.name << ": " << number - 1 << " calls failed, one after the other\n";
}

INSTANTIATE_TEST_SUITE_P(Kinds, Anomaly, testing::ValuesIn(Rows),
                         [](const auto& row) { return row.param.name; });

} // namespace zm::test
