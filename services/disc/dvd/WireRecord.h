#pragma once

#include "services/dvd/Wire.h"

#include <cstring>
#include <optional>
#include <span>
#include <vector>

namespace zm::disc::dvd {

/** The record at the beginning of a packet; nothing if the packet is too short for it. */
template <class Record>
std::optional<Record> recordIn(const std::vector<uint8_t>& packet) {
    if (packet.size() < sizeof(Record)) {
        return std::nullopt;
    }
    Record record;
    std::memcpy(static_cast<void*>(&record), packet.data(), sizeof record);
    return record;
}

/** What stands in a packet behind its record. */
template <class Record>
std::span<const uint8_t> behind(const std::vector<uint8_t>& packet) {
    return std::span(packet).subspan(sizeof(Record));
}

} // namespace zm::disc::dvd
