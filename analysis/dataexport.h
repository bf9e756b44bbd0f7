// Exports of a design's numbers for other tools: the two-port S-parameters as a
// Touchstone file, and the points of a plot as CSV. Batch verbs:
//   export touchstone FILE   (.s2p, Touchstone 1.1, `# HZ S DB R z`, z = Zin)
//   export csv PLOT FILE     (one row per point, one column per open filter)
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zelk {

// The S-parameters of slot s at the frequencies of the last frequency plot drawn, else
// over the design's default plot span, referred to the design's Zin at both ports. The
// two-port is the ladder without its terminations: the source resistance Zin comes off
// dipole 1 and the load conductance 1/Zout off the last dipole, the rest is chained from
// the catalogue's complex immittances (series arms by their impedance, shunt arms by the
// inverse of their impedance, as the walker's voltage divider takes them). False, with the reason, when the ladder has a
// transformer arm, no terminations, or an analysis fault was abandoned.
bool touchstonetext(int s, std::string& text, std::string& why);
// The points of a plot form's last pass as CSV; false when the plot has none.
bool plotcsvtext(const std::string& plotname, std::string& text, std::string& why);

// The batch verbs; messages to err.
bool exporttouchstone(const std::vector<std::string>& args, std::ostream& err);
bool exportcsv(const std::vector<std::string>& args, std::ostream& err);

} // namespace zelk
