#include "core/designflow.h"

#include <cmath>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/selector.h"
#include "core/specprompts.h"
#include "entry/panel.h"
#include "schematic/schematicview.h"
#include "shell/frame.h"
#include "synthesis/bwcheby.h"
#include "synthesis/transforms.h"

namespace zelk {

namespace {
const bool registered = registerresetter([] {
    flow = DesignFlow{};
    prototerms = PrototypeTerms{};
});

const LCFamily butterworthfamily{"B", "Butterworth", 1, butterworthproto, schematicrealize};
const LCFamily chebyshevfamily{"C", "Chebyshev", 5, chebyshevproto, schematicrealize};

const bool regb = registercommand("butterworth", butterworth_Click, CommandKind::Design);
const bool regc = registercommand("chebyshev", chebyshev_Click, CommandKind::Design);
} // namespace

std::string kindtitle(int kind) {
    switch (kind) {
    case 0: return " Low-Pass";
    case 1: return " High-Pass";
    case 2: return " Band-Pass";
    case 3: return " Band-Reject";
    default: return "";
    }
}

std::string kindcode(int kind) {
    switch (kind) {
    case 0: return "LP";
    case 1: return "HP";
    case 2: return "BP";
    case 3: return "BR";
    default: return "";
    }
}

bool takeslotandselect(const std::string& letter) {
    store.lastslot = static_cast<short>(store.lastslot + 1);
    store.curslot = store.lastslot;
    slot(store.curslot).code = letter;
    selfunction.showmodal();
    return !flow.selectorcancelled;
}

bool kindprompt(const LCFamily& family) {
    const int kind = flow.functionkind;
    if (kind < 0 || kind > 3) raisefault(5);
    panelimage(family.firstpicture + kind);
    slot(store.curslot).code = family.letter + kindcode(kind);
    switch (kind) {
    case 0:
    case 1: getdesign2(); break;
    case 2: getdesign4b(); break;
    default: getdesign4(); break;
    }
    if (store.cancelled) {
        newfilter_Click();
        return false;
    }
    return true;
}

void kindtitleset(const std::string& basetitle) {
    slot(store.curslot).title = basetitle + kindtitle(flow.functionkind);
}

void stopbandratio() {
    DesignSlot& s = slot(store.curslot);
    const double w1 = s.w1, w2 = s.w2, w3 = s.w3, w4 = s.w4;
    switch (flow.functionkind) {
    case 0:
        s.w0 = w1;
        store.wA = hdiv(w2, w1);
        break;
    case 1:
        // A high-pass is cut off at F2 and stops at F1.
        s.w0 = w2;
        store.wA = hdiv(w2, w1);
        break;
    case 2: {
        const double w0 = hsqr(w2 * w3);
        s.w0 = w0;
        const double B = w3 - w2;
        const double a = hdiv(-hdiv(w1 * w1 - w0 * w0, w1), B);
        const double b = hdiv(hdiv(w4 * w4 - w0 * w0, w4), B);
        store.wA = a < b ? a : b;
        flow.Qratio = hdiv(w0, B);
        break;
    }
    case 3: {
        // Band-reject: F1 and F4 are the pass-band corners, F2 and F3 the stop edges.
        const double w0 = hsqr(w1 * w4);
        s.w0 = w0;
        const double B = w4 - w1;
        const double a = w2 != w0 ? hdiv(-(w2 * B), w2 * w2 - w0 * w0) : 1e12;
        const double b = w3 != w0 ? hdiv(w3 * B, w3 * w3 - w0 * w0) : 1e12;
        store.wA = (a > 0 && a < b) ? a : b;
        flow.Qratio = hdiv(w0, B);
        break;
    }
    default: break;
    }
}

void scaletransform() {
    switch (flow.functionkind) {
    case 0: LPtoLP(); break;
    case 1: LPtoHP(); break;
    case 2: LPtoBP(); break;
    case 3: LPtoBR(); break;
    default: break;
    }
}

void checkfinite() {
    DesignSlot& s = slot(store.curslot);
    const int n = s.count();
    if (n < 0 || n > MAXDIPOLE) raisefault(9);
    for (int d = 1; d <= n; ++d) {
        const Dipole& p = s.dip(d);
        for (double v : {p.R, p.C, p.L, p.Qu, p.K, p.Ca, p.La, p.Qa})
            if (!std::isfinite(v)) raisefault(6);
    }
    for (double v : {s.r0.value(), s.w0.value(), s.Astop.value()})
        if (!std::isfinite(v)) raisefault(6);
}

void finishdesign() {
    checkfinite();
    frame.designsaved = false;
    schematicbuild();
}

void lcdesign(const LCFamily& family) {
    if (!takeslotandselect(family.letter)) return;
    if (!kindprompt(family)) return;
    // A cancel of getQu is seen after the prototype has run.
    getQu();
    kindtitleset(family.basetitle);
    stopbandratio();
    family.prototype();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    family.realize();
    scaletransform();
    finishdesign();
}

void butterworth_Click() {
    sethelp("Butterworth Filter", "Butterworth filters exhibit a flat response in the passband,",
            "a user specified attenuation at the cutoff frequency (3 db is typical and the default),",
            "and a stopband rolloff of approximately 6db per octave per order of the filter.");
    lcdesign(butterworthfamily);
}

void chebyshev_Click() {
    sethelp("Chebyshev Filter", "Chebyshev filters exhibit sharper rolloff in the stopband at the expense of ",
            "a user specified ripple in the passband. The greater the allowed ripple, the steeper the rolloff.",
            "These filters are normalized to an attenuation of 3db at the cutoff frequency.");
    lcdesign(chebyshevfamily);
}

} // namespace zelk
