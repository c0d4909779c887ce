#pragma once

#include "sys/pps.h"

#include <string>

namespace zm::test {

/** One changed attribute, as the monitor thread hands it over. */
class PpsAttribute {
public:
    PpsAttribute(std::string name, std::string encoding, std::string value)
        : m_name(std::move(name)), m_encoding(std::move(encoding)), m_value(std::move(value)) {
        m_attribute.attr_name = m_name.data();
        m_attribute.encoding = m_encoding.data();
        m_attribute.value = m_value.data();
    }
    PpsAttribute(const PpsAttribute&) = delete;
    PpsAttribute& operator=(const PpsAttribute&) = delete;

    pps_attrib_t* get() { return &m_attribute; }

private:
    std::string m_name;
    std::string m_encoding;
    std::string m_value;
    pps_attrib_t m_attribute{};
};

/** Has a module parse one attribute; its result. */
template <class Module>
int parse(Module& module, const std::string& name, const std::string& encoding, const std::string& value) {
    return module.ParsePPSAttr(PpsAttribute(name, encoding, value).get());
}

/** The same without a name. */
template <class Module>
int parseNameless(Module& module) {
    pps_attrib_t attribute{};
    char value[] = "1";
    attribute.value = value;
    attribute.encoding = value + 1;
    return module.ParsePPSAttr(&attribute);
}

} // namespace zm::test
