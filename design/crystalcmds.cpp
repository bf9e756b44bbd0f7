#include "design/crystalcmds.h"

#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "design/lcflow.h"
#include "design/specprompts.h"
#include "entry/crystalsets.h"
#include "entry/panel.h"
#include "synthesis/crystal.h"
#include "synthesis/tables.h"

namespace zelk {

void takecrystalslot(const std::string& code, const std::string& title, int picture) {
    store.lastslot = static_cast<short>(store.lastslot + 1);
    store.curslot = store.lastslot;
    DesignSlot& s = slot(store.curslot);
    s.code = code;
    s.title = title;
    crystalparms_show();
    panelimage(picture);
}

namespace {


// The steps every crystal command takes before its prototype: the slot, code and title,
// the crystal window, the sketch and getCL. False when getCL was cancelled (File New
// has then run).
bool startcrystaldesign(const std::string& code, const std::string& title, int picture) {
    takecrystalslot(code, title, picture);
    getCL();
    if (store.cancelled) {
        newfilter_Click();
        return false;
    }
    return true;
}

void tablecrystal(const std::string& title, const std::string& file) {
    if (!startcrystaldesign("TCL", title, 17)) return;
    DesignSlot& s = current();
    s.Zin = 1;
    s.Zout = 1;
    opentablefile(file);
    gettabledata();
    TCLterms();
    CLnormal();
}

} // namespace

void getCL() {
    sethelp("Crystal Ladder Bandpass Filter", "The crystal parameters effect the bandwidth considerably.",
            "You can lie to the program and specify a phoney bandwidth that results in your desired bandwidth as "
            "shown by the analysis.",
            "Try your specified bandwidth first, then figure out what lie to use by trial and error.");
    DesignSlot& s = current();
    const bool fresh = flow.cldefaults;
    getdata.couplingmode = "TC";
    panelclear();
    panelimage(49);
    panelrow(0, "Order =", s.order > 0 && !fresh ? engformatvalue(s.order) : "5", "Order of the filter");
    panelrow(1, "bandwidth", s.bw > 0 && !fresh ? engformatvalue((s.bw / 2) / 3.141592654) : "2000",
             "Bandwidth of the filter");
    const bool cheby = s.code == "CCL";
    if (cheby) panelrow(2, "Apass =", s.Apass > 0 ? engformatvalue(s.Apass) : ".1", "Passband ripple in db");
    if (!panelshow()) return;
    flow.cldefaults = false;
    s.order = panelvalue(0);
    s.bw = panelvalue(1) * 6.283185308;
    if (cheby) s.Apass = panelvalue(2);
}

void getZ() {
    DesignSlot& s = current();
    const std::string shown = engformatvalue(s.r0);
    panelclear();
    panelrow(0, "Coupling", "CLICK THERE -->", "Select coupling");
    panelrow(1, "Zin", shown, "Input impedance");
    panelrow(2, "Zout", shown, "Output impedance");
    getdata.setnote("Click to toggle among the coupling options.");
    if (!panelshow()) return;
    flow.cldefaults = false;
    s.Zin = panelvalue(0);
    s.Zout = panelvalue(1);
}

void CLnormal() {
    DesignSlot& s = current();
    if (!crystalQsufficient()) {
        MsgBox("The Q of the crystals is insufficient for the specifed bandwidth.\n"
               "Use a lower bandwidth or higher frequency crystal.\n"
               "The narrowest bandwidth obtainable for this crystal is " +
                   Format(narrowestbandwidth(), "**.00") + "Hz",
               vbOKOnly | vbExclamation, "WARNING");
        newfilter_Click();
        return;
    }
    crystaldesignvalues();
    panelimage(23);
    getZ();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    // The rows as they stand, hidden or not, are the terminations that count.
    s.Zin = panelvalue(1);
    s.Zout = panelvalue(2);
    const std::string mode = getdata.couplingmode;
    if (mode == "UL") getQu();
    crystalladder(mode);
    if (mode == "TC" || mode == "TL") {
        const double r0 = s.r0;
        s.dip(1).R = s.Zin;
        bool asked = false;
        if (Int(s.Zin) != Int(r0)) {
            getQu();
            asked = true;
            crystaltapinput(s.Zin);
        }
        if (Int(s.Zout) != Int(r0)) {
            if (!asked) getQu();
            crystaltapoutput(s.Zout);
        }
    }
    const double ws = s.w0;
    s.w1 = ws / 2;
    s.w4 = 2 * ws;
    finishdesign();
}

void BCL_Click() {
    if (!startcrystaldesign("BCL", "Butterworth Crystal Ladder Band-Pass", 17)) return;
    BCLterms();
    CLnormal();
}

void CCL_Click() {
    if (!startcrystaldesign("CCL", "Chebyshev Crystal Ladder Band-Pass", 18)) return;
    CCLterms();
    CLnormal();
}

void MCL_Click() {
    if (!startcrystaldesign("MCL", "Min-Loss (Cohn) Crystal Ladder Band-Pass", 17)) return;
    MCLterms();
    CLnormal();
}

void BesselCL_Click() { tablecrystal("Bessel Crystal Ladder Band-Pass", "\\tables\\bessel.tbl"); }
void GaussianCL_Click() { tablecrystal("Gaussian Crystal Ladder Band-Pass", "\\tables\\gaussian.tbl"); }
void legendreCL_Click() { tablecrystal("Legendre Crystal Ladder Band-Pass", "\\tables\\legendre.tbl"); }
void LP05CL_Click() { tablecrystal("Linear Phase to .05 db Crystal Ladder Band-Pass", "\\tables\\linph05.tbl"); }
void LP5CL_Click() { tablecrystal("Linear Phase to .5 db Crystal Ladder Band-Pass", "\\tables\\linph5.tbl"); }
void TG6_Click() { tablecrystal("Gaussian to 6 db Crystal Ladder Band-Pass", "\\tables\\gauss6.tbl"); }
void TG12_Click() { tablecrystal("Gaussian to 12 db Crystal Ladder Band-Pass", "\\tables\\gauss12.tbl"); }

} // namespace zelk
