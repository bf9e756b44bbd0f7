// The coupled-resonator commands: each sets its help lines, takes a slot, asks for the
// band and the order, makes the prototype terms (closed form or a table record) and runs
// CRrealize.
#include "design/coupledcmds.h"

#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "design/lcflow.h"
#include "entry/panel.h"
#include "synthesis/bwcheby.h"
#include "synthesis/coupled.h"
#include "synthesis/tables.h"

namespace zelk {

namespace {


const char* const resonatorline =
    "Number of resonators = order of the filter. Only order can be specified.  "
    "Try various orders to obtain the desired stopband Attn.";

bool chebyshevcode() { return current().code.rfind("C", 0) == 0; }

std::string ordertext(double n) { return engformatvalue(n); }

void orderrow(double n) { panelrow(2, "Order =", ordertext(n), "Order of the filter"); }

// Steps common to every command up to the prompt: slot, code, title, kmin, sketch and
// getdesignCRa. False when the prompt was cancelled (File New has then run).
bool startdesign(const std::string& code, const std::string& title, int kmin, int picture) {
    store.lastslot = static_cast<short>(store.lastslot + 1);
    store.curslot = store.lastslot;
    DesignSlot& s = current();
    s.code = code;
    s.title = title;
    flow.kmin = static_cast<short>(kmin);
    panelimage(picture);
    getdesignCRa();
    if (store.cancelled) {
        newfilter_Click();
        return false;
    }
    return true;
}

void closedform(bool chebyshev) {
    if (chebyshev) {
        chebyshevelements();
        storeprototerms(static_cast<int>(Int(current().order)));
    } else {
        butterworthCRproto();
    }
    CRrealize();
}

void tablefamily(const std::string& title, int kmin, const std::string& file) {
    sethelp(title, "", "", resonatorline);
    if (!startdesign("TCR", title, kmin, 17)) return;
    opentablefile(file);
    current().title = title;
    getCRtabledata();
    storeprototerms(static_cast<int>(Int(current().order)));
    CRrealize();
}

} // namespace

void getdesignCRa() {
    DesignSlot& s = current();
    const bool fresh = flow.crdefaults;
    const double w1 = s.w1, w2 = s.w2;
    const bool band = w1 > 0 && w2 > 0 && !fresh;
    const double kmin = flow.kmin;
    panelclear();
    panelrow(0, "CF =", band ? engformatvalue((w1 + (w2 - w1) / 2) / 3.141592654 / 2) : "100000000",
             "Center Frequency");
    panelrow(1, "BW =", band ? engformatvalue(((w2 - w1) / 2) / 3.141592654) : "1000000",
             "Bandwidth");
    orderrow(s.order == 0 || fresh ? kmin : double(s.order));
    const bool cheby = chebyshevcode();
    if (cheby)
        panelrow(3, "Apass =", s.Apass > 0 && !fresh ? engformatvalue(s.Apass) : ".1",
                 "Passband ripple");
    for (;;) {
        if (!panelshow()) return;
        const double CF = panelvalue(0);
        const double BW = panelvalue(1);
        s.w1 = 6.283185308 * (CF - BW / 2);
        s.w2 = 6.283185308 * (CF + BW / 2);
        s.order = panelvalue(2);
        if (cheby) s.Apass = panelvalue(3);
        if (cheby && s.Apass >= 3) {
            MsgBox("The specified passband ripple must be less than 3db.\n"
                   "In fact, values greater than 1db are not recommended.",
                   vbOKOnly | vbExclamation, "WARNING");
        } else if (s.order < kmin) {
            MsgBox("The following must be true\nOrder = > " + Str(kmin), vbOKOnly | vbExclamation,
                   "Minimum Order Error");
            orderrow(kmin);
        } else if (hdiv(BW, CF) > 0.1) {
            MsgBox("Coupled resonator filters are best for bandwidths less than 10% of center "
                   "frequency",
                   vbOKOnly | vbExclamation, "Bandwidth too wide");
            orderrow(kmin);
        } else if (s.w1 > s.w2 || s.order == 0) {
            MsgBox("The following must be true\n0 < F1 < F2\nOrder > 1", vbOKOnly | vbExclamation,
                   "WARNING");
        } else {
            return;
        }
    }
}

void getLC() {
    const std::string shown = engformatvalue(crdefaultinductance());
    const double least = parsevalue(shown);
    panelclear();
    panelrow(0, "Li =", shown, "Inductance");
    panelrow(1, "Qu =", "Lossless", "Inductor Q");
    for (;;) {
        if (!panelshow()) return;
        const double Li = panelvalue(0);
        if (!(Li < least)) {
            craccept(Li, panelvalue(1));
            return;
        }
        MsgBox("The inductance must be greater than the default shown.", vbOKOnly | vbExclamation,
               "WARNING");
        panelrow(0, "Li =", shown, "Inductance");
    }
}

void getZCR() {
    DesignSlot& s = current();
    const double r0 = Int(s.r0);
    auto shown = [r0](double field) {
        return engformatvalue(field == 0 || field == r0 ? r0 : field);
    };
    panelclear();
    panelrow(0, "Zin =", shown(s.Zin), "Input impedance");
    panelrow(1, "Zout =", shown(s.Zout), "Output impedance");
    getdata.setnote(" If Zin and or Zout are specified different from default, C Match will be "
                    "used at those ports.");
    if (!panelshow()) return;
    s.Zin = panelvalue(0);
    s.Zout = panelvalue(1);
}

void CRrealize() {
    crcentre();
    panelimage(25);
    getdata.matchmode = "L";
    getLC();
    if (!store.cancelled) getZCR();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    crlayout();
    finishdesign();
    flow.crdefaults = false;
}

void CRrealizea() {
    crcentre();
    panelimage(25);
    getLC();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    crlayouttapped();
    finishdesign();
    flow.crdefaults = false;
}

void BCR_Click() {
    sethelp("Butterworth Coupled Resonator Band-Pass Filter", "", "", resonatorline);
    if (!startdesign("BCR", "Butterworth Coupled-Resonator Band-Pass", 2, 17)) return;
    closedform(false);
}

void CCR_Click() {
    sethelp("Chebyshev Coupled Resonator Band-Pass Filter",
            "Chebyshev coupled resonator band-pass filters exhibit sharper rolloff in the "
            "stopbands at the "
            "expense of ripple in the passband.",
            "The greater the allowed ripple, the steeper the rolloff.  Attenuation at the cutoff "
            "frequencies is "
            "3db.",
            resonatorline);
    if (!startdesign("CCR", "Chebyshev Coupled-Resonator Band-Pass", 2, 18)) return;
    closedform(true);
}

void BesselCR_Click() { tablefamily("Bessel Coupled Resonator", 2, "\\tables\\bessel.tbl"); }
void GaussianCR_Click() { tablefamily("Gaussian Coupled Resonator", 3, "\\tables\\gaussian.tbl"); }
void LegendreCR_Click() { tablefamily("Legendre Coupled Resonator", 3, "\\tables\\legendre.tbl"); }
void LP05CR_Click() {
    tablefamily("Linear Phase (.05 degree)Coupled Resonator", 2, "\\tables\\linph05.tbl");
}
void LP5CR_Click() {
    tablefamily("Linear Phase (.5 degree)Coupled Resonator", 2, "\\tables\\linph5.tbl");
}
void Gaussian6CR_Click() {
    tablefamily("Transitional Gaussian (6db) Coupled Resonator", 4, "\\tables\\gauss6.tbl");
}
void gaussian12CR_Click() {
    tablefamily("Transitional Gaussian (12db) Coupled Resonator", 4, "\\tables\\gauss12.tbl");
}

} // namespace zelk
