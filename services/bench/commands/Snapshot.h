#pragma once

#include "base/JsonMessage.h"
#include "services/bench/unit/HeadUnit.h"

#include <string>
#include <vector>

namespace zm::bench::commands {

/**
 * A state of the head unit as a file: the commands that bring it about, the PPS objects and the catalogue that a disc
 * service has left, and its disc.
 */
struct Snapshot {
    using Command = std::vector<std::string>;

    std::string bench;            ///< how the one it was taken of was started, for whoever reads the file
    std::vector<Command> before;  ///< what is set first: language, colours, vehicle, clock
    std::vector<Command> objects; ///< the disc service's, for a bench that has none
    std::string catalogue;        ///< bytes of the database
    std::string disc;             ///< path of the disc in the drive; empty: none
    std::vector<Command> after;   ///< the launcher

    /** Of the head unit as it is. */
    static Result<Snapshot> of(unit::HeadUnit& unit);
    /** From what `text` gave; an error says what is wrong. */
    static Result<Snapshot> parse(const std::string& text);
    std::string text() const;
    /** All commands that restore it there. */
    std::vector<Command> commands(bool discService) const;
};

} // namespace zm::bench::commands
