#pragma once

#include "base/Paths.h"
#include "tests/disc/RecordedSound.h"
#include "tests/disc/ServiceFixture.h"

#include <algorithm>
#include <cstdlib>

namespace zm::test {

using namespace std::chrono_literals;

/** Discs whose sound is written to a file while it is played. */
class Gapless : public DiscService {
protected:
    static constexpr int RepeatOff = 1;
    static constexpr int RepeatOne = 8;

    void SetUp() override {
#ifdef __SANITIZE_THREAD__
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
#endif
        ::setenv("ZM_SOUND", heardFile().c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("ZM_SOUND");
        const std::string log = readFile(logFile(m_unit.runtime()));
        EXPECT_EQ(log.find("is replaced") != std::string::npos, m_decoderDies) << log;
    }

    std::string heardFile() const {
        return m_folder / "heard";
    }
    std::string disc() const {
        return m_disc.path().string();
    }

    // Cuts one sound into files.
    void writePieces(Sound (*sound)(size_t, size_t), const std::vector<size_t>& lengths,
                     const std::string& extension, const std::string& options, uint32_t rate = 44100) {
        size_t first = 0;
        int number = 0;
        for (const size_t frames : lengths) {
            const std::string wav = m_folder / "piece.wav";
            writeFile(wav, wavOf(sound(first, frames), rate));
            const std::string target = m_disc / (std::to_string(++number) + "." + extension);
            const std::string command =
                "ffmpeg -nostdin -v error -y -i '" + wav + "' " + options + " '" + target + "'";
            ASSERT_EQ(std::system(command.c_str()), 0) << command;
            first += frames;
        }
    }

    // Two files of noise, "1.flac" and "2.flac".
    void writeTwo() {
        writePieces(noise, {First, Second}, "flac", "");
    }
    static constexpr size_t First = 4 * 44100 + 17;
    static constexpr size_t Second = 3 * 44100 + 5;
    static constexpr size_t Both = First + Second;

    void playOnce(const std::string& path) {
        m_unit.play(path);
        m_unit.command(9, RepeatOff);
    }
    Sound waitForTheEnd() {
        m_unit.nextState(disc::model::PlayState::Stopped, 60s);
        m_unit.stopService();
        return recordedSound(heardFile());
    }
    Sound playToTheEnd(const std::string& path) {
        playOnce(path);
        return waitForTheEnd();
    }
    // What was heard of the files of noise, without the silence where somebody interfered.
    static std::vector<Passage> passages(const Sound& heard, size_t frames = Both) {
        std::vector<Passage> found;
        for (const Passage& each : passagesOfNoise(heard, frames)) {
            if (each.first == Passage::None) {
                continue;
            }
            if (!found.empty() && each.first > 0 && found.back().first + found.back().count == each.first) {
                found.back().count += each.count;
            } else {
                found.push_back(each);
            }
        }
        return found;
    }
    // How often `name` was published from the place `from` on.
    size_t published(const std::string& name, size_t from) {
        const auto records = m_unit.recorder().all();
        return static_cast<size_t>(std::count_if(records.begin() + static_cast<std::ptrdiff_t>(from),
                                                 records.end(),
                                                 [&](const Published& each) { return each.name == name; }));
    }

    TempFolder m_folder;
    bool m_decoderDies = false; ///< the test sees to that
};

} // namespace zm::test
