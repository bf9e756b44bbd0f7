// The exact impulse and step responses of a ladder, beside the 100-harmonic curves of the
// time plots: the same transfer function (the forward walk's voltage ratio and phase)
// sampled densely and carried back to the time domain by a numerical inverse Fourier
// integral, with no periodic test signal and no fixed scale. Drawn as a second curve
// with a legend when the Options item "Exact Time Responses" is checked.
#pragma once

#include <array>

#include "analysis/sweep.h"
#include "core/designstore.h"

namespace zelk {

class PlotForm;

// The exact curves at the plot's 513 time points t = T*i/512, in the units the classic
// curves are drawn in: the impulse as (T/2) h(t), the weight the harmonic sum gives one
// harmonic spacing, and the step as 2 s(t), the running sum's fixed scale 4/512 applied
// to that impulse. A filter between equal terminations thus settles at 1 on both plots.
struct ExactTime {
    double impulse[SWEEPPOINTS];
    double step[SWEEPPOINTS];
    // False when the walks a redraw allows left the curves less certain than 1e-3 of
    // their largest value (a response that rings far longer than the plot time, or
    // reaches far above the harmonics): the values are then the best the samples gave
    // and the plot does not draw them.
    bool resolved = false;
    int samples = 0;      // frequencies walked
    double accuracy = 0;  // estimated error, relative to each curve's largest value
};

// The curves of the last pass of each slot, with what they were found from: the plot
// time and the response at the sampling's first probe frequencies. A redraw of the same
// response at the same time takes them as they are.
inline constexpr int EXACTPROBES = 4 * 27 + 1; // quarter octaves from w1/8 to 2^24 w1
struct ExactTimeCache {
    struct Entry {
        double T = 0;
        double V[EXACTPROBES] = {}, ph[EXACTPROBES] = {};
        ExactTime curves;
    };
    std::array<Entry, MAXSLOT + 1> slots{};
};
inline ExactTimeCache exactcache;
void resetexacttime();

// The exact curves of slot s for plot time T (seconds). False when the walk was aborted
// from the fault prompt (store.abortanalysis is then left set). A sample that leaves the
// finite numbers is a run-time fault ("Overflow").
bool exacttimevalues(int s, double T, ExactTime& out);

// When the option is on and p is the impulse or the step plot: draws the exact curve of
// each slot of the pass in its own colour over the classic curves, and the legend. False
// when a walk was aborted.
bool drawexactcurves(PlotForm& p);

// The colour of slot s's exact curve.
long exactcolour(int s);

} // namespace zelk
