#include "services/bench/commands/Run.h"

#include <filesystem>
#include <utility>

namespace zm::bench::commands {

Run::Run(std::vector<std::string> words, std::string cwd, Sink sink)
    : m_words(std::move(words)), m_cwd(std::move(cwd)), m_sink(std::move(sink)) {}

std::string Run::absolute(const std::string& path) const {
    return (std::filesystem::path(m_cwd.empty() ? "/" : m_cwd) / path).lexically_normal().string();
}

void Run::out(const std::string& text) {
    if (!m_finished && !text.empty()) {
        m_sink.out(text);
    }
}

void Run::err(const std::string& text) {
    if (!m_finished) {
        m_sink.err(text);
    }
}

void Run::finish(Exit exit) {
    if (m_finished) {
        return;
    }
    end();
    if (auto callback = std::exchange(onExit, nullptr)) {
        callback(exit);
    }
    m_sink.exit(static_cast<int>(exit));
}

void Run::fail(const std::string& why) {
    err("zmctl: " + why + "\n");
    finish(Exit::Failed);
}

void Run::cancel() {
    if (!m_finished) {
        end();
    }
}

void Run::end() {
    m_finished = true;
    if (auto callback = std::exchange(onEnd, nullptr)) {
        callback();
    }
}

} // namespace zm::bench::commands
