#pragma once

#include "base/Result.h"

#include <seccomp.h>

#include <initializer_list>
#include <span>

namespace zm::jail {

/** The system calls that this process may make for the rest of its life; any other fails with EPERM. */
class CallFilter {
public:
    CallFilter();
    ~CallFilter();
    CallFilter(const CallFilter&) = delete;
    CallFilter& operator=(const CallFilter&) = delete;

    void allow(std::span<const char* const> calls);
    /** A rule of its own for a call: an action of libseccomp, for arguments that fulfil all conditions. */
    void add(uint32_t action, const char* call, std::initializer_list<scmp_arg_cmp> conditions = {});
    /** Holds from here on, for threads that have begun, too. An error names what the system refused. */
    Status load();

private:
    void keep(int result);

    scmp_filter_ctx m_context;
    int m_error = 0; ///< the first, negative
};

} // namespace zm::jail
