// The elliptic (Cauer) menu command: the LC design flow with the elliptic prototype and
// realisation, its own help lines, and the title set before the inductor Q prompt for
// low-pass and high-pass designs.
#include "design/ellipticcmd.h"

#include "core/designflow.h"
#include "design/lcflow.h"
#include "core/designstore.h"
#include "design/specprompts.h"
#include "core/framestate.h"
#include "synthesis/ellipticproto.h"
#include "synthesis/ellipticrealize.h"
#include "synthesis/transforms.h"
#include "design/terminate.h"

namespace zelk {

void ellipticproto() {
    ellipticprotoorder();
    if (store.cancelled) return;
    if (!store.oddorder) {
        sethelp("Even order Elliptic filters cannot be realized without mutual inductances unless some changes are made to your specifications.",
                "Click 'Use Z in' to preserve Z in specification and terminate in computed Z out.",
                "Click 'Use Z out' to preserve Z out specification and terminate in computed Z in.",
                "Click 'Use both' to preserve Z in and Z out specifications (filter may not meet specifications).");
        terminatewindow.showmodal();
    }
    ellipticprotoelements();
}

namespace {
const LCFamily ellipticfamily{"E", "Elliptic", 27, ellipticproto, ellipticrealize};
} // namespace

void elliptic_Click() {
    sethelp("Elliptic Filter. Elliptic filters exhibit sharper rolloff in the stopband ",
            "at the expense of a user specified ripples in the passband and stopband. The greater the allowed",
            "passband ripple, the steeper the rolloff.  The stopband attenuation has a user specified minimum.",
            "These filters are normalized to an attenuation equal to the ripple at the cutoff frequency.");
    // The selector reads this line to offer the elliptic configurations.
    store.help1 = "*Elliptic";
    showhelplines();
    if (!takeslotandselect(ellipticfamily.letter)) return;
    sethelp("Odd order elliptic filters can have input and output impedances that are different.",
            "using Bartletts Bisection Theorem. While this is supposed to work only for third order elliptic filters results",
            "seem to indicate fairly minimal damage to higher order responses.",
            "is probably less than that produced by using inexact component values in the actual filter.");
    if (!kindprompt(ellipticfamily)) return;
    // Low-pass and high-pass take their title before the Q prompt, band designs after it.
    const bool band = flow.functionkind >= 2;
    if (!band) kindtitleset(ellipticfamily.basetitle);
    // A cancel of getQu is seen after the prototype has run.
    getQu();
    if (band) kindtitleset(ellipticfamily.basetitle);
    stopbandratio();
    ellipticproto();
    if (store.cancelled) {
        newfilter_Click();
        return;
    }
    ellipticrealize();
    scaletransform();
    finishdesign();
}

} // namespace zelk
