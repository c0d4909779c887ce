#pragma once

#include <memory>

namespace Oro::ZMCAR {

/**
 * One worker thread that runs a task each time it is asked to. The thread calls a derived class, which
 * therefore has to Close it before its own members go away.
 */
class ThreadControl {
public:
    ThreadControl();
    virtual ~ThreadControl();
    ThreadControl(const ThreadControl&) = delete;
    ThreadControl& operator=(const ThreadControl&) = delete;

    /** Starts the thread; false if it cannot be started or runs already. */
    bool Init();
    /** Asks for one run of the task. A request that arrives while a task runs
     * starts another run afterwards. */
    void DoIt();
    /** Ends the thread after the task that runs and waits for it. Further calls do nothing. */
    void Close();

protected:
    /** The task; on the worker thread. */
    virtual void DealWithTask() = 0;
    /** Called on the worker thread before the first task; masks signals. */
    virtual void InitMaskThread();
    /** Called on the worker thread when it ends. */
    virtual void PrepareToExit();

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

} // namespace Oro::ZMCAR
