#pragma once

#include "base/Paths.h"
#include "platform/linux/pps/PpsFile.h"
#include "tests/model/ModelTest.h"
#include "tests/support/RunningPpsService.h"

#include <poll.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace zm::test {

/** A runtime folder with a PPS service in it. */
class PpsUnit : public ModelTest {
protected:
    static constexpr const char* CONTROL = "/pps/zelmar/disc/control";
    static constexpr const char* STATUS = "/pps/zelmar/disc/status";
    static constexpr const char* DEVICE = "/pps/zelmar/disc/device";
    static constexpr const char* PLAYING = "/pps/zelmar/disc/playing";
    static constexpr const char* MPEGINFO = "/pps/zelmar/disc/mpeginfo";
    static constexpr const char* VIDEO_COMMAND = "/pps/zelmar/videoservice/command";
    static constexpr const char* VIDEO_STATUS = "/pps/zelmar/videoservice/status";
    static constexpr const char* SYSTEM = "/pps/zelmar/system/dev_status";
    static constexpr const char* NOWPLAYING = "/pps/zelmar/navigator/nowplaying";

    static constexpr int READ_WRITE_CREATE = 258;

    std::string socket() const { return ppsSocket(m_dir); }

    PpsFile open(const std::string& path, const std::string& options = "") {
        auto file = PpsFile::open(socket(), path + options, READ_WRITE_CREATE, 0666);
        if (!file) {
            throw std::runtime_error(file.error());
        }
        return std::move(*file);
    }
    /** The object as it is now. */
    std::string object(const std::string& path) { return *open(path).read(); }
    /** Publishes lines in one write, as another program. */
    void publish(const std::string& path, const std::string& lines) {
        auto written = open(path).write(lines);
        ASSERT_TRUE(written) << written.error();
    }
    /** Waits for the next change that a delta reader gets. */
    static std::string next(PpsFile& file) {
        std::string text;
        auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (text.empty() && std::chrono::steady_clock::now() < deadline) {
            pollfd entry{file.pollFd(), POLLIN, 0};
            poll(&entry, 1, 50);
            text = *file.read();
        }
        return text;
    }

    RunningPpsService m_service{socket()};
};

} // namespace zm::test
