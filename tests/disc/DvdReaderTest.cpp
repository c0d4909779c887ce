#include "services/disc/dvd/ReaderProcess.h"
#include "services/disc/dvd/WireRecord.h"
#include "tests/disc/DvdDisc.h"

#include <gtest/gtest.h>

#include <poll.h>

using namespace zm::test;

namespace zm::disc::dvd {

namespace {

/** The reader of a disc, as the service hears it. */
class DvdReader : public testing::Test {
protected:
    void open(DvdKind kind) {
        auto reader = ReaderProcess::start(dvdImage(kind));
        ASSERT_TRUE(reader) << reader.error();
        m_reader = std::move(*reader);
    }
    void send(zm::dvd::Operation operation, int first = 0, int second = 0, uint32_t generation = 0) {
        zm::dvd::Command command;
        command.operation = operation;
        command.first = first;
        command.second = second;
        command.generation = generation;
        m_reader->send(command);
    }
    /** The next record of that kind and event; places are taken. */
    template <class Record>
    Record next(zm::dvd::Event event) {
        std::vector<uint8_t> packet;
        for (int i = 0; i < 5000; ++i) {
            pollfd readable{m_reader->fd(), POLLIN, 0};
            ::poll(&readable, 1, 1000);
            const auto receipt = m_reader->receive(packet);
            if (receipt == ReaderProcess::Receipt::Ended) {
                break;
            }
            const auto head =
                receipt == ReaderProcess::Receipt::Packet ? recordIn<zm::dvd::Head>(packet) : std::nullopt;
            if (head && head->event == zm::dvd::Event::Place) {
                send(zm::dvd::Operation::Taken);
            }
            if (head && head->event == zm::dvd::Event::Wait) {
                send(zm::dvd::Operation::WaitOver);
            }
            if (head && head->event == event) {
                return *recordIn<Record>(packet);
            }
        }
        ADD_FAILURE() << "did not come; " << m_reader->ending();
        return {};
    }

    std::unique_ptr<ReaderProcess> m_reader;
};

} // namespace

TEST_F(DvdReader, AButtonOfAMenuThatTheDiscHasLeftIsRefused) {
    ASSERT_NO_FATAL_FAILURE(open(DvdKind::Stills));
    const auto menu = next<zm::dvd::PlaceEvent>(zm::dvd::Event::Place);
    EXPECT_EQ(menu.domain, zm::dvd::Domain::DiscMenu);
    next<zm::dvd::StillEvent>(zm::dvd::Event::Still);
    send(zm::dvd::Operation::StillOver);
    auto title = next<zm::dvd::PlaceEvent>(zm::dvd::Event::Place);
    ASSERT_EQ(title.domain, zm::dvd::Domain::Title);
    send(zm::dvd::Operation::Button, 1, static_cast<int>(menu.number), 1);
    const auto done = next<zm::dvd::DoneEvent>(zm::dvd::Event::Done);
    EXPECT_EQ(done.answered, 1u);
    EXPECT_EQ(done.outcome, zm::dvd::Outcome::Refused);
    next<zm::dvd::PlaceEvent>(zm::dvd::Event::Place); // the film goes on
}

} // namespace zm::disc::dvd
