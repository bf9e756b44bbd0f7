#include "analysis/timedomain.h"

#include <cmath>

#include "analysis/sweep.h"
#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/hostmath.h"

namespace zelk {

namespace {

// Harmonic k of a pulse train of duty cycle D, from the walk's voltage ratio V and phase
// at its frequency: the direct term is the mean, the others the pulse's sin(a)/a
// spectrum; sh shifts the pulse in time.
void pulseharmonic(Harmonics& h, int k, double D, double sh, double V, double phase) {
    if (k == 0) {
        h.hamp[0] = V * D;
    } else {
        const double a = k * PI * D;
        h.hamp[k] = hdiv((V + V) * D * std::sin(a), a);
    }
    h.hph[k] = phase - k * sh;
}

} // namespace

bool harmonicpass(TimeKind kind, int s, double T, double D, double wT, Harmonics& h) {
    h = Harmonics{};
    const double w1 = hdiv(TWOPI, T);
    // The walk frequencies of the pass (index 0 unused for the impulse and the step),
    // walked together; then the harmonics from them in order, as far as the walk went.
    double w[HARMONICS + 1], V[HARMONICS + 1], ph[HARMONICS + 1];
    const int k0 = kind == TimeKind::Impulse || kind == TimeKind::Step ? 1 : 0;
    double sh = 0;
    switch (kind) {
    case TimeKind::Impulse:
    case TimeKind::Step:
        for (int k = 1; k <= HARMONICS; ++k) w[k] = k * w1;
        break;
    case TimeKind::Pulse:
        sh = (w1 * D * T) / 2;
        // The direct component is taken at 1 Hz.
        for (int k = 0; k <= HARMONICS; ++k) w[k] = k == 0 ? TWOPI : k * w1;
        break;
    case TimeKind::TonePulse: {
        const double wS = hdiv(TWOPI, T);
        sh = (wS * D * T) / 2;
        // Only the upper sideband of the tone is sampled, shifted down to base band.
        for (int k = 0; k <= HARMONICS; ++k) w[k] = k == 0 ? wT : wT + k * wS;
        break;
    }
    }
    // A pulse of no width faults in harmonic 1's division by its angle, before the walks
    // of the harmonics above it.
    const bool pulse = kind == TimeKind::Pulse || kind == TimeKind::TonePulse;
    const int top = pulse && 1 * PI * D == 0 ? 1 : HARMONICS;
    const int n = top + 1 - k0;
    const int walked = k0 + forwardwalkvalues(s, w + k0, n, V + k0, ph + k0);
    for (int k = k0; k <= HARMONICS; ++k) {
        switch (kind) {
        case TimeKind::Impulse:
        case TimeKind::Step:
            if (k >= walked) return false;
            h.hamp[k] = V[k];
            h.hph[k] = ph[k];
            h.hw[k] = w[k];
            break;
        case TimeKind::Pulse:
            h.hw[k] = w[k];
            if (k >= walked) return false;
            pulseharmonic(h, k, D, sh, V[k], ph[k]);
            break;
        case TimeKind::TonePulse:
            h.hw[k] = k == 0 ? 0 : k * hdiv(TWOPI, T);
            if (k >= walked) return false;
            pulseharmonic(h, k, D, sh, V[k], ph[k]);
            break;
        }
    }
    return true;
}

namespace {
double seriesvalue(TimeKind kind, const Harmonics& h, double sum);
}

double harmonicseries(TimeKind kind, const Harmonics& h, double t) {
    double sum = 0;
    for (int k = 1; k <= HARMONICS; ++k) sum += h.hamp[k] * std::cos(h.hw[k] * t + h.hph[k]);
    return seriesvalue(kind, h, sum);
}

namespace {

// The sum of hamp[k] cos(hw[k] t + hph[k]), k = 1..100, at the n times t_i = T i / np,
// when hw[k] is k hw[1] as the passes make it: the real part of the polynomial
// sum c_k z^k in z = e^(j hw[1] t) with c_k = hamp[k] e^(j hph[k]), by Horner's rule
// (a rotation and an addition per harmonic, in the block walk's vectors). |z| = 1 keeps
// the rule's rounding to a few units of the last place of the sum of |c_k|. The points
// z_i come from two short tables of directly taken cosines and sines, z at 32 a + b
// being the product of the entries at 32 a and at b. False when the harmonics are not
// evenly spaced (the direct sum is then taken).
bool harmonicsums(const Harmonics& h, double T, int np, double* out, int n) {
    const double w1 = h.hw[1];
    for (int k = 2; k <= HARMONICS; ++k)
        if (std::abs(h.hw[k] - k * w1) > 4e-16 * std::abs(h.hw[k])) return false;
    double cr[HARMONICS + 1], ci[HARMONICS + 1];
    for (int k = 1; k <= HARMONICS; ++k) {
        cr[k] = h.hamp[k] * std::cos(h.hph[k]);
        ci[k] = h.hamp[k] * std::sin(h.hph[k]);
    }
    double hir[32], hii[32], lor[32], loi[32];
    const int nhi = (n + 31) / 32;
    if (nhi > 32) return false;
    for (int a = 0; a < nhi; ++a) {
        double th = w1 * (T * (32 * a) / np);
        hir[a] = std::cos(th), hii[a] = std::sin(th);
    }
    for (int b = 0; b < 32; ++b) {
        double th = w1 * (T * b / np);
        lor[b] = std::cos(th), loi[b] = std::sin(th);
    }
    double zr[1024], zi[1024];
    for (int i = 0; i < n; ++i) {
        double ar = hir[i / 32], ai = hii[i / 32], br = lor[i % 32], bi = loi[i % 32];
        zr[i] = ar * br - ai * bi;
        zi[i] = ar * bi + ai * br;
    }
    rotationsums(cr, ci, HARMONICS, zr, zi, n, out);
    return true;
}

// The drawn value from the harmonic sum, by kind.
double seriesvalue(TimeKind kind, const Harmonics& h, double sum) {
    switch (kind) {
    case TimeKind::Impulse:
    case TimeKind::Step: return h.hamp[0] / 2 + sum;
    case TimeKind::Pulse: return (h.hamp[0] + sum) * 2 - h.hamp[0];
    case TimeKind::TonePulse: return -((h.hamp[0] + sum) - h.hamp[0]);
    }
    return 0;
}

} // namespace

void timevalues(TimeKind kind, const Harmonics& h, double T, double* out, int n) {
    const int np = store.npoints;
    double sums[1024];
    const bool fast = n <= 1024 && harmonicsums(h, T, np, sums, n);
    double v = 0, uprev = 0;
    for (int i = 0; i < n; ++i) {
        double u = fast ? seriesvalue(kind, h, sums[i]) : harmonicseries(kind, h, T * i / np);
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
