#include "services/disc/DriveLink.h"

#include "base/Threads.h"
#include "services/disc/medium/OpenMedium.h"

namespace zm::disc {

DriveLink::DriveLink(EventLoop& loop, Drive& drive, const std::string& wanted)
    : m_drive(drive), m_mailbox(std::make_shared<Mailbox>(loop)),
      m_optical(loop, wanted,
                {[this] { m_drive.awaitDisc(m_optical.path()); }, [this](bool byHand) { open(byHand); },
                 [this](const std::string& reason) { m_drive.insertFailed(m_optical.path(), reason); },
                 [this] { m_drive.discIsOut(); }, [this] { m_drive.eject(); },
                 [this] { m_drive.loseDrive(); }, [this] { m_drive.driveIsThere(); }}) {
    m_drive.setMechanism({[this] { return m_optical.path(); },
                          [this](std::function<void(Status)> done) { m_optical.eject(std::move(done)); },
                          [this] { open(false); }});
}

DriveLink::~DriveLink() {
    m_drive.setMechanism({});
    m_mailbox->close();
}

// The disc's first sectors may take the drive as long as it likes.
void DriveLink::open(bool byHand) {
    const std::string path = m_optical.path();
    m_drive.awaitDisc(path);
    const auto begun = runInBackground([this, path, byHand, mailbox = m_mailbox] {
        auto medium = medium::openMedium(path);
        mailbox->post([this, path, byHand, medium = std::move(medium)] {
            if (medium) {
                m_drive.insertOpened(path, *medium, byHand);
            } else {
                m_drive.insertFailed(path, medium.error());
            }
        });
    });
    if (!begun) {
        m_drive.insertFailed(path, begun.error());
    }
}

} // namespace zm::disc
