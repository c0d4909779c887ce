#pragma once

#include "sys/pps.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

/** One attribute of a monitored object: its name and what decodes its value into the state store (may be
 * null). */
template <class Module>
struct PPSSubscribeRow {
    const char* name;
    void (Module::*subscribe)(char* encoding, char* value);
};

/** The attribute's texts; an attribute that was deleted has empty ones. */
inline char* PPSText(char* text) {
    static char s_szEmpty[1] = {};
    return text ? text : s_szEmpty;
}

/** Hands the attribute to the row of its name; the row's index, or -1 when the name is missing or unknown. */
template <class Module, size_t N>
int PPSDispatch(Module& module, const PPSSubscribeRow<Module> (&rows)[N], pps_attrib_t* attr) {
    if (!attr->attr_name) {
        return -1;
    }
    for (size_t i = 0; i < N; ++i) {
        if (std::strcmp(attr->attr_name, rows[i].name) == 0) {
            // A copy: called as rows[i].subscribe, GCC 12 with its sanitizers calls that of the first row.
            const auto subscribe = rows[i].subscribe;
            if (subscribe) {
                (module.*subscribe)(PPSText(attr->encoding), PPSText(attr->value));
            }
            return static_cast<int>(i);
        }
    }
    return -1;
}

/** The decimal number that the text begins with, 0 if none. Defined for every text, unlike atoi. */
inline int PPSNumber(const char* value) {
    return static_cast<int>(std::strtol(value, nullptr, 10));
}
inline unsigned PPSUnsigned(const char* value) {
    return static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}
