#pragma once

#include "zmcar/DateTime.h"
#include "zmcar/FilesControlBase.h"
#include "zmcar/TimerBase.h"
#include "zmcar/ViewController.h"

#include <string>

namespace Oro::ZMCAR {

/** What every application asks of the head unit: launcher, vehicle, clock, beep. */
class PublicController : public FilesControlBase, public ViewController, public TimerBase {
public:
    explicit PublicController(IViewMessage* view);
    ~PublicController() override;

    bool Init() override;
    bool Close() override;

    void SetAppName(const std::string& name);
    /** Starts delivery of messages to the main view: 1 launcher status and application data, 2 device status,
     * 4 clock. */
    bool StartMonitor(int monitor);

    /** Asks the launcher to bring application `app` to the front. Any thread; false if nobody listens. */
    static bool QueryLauncher(const std::string& app, const std::string& data);
    static bool QueryLauncher(const std::string& app, int launchType, const std::string& data);
    /** Asks the launcher to close application `app`. */
    static bool QueryCloseApp(const std::string& app, const std::string& data);
    /** The application data text announced under `index`; empty if there is none. */
    std::string GetAppdata(int index);
    /** Key click. */
    void ToBeep();
    /** Reads device status `id`; false if it cannot be read, `value` then keeps what it had. */
    bool GetDeviceStatus(int id, int& value);
    bool GetCurrentDateTime(T_ZMDatetime& dateTime);
};

} // namespace Oro::ZMCAR
