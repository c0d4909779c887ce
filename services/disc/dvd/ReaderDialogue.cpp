#include "services/disc/dvd/ReaderDialogue.h"

#include "services/disc/dvd/WireRecord.h"

#include <utility>

namespace zm::disc::dvd {

void ReaderDialogue::ask(zm::dvd::Command command) {
    command.generation = ++m_asked;
    m_reader->send(command);
}

void ReaderDialogue::tell(zm::dvd::Command command) {
    command.seen = m_generation;
    m_reader->send(command);
}

void ReaderDialogue::answer(const zm::dvd::DoneEvent& event) {
    m_answered = event.answered;
    m_refused = event.outcome == zm::dvd::Outcome::Refused;
    if (event.outcome == zm::dvd::Outcome::Jumped) {
        m_generation = event.answered;
        m_jumped = true;
        m_held.clear();
    }
}

ReaderDialogue::Found ReaderDialogue::next(std::vector<uint8_t>& packet) {
    for (;;) {
        if (!outstanding()) {
            if (std::exchange(m_jumped, false)) {
                return Found::Jumped;
            }
            if (std::exchange(m_refused, false)) {
                return Found::Refused;
            }
            if (!m_held.empty()) {
                packet = std::move(m_held.front());
                m_held.pop_front();
                return Found::Packet;
            }
        }
        const auto receipt = m_reader->receive(packet);
        if (receipt != ReaderProcess::Receipt::Packet) {
            return receipt == ReaderProcess::Receipt::Ended ? Found::Ended : Found::Nothing;
        }
        const auto done = recordIn<zm::dvd::DoneEvent>(packet);
        if (done && done->head.event == zm::dvd::Event::Done) {
            answer(*done);
        } else if (outstanding()) {
            m_held.push_back(std::move(packet));
        } else {
            return Found::Packet;
        }
    }
}

} // namespace zm::disc::dvd
