#include "core/framestate.h"

#include <cctype>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/window.h"

namespace zelk {

// The fifteen plots, as the ANALYZE menu names them and as the print and clipboard
// sub-menus name them with their p and c prefixes.
const char* const plotnames[15] = {"PEG", "PIG", "VEG", "VIG", "CEG", "CIG", "inputz", "outputz",
                                   "RL",  "PHA", "GD",  "IR",  "USR", "pr",  "TPR"};
const char* const printnames[15] = {"pPEG", "pPIG", "pVEG", "pVIG",  "pCEG", "pCIG", "pZin", "pZout",
                                    "pRL",  "pPhase", "pGD", "pIR", "pUSR", "pPR",  "pTPR"};

std::string exportitem(const std::string& printitem) { return "x" + printitem.substr(1); }

namespace {

// The groups that updatemenus names together.
const char* const heads[] = {"linearphase", "GaussianChebyshev", "coupled", "LPCR", "GCCR", "crystal", "attn"};
const char* const designitems[] = {"butterworth", "chebyshev", "elliptic", "Bessel", "linearphase05",
                                   "linearphase5", "gaussian1", "legendre", "Gaussian6", "gaussian12",
                                   "BCR", "CCR", "BesselCR", "LP05CR", "LP5CR", "GaussianCR",
                                   "LegendreCR", "Gaussian6CR", "gaussian12CR", "BCL", "CCL",
                                   "attnp", "attnt"};
const char* const displayoptions[] = {"partslist", "nano", "Showxtal", "showtuning", "showcoil", "sfp"};
const char* const singledesign[] = {"append", "insert", "qu", "tzfm", "tolerance", "standardT", "statistical"};
const char* const alwayson[] = {"delete", "printerSU", "printfilter", "clip", "exitfilter", "analysis", "export"};

template <size_t N>
void setall(const char* const (&names)[N], bool on) {
    for (const char* n : names) setenabled(n, on);
}

} // namespace

void updatemenus() {
    // The design's own exports need a design; the window exports follow their windows.
    setenabled("xTouchstone", store.lastslot >= 0);
    setenabled("xSpice", store.lastslot >= 0);
    if (store.lastslot < 0) {
        setenabled("openfilter", true);
        setenabled("savefilter", false);
        setall(alwayson, true);
        setenabled("pSch", false);
        for (int i = 0; i < 15; ++i) {
            std::string c = printnames[i];
            setenabled(c, false);
            c[0] = 'c';
            setenabled(c, false);
            setenabled(exportitem(printnames[i]), false);
        }
        setenabled("xSch", false);
        setenabled("undo", false);
        setenabled("enter", true);
        setall(singledesign, false);
        setall(plotnames, false);
        setenabled("design", true);
        setall(heads, true);
        setall(designitems, true);
        setenabled("helpL", true);
        setall(displayoptions, true);
        setenabled("dinductor", false);
    } else if (store.lastslot == 0) {
        // The print and clipboard entries and undo are left as their commands set them.
        setenabled("openfilter", true);
        setenabled("savefilter", true);
        setall(alwayson, true);
        setenabled("enter", false);
        setall(singledesign, true);
        // The row for VEG..CEG names PEG twice; every plot entry ends up on all the same.
        setall(plotnames, true);
        setenabled("design", false);
        setall(heads, true);
        setall(designitems, false);
        setenabled("helpL", true);
        setall(displayoptions, true);
        setenabled("dinductor", true);
    } else {
        // Two designs: MCL, the table families of the Classic menu and the Dishal
        // families stand in no block and stay reachable once DESIGN is on again.
        setenabled("openfilter", false);
        setenabled("savefilter", false);
        setall(alwayson, true);
        setenabled("undo", false);
        setenabled("enter", false);
        setall(singledesign, false);
        setall(plotnames, true);
        setenabled("design", true);
        setall(heads, true);
        setall(designitems, false);
        setenabled("helpL", true);
        setall(displayoptions, false);
        setenabled("dinductor", false);
    }
}

void showhelplines() {
    if (!menuchecked("helpL")) return;
    frame.helplabel[0] = store.help1;
    frame.helplabel[1] = store.help2;
    frame.helplabel[2] = store.help3;
    frame.helplabel[3] = store.help4;
    desktop().doevents();
}

void starthelplines() {
    sethelp("Select a filter response.",
            "Select low-pass, high-pass, band-pass or band-reject and a schematic configuration",
            "Enter the design parameters requested.", "The default values will create a sample design");
}

void newfilter_Click() {
    frame.designsaved = true;
    store.entering = false;
    for (const char* name : {"crystalparms", "designtitle", "dipolesH", "dipolesV", "Getdata", "selfunction", "trouble"})
        if (Window* w = findwindow(name); w && w->loaded) w->unload();
    for (Window* w : windows()) {
        if (!w->loaded) continue;
        std::string lower = w->formname;
        for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (lower.rfind("plot", 0) == 0) w->unload();
    }
    if (schematichooks.hideall) schematichooks.hideall();
    clearall();
}

} // namespace zelk
