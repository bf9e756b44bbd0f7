// The ladder of a slot as a circuit-simulator netlist: a 1 V AC source whose top node is
// `src`, every dipole as plain parts (the catalogue's loss and residual resistances
// included), the load whose top node is `out`, and an .ac card, so that the deck runs by
// itself in batch mode. Batch verb: `export spice FILE [F1 F2]` (slot 0; F1, F2 in hertz,
// value notation allowed).
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zelk {

// Writes slot s as a netlist. F1, F2 (hertz) set the sweep; 0 picks a span around the
// design's frequencies. False, with the reason in `why`, when a dipole has no plain-part
// form or a zero part: nothing usable is written then.
bool spicenetlist(int s, std::ostream& out, std::string& why, double F1 = 0, double F2 = 0);
// The batch verb: export spice FILE [F1 F2]; messages to err.
bool exportspice(const std::vector<std::string>& args, std::ostream& err);

} // namespace zelk
