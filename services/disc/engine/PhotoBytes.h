#pragma once

#include "base/ByteNumbers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zm::disc::engine {

/** Numbers at places of a photo's file; nothing behind its end. */
class PhotoBytes {
public:
    explicit PhotoBytes(std::string_view file) : m_file(file) {}

    std::optional<uint64_t> big(size_t at, size_t count) const { return number(at, count, true); }
    std::optional<uint64_t> little(size_t at, size_t count) const { return number(at, count, false); }
    bool startsWith(std::string_view text) const { return m_file.starts_with(text); }
    size_t size() const { return m_file.size(); }
    /** The first place from `at` on that holds `byte`; the file's size if none does. */
    size_t find(char byte, size_t at) const { return std::min(m_file.find(byte, at), m_file.size()); }

private:
    std::optional<uint64_t> number(size_t at, size_t count, bool highFirst) const {
        if (at > m_file.size() || m_file.size() - at < count) {
            return std::nullopt;
        }
        return highFirst ? bigEndian(m_file, at, count) : littleEndian(m_file, at, count);
    }
    std::string_view m_file;
};

} // namespace zm::disc::engine
