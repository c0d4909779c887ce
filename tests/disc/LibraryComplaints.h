#pragma once

#include <glib.h>

#include <atomic>
#include <iostream>

namespace zm::test {

/** Counts what GLib and GStreamer find wrong while this lives. */
class LibraryComplaints {
public:
    LibraryComplaints() : m_before(g_log_set_default_handler(take, this)) {}
    ~LibraryComplaints() { g_log_set_default_handler(m_before, nullptr); }
    LibraryComplaints(const LibraryComplaints&) = delete;
    LibraryComplaints& operator=(const LibraryComplaints&) = delete;
    int count() const { return m_count; }

private:
    static void take(const char* domain, GLogLevelFlags level, const char* text, void* self) {
        static_cast<LibraryComplaints*>(self)->m_count +=
            (level & (G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) != 0;
        std::cerr << (domain ? domain : "") << ": " << text << "\n";
    }

    std::atomic<int> m_count{0};
    GLogFunc m_before;
};

} // namespace zm::test
