// The Pi and T attenuator pad commands: the termination and attenuation prompts, the
// search for the smallest attenuation that gives a positive last resistor, the layout.
#include "design/padcmds.h"

#include <cmath>
#include <string>

#include "design/lcflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "synthesis/pads.h"

namespace zelk {

namespace {

// The search gives up here: with a non-positive impedance the last resistor may never
// turn positive, and the host's loop would run on for ever.
constexpr double SEARCHLIMIT = 300; // dB

// Dipoles that hold r1, r2, r3 while the pad is searched and in the finished layout.
int firstresistor(bool tpad) { return tpad ? 3 : 2; }

PadResistors resistors(bool tpad) {
    return tpad ? tpadresistors(pad.padratio, pad.padZin, pad.padZout)
                : pipadresistors(pad.padratio, pad.padZin, pad.padZout);
}

void storeresistors(int s, bool tpad, const PadResistors& r) {
    const int d = firstresistor(tpad);
    dipole(s, d).R = r.r1;
    dipole(s, d + 1).R = r.r2;
    dipole(s, d + 2).R = r.r3;
}

void paddesign(bool tpad) {
    panelimage(tpad ? 52 : 51);
    getpad();
    if (store.cancelled) return;
    if (!padminimum(tpad)) return;
    const double minimum = pad.padattn;
    getattn(minimum);

    store.lastslot = static_cast<short>(store.lastslot + 1);
    store.curslot = store.lastslot;
    DesignSlot& s = slot(store.curslot);
    s.code = "PAD";
    s.title = "Attenuator Pad";
    s.dip(1).type = 1;
    s.dip(1).R = pad.padZin;
    if (tpad) {
        s.dip(2).type = 38;
        s.dip(3).type = 1;
        s.dip(4).type = 31;
        s.dip(5).type = 1;
    } else {
        s.dip(2).type = 31;
        s.dip(3).type = 1;
        s.dip(4).type = 31;
        s.dip(5).type = 6;
    }
    s.dip(6).type = 31;
    s.dip(6).R = pad.padZout;
    s.dipolecount = 6;
    pad.padratio = std::pow(10.0, pad.padattn / 20);
    storeresistors(store.curslot, tpad, resistors(tpad));
    finishdesign();
}

} // namespace

void getpad() {
    panelclear();
    panelrow(0, "Zin =", pad.padZin > 0 ? engformatvalue(pad.padZin) : "50", "Input impedance");
    panelrow(1, "Zout =", pad.padZout > 0 ? engformatvalue(pad.padZout) : "50", "Output impedance");
    if (!panelshow()) return;
    pad.padZin = panelvalue(0);
    pad.padZout = panelvalue(1);
}

void getattn(double minimum) {
    const std::string shown = minimum > 0 ? engformatvalue(minimum) : "10";
    panelclear();
    panelrow(0, "Attn db =", shown, "MINIMUM Attenuation in db");
    for (;;) {
        // A cancel is not tested: the pad is then made with the minimum.
        if (!panelshow()) return;
        const double typed = panelvalue(0);
        if (!(typed < minimum)) {
            pad.padattn = typed;
            return;
        }
        MsgBox("The attenuation MUST be greater than the MINIMUM shown.", vbOKOnly | vbExclamation, "WARNING");
        panelrow(0, "Attn db =", shown, "MINIMUM Attenuation in db");
    }
}

bool padminimum(bool tpad) {
    // The search runs on the dipoles of slot 0, before a slot is taken, and tests only the
    // last resistor, at the top of the loop: a positive value left there ends it at once.
    const int first = firstresistor(tpad);
    const double before[3] = {dipole(0, first).R, dipole(0, first + 1).R, dipole(0, first + 2).R};
    pad.padattn = 0;
    while (!(dipole(0, first + 2).R > 0)) {
        if (pad.padattn >= SEARCHLIMIT) {
            for (int i = 0; i < 3; ++i) dipole(0, first + i).R = before[i];
            MsgBox("No pad can be made between these impedances.\nZin and Zout must both be greater than 0.",
                   vbOKOnly | vbExclamation, "WARNING");
            return false;
        }
        pad.padattn = pad.padattn + 0.01;
        pad.padratio = std::pow(10.0, pad.padattn / 20);
        storeresistors(0, tpad, resistors(tpad));
    }
    return true;
}

void attnp_Click() {
    sethelp("Allows you to design a Pi attenuator pad.", "You should use Insertion Gain to analyze these.", "",
            "Pads are sometimes useful to match filters of dissimilar impedances.");
    paddesign(false);
}

void attnt_Click() {
    sethelp("Allows you to design a T attenuator pad.", "You should use Insertion Gain to analyze these.", "",
            "Pads are sometimes usefull to match filters of dissimilar impedances.");
    paddesign(true);
}

} // namespace zelk
