#pragma once

#include <string>

namespace zm {

/**
 * Who may talk to the page's server: a caller that knows the token (in the printed URL, from then on as a
 * cookie), that names a loopback host (so that a foreign name which resolves to this machine is refused; the port
 * may be another one, as a tunnel has) and that no foreign page sent.
 */
class WebGuard {
public:
    /**
     * Takes the token of `tokenFile`, or makes a random one of 128 bits and keeps it there (mode 0600): a
     * page finds back to a bench that was started again on the same runtime folder.
     */
    explicit WebGuard(const std::string& tokenFile);

    /** The port that host names and the cookie carry. */
    void setPort(int port) { m_port = port; }
    const std::string& token() const { return m_token; }
    /** Value for the Set-Cookie header. Cookies are not told apart by port, so the port is part of the name.
     */
    std::string cookieHeader() const;

    /** Empty texts stand for headers that were not sent. */
    struct Caller {
        std::string host;
        std::string origin;
        std::string cookie;
        std::string authorization;
    };
    /** Whether the host is ours and the origin, if any, is too. */
    bool knownPlace(const Caller& caller) const;
    /** Whether the cookie or the "Authorization: Bearer" header carries the token. */
    bool knownCaller(const Caller& caller) const;
    /** Compares in constant time. */
    bool isToken(const std::string& text) const;

private:
    std::string m_token;
    int m_port = 0;
};

} // namespace zm
