// What the DVD reader says to the service: packets, each two bytes for its length and its bytes. A length whose highest bit is set
// stands for a command of the service in that place.
#include "fuzz/support/Check.h"
#include "services/disc/dvd/NavPack.h"
#include "services/disc/dvd/Pack.h"
#include "services/disc/dvd/ReaderDialogue.h"
#include "services/disc/dvd/Timeline.h"
#include "services/disc/dvd/WireRecord.h"

#include <algorithm>

using zm::fuzz::check;

namespace {

constexpr size_t LengthBytes = 2;
constexpr unsigned CommandBit = 0x8000;

std::span<const uint8_t> input;
uint32_t lastAsked = 0;

unsigned lengthOf(std::span<const uint8_t> bytes) {
    return bytes[0] | static_cast<unsigned>(bytes[1]) << 8;
}

bool commandIsNext() {
    return input.size() >= LengthBytes && (lengthOf(input) & CommandBit) != 0;
}

} // namespace

namespace zm::disc::dvd {

// In the place of the program: its packets are the input.
Result<std::unique_ptr<ReaderProcess>> ReaderProcess::start(const std::string&) {
    return std::unique_ptr<ReaderProcess>(new ReaderProcess(UniqueFd(), -1));
}
ReaderProcess::~ReaderProcess() = default;
ReaderProcess::Receipt ReaderProcess::receive(std::vector<uint8_t>& packet) {
    if (input.size() < LengthBytes) {
        return Receipt::Ended;
    }
    if (commandIsNext()) {
        return Receipt::Nothing;
    }
    const size_t size = std::min<size_t>(lengthOf(input), input.size() - LengthBytes);
    packet.assign(input.begin() + LengthBytes,
                  input.begin() + static_cast<std::ptrdiff_t>(LengthBytes + size));
    input = input.subspan(LengthBytes + size);
    return Receipt::Packet;
}
void ReaderProcess::send(const zm::dvd::Command& command) {
    check(command.generation == 0 || command.generation == lastAsked + 1, "commands are counted");
    lastAsked = std::max(lastAsked, command.generation);
}
std::string ReaderProcess::ending() {
    return "ended as " + std::to_string(m_pid);
}

} // namespace zm::disc::dvd

namespace {

using namespace zm::disc::dvd;

// As the player takes them: no number in a packet leads outside of it.
void take(const std::vector<uint8_t>& packet, Timeline& timeline) {
    const auto head = recordIn<zm::dvd::Head>(packet);
    if (!head) {
        check(packet.size() < sizeof(zm::dvd::Head), "what is long enough has a head");
        return;
    }
    if (head->event == zm::dvd::Event::Blocks && packet.size() > sizeof(zm::dvd::BlocksEvent)) {
        auto blocks = behind<zm::dvd::BlocksEvent>(packet);
        for (; blocks.size() >= zm::dvd::BlockBytes; blocks = blocks.subspan(zm::dvd::BlockBytes)) {
            for (const auto& each : splitPack(blocks.first(zm::dvd::BlockBytes))) {
                check(each.data.data() >= packet.data() &&
                          each.data.data() + each.data.size() <= packet.data() + packet.size(),
                      "a fragment lies inside its packet");
            }
        }
    } else if (const auto place = recordIn<zm::dvd::PlaceEvent>(packet);
               place && head->event == zm::dvd::Event::Place) {
        if (const auto pack = readNavPack(behind<zm::dvd::PlaceEvent>(packet), place->wide != 0)) {
            const auto span = timeline.place(pack->begin, pack->end, 0);
            check(span.begin <= span.end, "a unit ends behind its beginning");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    input = {data, size};
    lastAsked = 0;
    auto reader = ReaderProcess::start("");
    ReaderDialogue dialogue(std::move(*reader));
    Timeline timeline;
    std::vector<uint8_t> packet;
    for (;;) {
        switch (dialogue.next(packet)) {
        case ReaderDialogue::Found::Packet:
            check(!dialogue.outstanding(), "what is of the place before is kept back");
            take(packet, timeline);
            break;
        case ReaderDialogue::Found::Jumped:
            check(!dialogue.outstanding(), "a jump is told when it was the last one asked for");
            timeline.restart();
            break;
        case ReaderDialogue::Found::Refused:
            check(!dialogue.outstanding(), "so is a refusal");
            break;
        case ReaderDialogue::Found::Nothing:
            check(commandIsNext(), "nothing comes only where nothing is there");
            if (lengthOf(input) & 1) {
                dialogue.ask({});
            } else {
                dialogue.tell({});
            }
            input = input.subspan(LengthBytes);
            break;
        case ReaderDialogue::Found::Ended:
            return 0;
        }
    }
}
