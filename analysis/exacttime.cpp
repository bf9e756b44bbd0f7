#include "analysis/exacttime.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include "analysis/plotframe.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "core/surface.h"

namespace zelk {

// How the curves are found.
//
// The ladder is causal and its impulse response h(t) is real, so the real part R(w) of
// its transfer function alone carries it: for t > 0
//     h(t) = (2/pi) Integral_0^inf R(w) cos(w t) dw,
//     s(t) = Integral_0^t h = (2/pi) Integral_0^inf R(w) sin(w t)/w dw.
// R is even in w, and so are both integrands: the trapezoidal rule on the evenly spaced
// frequencies w_k = k dw has no end correction at w = 0, and its only error is that of
// sampling, a periodic repetition of h with period P = 2 pi/dw (the response that has
// not died away after P - T comes back into the plot), plus the part of the integral
// above the last frequency W. The plot's times are t_i = T i/512; with dw = w1/m
// (w1 = 2 pi/T, the harmonics' own spacing) the phase w_k t_i is 2 pi k i/(512 m), so all
// 513 sums come from one fast Fourier transform of length 512 m, the samples folded onto
// its bins. The transform's pi is the full-precision one: the folding is exact only for
// its own period (the truncated pi of the program would move the samples by parts in
// 1e10).
//
// A high-pass, a band-reject and a capacitive divider (the crystal ladders) keep a
// real value R(inf) at high frequency: an impulse of that weight at t = 0 and a jump of
// the step. The top of the band is fitted by R(inf) + c/(w^2 + a^2), which goes in by
// its own closed-form transforms; the sums take only the rest (see curves). The step
// adds R(inf) from t = 0 on (the value just after the jump); the impulse of zero width
// is not drawn.
//
// The sampling is chosen by the response itself. A probe of a few log-spaced walks from
// w1/8 to 2^24 w1 finds the highest frequency at which R still differs from its value at
// the top by 1e-4 of its largest difference; the band starts at twice that (at least
// 16 w1), and m at 4 (P = 4 T). The curves are compared with two coarser ones from the
// same samples: every other sample (P halved) and the lower half of the band (W halved).
// While either moves a curve by more than 1e-5 of its largest value, that side is
// doubled, the new frequencies walked and the old ones kept. At the limits a redraw
// allows (65536 walks, a period of 256 T) the curves are still drawn when within 1e-3
// (a fraction of a pixel), else they are reported not resolved. The walk at w = 0 would divide by a
// capacitor's zero admittance: the first sample is taken at 1e-6 dw, where R has its
// value at 0 to far below the tolerance.

namespace {

using cplx = std::complex<double>;

constexpr int NP = SWEEPPOINTS - 1; // the plot's 512 steps of time
constexpr int FIRSTM = 4, FIRSTK = 16;
constexpr int MAXSAMPLES = 1 << 16, MAXM = 256;
constexpr double AIM = 1e-5, ENOUGH = 1e-3;

// The roots e^(+j 2 pi q/L), q < L/2, of the largest transform of a sampling; the
// smaller ones take every second, fourth, ... entry.
struct Roots {
    size_t L = 0;
    std::vector<cplx> w;
    void size(size_t n) {
        if (n == L) return;
        L = n;
        w.resize(n / 2);
        for (size_t q = 0; q < n / 2; ++q)
            w[q] = std::polar(1.0, 2 * std::numbers::pi * static_cast<double>(q) / static_cast<double>(n));
    }
};

// X_i = sum_k x_k e^(+j 2 pi k i/L) in place, L a power of two dividing roots.L.
void transform(std::vector<cplx>& x, const Roots& roots) {
    const size_t L = x.size();
    for (size_t i = 1, j = 0; i < L; ++i) {
        size_t bit = L >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    double* a = reinterpret_cast<double*>(x.data());
    const double* w = reinterpret_cast<const double*>(roots.w.data());
    for (size_t len = 2; len <= L; len <<= 1) {
        const size_t half = len / 2, stride = roots.L / len;
        for (size_t i = 0; i < L; i += len)
            for (size_t j = 0; j < half; ++j) {
                double* u = a + 2 * (i + j);
                double* v = u + 2 * half;
                const double wr = w[2 * j * stride], wi = w[2 * j * stride + 1];
                const double vr = v[0] * wr - v[1] * wi, vi = v[0] * wi + v[1] * wr;
                v[0] = u[0] - vr, v[1] = u[1] - vi;
                u[0] += vr, u[1] += vi;
            }
    }
}

// The drawn curves from the samples R[0], R[stride], ... R[n*stride] at spacing
// dw = 2 pi/(m T): imp = (T/2) h, stp = 2 s. The band's top is fitted by
// R(inf) + c/(w^2 + a^2) through the samples at W/2 and W; that part goes in by its own
// transforms (h = c e^(-a t)/a, s = c (1 - e^(-a t))/a^2) and the sums take only what is
// left, which falls as 1/w^4 where R - R(inf) falls as 1/w^2: the part above W then
// shrinks as 1/W^3, not 1/W. a = 20/T: its h has died to e^-20 when the shortest
// period of a comparison brings it back (P/2 - T >= T), and a stays well below W
// (a = 3.2 w1, W >= 16 w1). The
// impulse's cosine sum and the step's sine sum are the real parts of one transform of
// the complex samples, at i and at L - i.
void curves(const std::vector<double>& R, int stride, int n, int m, double T, const Roots& roots, double* imp,
            double* stp) {
    const size_t L = static_cast<size_t>(NP) * static_cast<size_t>(m);
    const double dw = 2 * std::numbers::pi / (m * T), W = n * dw, a = 20 / T;
    auto at = [&](int k) { return R[static_cast<size_t>(k) * static_cast<size_t>(stride)]; };
    // Fitted only where the top falls as 1/w^2 (each halving of w four times the step
    // below it); a top that falls faster is left to the truncation, which then costs
    // less than a fit that would carry its slope on beyond W.
    const double q = (at(n / 4) - at(n / 2)) / (at(n / 2) - at(n));
    const double c = q > 2 && q < 8 ? (at(n / 2) - at(n)) / (1 / (W * W / 4 + a * a) - 1 / (W * W + a * a)) : 0;
    const double rinf = at(n) - c / (W * W + a * a);
    std::vector<cplx> x(L);
    for (int k = 0; k <= n; ++k) {
        const double w = k * dw, r = at(k) - rinf - c / (w * w + a * a);
        const double end = k == 0 || k == n ? 0.5 : 1;
        x[static_cast<size_t>(k) % L] += end * cplx(r, k == 0 ? 0 : r / k);
    }
    transform(x, roots);
    const double r0 = at(0) - rinf - c / (a * a);
    for (size_t i = 0; i < SWEEPPOINTS; ++i) {
        const double t = T * static_cast<double>(i) / NP, decay = std::exp(-a * t);
        const double re = x[i].real(), back = x[(L - i) % L].real();
        imp[i] = (2.0 / m) * ((re + back) / 2) + (T / 2) * c * decay / a;
        const double sines = (back - re) / 2;
        stp[i] = 2 * (rinf + (2 * r0 * static_cast<double>(i)) / static_cast<double>(L) +
                      (2 / std::numbers::pi) * sines + c * (1 - decay) / (a * a));
    }
}

double largest(const double* v) {
    double m = 0;
    for (int i = 0; i < SWEEPPOINTS; ++i) m = std::max(m, std::abs(v[i]));
    return std::max(m, 1e-9);
}

double apart(const double* a, const double* b, double scale) {
    double d = 0;
    for (int i = 0; i < SWEEPPOINTS; ++i) d = std::max(d, std::abs(a[i] - b[i]));
    return d / scale;
}

// Walks slot s at the frequencies w and stores R = Vratio cos(Vphase) at out[at[j]].
bool walkreal(int s, const std::vector<double>& w, const std::vector<size_t>& at, std::vector<double>& out) {
    const int n = static_cast<int>(w.size());
    std::vector<double> V(w.size()), ph(w.size());
    if (forwardwalkvalues(s, w.data(), n, V.data(), ph.data()) < n) return false;
    for (size_t j = 0; j < w.size(); ++j) out[at[j]] = hfinite(V[j] * std::cos(ph[j]));
    return true;
}

// The probe: R at quarter octaves from w1/8 to 2^24 w1 (its voltage ratios and phases
// are also the fingerprint of the response in the cache).
constexpr int PROBES = EXACTPROBES;

// The starting band in harmonic spacings w1: a power of two from FIRSTK up, at least
// twice the highest probe frequency where R still differs from its value at the top by
// 1e-4 of its largest difference (above that the fitted top takes over).
int startband(const double* w, const double* V, const double* ph, double w1) {
    const double top = V[PROBES - 1] * std::cos(ph[PROBES - 1]);
    double change[PROBES], most = 0;
    for (int j = 0; j < PROBES; ++j) most = std::max(most, change[j] = std::abs(V[j] * std::cos(ph[j]) - top));
    int k = FIRSTK;
    for (int j = PROBES - 1; j > 0; --j)
        if (change[j] > 1e-4 * most) {
            while (k < 2 * w[j] / w1 && k < MAXSAMPLES / FIRSTM) k *= 2;
            break;
        }
    return k;
}

} // namespace

void resetexacttime() { exactcache = ExactTimeCache{}; }

bool exacttimevalues(int s, double T, ExactTime& out) {
    out = ExactTime{};
    if (!(T > 0) || !std::isfinite(T)) return true;
    int m = FIRSTM;
    double dw = 2 * std::numbers::pi / (m * T);
    double pw[PROBES], pV[PROBES], pph[PROBES];
    for (int j = 0; j < PROBES; ++j) pw[j] = m * dw * std::exp2(j / 4.0 - 3);
    if (forwardwalkvalues(s, pw, PROBES, pV, pph) < PROBES) return false;
    // The same response at the same plot time: the curves of the last pass (a resize,
    // the auto scale, the option's own redraw).
    ExactTimeCache::Entry& kept = exactcache.slots[static_cast<size_t>(std::clamp(s, 0, MAXSLOT))];
    if (kept.T == T && std::equal(pV, pV + PROBES, kept.V) && std::equal(pph, pph + PROBES, kept.ph)) {
        out = kept.curves;
        return true;
    }
    int n = m * startband(pw, pV, pph, m * dw);
    std::vector<double> R(static_cast<size_t>(n) + 1);
    {
        std::vector<double> w(R.size());
        std::vector<size_t> at(R.size());
        for (size_t k = 0; k < w.size(); ++k) w[k] = (k == 0 ? 1e-6 : static_cast<double>(k)) * dw, at[k] = k;
        if (!walkreal(s, w, at, R)) return false;
    }
    auto keep = [&] {
        // A plot time so short that the fitted top overflows ends as the host's fault.
        for (int i = 0; i < SWEEPPOINTS; ++i) hfinite(out.impulse[i]), hfinite(out.step[i]);
        out.resolved = out.accuracy <= ENOUGH;
        kept.T = T;
        std::copy(pV, pV + PROBES, kept.V);
        std::copy(pph, pph + PROBES, kept.ph);
        kept.curves = out;
        return true;
    };
    ExactTime a, t;
    Roots roots;
    for (;;) {
        roots.size(static_cast<size_t>(NP) * static_cast<size_t>(m));
        curves(R, 1, n, m, T, roots, out.impulse, out.step);
        curves(R, 2, n / 2, m / 2, T, roots, a.impulse, a.step);
        curves(R, 1, n / 2, m, T, roots, t.impulse, t.step);
        const double si = largest(out.impulse), ss = largest(out.step);
        const double ea = std::max(apart(out.impulse, a.impulse, si), apart(out.step, a.step, ss));
        const double et = std::max(apart(out.impulse, t.impulse, si), apart(out.step, t.step, ss));
        out.samples = n + 1;
        out.accuracy = std::max(ea, et);
        const bool finer = ea > AIM && m < MAXM, wider = et > AIM;
        if ((!finer && !wider) || 2 * n > MAXSAMPLES) return keep();
        std::vector<double> w;
        std::vector<size_t> at;
        if (finer && (ea >= et || !wider)) {
            // A response longer than the period: halve the spacing, the old samples at
            // the even places.
            std::vector<double> halved(2 * static_cast<size_t>(n) + 1);
            for (size_t k = 0; k <= static_cast<size_t>(n); ++k) halved[2 * k] = R[k];
            R.swap(halved);
            m *= 2, n *= 2, dw /= 2;
            for (int k = 1; k < n; k += 2) w.push_back(k * dw), at.push_back(static_cast<size_t>(k));
        } else {
            // A response reaching above the band: double it.
            R.resize(2 * static_cast<size_t>(n) + 1);
            for (int k = n + 1; k <= 2 * n; ++k) w.push_back(k * dw), at.push_back(static_cast<size_t>(k));
            n *= 2;
        }
        if (!walkreal(s, w, at, R)) return false;
    }
}

long exactcolour(int s) { return s == 0 ? RGB(0, 160, 0) : ORANGE; }

namespace {

// The classic curve's colour of slot s, as the time pass gives it.
long classiccolour(int s) { return RGB(0, 0, std::min(255, 255 * s)); }

// The y of a value from the frame top, as the time pass places it.
double ytime(const PlotForm& p, double v) { return p.vertsize - (p.vertsize / (p.N1 - p.N2)) * (v - p.N2); }

// The curve through the 513 values, each segment cut at the top and bottom of the frame.
void clippedcurve(Surface& sf, const PlotForm& p, const double* v) {
    const double h = p.vertsize;
    double x0 = p.horzcent, y0 = ytime(p, v[0]);
    for (int i = 1; i < SWEEPPOINTS; ++i) {
        const double x1 = p.horzcent + p.framewidth * i / store.npoints, y1 = ytime(p, v[i]);
        double a = 0, b = 1;
        const double dy = y1 - y0;
        for (double edge : {0.0, h}) {
            if (dy == 0) continue;
            const double c = (edge - y0) / dy;
            // Entering or leaving the band between the edges.
            if ((edge == 0) == (dy > 0)) a = std::max(a, c);
            else b = std::min(b, c);
        }
        const bool inside = dy != 0 || (y0 >= 0 && y0 <= h);
        if (inside && a < b)
            sf.line(x0 + a * (x1 - x0), p.frametop + y0 + a * dy, x0 + b * (x1 - x0), p.frametop + y0 + b * dy);
        x0 = x1, y0 = y1;
    }
}

struct LegendRow {
    long colour;
    std::string text;
    bool sample; // a short stroke of the curve's colour before the text
};

// The legend in the corner of the frame that the curves cross least.
void legend(Surface& sf, const PlotForm& p, const std::vector<LegendRow>& rows,
            const std::vector<const double*>& drawn) {
    const double lh = sf.textheight("X"), pad = 90, stroke = 360;
    double tw = 0;
    for (const LegendRow& r : rows) tw = std::max(tw, sf.textwidth(r.text));
    const double bw = pad + stroke + pad + tw + pad, bh = pad + lh * static_cast<double>(rows.size()) + pad;
    const double margin = 60;
    const double left = p.horzcent + margin, right = p.horzcent + p.framewidth - margin - bw;
    const double top = p.frametop + margin, bottom = p.frametop + p.vertsize - margin - bh;
    const double corners[4][2] = {{right, bottom}, {right, top}, {left, top}, {left, bottom}};
    int best = 0;
    long fewest = -1;
    for (int c = 0; c < 4; ++c) {
        long hits = 0;
        for (const double* v : drawn)
            for (int i = 0; i < SWEEPPOINTS; ++i) {
                const double x = p.horzcent + p.framewidth * i / store.npoints, y = p.frametop + ytime(p, v[i]);
                if (x >= corners[c][0] && x <= corners[c][0] + bw && y >= corners[c][1] && y <= corners[c][1] + bh)
                    ++hits;
            }
        if (fewest < 0 || hits < fewest) fewest = hits, best = c;
    }
    const double x = corners[best][0], y = corners[best][1];
    sf.setcolour(WHITE);
    sf.fillrect(x, y, x + bw, y + bh);
    sf.setcolour(BLACK);
    sf.line(x, y, x + bw, y);
    sf.line(x + bw, y, x + bw, y + bh);
    sf.line(x + bw, y + bh, x, y + bh);
    sf.line(x, y + bh, x, y);
    for (size_t r = 0; r < rows.size(); ++r) {
        const double ry = y + pad + lh * static_cast<double>(r);
        sf.setcolour(rows[r].colour);
        if (rows[r].sample) {
            sf.line(x + pad, ry + lh / 2, x + pad + stroke, ry + lh / 2);
            sf.line(x + pad, ry + lh / 2 + 15, x + pad + stroke, ry + lh / 2 + 15);
        }
        sf.drawtext(x + pad + stroke + pad, ry, rows[r].text);
    }
}

} // namespace

bool drawexactcurves(PlotForm& p) {
    if (!p.timeplot() || !menuchecked("exacttime")) return true;
    if (p.timekind != TimeKind::Impulse && p.timekind != TimeKind::Step) return true;
    std::vector<LegendRow> rows;
    std::vector<ExactTime> exact(static_cast<size_t>(p.passslots));
    std::vector<const double*> drawn;
    const bool impulse = p.timekind == TimeKind::Impulse;
    for (int s = 0; s < p.passslots; ++s) {
        ExactTime& e = exact[static_cast<size_t>(s)];
        if (!exacttimevalues(s, p.Time, e)) return false;
        const double* v = impulse ? e.impulse : e.step;
        const std::string which = p.passslots > 1 ? ", filter " + Str(s + 1) : "";
        drawn.push_back(p.values[static_cast<size_t>(s)].data());
        rows.push_back({classiccolour(s), "100 harmonics" + which, true});
        if (e.resolved) {
            drawn.push_back(v);
            rows.push_back({exactcolour(s), "exact" + which, true});
        } else {
            rows.push_back({exactcolour(s), "exact" + which + ": not resolved", false});
        }
    }
    if (!p.surface || rows.empty() || p.N1 == p.N2) return true;
    Surface& sf = *p.surface;
    for (int s = 0; s < p.passslots; ++s) {
        const ExactTime& e = exact[static_cast<size_t>(s)];
        if (!e.resolved) continue;
        sf.setcolour(exactcolour(s));
        clippedcurve(sf, p, impulse ? e.impulse : e.step);
    }
    legend(sf, p, rows, drawn);
    return true;
}

} // namespace zelk
