#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"
#include "services/ctl/Client.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace zm::ctl {

/** A zmbench of its own, started for one try, in a runtime folder of its own. Ends with this object. */
class FreshBench {
public:
    /** `words`: the arguments behind "zmbench", without page and runtime folder. Returns when it is ready. */
    static Result<FreshBench> start(const std::vector<std::string>& words);

    FreshBench(FreshBench&& other) noexcept;
    FreshBench& operator=(FreshBench&&) = delete;
    ~FreshBench();

    const Client& client() const { return m_client; }

private:
    FreshBench(pid_t pid, std::string folder);

    pid_t m_pid;
    std::string m_folder;
    Client m_client;
    UniqueFd m_output; ///< read by nobody once it is ready
};

} // namespace zm::ctl
