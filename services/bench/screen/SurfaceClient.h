#pragma once

#include "base/EventLoop.h"
#include "base/Socket.h"
#include "services/bench/screen/SurfaceScene.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>

namespace zm::bench::screen {

/**
 * One client of screen.sock: checks its messages and carries them out on the scene. A message against the
 * protocol is answered by `error` and ends the client, whose windows go away.
 */
class SurfaceClient {
public:
    enum class Role { Unknown, Application, Decoder };

    SurfaceClient(EventLoop& loop, UniqueFd fd, SurfaceScene& scene, int number);
    ~SurfaceClient();

    /** The client has to be destroyed; from the loop, never inside another call. */
    std::function<void()> onGone;
    /** Something on the screen may have changed. */
    std::function<void()> onChange;

    Role role() const { return m_role; }

private:
    struct Kind;
    void received(Message message);
    Status execute(const nlohmann::json& message, std::vector<UniqueFd>& fds);
    void refuse(const std::string& text);
    void end();

    Status hello(const nlohmann::json& message, std::vector<UniqueFd>& fds);
    Status window(const nlohmann::json& message, std::vector<UniqueFd>& fds);
    Status commit(const nlohmann::json& message, std::vector<UniqueFd>& fds);
    Status props(const nlohmann::json& message, std::vector<UniqueFd>& fds);
    Status close(const nlohmann::json& message, std::vector<UniqueFd>& fds);
    Status sync(const nlohmann::json& message, std::vector<UniqueFd>& fds);

    SurfaceScene& m_scene;
    int m_number;
    Role m_role = Role::Unknown;
    bool m_refused = false;
    Connection m_connection;
    EventLoop& m_loop;
    SourceHandle m_end;
};

} // namespace zm::bench::screen
