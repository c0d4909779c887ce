#include "services/jail/CallFilter.h"

#include <cerrno>
#include <cstring>
#include <string>

namespace zm::jail {

CallFilter::CallFilter() : m_context(::seccomp_init(SCMP_ACT_ERRNO(EPERM))) {}

CallFilter::~CallFilter() {
    ::seccomp_release(m_context);
}

void CallFilter::keep(int result) {
    m_error = m_error != 0 ? m_error : result;
}

void CallFilter::allow(std::span<const char* const> calls) {
    for (const char* call : calls) {
        add(SCMP_ACT_ALLOW, call);
    }
}

void CallFilter::add(uint32_t action, const char* call, std::initializer_list<scmp_arg_cmp> conditions) {
    keep(::seccomp_rule_add_array(m_context, action, ::seccomp_syscall_resolve_name(call),
                                  static_cast<unsigned>(conditions.size()), conditions.begin()));
}

Status CallFilter::load() {
    keep(::seccomp_attr_set(m_context, SCMP_FLTATR_CTL_TSYNC, 1));
    keep(m_error != 0 ? 0 : ::seccomp_load(m_context));
    return m_error == 0 ? ok() : Error{std::string("system call filter: ") + ::strerror(-m_error)};
}

} // namespace zm::jail
