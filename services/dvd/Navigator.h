#pragma once

#include "base/Result.h"
#include "services/dvd/CellTable.h"
#include "services/dvd/EarlierPicture.h"
#include "services/dvd/Outbox.h"

#include <dvdnav/dvdnav.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace zm::dvd {

/** A DVD that is read along the disc's own program. Everything may block as long as the drive does. */
class Navigator {
public:
    /** `path`: an image, the folder that holds VIDEO_TS, or a drive. */
    static Result<std::unique_ptr<Navigator>> open(const std::string& path);

    /** What there is; once, in front of everything else. */
    DiscEvent disc();
    /** Reads on by one step and puts what it gives into `outbox`. Not while it `waits`. */
    void step(Outbox& outbox);
    /** The reader has to be told to go on: a still picture, a wait, the end, or it is far enough ahead. What
     * the disc's program has done cannot be taken back when the user chooses something. */
    bool waits() const { return m_waits || m_placesAhead >= PlacesAhead; }
    /** Carries `command` out and puts the answer, if there is one, into `outbox`. */
    void carryOut(const Command& command, Outbox& outbox);
    /** Grows with all that is shown, waited for or asked. */
    uint64_t progress() const { return m_progress; }
    /** The next reads fail, as those of a broken drive. */
    void setFailing(bool failing) { m_failing = failing; }

private:
    struct Release {
        void operator()(dvdnav_t* nav) const { dvdnav_close(nav); }
    };
    /** A navigation pack that was sent and whose buttons may be pressed. */
    struct Place {
        uint32_t number = 0;
        Domain domain = Domain::FirstPlay;
        pci_t buttons;
    };

    Navigator(dvdnav_t* nav, const std::string& path)
        : m_nav(nav), m_cellTable(path), m_earlierPicture(path) {}
    dvdnav_t* nav() const { return m_nav.get(); }
    bool inTitle() const { return dvdnav_is_domain_vts(nav()) != 0; }
    Domain domain() const;

    void take(int event, uint8_t* block, Outbox& outbox);
    int64_t timeOfCell();
    bool landedBehindItsCell();
    bool searchAgain();
    void takePlace(const uint8_t* block, Outbox& outbox);
    void sendStandingPicture(Outbox& outbox);
    void takeSound(const dvdnav_audio_stream_change_event_t& change, Outbox& outbox);
    void takeSubtitle(const dvdnav_spu_stream_change_event_t& change, Outbox& outbox);
    void takeColours(const uint8_t* block, Outbox& outbox);
    void announceStreams(Outbox& outbox);
    SoundKind soundKind(int logical) const;

    Outcome jump(const Command& command);
    Outcome press(const Command& command, Outbox& outbox);
    bool playChapter(int title, int chapter);
    bool seek(int64_t time);
    template <class Search>
    bool inFirstAngle(Search search);
    bool changeStreams(const Command& command);
    void recover(Outbox& outbox);

    template <class Record>
    Record record(Event event) const {
        Record made;
        made.head = {event, m_generation};
        return made;
    }

    std::unique_ptr<dvdnav_t, Release> m_nav;
    uint32_t m_generation = 0;
    bool m_waits = false;
    bool m_failing = false;
    uint64_t m_progress = 0;
    CellTable m_cellTable;
    EarlierPicture m_earlierPicture;
    bool m_elsewhere = true;         ///< what is read next does not follow what was read before
    std::optional<int64_t> m_sought; ///< by the last jump, until it has led somewhere
    int m_titleSet = 0;
    int m_cell = 0;
    int64_t m_cellTime = 0;
    int64_t m_length = 0;
    int64_t m_time = 0; ///< of the pack read last, in the title
    uint32_t m_placeNumber = 0;
    size_t m_placesAhead = 0; ///< sent and not taken
    std::deque<Place> m_places;
    std::optional<StreamsEvent> m_streams; ///< announced last
    int64_t m_errorTime = 0;               ///< of the first of the errors in a row
    int m_errors = 0;
};

} // namespace zm::dvd
