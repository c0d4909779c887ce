#pragma once

#include <cstdint>

struct OverlayState;

/** Steps a DVD past chapters that cannot be read. */
class ChapterSteps {
public:
    explicit ChapterSteps(OverlayState& state) : m_state(state) {}

    /** The chapter asked for: where the steps begin. */
    void SetNext(int chapter) { m_nNextChapter = chapter; }

    /** Remembers a read error of a DVD. */
    void OnErrorStatus();
    /** A DVD that stopped with an error plays on. */
    void OnStopped();
    /** After a read error, plays the next chapter or title. */
    void OnPlaying();

private:
    OverlayState& m_state;
    int32_t m_nNextChapter = 0;
    bool m_bReadError = false;
};
