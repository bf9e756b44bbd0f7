#include "design/lcflow.h"

#include "core/designflow.h"

#include <cmath>

#include "core/commands.h"
#include "core/designstore.h"
#include "design/selector.h"
#include "design/specprompts.h"
#include "entry/panel.h"
#include "schematic/schematicview.h"
#include "core/framestate.h"
#include "synthesis/bwcheby.h"
#include "synthesis/transforms.h"

namespace zelk {

namespace {
const LCFamily butterworthfamily{"B", "Butterworth", 1, butterworthproto, schematicrealize};
const LCFamily chebyshevfamily{"C", "Chebyshev", 5, chebyshevproto, schematicrealize};

} // namespace

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
