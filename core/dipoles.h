// The dipole catalogue: types 1 to 73, their immittance at the analysis frequency and the
// prompt for their values.
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

// Evaluates dipole d of slot s at store.wA into store.Zr, Zi, Yr, Yi (and, for the
// transformer and composite types, the walker's running values and store.zscale, which
// each call first sets to 1). A floating-point fault brings up the "ANALYSIS ERROR" box:
// Abort sets store.abortanalysis, Retry runs the failed statement again, Ignore goes on
// with the next statement and leaves the failed one's target as it was.
void dipoleimmittance(int d, int s);
// Puts the data panel up for one dipole of slot 0 and stores the answers.
void dipoleprompt(int d, int type);
// The crystal panel of a crystal dipole: shows the crystal window and copies the design
// crystal of slot curslot into dipole d of slot 0.
void crystalpanel(int d);

// The text of the "ANALYSIS ERROR" box for a fault number in dipole d of slot s.
std::string analysiserrortext(int number, int d, int s);

} // namespace zelk
