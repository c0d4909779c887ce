#include "platform/linux/framework/PpsSlot.h"

namespace zm {

bool PpsSlot::put(PpsFile file) {
    MutexLock lock(m_mutex);
    if (m_file) {
        return false;
    }
    m_file.emplace(std::move(file));
    return true;
}

bool PpsSlot::close() {
    MutexLock lock(m_mutex);
    if (!m_file) {
        return false;
    }
    m_file.reset();
    return true;
}

bool PpsSlot::isOpen() const {
    MutexLock lock(m_mutex);
    return m_file.has_value();
}

Status PpsSlot::write(std::string_view text) {
    MutexLock lock(m_mutex);
    return m_file ? m_file->write(text) : Status(Error{"not open"});
}

Result<PpsChanges> PpsSlot::read() {
    MutexLock lock(m_mutex);
    return m_file ? m_file->readChanges() : Result<PpsChanges>(PpsChanges());
}

int PpsSlot::pollFd() {
    MutexLock lock(m_mutex);
    return m_file ? m_file->pollFd() : -1;
}

} // namespace zm
