#include "platform/linux/framework/PpsSlot.h"

namespace zm {

bool PpsSlot::put(PpsFile file) {
    std::lock_guard lock(m_mutex);
    if (m_file) {
        return false;
    }
    m_file.emplace(std::move(file));
    return true;
}

bool PpsSlot::close() {
    std::lock_guard lock(m_mutex);
    if (!m_file) {
        return false;
    }
    m_file.reset();
    return true;
}

bool PpsSlot::isOpen() const {
    std::lock_guard lock(m_mutex);
    return m_file.has_value();
}

Status PpsSlot::write(std::string_view text) {
    std::lock_guard lock(m_mutex);
    return m_file ? m_file->write(text) : Status(Error{"not open"});
}

Result<PpsChanges> PpsSlot::read() {
    std::lock_guard lock(m_mutex);
    return m_file ? m_file->readChanges() : Result<PpsChanges>(PpsChanges());
}

int PpsSlot::pollFd() {
    std::lock_guard lock(m_mutex);
    return m_file ? m_file->pollFd() : -1;
}

} // namespace zm
