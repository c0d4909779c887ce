#include "services/disc/player/Commands.h"

#include "services/disc/player/Transport.h"

#include <algorithm>
#include <iterator>

namespace zm::disc::player {

namespace {

/** What the two numbers of a command mean. */
struct CommandRow {
    int number;
    void (*carryOut)(Transport& transport, int first, int second);
};

template <void (Transport::*Operation)()>
void plain(Transport& transport, int, int) {
    (transport.*Operation)();
}

template <void (Transport::*Operation)(int)>
void withNumber(Transport& transport, int first, int) {
    (transport.*Operation)(first);
}

template <void (Transport::*Operation)(int, int)>
void withNumbers(Transport& transport, int first, int second) {
    (transport.*Operation)(first, second);
}

template <ScanDirection Direction>
void scan(Transport& transport, int, int) {
    transport.scan(Direction);
}

void seek(Transport& transport, int seconds, int) {
    transport.seek(std::chrono::seconds(seconds));
}

constexpr CommandRow rows[] = {
    {1, plain<&Transport::next>},
    {2, plain<&Transport::previous>},
    {3, scan<ScanDirection::Forward>},
    {4, scan<ScanDirection::Backward>},
    {5, plain<&Transport::playPause>},
    {7, withNumber<&Transport::shuffle>},
    {9, withNumber<&Transport::repeat>},
    {10, plain<&Transport::repeatPassage>},
    {11, plain<&Transport::audioChannel>},
    {12, plain<&Transport::angle>},
    {18, plain<&Transport::subtitle>},
    {19, plain<&Transport::playbackControl>},
    {20, plain<&Transport::zoom>},
    {21, plain<&Transport::menu>},
    {22, plain<&Transport::stop>},
    {130, plain<&Transport::pause>},
    {131, plain<&Transport::play>},
    {142, withNumbers<&Transport::browse>},
    {145, plain<&Transport::titleMenu>},
    {163, plain<&Transport::rotate>},
    {182, withNumbers<&Transport::playTrack>},
    {183, withNumber<&Transport::playChapter>},
    {184, withNumber<&Transport::playTitle>},
    {185, seek},
    {BrowseCommand, withNumbers<&Transport::browse>},
    {188, withNumbers<&Transport::touch>},
    {189, withNumber<&Transport::password>},
};

} // namespace

bool carryOut(Transport& transport, int command, int first, int second) {
    const auto* row = std::find_if(std::begin(rows), std::end(rows),
                                   [=](const CommandRow& each) { return each.number == command; });
    if (row == std::end(rows)) {
        return false;
    }
    row->carryOut(transport, first, second);
    return true;
}

} // namespace zm::disc::player
