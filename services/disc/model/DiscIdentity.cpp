#include "services/disc/model/DiscIdentity.h"

#include <glib.h>

#include <algorithm>
#include <memory>

namespace zm::disc::model {

namespace {

// Stands between the fields, and in none of them.
constexpr char Separator = '\0';

} // namespace

void DiscIdentity::addFile(const std::string& path, uint64_t size, std::string_view title,
                           std::string_view album) {
    std::string part = path;
    const std::string bytes = std::to_string(size);
    for (const std::string_view field : {std::string_view(bytes), title, album}) {
        part.append(1, Separator).append(field);
    }
    m_parts.push_back(std::move(part));
}

void DiscIdentity::addTrack(size_t number, uint64_t sectors) {
    m_parts.push_back("track " + std::to_string(number) + " " + std::to_string(sectors));
}

std::string DiscIdentity::text() const {
    if (m_parts.empty()) {
        return {};
    }
    auto sorted = m_parts;
    std::sort(sorted.begin(), sorted.end());
    const std::unique_ptr<GChecksum, void (*)(GChecksum*)> sum(g_checksum_new(G_CHECKSUM_SHA256),
                                                               g_checksum_free);
    for (const auto& part : sorted) {
        g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(part.c_str()),
                          static_cast<gssize>(part.size() + 1));
    }
    return g_checksum_get_string(sum.get());
}

} // namespace zm::disc::model
