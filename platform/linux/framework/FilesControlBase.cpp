#include "zmcar/FilesControlBase.h"

#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/PPSFileImpl.h"
#include "platform/linux/framework/PpsMonitor.h"

namespace Oro::ZMCAR {

struct FilesControlBase::Impl {
    // Shared with a `settle` that may still be looking at it.
    std::shared_ptr<zm::PpsMonitor> monitor;
};

FilesControlBase::FilesControlBase() : m_pImpl(std::make_unique<Impl>()) {
    m_pImpl->monitor = std::make_shared<zm::PpsMonitor>(
        [this](int key, pps_attrib_t* attribute) { OnAttributeChange(key, attribute); });
}

FilesControlBase::~FilesControlBase() {
    m_pImpl->monitor->stop();
}

bool FilesControlBase::Init() {
    return true;
}

bool FilesControlBase::Start() {
    if (auto started = m_pImpl->monitor->start(); !started) {
        zm::reportFailure(started.error());
        return false;
    }
    zm::Application::instance().settler().add(m_pImpl->monitor);
    return true;
}

bool FilesControlBase::Stop() {
    return m_pImpl->monitor->stop();
}

bool FilesControlBase::Close() {
    return m_pImpl->monitor->stop();
}

bool FilesControlBase::AddFile(int key, PPSFileBase* file) {
    return file && m_pImpl->monitor->add(key, file->m_pImpl->slot);
}

bool FilesControlBase::RemoveFile(int key) {
    return m_pImpl->monitor->remove(key);
}

void FilesControlBase::OnAttributeChange(int, pps_attrib_t*) {}

} // namespace Oro::ZMCAR
