#pragma once

#include "base/EventLoop.h"
#include "platform/linux/pps/PpsFile.h"
#include "platform/linux/pps/PpsService.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace zm {

/** A folder for one test, removed with all in it. */
class TemporaryFolder {
public:
    TemporaryFolder() {
        char pattern[] = "/tmp/zm-pps-XXXXXX";
        m_path = mkdtemp(pattern);
    }
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

/** A PPS service on a thread of its own that can be killed and started again. */
class RunningService {
public:
    explicit RunningService(std::string socket) : m_socket(std::move(socket)) { start(); }
    ~RunningService() { stop(); }

    void start() {
        m_loop = std::make_unique<EventLoop>();
        m_service = std::make_unique<PpsService>(*m_loop, m_socket);
        const auto started = m_service->start();
        ASSERT_TRUE(started) << started.error();
        m_thread = std::thread([this] { m_loop->run(); });
    }
    /** All connections close, all objects are gone. */
    void stop() {
        if (m_thread.joinable()) {
            m_loop->quit();
            m_thread.join();
            m_service.reset();
            m_loop.reset();
        }
    }

private:
    std::string m_socket;
    std::unique_ptr<EventLoop> m_loop;
    std::unique_ptr<PpsService> m_service;
    std::thread m_thread;
};

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
    RunningService service{socket};
};

} // namespace zm
