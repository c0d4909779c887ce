#include "services/disc/mechanism/OpticalDrive.h"

#include "base/Threads.h"
#include "base/UniqueFd.h"
#include "services/disc/log/Log.h"

#define G_UDEV_API_IS_SUBJECT_TO_CHANGE
#include <gudev/gudev.h>

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>

#include <cstring>
#include <utility>

namespace zm::disc::mechanism {

namespace {

constexpr const char* Subsystem = "block";
// A reader that was told to end is gone by then.
constexpr int EjectAttempts = 15;
constexpr std::chrono::milliseconds EjectInterval{200};
// What is no answer of the kernel.
constexpr int CannotBeAsked = -1;

UniqueFd openDrive(const std::string& path) {
    // Without waiting for a disc, and without locking the tray.
    return UniqueFd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

int statusOf(const std::string& path) {
    const UniqueFd drive = openDrive(path);
    return drive.valid() ? ::ioctl(drive.get(), CDROM_DRIVE_STATUS, CDSL_CURRENT) : CannotBeAsked;
}

Status ejectFrom(const std::string& path) {
    const UniqueFd drive = openDrive(path);
    if (!drive.valid()) {
        return systemError(path);
    }
    // A drive without a lock says so; whether the disc comes out is what counts.
    ::ioctl(drive.get(), CDROM_LOCKDOOR, 0);
    return ::ioctl(drive.get(), CDROMEJECT, 0) == 0 ? ok()
                                                    : systemError(path + ": the disc does not come out");
}

bool says(GUdevDevice* device, const char* property) {
    return g_udev_device_get_property_as_boolean(device, property);
}

std::string pathOf(GUdevDevice* device) {
    const char* path = g_udev_device_get_device_file(device);
    return path ? path : "";
}

} // namespace

OpticalDrive::OpticalDrive(EventLoop& loop, std::string wanted, DriveEvents events)
    : m_loop(loop), m_wanted(std::move(wanted)), m_events(std::move(events)),
      m_mailbox(std::make_shared<Mailbox>(loop)) {}

OpticalDrive::~OpticalDrive() {
    m_mailbox->close();
    if (m_client) {
        g_signal_handlers_disconnect_by_data(m_client, this);
        g_object_unref(m_client);
    }
}

void OpticalDrive::start() {
    const char* const subsystems[] = {Subsystem, nullptr};
    g_main_context_push_thread_default(m_loop.context());
    m_client = g_udev_client_new(subsystems);
    g_main_context_pop_thread_default(m_loop.context());
    auto onEvent = +[](GUdevClient*, const char* action, GUdevDevice* device, gpointer self) {
        static_cast<OpticalDrive*>(self)->changed(action, device);
    };
    g_signal_connect(m_client, "uevent", G_CALLBACK(onEvent), this);
    GList* devices = g_udev_client_query_by_subsystem(m_client, Subsystem);
    for (GList* each = devices; each; each = each->next) {
        auto* device = G_UDEV_DEVICE(each->data);
        if (m_path.empty() && isWanted(device)) {
            take(pathOf(device));
        }
    }
    g_list_free_full(devices, g_object_unref);
    if (m_path.empty()) {
        logWarning("there is no disc drive%s\n", m_wanted == "auto" ? "" : (" " + m_wanted).c_str());
    }
}

bool OpticalDrive::isWanted(GUdevDevice* device) const {
    const std::string path = pathOf(device);
    return m_wanted == "auto" ? says(device, "ID_CDROM") : !path.empty() && path == m_wanted;
}

void OpticalDrive::take(const std::string& path) {
    logInfo("disc drive %s\n", path.c_str());
    m_path = path;
    m_events.onThere();
    ask();
}

void OpticalDrive::changed(const std::string& action, GUdevDevice* device) {
    if (m_path.empty()) {
        if (action != "remove" && isWanted(device)) {
            m_wasEmpty = true; // what is in it came with it
            take(pathOf(device));
        }
        return;
    }
    if (pathOf(device) != m_path) {
        return;
    }
    if (action == "remove") {
        logWarning("the disc drive %s is gone\n", m_path.c_str());
        m_path.clear();
        m_inside = Inside::Unknown;
        m_again.reset();
        m_events.onGone();
    } else if (says(device, "DISK_EJECT_REQUEST")) {
        m_events.onButton();
    } else {
        ask();
    }
}

// The drive may take its time for an answer, too.
void OpticalDrive::ask() {
    m_again.reset();
    const auto begun = runInBackground([this, path = m_path, mailbox = m_mailbox] {
        const int status = statusOf(path);
        mailbox->post([this, path, status] {
            if (path == m_path) {
                answered(status);
            }
        });
    });
    if (!begun) {
        logWarning("%s\n", begun.error().c_str());
        m_again = afterDelay(m_loop, AskInterval, [this] { ask(); });
    }
}

void OpticalDrive::answered(int status) {
    const auto now = std::chrono::steady_clock::now();
    const Inside before = m_inside;
    if (status == CDS_DRIVE_NOT_READY) {
        m_inside = Inside::SpinningUp;
        if (before != Inside::SpinningUp) {
            m_spinsSince = now;
            m_events.onSpinningUp();
        }
        if (now - m_spinsSince < Patience) {
            m_again = afterDelay(m_loop, AskInterval, [this] { ask(); });
        } else {
            m_events.onBadDisc("the drive does not get ready");
        }
    } else if (status == CDS_DISC_OK) {
        m_inside = Inside::Disc;
        if (before != Inside::Disc) {
            m_events.onDisc(std::exchange(m_wasEmpty, false));
        }
    } else {
        m_inside = Inside::Nothing;
        m_wasEmpty = true;
        if (before != Inside::Nothing && before != Inside::Unknown) {
            m_events.onEmpty();
        }
    }
}

void OpticalDrive::eject(std::function<void(Status)> done) {
    tryEject(std::move(done), EjectAttempts);
}

void OpticalDrive::tryEject(std::function<void(Status)> done, int attempts) {
    const auto again = [this, attempts](std::function<void(Status)> next) {
        m_ejecting = afterDelay(m_loop, EjectInterval,
                                [this, attempts, next = std::move(next)] { tryEject(next, attempts - 1); });
    };
    const auto begun = runInBackground([path = m_path, mailbox = m_mailbox, done, again, attempts]() mutable {
        auto result = ejectFrom(path);
        mailbox->post([result = std::move(result), done, again, attempts] {
            if (result || attempts <= 1) {
                done(result);
            } else {
                again(done);
            }
        });
    });
    if (!begun) {
        done(begun);
    }
}

} // namespace zm::disc::mechanism
