#include "services/bench/web/Guard.h"

#include "base/UniqueFd.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace zm::bench::web {

namespace {

std::string randomToken() {
    std::array<unsigned char, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("no random numbers for the page's token");
    }
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

constexpr size_t TokenLength = 32;

/** The token that is kept in `file`; empty if there is none. */
std::string keptToken(const std::string& file) {
    const UniqueFd fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    std::string text(TokenLength, '\0');
    const bool whole =
        fd.valid() && ::read(fd.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return whole && text.find_first_not_of("0123456789abcdef") == std::string::npos ? text : std::string();
}

std::string makeToken(const std::string& file) {
    if (auto kept = keptToken(file); !kept.empty()) {
        return kept;
    }
    auto token = randomToken();
    ::unlink(file.c_str());
    // Without a file the token is good for this run only.
    const UniqueFd fd(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (fd.valid() && ::write(fd.get(), token.data(), token.size()) != static_cast<ssize_t>(token.size())) {
        ::unlink(file.c_str());
    }
    return token;
}

// A name of this machine's loopback, with any port or none.
bool isLoopback(const std::string& host) {
    for (const std::string_view name : {"127.0.0.1", "localhost", "[::1]"}) {
        if (host == name) {
            return true;
        }
        if (host.starts_with(name) && host[name.size()] == ':') {
            const std::string port = host.substr(name.size() + 1);
            return !port.empty() && port.size() <= 5 &&
                   port.find_first_not_of("0123456789") == std::string::npos;
        }
    }
    return false;
}

// Tells the cookies of several benches apart and gives nothing of the token away.
std::string cookieName(const std::string& token) {
    constexpr size_t EnoughDigits = 16;
    gchar* digest = g_compute_checksum_for_string(G_CHECKSUM_SHA256, token.c_str(), -1);
    std::string name = "zmbench-";
    name.append(digest, EnoughDigits);
    g_free(digest);
    return name;
}

} // namespace

Guard::Guard(const std::string& tokenFile)
    : m_token(makeToken(tokenFile)), m_cookieName(cookieName(m_token)) {}

std::string Guard::cookieHeader() const {
    // Lax: also a browser that was led here by a file or by another page finds the page. No GET changes anything.
    return m_cookieName + "=" + m_token + "; HttpOnly; SameSite=Lax; Path=/";
}

bool Guard::isToken(const std::string& text) const {
    if (text.size() != m_token.size()) {
        return false;
    }
    unsigned char difference = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        difference |= static_cast<unsigned char>(text[i] ^ m_token[i]);
    }
    return difference == 0;
}

bool Guard::knownPlace(const Caller& caller) const {
    return isLoopback(caller.host) && (caller.origin.empty() || caller.origin == "http://" + caller.host);
}

bool Guard::knownCaller(const Caller& caller) const {
    constexpr std::string_view bearer = "Bearer ";
    if (caller.authorization.starts_with(bearer) && isToken(caller.authorization.substr(bearer.size()))) {
        return true;
    }
    const std::string key = m_cookieName + "=";
    for (size_t from = 0; from < caller.cookie.size();) {
        size_t end = caller.cookie.find(';', from);
        end = end == std::string::npos ? caller.cookie.size() : end;
        const size_t start = caller.cookie.find_first_not_of(' ', from);
        if (start < end && caller.cookie.compare(start, key.size(), key) == 0 &&
            isToken(caller.cookie.substr(start + key.size(), end - start - key.size()))) {
            return true;
        }
        from = end + 1;
    }
    return false;
}

} // namespace zm::bench::web
