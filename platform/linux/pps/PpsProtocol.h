#pragma once

namespace zm {

/**
 * What goes over the PPS socket. A request is one kind byte and its text; each gets one answer of the same
 * form. PPS text may hold any bytes, so it travels as it is.
 *
 * `Open` carries one end of a socket pair, the notice socket: the service sends one byte on it when a read
 * would return something new, and no other before that read. It closes its end when it goes away.
 */
enum class PpsRequest : char {
    Open = 'o',     ///< "FLAGS PATH" and the notice socket
    Read = 'r',     ///< answered with what is new, as PpsChanges::encoded gives it
    Write = 'w',    ///< the PPS text
    Truncate = 't', ///< no text
    Unlink = 'u',   ///< PATH
    List = 'l'      ///< answered with all object names, each ended by a line feed
};

enum class PpsAnswer : char {
    Done = 'k',  ///< and the result
    Failed = 'e' ///< and the reason
};

} // namespace zm
