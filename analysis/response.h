// The quantities of the frequency plots at one analysis frequency: each is one walk of the
// ladder followed by one formula. Plots, the cursor reading and the tolerance runs call
// these so that every number of the frequency analysis comes from one place.
#pragma once

namespace zelk {

enum class Quantity {
    PEG,               // power effective gain, dB
    PIG,               // power insertion gain, dB
    VEG,               // voltage effective gain, dB
    VIG,               // voltage insertion gain, dB
    CEG,               // current effective gain, dB
    CIG,               // current insertion gain, dB
    InputImpedance,    // |Z| looking into dipole 2, ohms
    OutputImpedance,   // |Z| of the source side at the last node, ohms
    ReturnLoss,        // dB, against R of dipole 1 of slot 0
    ReturnLossOverlay, // dB, against Zin of slot 0 (the overlay on a gain plot)
    Phase,             // degrees, wrapped terms summed, no unwrapping
    GroupDelay,        // seconds, first difference against the previous point
};

// The previous point of a group-delay sweep. The caller owns it and resets it at the
// start of each slot's sweep: both values start at 0.
struct GroupDelayState {
    double Vphaseprev = 0;
    double wAprev = 0;
    void reset() { Vphaseprev = 0, wAprev = 0; }
};

// Evaluates q for slot s at store.wA (rad/s). The caller tests store.abortanalysis
// straight after and stops its sweep if it is set (the value is then meaningless).
// A zero divisor or a logarithm of 0 in the formula raises the host's run-time fault,
// as the plot's own arithmetic would.
double response(Quantity q, int s, GroupDelayState& gd);
// Same, for the quantities that need no previous point.
double response(Quantity q, int s);
// The formula of a forward-walk quantity (gains, output impedance, phase, group delay)
// applied to the walker's running values as they stand, with store.wA for the group
// delay. The sweep's block walk fills the running values itself and then calls this.
double responsefromwalk(Quantity q, GroupDelayState& gd);

// The formula of an input-walk quantity (input impedance, return loss) applied to the
// impedance Rt + jXt looking into dipole 2, impedance scale applied.
double responsefrominput(Quantity q, double Rt, double Xt);

// The name a plot shows for the quantity ("Power Effective Gain", ...).
const char* responsename(Quantity q);

// The sweep frequency of point i of npoints between F1 and F2 hertz, in rad/s:
// (6.283185308*F1) * ((F2/F1) ^ (i/npoints)).
double sweepfrequency(double F1, double F2, int i, int npoints = 512);

} // namespace zelk
