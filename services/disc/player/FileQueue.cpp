#include "services/disc/player/FileQueue.h"

#include <algorithm>
#include <random>
#include <utility>

namespace zm::disc::player {

namespace {

std::vector<int> foldersOf(const std::vector<model::Item>& items) {
    std::vector<int> folders;
    folders.reserve(items.size());
    std::transform(items.begin(), items.end(), std::back_inserter(folders),
                   [](const model::Item& item) { return item.folderId; });
    return folders;
}

} // namespace

FileQueue::FileQueue(std::shared_ptr<const model::Contents> contents, const ItemPlace& first,
                     const model::PlayModes& modes)
    : m_contents(std::move(contents)), m_kind(first.kind), m_browsed(first.kind) {
    for (const auto& row : model::kinds) {
        if (const auto& items = m_contents->of(row.kind); !items.empty()) {
            m_orders[model::kindIndex(row.kind)].emplace(foldersOf(items), std::random_device{}());
        }
    }
    setModes(modes);
    order().jumpTo(first.index);
}

model::TrackInfo FileQueue::trackInfo() const {
    model::TrackInfo info;
    info.inFolder = item().fileId;
    info.filesInFolder = m_contents->folder(item().folderId).counts[model::kindIndex(m_kind)].files;
    info.onDisc = static_cast<int>(order().current()) + 1;
    info.filesOnDisc = static_cast<int>(m_contents->of(m_kind).size());
    info.folder = item().folderId;
    return info;
}

void FileQueue::setModes(const model::PlayModes& modes) {
    for (auto& each : m_orders) {
        if (each) {
            each->setModes(static_cast<Repeat>(modes.repeat), static_cast<Shuffle>(modes.shuffle));
        }
    }
}

void FileQueue::choose(model::MediaKind kind) {
    m_kind = kind;
    m_browsed = kind;
}

void FileQueue::choose(const ItemPlace& place) {
    choose(place.kind);
    order().jumpTo(place.index);
}

std::optional<ItemPlace> FileQueue::named(int first, int second) const {
    return resolveTrack(*m_contents, {place(), m_browsed}, first, second);
}

std::optional<size_t> FileQueue::prepare() {
    PlayOrder after = order();
    const auto next = after.advance();
    if (next) {
        m_after = std::move(after);
    }
    return next;
}

bool FileQueue::forgetPrepared() {
    return std::exchange(m_after, std::nullopt).has_value();
}

void FileQueue::follow() {
    order() = std::move(*m_after);
    m_after.reset();
}

void FileQueue::itemPlayed() {
    m_failures = 0;
    m_brokenKinds = 0;
}

bool FileQueue::leaveKind() {
    m_failures = 0;
    m_brokenKinds |= model::numbersOf(m_kind).mixedBit;
    const int left = m_contents->mixedMask() & ~m_brokenKinds;
    const auto row =
        std::find_if(model::kinds.begin(), model::kinds.end(),
                     [left](const model::KindNumbers& each) { return (each.mixedBit & left) != 0; });
    if (row == model::kinds.end()) {
        m_brokenKinds = 0;
        return false;
    }
    choose(row->kind);
    return true;
}

} // namespace zm::disc::player
