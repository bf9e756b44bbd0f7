// The walk through a ladder at one frequency: forwardwalk from source to load gives the
// voltage ratio, phase and the impedance seen from the load; backwardwalk from load to
// source gives the input impedance. The caller sets store.wA (rad/s) first.
#pragma once

namespace zelk {

// The walkers' running values, process-wide and kept from call to call.
struct WalkValues {
    double Rt = 0, Xt = 0;     // running impedance at the present node
    double Gt = 0, Bt = 0;     // the same as an admittance
    double Zmag = 0;           // |Rt + jXt| after the last series arm
    double Zmag1 = 0;          // Zmag after dipole 1: the source resistor
    double Zdmag = 0;          // magnitude of the last shunt arm (the load at the end)
    double Rsum = 0, Xsum = 0, Zsummag = 0;
    double Vratio = 0;         // node voltage over the source EMF
    double Vphase = 0;         // accumulated phase, radians
};
inline WalkValues walk;

void forwardwalk(int slot);
void backwardwalk(int slot);

} // namespace zelk
