// The dipoles' immittance at the analysis frequency, worked out in the evaluation form
// that each type's catalogue record names (core/dipolecatalogue.h).
#pragma once

#include <string>

#include <initializer_list>

namespace zelk {

// True when the dipole type t is one of the set.
inline bool among(int t, std::initializer_list<int> set) {
    for (int v : set)
        if (t == v) return true;
    return false;
}

// The ladder walkers' running values, process-wide and kept from call to call; the
// transformer and composite dipoles read and write them while they are evaluated.
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

// Evaluates dipole d of slot s at store.wA into store.Zr, Zi, Yr, Yi (and, for the
// transformer and composite types, the walker's running values and store.zscale, which
// each call first sets to 1). A floating-point fault brings up the "ANALYSIS ERROR" box:
// Abort sets store.abortanalysis, Retry runs the failed statement again, Ignore goes on
// with the next statement and leaves the failed one's target as it was.
void dipoleimmittance(int d, int s);

// The text of the "ANALYSIS ERROR" box for a fault number in dipole d of slot s.
std::string analysiserrortext(int number, int d, int s);

} // namespace zelk
