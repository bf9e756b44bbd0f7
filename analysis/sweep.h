// The frequency sweep of a plot: 513 logarithmically spaced points from F1 to F2, one
// quantity of analysis/response.h at each, for one slot. The ladders built from the
// common dipole types (resistors, inductors, capacitors, series and parallel LC, empty
// places and open circuits) are walked many frequencies at a time; any other ladder,
// and any point whose arithmetic leaves the finite numbers, goes through the one-point
// walk, so that every point carries the numbers of the one-point walk.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/response.h"

namespace zelk {

inline constexpr int SWEEPPOINTS = 513; // npoints + 1

// The sweep frequencies in rad/s: wA[i] = (6.283185308*F1) * ((F2/F1) ^ (i/512)), within
// a few units in the last place (sweepfrequency gives the formula's own rounding). The
// host's faults of the formula are raised as RuntimeFault: F1 = 0 (11), spans of opposite
// signs (5, a negative number to a fractional power), a frequency too large (6).
void sweepfrequencies(double F1, double F2, double* wA, int n = SWEEPPOINTS);

// The values of q for slot s at the n frequencies wA[0..n), in sweep order (the group
// delay's previous phase and frequency start at 0). Returns false when a fault prompt
// was answered with Abort: store.abortanalysis is then left set for the caller, and the
// values from the aborted point on are meaningless.
bool sweepvalues(Quantity q, int s, const double* wA, double* out, int n = SWEEPPOINTS);

// What a sweep's values came from, kept by the caller beside them: the block walk's
// translation of the ladder (each arm's form and coefficients), the quantity, the vector
// width, the point count and the caller's stamp of its frequencies; and the running
// impedance that the walk leaves at the last point. Set only by a sweep whose every
// value the block walk gave whole, so that no point went through a fault prompt.
struct SweepKey {
    bool valid = false;
    Quantity q = Quantity::PEG;
    int level = -1, n = 0;
    std::uint64_t frequencies = 0;
    std::vector<double> arms;
    double lastRt = 0, lastXt = 0;
};

// sweepvalues for a caller that keeps its frequencies and values between sweeps (a
// plot at an unchanged span), with the frequencies' reciprocals iwA[i] = 1.0 / wA[i].
// When key says that out holds the values of the same translation, quantity and
// frequencies (stamp: the caller's mark of wA, changed whenever wA is), they stand, and
// the store is left as the walk leaves it; the values are those the walk would give
// again, bit for bit. Otherwise the sweep runs and key is set anew.
bool keptsweepvalues(Quantity q, int s, const double* wA, const double* iwA, double* out, SweepKey& key,
                     std::uint64_t stamp, int n = SWEEPPOINTS);

// The same through the one-point walk alone: the reference of the block walk.
bool sweepvalues_onepoint(Quantity q, int s, const double* wA, double* out, int n = SWEEPPOINTS);

// True when the block walk can take slot s for quantity q (its dipole types and values
// are those it knows).
bool blockwalkable(Quantity q, int s);

// The forward walk's voltage ratio and phase at the n frequencies w[0..n) (rad/s, any
// order), the block walk where it can, as the time plots' harmonic passes need. Returns
// the index of the point whose walk was aborted from a fault prompt (store.abortanalysis
// is then set and the values from it on are not written), or n.
int forwardwalkvalues(int s, const double* w, int n, double* vratio, double* vphase);

// Re sum_{k=1..K} (cr[k] + j ci[k]) z_i^k at the n points z_i = zr[i] + j zi[i] of the
// unit circle, by Horner's rule in the block walk's vectors (the time plots' sums).
void rotationsums(const double* cr, const double* ci, int K, const double* zr, const double* zi, int n,
                  double* out);

// The widest vectors the block walk may use: 2 AVX-512, 1 AVX2, 0 SSE2 (tests lower it
// to run every width the processor has).
inline int sweepvectorlevel = 2;

// Counts of points by path in the last sweepvalues call (for tests and the benchmark).
struct SweepStats {
    int blockpoints = 0;
    int onepoints = 0;
    int wholepoints = 0; // of the block points, those whose decibels the kernel gave whole
    int keptpoints = 0;  // points whose kept values stood (keptsweepvalues)
};
inline SweepStats sweepstats;

} // namespace zelk
