// The design report: the text printed in the schematic window under the dipole row. For
// each dipole a block of its values, winding data and tuning frequencies, then a title
// block with the design's requirements and the component spreads.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zelk {

struct ReportState {
    // Listing columns: left edge of the present column, top of every column, and the
    // widest line of the present column.
    double listcolumnx = 10;
    short listtop = 0;
    double listwidth = 0;
    // Component spreads, reset by every listing.
    double Cmin = 10, Cmax = 0, Lmin = 10, Lmax = 0;
    int Cminat = 0, Cmaxat = 0, Lminat = 0, Lmaxat = 0;
    // Set when a listed part is not positive. The plot commands refuse to plot while it
    // is set; only undo and File New clear it.
    bool valuewarning = false;
    // The lines printed by the last listing and title block, in print order (an empty
    // print is an empty line).
    std::vector<std::string> lines;
};
inline ReportState report;


// Prints one listing line at the window's cursor, starting a new column at the foot of
// the window.
void partline(const std::string& text);
// The value listing of slot curslot (option partslist).
void dipolelisting();
// The requirements of the design and the spreads (option sfp).
void titleblock();
// Resonant frequencies of dipole n and its neighbours (option showtuning).
void tuningdata(int n);
// The line writers of one dipole.
void capline(int n);
void caline(int n);
void inductorline(int n);
void inductoraline(int n);
// The crystal of dipole n: its motional values (option Showxtal) or the one line "XTAL n".
void crystallines(int n);

// The report lines, for the batch runner's dump.
bool dumpreport(const std::vector<std::string>& args, std::ostream& out);

} // namespace zelk
