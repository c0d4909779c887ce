#include "platform/linux/framework/BoundObjects.h"

#include "base/JsonMessage.h"
#include "base/Threads.h"
#include "platform/linux/pps/PpsFile.h"
#include "ppsparse.h"

#include <nlohmann/json.hpp>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <optional>
#include <vector>

namespace zm {

namespace {

// How soon an object is looked for again that is not there, or whose service is away.
constexpr int LookMs = 500;
constexpr int ReadOnly = 0;

/** A text, or a number where any word will do; empty for all else. */
std::string textOf(const nlohmann::json& member, BoundAs as) {
    const bool number = as == BoundAs::Word && member.is_number_integer();
    return member.is_string() ? member.get<std::string>() : number ? member.dump() : std::string();
}

} // namespace

Status BoundObjects::start(const std::string& ppsSocket, std::map<Binding, BoundAs> bindings,
                           OnValue onValue) {
    if (bindings.empty() || m_thread.joinable()) {
        return ok();
    }
    m_bindings = std::move(bindings);
    m_onValue = std::move(onValue);
    m_over = false;
    m_wake = UniqueFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!m_wake.valid()) {
        return systemError("event descriptor");
    }
    auto thread = startThread("thread for published pictures", [this, ppsSocket] { run(ppsSocket); });
    if (!thread) {
        return thread.failure();
    }
    m_thread = std::move(*thread);
    return ok();
}

void BoundObjects::stop() {
    if (m_thread.joinable()) {
        m_over = true;
        const uint64_t one = 1;
        // Fails only when the descriptor is readable already.
        [[maybe_unused]] const auto written = ::write(m_wake.get(), &one, sizeof one);
        m_thread.join();
    }
}

void BoundObjects::run(const std::string& ppsSocket) const {
    std::map<std::string, std::optional<PpsFile>> files;
    for (const auto& [binding, as] : m_bindings) {
        files[binding.object];
    }
    while (!m_over) {
        std::vector<pollfd> waits{{m_wake.get(), POLLIN, 0}};
        bool all = true;
        for (auto& [object, file] : files) {
            if (!file) {
                auto opened = PpsFile::open(ppsSocket, "/pps/" + object + "?delta", ReadOnly, 0);
                file = opened ? std::optional(std::move(*opened)) : std::nullopt;
            }
            if (auto text = file ? file->read() : Result<std::string>(Error{"not there"})) {
                report(object, *text);
            }
            const int descriptor = file ? file->pollFd() : -1;
            waits.push_back({descriptor, POLLIN, 0});
            all = all && descriptor >= 0;
        }
        ::poll(waits.data(), waits.size(), all ? -1 : LookMs);
    }
}

void BoundObjects::report(const std::string& object, std::string text) const {
    pps_attrib_t attribute{};
    attribute.obj_index = attribute.attr_index = -1;
    char* rest = text.data();
    for (pps_status_t status; (status = ppsparse(&rest, nullptr, nullptr, &attribute, 0)) != PPS_END;) {
        if (status != PPS_ATTRIBUTE && status != PPS_ATTRIBUTE_DELETED) {
            continue;
        }
        const std::string whole = status == PPS_ATTRIBUTE ? attribute.value : "";
        const auto members = jsonObject(whole);
        for (const auto& [binding, as] : m_bindings) {
            if (binding.object == object && binding.attribute == attribute.attr_name) {
                const auto member = members.find(binding.member);
                const std::string value = binding.member.empty()    ? whole
                                          : member != members.end() ? textOf(*member, as)
                                                                    : std::string();
                const bool picture = as == BoundAs::Picture && !value.empty();
                m_onValue(binding, value, picture ? readPictureFile(value) : nullptr);
            }
        }
    }
}

} // namespace zm
