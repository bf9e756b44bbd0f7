// The dipole catalogue: types 1 to 73, their immittance at the analysis frequency and the
// prompt for their values.
#pragma once

namespace zelk {

// Evaluates dipole d of slot s at store.wA into store.Zr, Zi, Yr, Yi (and, for the
// transformer and composite types, the walker's running values and store.zscale).
// A floating-point fault brings up the "ANALYSIS ERROR" box.
void dipoleimmittance(int d, int s);
// Puts the data panel up for one dipole of slot 0 and stores the answers.
void dipoleprompt(int d, int type);

} // namespace zelk
