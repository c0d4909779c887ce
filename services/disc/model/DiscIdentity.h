#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zm::disc::model {

/**
 * Tells discs apart by what is on them: the same files or tracks give the same text, in whatever order they
 * are added.
 */
class DiscIdentity {
public:
    /** A file of a data disc: its path, its size and some of its texts. */
    void addFile(const std::string& path, uint64_t size, std::string_view title, std::string_view album);
    /** The n-th track of a CD. */
    void addTrack(size_t number, uint64_t sectors);
    /** A digest as hexadecimal digits; empty when nothing was added. */
    std::string text() const;

private:
    std::vector<std::string> m_parts;
};

} // namespace zm::disc::model
