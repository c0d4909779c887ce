#pragma once

#include "base/EventLoop.h"
#include "platform/linux/pps/PpsService.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

namespace zm::test {

/** A PPS service on a thread of its own that can be stopped and started again. */
class RunningPpsService {
public:
    explicit RunningPpsService(std::string socket) : m_socket(std::move(socket)) { start(); }
    ~RunningPpsService() { stop(); }
    RunningPpsService(const RunningPpsService&) = delete;
    RunningPpsService& operator=(const RunningPpsService&) = delete;

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

} // namespace zm::test
