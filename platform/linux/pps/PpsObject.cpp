#include "platform/linux/pps/PpsObject.h"

#include "platform/linux/pps/PpsItems.h"
#include "platform/linux/pps/PpsLine.h"
#include "platform/linux/pps/PpsPath.h"
#include "sys/pps.h"

#include <vector>

namespace zm {

namespace {

constexpr std::string_view Nonpersistent = "[n]";

Error lineError(size_t number, std::string_view line, const char* what) {
    constexpr size_t Shown = 80;
    return Error{"line " + std::to_string(number) + " \"" + std::string(line.substr(0, Shown)) +
                 "\": " + what + " (EINVAL)"};
}

// Why a well-formed line may not be written; null if it may.
const char* refusal(const PpsLine& line) {
    const bool items = line.optionMask & PPS_ITEM;
    switch (line.kind) {
    case PpsLineKind::Object:
        return items ? "an object is not a set of items" : nullptr;
    case PpsLineKind::Attribute:
        return items && !areItems(line.value) ? "each item of a set ends with a comma, and none is empty"
                                              : nullptr;
    case PpsLineKind::AttributeDeleted:
        return line.optionMask ? "a deletion has no qualifier" : nullptr;
    default:
        return "not a line that may be written";
    }
}

Result<std::vector<PpsLine>> parseLines(std::string_view text) {
    std::vector<PpsLine> lines;
    for (size_t number = 1; !text.empty(); ++number) {
        const size_t end = std::min(text.find('\n'), text.size());
        const auto line = parsePpsLine(text.substr(0, end));
        const char* problem = line ? refusal(*line) : "not an attribute, deletion or object line";
        if (!problem && line->kind == PpsLineKind::Object && number > 1) {
            problem = "the object line must be the first";
        }
        if (problem) {
            return lineError(number, text.substr(0, end), problem);
        }
        lines.push_back(*line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

} // namespace

std::string PpsObject::text() const {
    std::string result;
    result.reserve(size());
    result.append(m_qualifier).append("@").append(m_leaf).append("\n");
    for (const auto& attribute : m_attributes) {
        result += attribute.line();
    }
    return result;
}

std::string PpsObject::Attribute::line() const {
    std::string line;
    line.reserve(Nonpersistent.size() + name.size() + encoding.size() + value.size() + 3);
    line.append(nonpersistent ? Nonpersistent : "")
        .append(name)
        .append(":")
        .append(encoding)
        .append(":")
        .append(value)
        .append("\n");
    return line;
}

Result<std::string> PpsObject::merge(std::string_view text) {
    const Error tooLarge{m_leaf + ": more than " + std::to_string(PpsObjectBytes) + " bytes (ENOSPC)"};
    if (text.size() > PpsObjectBytes) {
        return tooLarge;
    }
    const auto lines = parseLines(text);
    if (!lines) {
        return Error{m_leaf + ": " + lines.error()};
    }
    // Each line adds its text and at most a line feed and a qualifier. Only if that bound is beyond the limit
    // does it pay to try the change on a copy first.
    if (size() + text.size() + lines->size() * (Nonpersistent.size() + 1) > PpsObjectBytes) {
        PpsObject trial(m_leaf);
        const std::string present = this->text();
        const auto presentLines = parseLines(present);
        std::string ignored;
        for (const auto* part : {&*presentLines, &*lines}) {
            for (const auto& line : *part) {
                trial.set(line, ignored);
            }
        }
        if (trial.size() > PpsObjectBytes) {
            return tooLarge;
        }
    }
    std::string change;
    for (const auto& line : *lines) {
        set(line, change);
    }
    return change.empty() ? change : "@" + m_leaf + "\n" + change;
}

void PpsObject::set(const PpsLine& line, std::string& change) {
    if (line.kind == PpsLineKind::Object) {
        if (line.optionMask & PPS_NOPERSIST) {
            m_qualifier = line.options & PPS_NOPERSIST ? Nonpersistent : "";
        }
        return;
    }
    if (line.kind == PpsLineKind::AttributeDeleted) {
        erase(line.name, change);
        return;
    }
    const bool items = line.optionMask & PPS_ITEM;
    if (items && !(line.options & PPS_ITEM) && !m_index.contains(line.name)) {
        return;
    }
    Attribute& written = attribute(line.name);
    m_size -= written.line().size();
    if (!items) {
        written.value = line.value;
    } else if (line.options & PPS_ITEM) {
        written.value = itemsWith(written.value, line.value);
    } else {
        written.value = itemsWithout(written.value, line.value);
    }
    written.encoding = line.encoding;
    if (line.optionMask & PPS_NOPERSIST) {
        written.nonpersistent = line.options & PPS_NOPERSIST;
    }
    const std::string text = written.line();
    m_size += text.size();
    change += text;
}

PpsObject::Attribute& PpsObject::attribute(std::string_view name) {
    auto found = m_index.find(name);
    if (found == m_index.end()) {
        m_attributes.push_back({std::string(name), "", "", false});
        found = m_index.emplace(name, std::prev(m_attributes.end())).first;
        m_size += m_attributes.back().line().size();
    }
    return *found->second;
}

void PpsObject::erase(std::string_view name, std::string& change) {
    const auto found = m_index.find(name);
    if (found == m_index.end()) {
        return;
    }
    m_size -= found->second->line().size();
    m_attributes.erase(found->second);
    m_index.erase(found);
    change.append("-").append(name).append("\n");
}

void PpsObject::clear() {
    m_attributes.clear();
    m_index.clear();
    m_size = 0;
}

} // namespace zm
