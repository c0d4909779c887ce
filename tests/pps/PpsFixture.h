#pragma once

#include "platform/linux/pps/PpsFile.h"
#include "tests/support/RunningPpsService.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace zm::test {

/** Flags as the object catalogue of an application has them. */
constexpr int ReadWriteCreate = 258;
constexpr int ReadWriteCreateTruncate = 770;
constexpr int WriteCreate = 257;
constexpr int ReadOnly = 0;

class PpsTest : public testing::Test {
protected:
    PpsFile open(const std::string& path, int flags = ReadWriteCreate) {
        auto file = PpsFile::open(socket, path, flags, 0666);
        if (!file) {
            ADD_FAILURE() << file.error();
            std::abort();
        }
        return std::move(*file);
    }
    std::string openError(const std::string& path, int flags = ReadWriteCreate) {
        auto file = PpsFile::open(socket, path, flags, 0666);
        return file ? "" : file.error();
    }
    static std::string read(PpsFile& file) {
        auto text = file.read();
        return text ? *text : "error: " + text.error();
    }
    static std::string write(PpsFile& file, std::string_view text) {
        auto written = file.write(text);
        return written ? "" : written.error();
    }
    static bool readable(PpsFile& file, std::chrono::milliseconds timeout = std::chrono::milliseconds(0)) {
        pollfd ready{file.pollFd(), POLLIN, 0};
        return ::poll(&ready, 1, static_cast<int>(timeout.count())) == 1;
    }

    TemporaryFolder folder;
    std::string socket = folder.path() + "/pps.sock";
    RunningPpsService service{socket};
};

} // namespace zm::test
