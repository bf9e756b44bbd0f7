#include "shell/exports.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "analysis/dataexport.h"
#include "analysis/plotframe.h"
#include "analysis/plots.h"
#include "analysis/spiceexport.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/filewrite.h"
#include "core/paths.h"
#include "core/window.h"
#include "schematic/schematicview.h"

namespace zelk {

namespace {

bool pictureverb(const char* format, const std::vector<std::string>& args, std::ostream& err) {
    if (args.size() != 2) {
        err << "export " << format << " WINDOW FILE\n";
        return false;
    }
    Window* w = findwindow(args[0]);
    if (!w) {
        err << "export " << format << ": unknown window " << args[0] << '\n';
        return false;
    }
    if (!w->draws) {
        err << "export " << format << ": window " << args[0] << " has no drawing surface\n";
        return false;
    }
    if (!w->loaded || !w->surface) {
        err << "export " << format << ": window " << args[0] << " is not open\n";
        return false;
    }
    std::string why;
    if (writepicture(*w, format, args[1], why)) return true;
    err << "export " << format << ": " << why << '\n';
    return false;
}

std::string lowerextension(const std::string& path) {
    size_t dot = path.find_last_of('.');
    size_t slash = path.find_last_of("/\\");
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    std::string e = path.substr(dot + 1);
    std::transform(e.begin(), e.end(), e.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return e;
}

// A save dialog in the user's designs folder; false on cancel.
bool asksave(const std::string& title, const std::string& name, const std::string& filter, std::string& path) {
    FileDialogRequest r;
    r.save = true;
    r.title = title;
    r.initdir = designsdir();
    r.filename = name;
    r.filter = filter;
    if (!desktop().filedialog(r) || r.filename.empty() || r.filename.front() == '*') return false;
    path = r.filename;
    return true;
}

void failed(const std::string& why) { MsgBox(why, vbOKOnly + vbExclamation, "Export"); }

const char* const picturefilter =
    "SVG Drawing (*.svg)|*.svg|PDF Document (*.pdf)|*.pdf|PNG Image (*.png)|*.png";

// Writes window w by the extension of the chosen name; csv only for plots.
void exportwindow(Window& w, const std::string& basename, bool csv) {
    std::string filter = picturefilter;
    if (csv) filter += "|CSV Values (*.csv)|*.csv";
    std::string path;
    if (!asksave("Export " + w.caption, basename + ".svg", filter, path)) return;
    std::string ext = lowerextension(path), why;
    bool ok;
    if (ext == "csv" && csv) {
        std::string text;
        ok = plotcsvtext(w.formname, text, why) && writefilesafely(path, text, why);
    } else if (ext == "svg" || ext == "pdf" || ext == "png") {
        ok = writepicture(w, ext, path, why);
    } else {
        why = "Choose a file ending in .svg, .pdf, .png" + std::string(csv ? " or .csv" : "") + ".";
        ok = false;
    }
    if (!ok) failed(why);
}

} // namespace

bool writepicture(Window& w, const std::string& format, const std::string& path, std::string& why) {
    std::string bytes;
    if (!desktop().picture(w, format, bytes, why)) return false;
    return writefilesafely(path, bytes, why);
}

bool exportsvg(const std::vector<std::string>& args, std::ostream& err) { return pictureverb("svg", args, err); }
bool exportpdf(const std::vector<std::string>& args, std::ostream& err) { return pictureverb("pdf", args, err); }
bool exportpng(const std::vector<std::string>& args, std::ostream& err) { return pictureverb("png", args, err); }

void xSch_Click() {
    int s = store.curslot < 0 ? 0 : store.curslot;
    if (store.lastslot < 0) return;
    SchematicWindow& w = schematicwindow(s);
    if (!w.loaded || !w.surface) return;
    exportwindow(w, "schematic", false);
}

void pSch_Click() {
    if (store.lastslot < 0) return;
    SchematicWindow& w = schematicwindow(store.curslot < 0 ? 0 : store.curslot);
    if (w.loaded) desktop().printwindow(w);
}

void printerSU_Click() { desktop().printersetup(); }

void exportplot_Click(const std::string& plotform) {
    PlotForm* p = findplot(plotform);
    if (!p || !p->loaded || !p->surface) return;
    exportwindow(*p, plotform, true);
}

void xTouchstone_Click() {
    if (store.lastslot < 0) return;
    std::string text, why, path;
    if (!touchstonetext(0, text, why)) {
        failed("The S-parameters cannot be exported: " + why + ".");
        return;
    }
    if (!asksave("Export Touchstone", "filter.s2p", "Touchstone Two-Port (*.s2p)|*.s2p", path)) return;
    if (!writefilesafely(path, text, why)) failed(why);
}

void xSpice_Click() {
    if (store.lastslot < 0) return;
    std::ostringstream deck;
    std::string why, path;
    if (!spicenetlist(0, deck, why)) {
        failed("The SPICE deck cannot be written: " + why + ".");
        return;
    }
    if (!asksave("Export SPICE Netlist", "filter.cir", "SPICE Netlist (*.cir)|*.cir", path)) return;
    if (!writefilesafely(path, deck.str(), why)) failed(why);
}

} // namespace zelk
