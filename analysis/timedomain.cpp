#include "analysis/timedomain.h"

#include <cmath>

#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/hostmath.h"

namespace zelk {

namespace {


// One walk at wA; false when the walk was aborted.
bool walkat(int s, double w) {
    store.wA = w;
    forwardwalk(s);
    return !store.abortanalysis;
}

// Harmonic k of a pulse train of duty cycle D, from the walk just made: the direct term
// is the mean, the others the pulse's sin(a)/a spectrum; sh shifts the pulse in time.
void pulseharmonic(Harmonics& h, int k, double D, double sh) {
    const double V = walk.Vratio;
    if (k == 0) {
        h.hamp[0] = V * D;
    } else {
        const double a = k * PI * D;
        h.hamp[k] = hdiv((V + V) * D * std::sin(a), a);
    }
    h.hph[k] = walk.Vphase - k * sh;
}

} // namespace

bool harmonicpass(TimeKind kind, int s, double T, double D, double wT, Harmonics& h) {
    h = Harmonics{};
    const double w1 = hdiv(TWOPI, T);
    switch (kind) {
    case TimeKind::Impulse:
    case TimeKind::Step:
        // hamp[0] stays 0: the direct term is not sampled.
        for (int k = 1; k <= HARMONICS; ++k) {
            double w = k * w1;
            if (!walkat(s, w)) return false;
            h.hamp[k] = walk.Vratio;
            h.hph[k] = walk.Vphase;
            h.hw[k] = w;
        }
        return true;
    case TimeKind::Pulse: {
        const double sh = (w1 * D * T) / 2;
        for (int k = 0; k <= HARMONICS; ++k) {
            // The direct component is taken at 1 Hz.
            double w = k == 0 ? TWOPI : k * w1;
            h.hw[k] = w;
            if (!walkat(s, w)) return false;
            pulseharmonic(h, k, D, sh);
        }
        return true;
    }
    case TimeKind::TonePulse: {
        const double wS = hdiv(TWOPI, T);
        const double sh = (wS * D * T) / 2;
        for (int k = 0; k <= HARMONICS; ++k) {
            // Only the upper sideband of the tone is sampled, shifted down to base band.
            double w = k == 0 ? wT : wT + k * wS;
            h.hw[k] = k == 0 ? 0 : k * wS;
            if (!walkat(s, w)) return false;
            pulseharmonic(h, k, D, sh);
        }
        return true;
    }
    }
    return true;
}

double harmonicseries(TimeKind kind, const Harmonics& h, double t) {
    double sum = 0;
    for (int k = 1; k <= HARMONICS; ++k) sum += h.hamp[k] * std::cos(h.hw[k] * t + h.hph[k]);
    switch (kind) {
    case TimeKind::Impulse:
    case TimeKind::Step: return h.hamp[0] / 2 + sum;
    case TimeKind::Pulse: return (h.hamp[0] + sum) * 2 - h.hamp[0];
    case TimeKind::TonePulse: return -((h.hamp[0] + sum) - h.hamp[0]);
    }
    return 0;
}

void timevalues(TimeKind kind, const Harmonics& h, double T, double* out, int n) {
    const int np = store.npoints;
    double v = 0, uprev = 0;
    for (int i = 0; i < n; ++i) {
        double t = T * i / np;
        double u = harmonicseries(kind, h, t);
        if (kind == TimeKind::Step) {
            // A running sum of the impulse curve: a rectangle rule with the fixed scale
            // 4/512, kept in the form the plot has always used.
            u = (u / np) * 4;
            v = v + (u - uprev) + uprev;
            uprev = u;
            out[i] = v;
        } else {
            out[i] = u;
        }
    }
}

} // namespace zelk
