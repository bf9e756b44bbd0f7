#include "design/dishalcmds.h"

#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "design/crystalcmds.h"
#include "design/lcflow.h"
#include "entry/crystalsets.h"
#include "entry/panel.h"
#include "synthesis/bwcheby.h"
#include "synthesis/crystal.h"
#include "synthesis/dishal.h"

namespace zelk {

namespace {


// Order and bandwidth rows and their reading; ripple row when cheby. False on a cancel.
bool orderbandwidth(bool cheby) {
    sethelp("Dishal Crystal Ladder Bandpass Filter. ",
            "Enter the order of the filter which is also the number of crystal needed.",
            "Enter the 3db bandwidth desired.", "");
    DesignSlot& s = current();
    const bool fresh = flow.cldefaults;
    panelclear();
    panelrow(0, "Order =", s.order > 0 && !fresh ? engformatvalue(s.order) : "6", "Order of the filter");
    panelrow(1, "bandwidth", s.bw > 0 && !fresh ? engformatvalue((s.bw / 2) / 3.141592654) : "2000",
             "Bandwidth of the filter");
    if (cheby) panelrow(2, "Apass =", s.Apass > 0 && !fresh ? engformatvalue(s.Apass) : ".1", "Passband ripple in db");
    for (;;) {
        if (!panelshow()) return false;
        flow.cldefaults = false;
        s.order = panelvalue(0);
        dishal.bwhertz = panelvalue(1);
        s.bw = dishal.bwhertz * 6.283185308;
        if (!cheby) return true;
        s.Apass = panelvalue(2);
        if (s.Apass < 3) return true;
        MsgBox("The specified passband ripple must be less than 3db.\n"
               "In fact, values greater than 1db are not recommended.",
               vbOKOnly | vbExclamation, "WARNING");
    }
}

// The least order of each command; the two upper sideband commands name 2 and use 3.
struct OrderRule {
    const char* code;
    int below;
    const char* message;
    int used;
};
constexpr OrderRule orderrules[] = {
    {"dLSBButter", 3, "The minimum order for a Dishal LSB filter is 3\nA value of 3 will be used.", 3},
    {"DLSBcheby", 3, "The minimum order for a Dishal USB filter is 3\nA value of 3 will be used.", 3},
    {"dUSBbutter", 2, "The minimum order for a Dishal USB filter is 2\nA value of 2 will be used.", 3},
    {"dUSBcheby", 2, "The minimum order for a Dishal USB filter is 2\nA value of 2 will be used.", 3},
};

void ordertest(const std::string& command) {
    DesignSlot& s = current();
    for (const OrderRule& r : orderrules) {
        if (command != r.code) continue;
        if (s.order < r.below) {
            MsgBox(r.message, vbOKOnly | vbExclamation, "WARNING");
            s.order = r.used;
        }
        return;
    }
}

// The shared steps of the four menu commands.
void sidebanddesign(const std::string& command, const std::string& code, const std::string& title,
                    int picture, bool cheby, bool lastend, bool lower) {
    takecrystalslot(code, title, picture);
    dishal.sideband = lower ? "lower" : "normal";
    if (cheby) getCLDC();
    else getCLD();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    ordertest(command);
    if (cheby) CCLterms();
    else BCLterms();
    DesignSlot& s = current();
    if (lastend) {
        const double gn = store.g[static_cast<size_t>(clampint(Int(s.order), 0, 16))];
        prototerms.gnterm = gn;
        store.gnterm = gn;
    }
    getr0v3();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    if (lower) CLDishalLSB();
    else CLDishalUSB();
}

// The centre-frequency row within lo..hi; false on a cancel.
bool centrefrequency(const std::string& help1, double lo, double hi, double shown) {
    sethelp(help1, "Enter the center frequency of the filter", "equal to or greater than " + Str(lo) + "Hz",
            "and equal to or less than " + Str(hi) + "Hz");
    panelclear();
    panelrow(0, "CFO =", engformatvalue(shown), "Center frequency of the filter");
    for (;;) {
        if (!panelshow()) return false;
        dishal.cfo = panelvalue(0);
        if (!(dishal.cfo < lo || dishal.cfo > hi)) break;
        MsgBox("The following must be true, center frequency between " + Str(lo) + "Hz and " + Str(hi) + "Hz",
               vbOKOnly | vbExclamation, "WARNING");
    }
    current().w0 = dishal.cfo * 2 * 3.141592654;
    return true;
}

// The shared steps of the two minimum-loss commands: minimum-loss terms, no order test.
void cohndesign(const std::string& title, bool lower) {
    takecrystalslot("DCL", title, 48);
    dishal.sideband = lower ? "lower" : "normal";
    getCLD();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    MCLterms();
    if (lower) getCFlower();
    else getCFupper();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    if (lower) CLDishalLSB();
    else CLDishalUSB();
}

} // namespace

void getCLD() { orderbandwidth(false); }

void getCLDC() { orderbandwidth(true); }

void getr0v3() {
    sethelp("Dishal Crystal Ladder Bandpass Filter. ", "Enter a value of r0v3, which sets the center frequency offset,",
            "equal to or greater than 2", "and equal to or less than 10");
    panelclear();
    panelrow(0, "r0v3 =", flow.r0v3 > 0 ? engformatvalue(flow.r0v3) : "", "Center frequency offset parameter.");
    getdata.setnote("Enter a value for r0v3, determine correct value by trial and error.");
    if (!panelshow()) return;
    flow.r0v3 = panelvalue(0);
    DesignSlot& s = current();
    s.w0 = s.Fs * 2 * 3.141592654;
    if (r0v3outsiderange(flow.r0v3))
        MsgBox("The following should be true\n2 > r0v3 < 10 but you can try this number.\n"
               "If illegal negative component values will result.",
               vbOKOnly | vbExclamation, "SUGGESTION");
}

void getCFlower() {
    const DesignSlot& s = current();
    const double p = dishalp();
    const auto [lo, hi] = lowercentrelimits(s.Fs, dishal.bwhertz, p);
    const double v = flow.r0v3;
    // The centre of the last r0v3, or the lower limit while there is none to turn back.
    const double shown = v > 0 && v != p ? s.Fs + (dishal.bwhertz / 2) * hdiv(1 - v * p, v - p) : lo;
    if (!centrefrequency("Dishal Crystal Ladder Lower Sideband Filter. ", lo, hi, shown)) return;
    flow.r0v3 = lowerr0v3(dishal.cfo, s.Fs, dishal.bwhertz, p);
}

void getCFupper() {
    const DesignSlot& s = current();
    const auto [lo, hi] = uppercentrelimits(s.Fs, dishal.bwhertz);
    const double shown = dishal.cfo >= lo && dishal.cfo <= hi ? dishal.cfo : lo;
    if (!centrefrequency("Dishal Crystal Ladder Bandpass Filter. ", lo, hi, shown)) return;
    flow.r0v3 = upperr0v3(dishal.cfo, s.Fs, dishal.bwhertz);
}

void CLDishalLSB() {
    dishallsbladder();
    finishdesign();
}

void CLDishalUSB() {
    if (!dishalusbladder()) {
        MsgBox("The required bandwidth vs centerfrequency cannot be achieved.\n"
               "Use a lower bandwidth or higher frequency crystal.",
               vbOKOnly | vbExclamation, "WARNING");
        newfilter_Click();
        return;
    }
    finishdesign();
}

void dLSBButter_Click() {
    sidebanddesign("dLSBButter", "DLSB", "Butterworth Dishal Lower Sideband filter", 47, false, false, true);
}
void DLSBcheby_Click() {
    sidebanddesign("DLSBcheby", "DLSB", "Chebyshev Dishal Lower Sideband filter", 47, true, true, true);
}
void dUSBbutter_Click() {
    sidebanddesign("dUSBbutter", "DUSB", "Butterworth Dishal Upper sideband Filter", 48, false, false, false);
}
void dUSBcheby_Click() {
    sidebanddesign("dUSBcheby", "DUSB", "Chebyshev Dishal Upper sideband Filter", 48, true, false, false);
}
void dLSBCohn_Click() { cohndesign("Min-Loss (Cohn)Dishal Lower sideband Filter", true); }
void dUSBCohn_Click() { cohndesign("Min-Loss (Cohn)Dishal Upper sideband Filter", false); }

} // namespace zelk
