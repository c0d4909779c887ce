#pragma once

#include "services/disc/Drive.h"
#include "services/disc/mechanism/OpticalDrive.h"

namespace zm::disc {

/** Has the discs of a drive of this machine played: what it does by itself and what is asked of it. On the loop. */
class DriveLink {
public:
    /** `wanted` as for OpticalDrive. `drive` outlives this. */
    DriveLink(EventLoop& loop, Drive& drive, const std::string& wanted);
    ~DriveLink();
    void start() { m_optical.start(); }

private:
    void open(bool byHand);

    Drive& m_drive;
    std::shared_ptr<Mailbox> m_mailbox;
    mechanism::OpticalDrive m_optical;
};

} // namespace zm::disc
