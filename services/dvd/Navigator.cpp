#include "services/dvd/Navigator.h"

#include "services/dvd/DiscTime.h"

#include <algorithm>
#include <cstring>
#include <utility>

// Exported by the library but in none of its headers: to the nearest unit of a cell before `time` (90 kHz).
extern "C" dvdnav_status_t dvdnav_jump_to_sector_by_time(dvdnav_t* self, uint64_t time, int32_t mode);

namespace zm::dvd {

namespace {

constexpr int64_t TicksPerMillisecond = 90;
// Packs in a row that may be pressed: more than what is read ahead of the picture.
constexpr size_t KeptPlaces = 64;
constexpr int NoLogicalSound = 15;
constexpr int SubtitleNumberMask = 0x1f;
constexpr int SubtitleHidden = 0x80;
constexpr uint16_t NoLanguage = 0xffff;
constexpr uint8_t WideAspect = 3;
constexpr uint32_t NtscLines = 480;
constexpr uint32_t PalLines = 576;
// A scratch is stepped over by half a second, one, two ... then by a chapter.
constexpr int64_t FirstStep = TicksPerSecond / 2;
constexpr int TimeSteps = 6;
constexpr int ChapterSteps = 8;
// An error this far behind the one before is a new one.
constexpr int64_t ErrorDistance = 30 * TicksPerSecond;

// The library would write what it does on standard error.
const dvdnav_logger_cb silence{[](void*, dvdnav_logger_level_t, const char*, va_list) {}};

uint16_t language(uint16_t code) {
    return code == NoLanguage ? uint16_t{0} : code;
}

uint32_t prohibitionsOf(const user_ops_t& ops) {
    const auto bit = [](unsigned set, uint32_t value) { return set ? value : 0u; };
    return bit(ops.title_or_time_play || ops.time_or_chapter_search, NoTimeSearch) |
           bit(ops.chapter_search_or_play || ops.time_or_chapter_search, NoChapterSearch) |
           bit(ops.title_play, NoTitlePlay) | bit(ops.stop, NoStop) | bit(ops.next_pg_search, NoNext) |
           bit(ops.prev_or_top_pg_search, NoPrevious) | bit(ops.forward_scan, NoForward) |
           bit(ops.backward_scan, NoBackward) | bit(ops.title_menu_call, NoTitleMenu) |
           bit(ops.root_menu_call, NoRootMenu) | bit(ops.resume, NoResume) |
           bit(ops.button_select_or_activate, NoButton) | bit(ops.pause_on, NoPause) |
           bit(ops.audio_stream_change, NoSoundChange) | bit(ops.subpic_stream_change, NoSubtitleChange) |
           bit(ops.angle_change, NoAngleChange);
}

} // namespace

Result<std::unique_ptr<Navigator>> Navigator::open(const std::string& path) {
    dvdnav_t* nav = nullptr;
    if (dvdnav_open2(&nav, nullptr, &silence, path.c_str()) != DVDNAV_STATUS_OK) {
        return Error{path + ": not a DVD that can be read"};
    }
    std::unique_ptr<Navigator> navigator(new Navigator(nav, path));
    // The service reads ahead as far as it wants.
    dvdnav_set_readahead_flag(nav, 0);
    dvdnav_set_PGC_positioning_flag(nav, 1);
    for (auto* select :
         {dvdnav_menu_language_select, dvdnav_audio_language_select, dvdnav_spu_language_select}) {
        char english[] = "en";
        select(nav, english);
    }
    return navigator;
}

DiscEvent Navigator::disc() {
    auto event = record<DiscEvent>(Event::Disc);
    int32_t titles = 0;
    dvdnav_get_number_of_titles(nav(), &titles);
    event.titles = static_cast<uint32_t>(std::clamp<int32_t>(titles, 0, MaxTitles));
    for (uint32_t i = 0; i < event.titles; ++i) {
        int32_t chapters = 0;
        int32_t angles = 0;
        dvdnav_get_number_of_parts(nav(), static_cast<int32_t>(i) + 1, &chapters);
        dvdnav_get_number_of_angles(nav(), static_cast<int32_t>(i) + 1, &angles);
        event.title[i] = {static_cast<uint16_t>(chapters), static_cast<uint16_t>(angles)};
    }
    return event;
}

Domain Navigator::domain() const {
    return inTitle()                      ? Domain::Title
           : dvdnav_is_domain_vtsm(nav()) ? Domain::TitleMenu
           : dvdnav_is_domain_vmgm(nav()) ? Domain::DiscMenu
                                          : Domain::FirstPlay;
}

// ---- reading

void Navigator::step(Outbox& outbox) {
    uint8_t own[BlockBytes];
    uint8_t* block = own;
    int32_t event = 0;
    int32_t length = 0;
    if (m_failing || dvdnav_get_next_cache_block(nav(), &block, &event, &length) != DVDNAV_STATUS_OK) {
        recover(outbox);
        return;
    }
    take(event, block, outbox);
    if (block != own) {
        dvdnav_free_cache_block(nav(), block);
    }
}

void Navigator::take(int event, uint8_t* block, Outbox& outbox) {
    const bool shows = event == DVDNAV_BLOCK_OK || event == DVDNAV_NAV_PACKET;
    m_progress += shows || event == DVDNAV_STILL_FRAME || event == DVDNAV_WAIT ? 1 : 0;
    switch (event) {
    case DVDNAV_BLOCK_OK:
        outbox.addBlock(block);
        break;
    case DVDNAV_NAV_PACKET:
        takePlace(block, outbox);
        break;
    case DVDNAV_STILL_FRAME: {
        auto still = record<StillEvent>(Event::Still);
        still.seconds = reinterpret_cast<const dvdnav_still_event_t*>(block)->length;
        outbox.add(still);
        m_waits = true;
        break;
    }
    case DVDNAV_WAIT:
        outbox.add(record<StillEvent>(Event::Wait));
        m_waits = true;
        break;
    case DVDNAV_SPU_CLUT_CHANGE:
        takeColours(block, outbox);
        break;
    case DVDNAV_SPU_STREAM_CHANGE:
        takeSubtitle(*reinterpret_cast<const dvdnav_spu_stream_change_event_t*>(block), outbox);
        break;
    case DVDNAV_AUDIO_STREAM_CHANGE:
        takeSound(*reinterpret_cast<const dvdnav_audio_stream_change_event_t*>(block), outbox);
        break;
    case DVDNAV_HIGHLIGHT: {
        auto highlight = record<HighlightEvent>(Event::Highlight);
        highlight.button =
            static_cast<int32_t>(reinterpret_cast<const dvdnav_highlight_event_t*>(block)->buttonN);
        outbox.add(highlight);
        break;
    }
    case DVDNAV_VTS_CHANGE:
        m_titleSet = reinterpret_cast<const dvdnav_vts_change_event_t*>(block)->new_vtsN;
        break;
    case DVDNAV_CELL_CHANGE:
        m_cell = reinterpret_cast<const dvdnav_cell_change_event_t*>(block)->cellN;
        m_cellTime = inTitle() ? timeOfCell() : 0;
        m_length = reinterpret_cast<const dvdnav_cell_change_event_t*>(block)->pgc_length;
        announceStreams(outbox);
        break;
    case DVDNAV_HOP_CHANNEL:
        m_elsewhere = true;
        break;
    case DVDNAV_STOP:
        outbox.add(record<StillEvent>(Event::Stopped));
        m_waits = true;
        break;
    default:
        break;
    }
}

int64_t Navigator::timeOfCell() {
    int32_t angle = 0;
    int32_t angles = 0;
    int32_t title = 0;
    int32_t chain = 0;
    int32_t program = 0;
    dvdnav_get_angle_info(nav(), &angle, &angles);
    if (angles > 1 && dvdnav_current_title_program(nav(), &title, &chain, &program) == DVDNAV_STATUS_OK) {
        if (const auto time = m_cellTable.begin(m_titleSet, chain, m_cell)) {
            return *time;
        }
    }
    return dvdnav_get_current_time(nav());
}

// The library's search goes one unit too far: from the last one of a cell into what lies behind it on the disc.
bool Navigator::landedBehindItsCell() {
    const dsi_t* unit = dvdnav_get_current_nav_dsi(nav());
    int32_t title = 0;
    int32_t chain = 0;
    int32_t program = 0;
    if (!unit || !inTitle() ||
        dvdnav_current_title_program(nav(), &title, &chain, &program) != DVDNAV_STATUS_OK) {
        return false;
    }
    const auto last = m_cellTable.lastSector(m_titleSet, chain, m_cell);
    return last && unit->dsi_gi.nv_pck_lbn > *last;
}

// The library's other search stays inside the cell; it only guesses where in it, which near its end is good enough.
bool Navigator::searchAgain() {
    const auto sought = std::exchange(m_sought, std::nullopt);
    return sought && landedBehindItsCell() && inFirstAngle([&] {
               return dvdnav_time_search(nav(), static_cast<uint64_t>(*sought)) == DVDNAV_STATUS_OK;
           });
}

void Navigator::takePlace(const uint8_t* block, Outbox& outbox) {
    const pci_t* buttons = dvdnav_get_current_nav_pci(nav());
    if (!buttons || searchAgain()) {
        return;
    }
    auto place = record<PlaceEvent>(Event::Place);
    place.number = ++m_placeNumber;
    place.domain = domain();
    place.cellTime = m_cellTime;
    place.length = m_length;
    place.prohibited = prohibitionsOf(dvdnav_get_restrictions(nav()));
    place.wide = dvdnav_get_video_aspect(nav()) == WideAspect;
    uint32_t width = 0;
    uint32_t height = 0;
    dvdnav_get_video_resolution(nav(), &width, &height);
    place.lines = height == NtscLines || height == NtscLines / 2 ? NtscLines : PalLines;
    dvdnav_get_current_highlight(nav(), &place.button);
    if (inTitle()) {
        dvdnav_current_title_info(nav(), &place.title, &place.chapter);
        dvdnav_get_angle_info(nav(), &place.angle, &place.angles);
    }
    m_time = m_cellTime + ticks(buttons->pci_gi.e_eltm);
    ++m_placesAhead;
    m_places.push_back({place.number, place.domain, *buttons});
    if (m_places.size() > KeptPlaces) {
        m_places.pop_front();
    }
    outbox.add(place, block);
    if (std::exchange(m_elsewhere, false) && inTitle()) {
        sendStandingPicture(outbox);
    }
}

void Navigator::sendStandingPicture(Outbox& outbox) {
    const dsi_t* unit = dvdnav_get_current_nav_dsi(nav());
    if (!unit || m_failing) {
        return;
    }
    const std::vector<uint8_t> picture = m_earlierPicture.read(m_titleSet, *unit);
    for (size_t at = 0; at < picture.size(); at += BlockBytes) {
        outbox.add(record<PictureEvent>(Event::Picture), picture.data() + at);
    }
}

void Navigator::takeColours(const uint8_t* block, Outbox& outbox) {
    auto event = record<ColoursEvent>(Event::Colours);
    std::memcpy(event.colours.data(), block, sizeof event.colours);
    outbox.add(event);
}

SoundKind Navigator::soundKind(int logical) const {
    switch (dvdnav_audio_stream_format(nav(), static_cast<uint8_t>(logical))) {
    case 0:
        return SoundKind::Ac3;
    case 2:
    case 3:
        return SoundKind::Mpeg;
    case 4:
        return SoundKind::Lpcm;
    case 6:
        return SoundKind::Dts;
    default:
        return SoundKind::Unknown;
    }
}

void Navigator::takeSound(const dvdnav_audio_stream_change_event_t& change, Outbox& outbox) {
    auto sound = record<SoundEvent>(Event::Sound);
    const int logical = change.logical & 15;
    sound.logical = logical == NoLogicalSound ? 0 : logical;
    sound.stream = change.physical < 0 ? -1 : change.physical & 7;
    sound.kind = soundKind(sound.logical);
    outbox.add(sound);
}

void Navigator::takeSubtitle(const dvdnav_spu_stream_change_event_t& change, Outbox& outbox) {
    auto subtitle = record<SubtitleEvent>(Event::Subtitle);
    subtitle.stream = change.physical_wide & SubtitleNumberMask;
    // The library leaves its own field for this unset.
    for (int i = 0; i < static_cast<int>(MaxSubtitles); ++i) {
        if (dvdnav_get_spu_logical_stream(nav(), static_cast<uint8_t>(i)) == subtitle.stream) {
            subtitle.logical = i;
            break;
        }
    }
    subtitle.visible = (change.physical_wide & SubtitleHidden) == 0;
    outbox.add(subtitle);
}

void Navigator::announceStreams(Outbox& outbox) {
    auto streams = record<StreamsEvent>(Event::Streams);
    for (int i = 0; i < static_cast<int>(MaxSounds); ++i) {
        const auto number = static_cast<uint8_t>(i);
        if (dvdnav_get_audio_logical_stream(nav(), number) >= 0) {
            const uint16_t channels = dvdnav_audio_stream_channels(nav(), number);
            streams.sound[streams.sounds++] = {soundKind(i), i,
                                               language(dvdnav_audio_stream_to_lang(nav(), number)),
                                               channels == 0xffff ? uint16_t{0} : channels};
        }
    }
    for (int i = 0; i < static_cast<int>(MaxSubtitles); ++i) {
        const auto number = static_cast<uint8_t>(i);
        if (dvdnav_get_spu_logical_stream(nav(), number) >= 0) {
            streams.subtitle[streams.subtitles++] = {i, language(dvdnav_spu_stream_to_lang(nav(), number))};
        }
    }
    const auto same = [&](const StreamsEvent& last) {
        return std::memcmp(&last.sounds, &streams.sounds, sizeof last - sizeof last.head) == 0;
    };
    if (!m_streams || !same(*m_streams)) {
        m_streams = streams;
        outbox.add(streams);
    }
}

// ---- over a place that cannot be read

void Navigator::recover(Outbox& outbox) {
    if (m_errors == 0 || m_time > m_errorTime + ErrorDistance) {
        m_errors = 0;
        m_errorTime = m_time;
    }
    ++m_errors;
    auto event = record<ReadErrorEvent>(Event::ReadError);
    if (inTitle() && m_errors <= TimeSteps && seek(m_errorTime + (FirstStep << (m_errors - 1)))) {
        return;
    }
    int32_t title = 0;
    int32_t chapter = 0;
    if (inTitle() && m_errors <= ChapterSteps && dvdnav_current_title_info(nav(), &title, &chapter) &&
        playChapter(title, chapter + 1)) {
        m_errors = std::max(m_errors, TimeSteps);
        outbox.add(event);
        return;
    }
    event.over = 1;
    m_waits = true;
    outbox.add(event);
}

// ---- commands

void Navigator::carryOut(const Command& command, Outbox& outbox) {
    ++m_progress;
    switch (command.operation) {
    case Operation::StillOver:
    case Operation::WaitOver:
        if (command.seen == m_generation && m_waits) {
            command.operation == Operation::StillOver ? dvdnav_still_skip(nav()) : dvdnav_wait_skip(nav());
            m_waits = false;
        }
        return;
    case Operation::Taken:
        m_placesAhead -= command.seen == m_generation && m_placesAhead > 0 ? 1 : 0;
        return;
    case Operation::Angle:
        dvdnav_angle_change(nav(), command.first);
        return;
    default:
        break;
    }
    auto done = record<DoneEvent>(Event::Done);
    done.answered = command.generation;
    done.outcome = command.operation == Operation::Button ? press(command, outbox) : jump(command);
    if (done.outcome == Outcome::Jumped) {
        outbox.clear();
        m_generation = command.generation;
        outbox.setGeneration(m_generation);
        m_places.clear();
        m_placesAhead = 0;
        m_waits = false;
        m_elsewhere = true;
        m_errors = 0;
    }
    outbox.add(done);
}

bool Navigator::playChapter(int title, int chapter) {
    int32_t chapters = 0;
    return title > 0 && chapter > 0 &&
           dvdnav_get_number_of_parts(nav(), title, &chapters) == DVDNAV_STATUS_OK && chapter <= chapters &&
           dvdnav_part_play(nav(), title, chapter) == DVDNAV_STATUS_OK;
}

// The library finds the place in the first angle, but would count it from the beginning of the chosen one.
template <class Search>
bool Navigator::inFirstAngle(Search search) {
    int32_t angle = 1;
    int32_t angles = 1;
    dvdnav_get_angle_info(nav(), &angle, &angles);
    dvdnav_angle_change(nav(), 1);
    const bool found = search();
    dvdnav_angle_change(nav(), angle);
    return found;
}

bool Navigator::seek(int64_t time) {
    if (!inTitle() || time < 0 || time >= m_length) {
        return false;
    }
    const bool found = inFirstAngle([&] {
        return dvdnav_jump_to_sector_by_time(nav(), static_cast<uint64_t>(time), 0) == DVDNAV_STATUS_OK;
    });
    m_sought = found ? std::optional(time) : std::nullopt;
    return found;
}

Outcome Navigator::jump(const Command& command) {
    m_sought.reset();
    const bool outsideTitle = !inTitle();
    int32_t title = 0;
    int32_t chapter = 0;
    bool done = false;
    switch (command.operation) {
    case Operation::Restart:
        // A new start, as after insertion.
        dvdnav_stop(nav());
        done = dvdnav_reset(nav()) == DVDNAV_STATUS_OK;
        break;
    case Operation::Title:
    case Operation::Chapter:
        if (outsideTitle) {
            dvdnav_reset(nav()); // else the still picture of the menu would hold the title up
        }
        done = playChapter(command.first, command.operation == Operation::Title ? 1 : command.second);
        break;
    case Operation::Time:
    case Operation::Streams:
        dvdnav_current_title_info(nav(), &title, &chapter);
        // What was read last may already lie behind the title whose end the user sees.
        if (outsideTitle || title != command.title) {
            return Outcome::Refused;
        }
        if (command.operation == Operation::Streams && !changeStreams(command)) {
            return Outcome::Refused;
        }
        done = seek((command.operation == Operation::Time ? command.first : command.third) *
                    TicksPerMillisecond);
        // After a failed search the library plays nothing any more.
        done = done || playChapter(title, chapter);
        break;
    case Operation::RootMenu:
        done = dvdnav_menu_call(nav(), DVD_MENU_Escape) == DVDNAV_STATUS_OK;
        break;
    case Operation::TitleMenu:
        done = dvdnav_menu_call(nav(), DVD_MENU_Title) == DVDNAV_STATUS_OK;
        break;
    default:
        break;
    }
    return done ? Outcome::Jumped : Outcome::Refused;
}

// The library has no call for it, but the disc's own instruction is there.
bool Navigator::changeStreams(const Command& command) {
    constexpr uint8_t SetStreams = 0x51;
    constexpr uint8_t Given = 0x80;
    constexpr uint8_t Visible = 0x40;
    vm_cmd_t instruction{};
    instruction.bytes[0] = SetStreams;
    if (command.first >= 0) {
        instruction.bytes[3] = static_cast<uint8_t>(Given | (command.first & 7));
    }
    if (command.second == NoSubtitle) {
        instruction.bytes[4] = Given; // number 0, not visible
    } else if (command.second >= 0) {
        instruction.bytes[4] = static_cast<uint8_t>(Given | Visible | (command.second & SubtitleNumberMask));
    }
    int32_t button = 0;
    dvdnav_get_current_highlight(nav(), &button);
    return dvdnav_button_activate_cmd(nav(), std::max(button, 1), &instruction) == DVDNAV_STATUS_OK;
}

Outcome Navigator::press(const Command& command, Outbox& outbox) {
    const auto number = static_cast<uint32_t>(command.second);
    const auto place = std::find_if(m_places.begin(), m_places.end(),
                                    [&](const Place& each) { return each.number == number; });
    // An instruction of another menu, or of one that the disc has left meanwhile, would end the library.
    if (command.seen != m_generation || place == m_places.end() || place->domain != domain()) {
        return Outcome::Refused;
    }
    pci_t& buttons = place->buttons;
    if ((buttons.hli.hl_gi.hli_ss & 3) == 0 || command.first < 1 ||
        command.first > buttons.hli.hl_gi.btn_ns ||
        dvdnav_button_select_and_activate(nav(), &buttons, command.first) != DVDNAV_STATUS_OK) {
        return Outcome::Refused;
    }
    // Some buttons only remember a choice. If one leads elsewhere the library says so first.
    uint8_t own[BlockBytes];
    uint8_t* block = own;
    int32_t event = 0;
    int32_t length = 0;
    if (dvdnav_get_next_cache_block(nav(), &block, &event, &length) != DVDNAV_STATUS_OK) {
        return Outcome::Jumped; // what cannot be read there the next step finds out
    }
    const bool jumped = event == DVDNAV_HOP_CHANNEL;
    if (!jumped) {
        take(event, block, outbox);
    }
    if (block != own) {
        dvdnav_free_cache_block(nav(), block);
    }
    return jumped ? Outcome::Jumped : Outcome::Stayed;
}

} // namespace zm::dvd
