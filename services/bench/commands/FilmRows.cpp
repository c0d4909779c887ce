#include "services/bench/commands/Processor.h"

#include <array>
#include <filesystem>

namespace zm::bench::commands {

namespace {

// Of a page's film, which lies in the runtime folder: memory on many systems.
constexpr std::chrono::milliseconds LongestOfPages = std::chrono::minutes(10);

film::Film::Ended sayHow(const std::shared_ptr<Run>& run) {
    return [run](const Result<std::string>& said) {
        run->out(said ? *said : "");
        endWith(run, said ? ok() : Status(said.failure()));
    };
}

// Runs as long as the film does; whoever gives up waiting ends it.
void filmAndWait(Call& call, film::FilmOrder order) {
    film::Film& film = call.processor.film();
    film.begin(std::move(order), [run = call.run, &film](const Status& begun) {
        if (!begun) {
            run->fail(begun.error());
            return;
        }
        film.onceEnded(sayHow(run));
        if (run->finished()) {
            film.end([](const auto&) {});
            return;
        }
        run->onEnd = [&film] {
            if (!film.running().empty()) {
                film.end([](const auto&) {});
            }
        };
    });
}

bool filmCommand(Call& call) {
    film::Film& film = call.processor.film();
    const bool stop = call.arguments.flag("--stop");
    const bool overwrite = call.arguments.flag("--overwrite");
    const auto length = call.arguments.seconds("--seconds");
    const std::string file = stop ? "" : call.arguments.word();
    if (!call.arguments.complete() || (stop && (length || overwrite))) {
        return false;
    }
    if (stop) {
        film.end(sayHow(call.run));
    } else if (std::filesystem::path(file).extension() != ".webm") {
        call.run->fail(file + ": films end with .webm");
    } else if (length && *length == 0) {
        call.run->fail("--seconds 0: a film has to last longer than that");
    } else if (length) {
        filmAndWait(call, {call.run->absolute(file), overwrite, std::chrono::milliseconds(*length)});
    } else {
        const std::string path = call.run->absolute(file);
        const auto most = path == film.pageFile() ? std::optional(LongestOfPages) : std::nullopt;
        film.begin({path, overwrite, most}, [run = call.run](const Status& begun) { endWith(run, begun); });
    }
    return true;
}

constexpr std::array FilmCommands = {
    Row{"film", filmCommand},
};

} // namespace

std::span<const Row> filmRows() {
    return FilmCommands;
}

} // namespace zm::bench::commands
