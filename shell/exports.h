// Exports of a window's drawing and of the design's numbers: the batch verbs
// `export svg|pdf|png WINDOW FILE` and the FILE > Export entries of the desktop, which
// ask for a file and write the same files as the verbs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zelk {

class Window;

// Draws window w into `path` as `format` ("svg", "pdf" or "png") through the desktop's
// picture port, by a temporary file and a rename. False with the reason in `why`.
bool writepicture(Window& w, const std::string& format, const std::string& path, std::string& why);

// The batch verbs: export svg|pdf|png WINDOW FILE; messages to err.
bool exportsvg(const std::vector<std::string>& args, std::ostream& err);
bool exportpdf(const std::vector<std::string>& args, std::ostream& err);
bool exportpng(const std::vector<std::string>& args, std::ostream& err);

// The FILE > Export entries: the schematic of the slot in hand, one entry per plot form
// (xPEG .. xTPR: SVG, PDF, PNG or CSV by the file type chosen), the Touchstone file and
// the SPICE deck. A failed write shows a message box and leaves an older file as it was.
void xSch_Click();
// FILE > Print > Schematic: the schematic of the slot in hand; it has no buttons to hide.
void pSch_Click();
// FILE > Printer Setup: the platform's page setup; a cancel changes nothing.
void printerSU_Click();
void exportplot_Click(const std::string& plotform);
void xTouchstone_Click();
void xSpice_Click();

} // namespace zelk
