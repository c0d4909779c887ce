#include "services/bench/commands/Snapshot.h"

#include "services/bench/commands/CatalogueFile.h"
#include "services/bench/unit/PpsText.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace zm::bench::commands {

namespace {

constexpr int SnapshotVersion = 1;

using Command = Snapshot::Command;

// Commands would be carried out once more, and what others than the disc service have written follows by itself.
bool isDiscServices(const std::string& object) {
    return object.starts_with("zelmar/")
               ? object.starts_with("zelmar/disc/") && object != "zelmar/disc/control" &&
                     object != "zelmar/disc/drive"
               : true;
}

std::string base64(const std::string& bytes) {
    char* text = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    std::string result = text;
    g_free(text);
    return result;
}

std::string fromBase64(const std::string& text) {
    gsize size = 0;
    guchar* bytes = g_base64_decode(text.c_str(), &size);
    std::string result(reinterpret_cast<char*>(bytes), size);
    g_free(bytes);
    return result;
}

std::string numberText(double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

std::vector<Command> vehicleCommands(unit::HeadUnit& unit, const Json& state) {
    const auto& car = unit.car().signals();
    std::vector<Command> result = {{"vehicle", "ignition", car.ignition},
                                   {"vehicle", "gear", car.gear},
                                   {"vehicle", "speed", numberText(car.speed)}};
    if (car.light) {
        result.push_back({"vehicle", "light", std::to_string(*car.light)});
    }
    const auto& told = state.at("told");
    for (const auto& [id, value] : state.at("devices").items()) {
        const bool silent = std::find(told.begin(), told.end(), std::stoi(id)) == told.end();
        Command command{"device"};
        if (silent) {
            command.push_back("--silent");
        }
        command.insert(command.end(), {id, value.is_null() ? "fail" : std::to_string(value.get<int>())});
        result.push_back(std::move(command));
    }
    result.push_back({"volume", std::to_string(unit.sound().volume())});
    const auto& time = state.at("time");
    char clock[16];
    g_snprintf(clock, sizeof clock, "%02d:%02d", time.at("hour").get<int>(), time.at("minute").get<int>());
    result.push_back({"time", clock, time.at("format").get<int>() == 1 ? "12" : "24"});
    return result;
}

// "device" tells what is on the disc and comes before the others; "status" shows pages and comes last.
int orderOf(const std::string& object) {
    return object.ends_with("/device") ? 0 : object.ends_with("/status") ? 2 : 1;
}

Result<std::vector<Command>> objectCommands(unit::HeadUnit& unit) {
    auto names = ppsList(unit.ppsSocket());
    if (!names) {
        return names.failure();
    }
    std::stable_sort(names->begin(), names->end(),
                     [](const auto& a, const auto& b) { return orderOf(a) < orderOf(b); });
    std::vector<Command> result;
    for (const auto& name : *names) {
        if (!isDiscServices(name)) {
            continue;
        }
        auto file = PpsFile::open(unit.ppsSocket(), "/pps/" + name, 0, 0);
        const auto text = file ? file->read() : Result<std::string>(Error{file.error()});
        if (!text) {
            return text.failure();
        }
        Command command{"pps", "put", name};
        for (const auto& delta : unit::ppsDeltas(*text)) {
            command.insert(command.end(), delta.begin(), delta.end());
        }
        if (command.size() > 3) {
            result.push_back(std::move(command));
            result.push_back({"settle"});
        }
    }
    return result;
}

} // namespace

Result<Snapshot> Snapshot::of(unit::HeadUnit& unit) {
    const Json state = unit.state();
    Snapshot snapshot;
    snapshot.before = vehicleCommands(unit, state);
    snapshot.before.push_back({"language", state.at("language").get<std::string>()});
    snapshot.before.push_back({"theme", state.at("theme").get<std::string>()});
    snapshot.before.push_back({"motion", state.at("motion").get<std::string>()});
    auto objects = objectCommands(unit);
    if (!objects) {
        return objects.failure();
    }
    snapshot.objects = std::move(*objects);
    auto catalogue = readCatalogue(unit.options().catalogue);
    if (!catalogue) {
        return catalogue.failure();
    }
    snapshot.catalogue = std::move(*catalogue);
    const Json drive = parseJson(unit.drive().state());
    if (drive.is_object() && drive.value("state", "") == "loaded") {
        snapshot.disc = drive.value("path", "");
    }
    constexpr std::array<const char*, 5> Statuses = {"resume", "pause", "showonly", "hideonly", "quit"};
    snapshot.after = {{"app", Statuses[static_cast<size_t>(unit.launcher().last())]}, {"settle"}};
    return snapshot;
}

std::string Snapshot::text() const {
    const nlohmann::ordered_json json = {{"snapshot", SnapshotVersion},
                                         {"bench", bench},
                                         {"disc", disc},
                                         {"before", before},
                                         {"objects", objects},
                                         {"after", after},
                                         {"catalogue", base64(catalogue)}};
    return json.dump(1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

Result<Snapshot> Snapshot::parse(const std::string& text) {
    const Json json = parseJson(text);
    if (!json.is_object() || !json.contains("snapshot")) {
        return Error{"this is no snapshot"};
    }
    if (json["snapshot"] != SnapshotVersion) {
        return Error{"a snapshot of version " + jsonText(json["snapshot"]) + " is not known"};
    }
    const auto commandsOf = [&](const char* name, std::vector<Command>& commands) {
        const auto list = json.find(name);
        const bool good =
            list != json.end() && list->is_array() && std::ranges::all_of(*list, [](const Json& each) {
                return each.is_array() && !each.empty() && std::ranges::all_of(each, &Json::is_string);
            });
        if (good) {
            commands = list->get<std::vector<Command>>();
        }
        return good;
    };
    Snapshot snapshot;
    for (auto [name, commands] :
         {std::pair("before", &snapshot.before), std::pair("objects", &snapshot.objects),
          std::pair("after", &snapshot.after)}) {
        if (!commandsOf(name, *commands)) {
            return Error{std::string("\"") + name + "\" is no list of commands"};
        }
    }
    for (const char* name : {"disc", "catalogue"}) {
        if (!json.contains(name) || !json[name].is_string()) {
            return Error{std::string("\"") + name + "\" is no text"};
        }
    }
    snapshot.disc = json["disc"].get<std::string>();
    snapshot.catalogue = fromBase64(json["catalogue"].get<std::string>());
    return snapshot;
}

std::vector<Command> Snapshot::commands(bool discService) const {
    std::vector<Command> all = before;
    if (!discService) {
        all.insert(all.end(), objects.begin(), objects.end());
    } else if (!disc.empty()) {
        all.push_back({"insert", disc, "--wait"});
    } else {
        all.push_back({"eject"});
    }
    all.insert(all.end(), after.begin(), after.end());
    return all;
}

} // namespace zm::bench::commands
