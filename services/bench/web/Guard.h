#pragma once

#include <string>

namespace zm::bench::web {

/**
 * Who may talk to the page's server: a caller that knows the token (in the printed URL, from then on as a
 * cookie), that names a loopback host (so that a foreign name which resolves to this machine is refused; the port
 * may be another one, as a tunnel has) and that no foreign page sent.
 */
class Guard {
public:
    /**
     * Takes the token of `tokenFile`, or makes a random one of 128 bits and keeps it there (mode 0600): a
     * page finds back to a bench that was started again on the same runtime folder.
     */
    explicit Guard(const std::string& tokenFile);

    const std::string& token() const { return m_token; }
    /** Value for the Set-Cookie header. Browsers do not tell cookies apart by port, and two benches behind tunnels
     * may have the same one: each token has a name of its own. */
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
    std::string m_cookieName;
};

} // namespace zm::bench::web
