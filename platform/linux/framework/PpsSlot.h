#pragma once

#include "base/Mutex.h"
#include "base/Result.h"
#include "platform/linux/pps/PpsFile.h"

#include <optional>
#include <string>

namespace zm {

/** Holds one PPS object open for the threads that write it and the one that reads it. Any thread. */
class PpsSlot {
public:
    /** False if it was open already. */
    bool put(PpsFile file);
    /** False if it was not open. */
    bool close();
    bool isOpen() const;

    Status write(std::string_view text);
    /** What is new; without changes also while it is closed. */
    Result<PpsChanges> read();
    /** For poll; -1 while there is nothing to wait on. */
    int pollFd();

private:
    mutable Mutex m_mutex;
    std::optional<PpsFile> m_file ZM_GUARDED_BY(m_mutex);
};

} // namespace zm
