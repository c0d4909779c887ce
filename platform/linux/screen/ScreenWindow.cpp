#include "platform/linux/screen/ScreenWindow.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/mman.h>

#include <cstring>

namespace zm {

namespace {

constexpr int BytesPerPixel = 4;
// More areas than this cost more than the pixels that one area around all of them adds.
constexpr size_t MaxAreas = 16;

void addArea(std::vector<Rect>& areas, const Rect& area) {
    if (areas.size() < MaxAreas) {
        areas.push_back(area);
        return;
    }
    Rect all = area;
    for (const Rect& other : areas) {
        all = all.united(other);
    }
    areas.assign(1, all);
}

} // namespace

ScreenWindow::ScreenWindow(ScreenLink& link, int number, SurfaceSpec spec)
    : m_link(link), m_number(number), m_spec(std::move(spec)), m_stride(m_spec.width * BytesPerPixel),
      m_bufferBytes(static_cast<size_t>(m_stride) * static_cast<size_t>(m_spec.height)) {}

ScreenWindow::~ScreenWindow() {
    if (m_memory) {
        ::munmap(m_memory, m_bufferBytes * m_buffers.size());
    }
}

Result<UniqueFd> ScreenWindow::allocate() {
    UniqueFd fd(::memfd_create(m_spec.name.c_str(), MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const size_t bytes = m_bufferBytes * m_buffers.size();
    // Sealed, so that nobody can make the compositor read beyond the end.
    if (!fd.valid() || ::ftruncate(fd.get(), static_cast<off_t>(bytes)) != 0 ||
        ::fcntl(fd.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return systemError("memory of window " + m_spec.name);
    }
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd.get(), 0);
    if (memory == MAP_FAILED) {
        return systemError("mapping of window " + m_spec.name);
    }
    m_memory = static_cast<uint8_t*>(memory);
    return fd;
}

uint8_t* ScreenWindow::surface() {
    m_surface.resize(m_bufferBytes);
    return m_surface.data();
}

Status ScreenWindow::present(const std::vector<Rect>& damage) {
    const Rect whole{0, 0, m_spec.width, m_spec.height};
    for (const Rect& area : damage) {
        const Rect inside = area.intersected(whole);
        if (inside.empty()) {
            continue;
        }
        for (Buffer& buffer : m_buffers) {
            addArea(buffer.stale, inside);
        }
        addArea(m_waitingDamage, inside);
    }
    if (m_waitingDamage.empty()) {
        return ok();
    }
    if (auto received = m_link.receive(); !received) {
        return received;
    }
    const int index = freeIndex();
    m_waiting = index < 0;
    if (m_waiting) {
        return ok();
    }
    surface();
    for (const Rect& area : std::exchange(m_buffers[static_cast<size_t>(index)].stale, {})) {
        copyFromSurface(index, area);
    }
    return commit(index, std::exchange(m_waitingDamage, {}));
}

uint8_t* ScreenWindow::freeBuffer() {
    if (!m_link.receive()) {
        return nullptr;
    }
    m_taken = freeIndex();
    return m_taken < 0 ? nullptr : bufferPixels(m_taken);
}

Status ScreenWindow::commitBuffer() {
    if (m_taken < 0) {
        return Error{"window " + m_spec.name + ": no buffer was taken"};
    }
    return commit(std::exchange(m_taken, -1), {{0, 0, m_spec.width, m_spec.height}});
}

Status ScreenWindow::commit(int buffer, const std::vector<Rect>& damage) {
    Buffer& taken = m_buffers[static_cast<size_t>(buffer)];
    taken.held = true;
    taken.seq = ++m_seq;
    auto areas = nlohmann::json::array();
    for (const Rect& area : damage) {
        areas.push_back({area.x, area.y, area.w, area.h});
    }
    return m_link.send({{"t", "commit"},
                        {"window", m_number},
                        {"buffer", buffer},
                        {"seq", taken.seq},
                        {"damage", std::move(areas)}});
}

void ScreenWindow::released(int buffer, int64_t seq) {
    if (buffer < 0 || buffer >= static_cast<int>(m_buffers.size())) {
        return;
    }
    // A late release of an older frame must not free a buffer that was committed again.
    Buffer& back = m_buffers[static_cast<size_t>(buffer)];
    back.held = back.held && back.seq != seq;
}

int ScreenWindow::freeIndex() const {
    for (size_t i = 0; i < m_buffers.size(); ++i) {
        if (!m_buffers[i].held) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void ScreenWindow::copyFromSurface(int buffer, const Rect& area) {
    const auto bytes = static_cast<size_t>(area.w * BytesPerPixel);
    for (int row = area.y; row < area.y + area.h; ++row) {
        const ptrdiff_t offset = ptrdiff_t{row} * m_stride + ptrdiff_t{area.x} * BytesPerPixel;
        std::memcpy(bufferPixels(buffer) + offset, m_surface.data() + offset, bytes);
    }
}

uint8_t* ScreenWindow::bufferPixels(int buffer) const {
    return m_memory + static_cast<size_t>(buffer) * m_bufferBytes;
}

} // namespace zm
