#include "platform/linux/pps/PpsPath.h"

#include "platform/linux/pps/PpsLine.h"

#include <charconv>

namespace zm {

namespace {

constexpr std::string_view Root = "/pps/";
constexpr size_t LongestPath = 1024;
constexpr size_t LargestBacklogKilobytes = 16 * 1024;

bool setDelta(PpsPath& path, std::string_view value) {
    path.delta = true;
    return value.empty();
}
bool setWait(PpsPath& path, std::string_view value) {
    path.wait = true;
    return value.empty();
}
bool ignore(PpsPath&, std::string_view value) {
    return value.empty();
}
bool setBacklog(PpsPath& path, std::string_view value) {
    size_t kilobytes = 0;
    const auto parsed = std::from_chars(value.data(), value.data() + value.size(), kilobytes);
    path.backlog = kilobytes * 1024;
    return parsed.ec == std::errc() && parsed.ptr == value.data() + value.size() && kilobytes > 0 &&
           kilobytes <= LargestBacklogKilobytes;
}

struct Option {
    std::string_view name;
    bool (*apply)(PpsPath&, std::string_view value);
};
constexpr Option Options[] = {
    {"delta", setDelta}, {"wait", setWait}, {"nopersist", ignore}, {"backlog", setBacklog}};

Status applyOption(PpsPath& path, std::string_view text) {
    const size_t equals = text.find('=');
    const auto value = equals == text.npos ? std::string_view() : text.substr(equals + 1);
    for (const auto& option : Options) {
        if (option.name == text.substr(0, equals)) {
            return option.apply(path, value) ? ok()
                                             : Error{"bad option \"" + std::string(text) + "\" (EINVAL)"};
        }
    }
    return Error{"unknown option \"" + std::string(text) + "\" (EINVAL)"};
}

} // namespace

Result<PpsPath> parsePpsPath(std::string_view path) {
    const std::string whole(path.substr(0, LongestPath));
    PpsPath result;
    // The options are cut off first: they are not part of the name.
    const size_t question = path.find('?');
    for (size_t at = question; at != path.npos;) {
        const size_t end = path.find(',', at + 1);
        if (auto applied = applyOption(result, path.substr(at + 1, end == path.npos ? end : end - at - 1));
            !applied) {
            return Error{whole + ": " + applied.error()};
        }
        at = end;
    }
    path = path.substr(0, question);
    if (!path.starts_with(Root) || path.size() > LongestPath) {
        return Error{whole + ": not a path below /pps (ENOENT)"};
    }
    path.remove_prefix(Root.size());
    result.name = path;
    for (size_t begin = 0; begin <= path.size();) {
        const size_t end = std::min(path.find('/', begin), path.size());
        const auto part = path.substr(begin, end - begin);
        if (!isObjectName(part) || part == "." || part == "..") {
            return Error{whole + ": bad name (EINVAL)"};
        }
        result.leaf = part;
        result.folder = path.substr(0, begin == 0 ? 0 : begin - 1);
        begin = end + 1;
    }
    if (result.leaf == ".notify") {
        return Error{whole + ": notification groups are not supported (EINVAL)"};
    }
    return result;
}

} // namespace zm
