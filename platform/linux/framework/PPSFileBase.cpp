#include "zmcar/PPSFileBase.h"

#include "base/Paths.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/PPSFileImpl.h"

namespace Oro::ZMCAR {

PPSFileBase::PPSFileBase(const fileTagInfo& info, IPPSOnChange* onChange)
    : m_pImpl(std::make_unique<Impl>(Impl{info, onChange})) {}

PPSFileBase::~PPSFileBase() {
    ClosePPS();
}

bool PPSFileBase::OpenPPS() {
    if (m_pImpl->slot->isOpen()) {
        return false;
    }
    const fileTagInfo& info = m_pImpl->info;
    auto file = zm::PpsFile::open(zm::ppsSocket(zm::runtimeDir()), info.path, info.flags, info.mode);
    if (!file) {
        zm::reportFailure(info.path + ": " + file.error());
        return false;
    }
    return m_pImpl->slot->put(std::move(*file));
}

bool PPSFileBase::ClosePPS() {
    return m_pImpl->slot->close();
}

bool PPSFileBase::WritePPS(const char* buffer, int length) {
    if (!buffer || length < 0) {
        return false;
    }
    if (auto written = m_pImpl->slot->write({buffer, static_cast<size_t>(length)}); !written) {
        zm::reportFailure(m_pImpl->info.path + ": " + written.error());
        return false;
    }
    return true;
}

const fileTagInfo& PPSFileBase::GetTagInfo() const {
    return m_pImpl->info;
}

IPPSOnChange* PPSFileBase::GetOnChange() const {
    return m_pImpl->onChange;
}

} // namespace Oro::ZMCAR
