// tablegen: computes the element tables of the table families and writes them as the
// program's .tbl files.
//
// For each family the tool derives the all-pole transfer function H(s) = 1/D(s), D(0) = 1,
// scales its frequency so that the magnitude is 3 dB down at 1 rad/s, and synthesises the
// doubly terminated LC ladder for each termination ratio by Darlington's method:
//   |t(jw)|^2 = K^2 / |D(jw)|^2, K^2 = 4 Rs RL / (Rs + RL)^2 (the resistive divider at DC),
//   rho(s) rho(-s) = 1 - t(s) t(-s), rho = N / D, N N* = D D* - K^2,
//   Zin = Rs (D + N) / (D - N), expanded as a continued fraction about infinity.
// Every ladder is checked against the transfer function before it is written.
//
// Record layout (one line each): n, ratio, g1 ... gn.
//   Odd n: ratio r <= 1; g1 is a shunt capacitor beside the source resistor r, the far
//          termination is 1 (the ladder C-L-C-...-C).
//   Even n: ratio r > 1; g1 is a series inductor beside the source resistor 1, the far
//          termination is r (the ladder L-C-L-...-C).
// Equal terminations (r = 1, and r = 1.0001 for even n) read the same in both dual forms.
//
// Usage: tablegen OUTDIR       writes the seven files into OUTDIR
//        tablegen --show       prints the transfer functions and a few checks

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using R = long double;
using C = std::complex<R>;
using Poly = std::vector<R>; // ascending powers

const R kPi = 3.14159265358979323846264338327950288L;

[[noreturn]] void fail(const std::string& what) {
    std::cerr << "tablegen: " << what << "\n";
    std::exit(1);
}

Poly trim(Poly p) {
    while (p.size() > 1 && p.back() == 0) p.pop_back();
    return p;
}

Poly mul(const Poly& a, const Poly& b) {
    Poly r(a.size() + b.size() - 1, 0);
    for (size_t i = 0; i < a.size(); ++i)
        for (size_t j = 0; j < b.size(); ++j) r[i + j] += a[i] * b[j];
    return r;
}

C evalc(const Poly& p, C x) {
    C r = 0;
    for (size_t i = p.size(); i-- > 0;) r = r * x + p[i];
    return r;
}

// All roots of a real polynomial (Aberth iteration, then Newton polishing).
std::vector<C> roots(Poly p) {
    p = trim(p);
    std::vector<C> z;
    while (p.size() > 1 && std::fabs(p[0]) == 0) { // roots at the origin
        z.push_back(0);
        p.erase(p.begin());
    }
    size_t n = p.size() - 1;
    if (n == 0) return z;
    Poly dp(n);
    for (size_t i = 1; i <= n; ++i) dp[i - 1] = p[i] * static_cast<R>(i);
    // Start on a circle of the Cauchy bound's order, off the real axis.
    R rad = 0;
    for (size_t i = 0; i < n; ++i) rad = std::max(rad, std::pow(std::fabs(p[i] / p[n]), 1.0L / static_cast<R>(n - i)));
    std::vector<C> w(n);
    for (size_t k = 0; k < n; ++k) w[k] = std::polar(rad, 2 * kPi * static_cast<R>(k) / static_cast<R>(n) + 0.4L);
    for (int it = 0; it < 2000; ++it) {
        R change = 0;
        for (size_t k = 0; k < n; ++k) {
            C ratio = evalc(p, w[k]) / evalc(dp, w[k]);
            C sum = 0;
            for (size_t j = 0; j < n; ++j)
                if (j != k) sum += 1.0L / (w[k] - w[j]);
            C step = ratio / (1.0L - ratio * sum);
            w[k] -= step;
            change = std::max(change, std::abs(step) / std::max<R>(1, std::abs(w[k])));
        }
        if (change < 1e-17L) break;
    }
    for (auto& r : w)
        for (int it = 0; it < 5; ++it) {
            C d = evalc(dp, r);
            if (std::abs(d) == 0) break;
            r -= evalc(p, r) / d;
        }
    z.insert(z.end(), w.begin(), w.end());
    return z;
}

// Real polynomial lead * prod (s - z).
Poly fromroots(const std::vector<C>& z, R lead) {
    std::vector<C> c{1};
    for (C r : z) {
        std::vector<C> n(c.size() + 1, 0);
        for (size_t i = 0; i < c.size(); ++i) {
            n[i + 1] += c[i];
            n[i] -= r * c[i];
        }
        c = n;
    }
    Poly p(c.size());
    for (size_t i = 0; i < c.size(); ++i) p[i] = lead * c[i].real();
    return p;
}

R mag2(const Poly& d, R w) { return std::norm(evalc(d, C(0, w))); }

// Hurwitz factor of a magnitude function: |D(jw)|^2 = M(w^2), M(0) = 1.
Poly hurwitzfactor(const Poly& m) {
    Poly q(m.size()); // M(-y), y = s^2
    for (size_t k = 0; k < m.size(); ++k) q[k] = (k % 2 ? -m[k] : m[k]);
    std::vector<C> s;
    for (C y : roots(q)) {
        C r = std::sqrt(y);
        s.push_back(r.real() > 0 ? -r : r);
    }
    Poly d = fromroots(s, 1);
    R d0 = d[0];
    for (R& v : d) v /= d0;
    return d;
}

// Scales the frequency so that |D(j1)|^2 = 2 (3 dB), D(0) = 1.
Poly scale3db(Poly d) {
    R lo = 0, hi = 1e-3L;
    while (mag2(d, hi) < 2) {
        lo = hi;
        hi *= 1.05L;
        if (hi > 1e6L) fail("no 3 dB point");
    }
    for (int i = 0; i < 200; ++i) {
        R mid = (lo + hi) / 2;
        (mag2(d, mid) < 2 ? lo : hi) = mid;
    }
    R w3 = (lo + hi) / 2, f = 1;
    for (R& v : d) {
        v *= f;
        f *= w3;
    }
    return d;
}

// --- The families -------------------------------------------------------------------

// Reverse Bessel polynomial: maximally flat group delay.
Poly bessel(int n) {
    Poly d(static_cast<size_t>(n) + 1);
    for (int k = 0; k <= n; ++k) {
        R c = 1;
        for (int i = n + 1; i <= 2 * n - k; ++i) c *= i; // (2n-k)! / n!
        for (int i = 2; i <= n - k; ++i) c /= i;
        for (int i = 2; i <= k; ++i) c /= i;
        c /= std::pow(2.0L, n - k);
        d[static_cast<size_t>(k)] = c;
    }
    R d0 = d[0];
    for (R& v : d) v /= d0;
    return d;
}

// Gaussian: 1/|H|^2 is the Taylor polynomial of exp(x) of degree n in x = a w^2.
Poly gaussian(int n) {
    Poly m(static_cast<size_t>(n) + 1);
    R f = 1;
    for (int k = 0; k <= n; ++k) {
        if (k) f /= k;
        m[static_cast<size_t>(k)] = f;
    }
    return hurwitzfactor(m);
}

// Transitional Gaussian to A dB: 1/|H|^2 = M(x), x = w^2, where M agrees with the Taylor
// series of the Gaussian exp(a x) (a set for 3 dB at x = 1) up to x^(n-1), and its x^n
// term makes M equal to the Gaussian exactly at the Gaussian's A dB point. The response
// follows the Gaussian down to A dB and falls off faster than the Gaussian filter of the
// same order beyond it; all coefficients are positive, so it is monotonic.
Poly transitional(int n, R adb) {
    R a = std::log(2.0L);
    R xa = adb * std::log(10.0L) / 10 / a;
    Poly m(static_cast<size_t>(n) + 1);
    R f = 1, sum = 0;
    for (int k = 0; k < n; ++k) {
        if (k) f *= a / k;
        m[static_cast<size_t>(k)] = f;
        sum += f * std::pow(xa, static_cast<R>(k));
    }
    m[static_cast<size_t>(n)] = (std::exp(a * xa) - sum) / std::pow(xa, static_cast<R>(n));
    return hurwitzfactor(m);
}

// Legendre polynomial P_k(t), ascending in t.
Poly legendrep(int k) {
    Poly p0{1}, p1{0, 1};
    if (k == 0) return p0;
    for (int i = 1; i < k; ++i) { // (i+1) P_{i+1} = (2i+1) t P_i - i P_{i-1}
        Poly p2(static_cast<size_t>(i) + 2, 0);
        for (size_t j = 0; j < p1.size(); ++j) p2[j + 1] += (2 * i + 1) * p1[j];
        for (size_t j = 0; j < p0.size(); ++j) p2[j] -= i * p0[j];
        for (R& v : p2) v /= (i + 1);
        p0 = p1;
        p1 = p2;
    }
    return p1;
}

// Optimum-L (Legendre) characteristic polynomial L_n(x), x = w^2, L_n(0) = 0, L_n(1) = 1:
// the steepest cut-off among monotonic all-pole responses.
Poly legendreL(int n) {
    Poly v{0};
    Poly weight{1};
    auto addterm = [&](int i, R ai) {
        Poly p = legendrep(i);
        if (v.size() < p.size()) v.resize(p.size(), 0);
        for (size_t j = 0; j < p.size(); ++j) v[j] += ai * p[j];
    };
    if (n % 2) {
        int k = (n - 1) / 2;
        for (int i = 0; i <= k; ++i) addterm(i, (2 * i + 1) / (std::sqrt(2.0L) * (k + 1)));
    } else {
        int k = (n - 2) / 2;
        R c = 1 / std::sqrt(static_cast<R>((k + 1) * (k + 2)));
        for (int i = (k % 2 ? 1 : 0); i <= k; i += 2) addterm(i, (2 * i + 1) * c);
        weight = Poly{1, 1};
    }
    Poly integrand = mul(weight, mul(v, v));
    // Antiderivative F(t) from -1, then t = 2x - 1.
    Poly F(integrand.size() + 1, 0);
    for (size_t j = 0; j < integrand.size(); ++j) F[j + 1] = integrand[j] / static_cast<R>(j + 1);
    R fm1 = evalc(F, C(-1, 0)).real();
    F[0] -= fm1;
    Poly L{0}, pw{1};
    for (size_t j = 0; j < F.size(); ++j) {
        if (L.size() < pw.size()) L.resize(pw.size(), 0);
        for (size_t k = 0; k < pw.size(); ++k) L[k] += F[j] * pw[k];
        pw = mul(pw, Poly{-1, 2});
    }
    L[0] = 0;
    return trim(L);
}

Poly legendre(int n) {
    Poly m = legendreL(n);
    m[0] = 1;
    return hurwitzfactor(m);
}

// Unwrapped phase of D(jw) from its roots (all in the left half plane).
R phaseof(const std::vector<C>& z, R w) {
    R ph = 0;
    for (C p : z) ph += std::atan2(w - p.imag(), -p.real());
    return ph;
}

bool solve(std::vector<std::vector<R>> a, std::vector<R> b, std::vector<R>& x) {
    size_t n = b.size();
    for (size_t c = 0; c < n; ++c) {
        size_t piv = c;
        for (size_t r = c + 1; r < n; ++r)
            if (std::fabs(a[r][c]) > std::fabs(a[piv][c])) piv = r;
        if (a[piv][c] == 0) return false;
        std::swap(a[c], a[piv]);
        std::swap(b[c], b[piv]);
        for (size_t r = c + 1; r < n; ++r) {
            R f = a[r][c] / a[c][c];
            for (size_t k = c; k < n; ++k) a[r][k] -= f * a[c][k];
            b[r] -= f * b[c];
        }
    }
    x.assign(n, 0);
    for (size_t c = n; c-- > 0;) {
        R s = b[c];
        for (size_t k = c + 1; k < n; ++k) s -= a[c][k] * x[k];
        x[c] = s / a[c][c];
    }
    return true;
}

// Equiripple linear phase: with the delay normalised to 1 s, the phase of D(jw) equals w
// plus an error that swings between +delta and -delta at n points (Remez exchange on the
// extremal frequencies; each step solves the linear interpolation conditions
// Im D cos(theta) - Re D sin(theta) = 0 at theta = w_k -/+ delta).
std::optional<Poly> linearphase(int n, R deltadeg, R width, int firstsign, R* bandedge = nullptr) {
    R delta = deltadeg * kPi / 180;
    std::vector<R> w(static_cast<size_t>(n));
    for (int k = 0; k < n; ++k) w[static_cast<size_t>(k)] = width * (k + 1) / n;
    Poly d;
    std::vector<C> z;
    for (int it = 0; it < 200; ++it) {
        std::vector<std::vector<R>> a(static_cast<size_t>(n), std::vector<R>(static_cast<size_t>(n)));
        std::vector<R> b(static_cast<size_t>(n)), x;
        for (int k = 0; k < n; ++k) {
            R wk = w[static_cast<size_t>(k)];
            R th = wk + ((k % 2) ? -firstsign : firstsign) * delta;
            for (int j = 1; j <= n; ++j) {
                R pw = std::pow(wk, static_cast<R>(j));
                R re = (j % 4 == 0) ? pw : (j % 4 == 2) ? -pw : 0;
                R im = (j % 4 == 1) ? pw : (j % 4 == 3) ? -pw : 0;
                a[static_cast<size_t>(k)][static_cast<size_t>(j - 1)] = im * std::cos(th) - re * std::sin(th);
            }
            b[static_cast<size_t>(k)] = std::sin(th);
        }
        if (!solve(a, b, x)) return std::nullopt;
        d.assign(1, 1);
        d.insert(d.end(), x.begin(), x.end());
        z = roots(d);
        for (C r : z)
            if (r.real() >= 0) return std::nullopt;
        // Error at the interpolation points must be the intended one (right branch).
        for (int k = 0; k < n; ++k) {
            R wk = w[static_cast<size_t>(k)];
            R e = phaseof(z, wk) - wk;
            if (std::fabs(std::fabs(e) - delta) > 1e-6L * (1 + delta)) return std::nullopt;
        }
        // New extremal points: the first n local extrema of the error.
        std::vector<R> ext;
        R top = w.back() * 1.6L, step = top / 6000;
        auto err = [&](R v) { return phaseof(z, v) - v; };
        R e0 = err(step), e1 = err(2 * step);
        for (R v = 3 * step; v < top && ext.size() < static_cast<size_t>(n); v += step) {
            R e2 = err(v);
            if ((e1 - e0) * (e2 - e1) < 0) {
                // refine by golden section on the bracket [v - 2 step, v]
                R lo = v - 2 * step, hi = v;
                bool maxi = e1 > e0;
                for (int g = 0; g < 80; ++g) {
                    R m1 = lo + (hi - lo) * 0.381966L, m2 = lo + (hi - lo) * 0.618034L;
                    bool left = maxi ? err(m1) > err(m2) : err(m1) < err(m2);
                    (left ? hi : lo) = left ? m2 : m1;
                }
                ext.push_back((lo + hi) / 2);
            }
            e0 = e1;
            e1 = e2;
        }
        if (ext.size() < static_cast<size_t>(n)) return std::nullopt;
        R change = 0;
        for (int k = 0; k < n; ++k) change = std::max(change, std::fabs(ext[static_cast<size_t>(k)] - w[static_cast<size_t>(k)]));
        w = ext;
        if (change < 1e-13L) break;
    }
    // Equiripple check: |error| <= delta up to the last extremum.
    for (R v = 0; v <= w.back(); v += w.back() / 4000)
        if (std::fabs(phaseof(z, v) - v) > delta * (1 + 1e-6L)) return std::nullopt;
    if (bandedge) {
        R v = w.back();
        while (std::fabs(phaseof(z, v) - v) <= delta) v += w.back() / 100000;
        *bandedge = v;
    }
    return d;
}

Poly linearphasefamily(int n, R deltadeg, R* bandedge = nullptr) {
    if (n == 1) return Poly{1, 1};
    for (int sign : {1, -1})
        for (R width = 0.5L; width < 6.0L * n; width *= 1.08L)
            if (auto d = linearphase(n, deltadeg, width, sign, bandedge)) return *d;
    fail("linear phase " + std::to_string(n) + " did not converge");
}

// --- Quadruple precision for the synthesis -------------------------------------------
// The continued fraction about infinity loses many digits at order 9 and 10; the reflection
// polynomial and the expansion are therefore carried in quadruple precision, with the
// roots found in long double and polished there.

using Q = __float128;
struct CQ {
    Q re = 0, im = 0;
};
CQ operator+(CQ a, CQ b) { return {a.re + b.re, a.im + b.im}; }
CQ operator-(CQ a, CQ b) { return {a.re - b.re, a.im - b.im}; }
CQ operator*(CQ a, CQ b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
CQ operator/(CQ a, CQ b) {
    Q den = b.re * b.re + b.im * b.im;
    return {(a.re * b.re + a.im * b.im) / den, (a.im * b.re - a.re * b.im) / den};
}
CQ tocq(C z) { return {static_cast<Q>(z.real()), static_cast<Q>(z.imag())}; }
C toc(CQ z) { return {static_cast<R>(z.re), static_cast<R>(z.im)}; }
using PolyQ = std::vector<Q>;

CQ evalq(const PolyQ& p, CQ x) {
    CQ r;
    for (size_t i = p.size(); i-- > 0;) r = r * x + CQ{p[i], 0};
    return r;
}

CQ polishq(const PolyQ& p, CQ z) {
    PolyQ dp;
    for (size_t i = 1; i < p.size(); ++i) dp.push_back(p[i] * static_cast<Q>(i));
    for (int it = 0; it < 6; ++it) {
        CQ d = evalq(dp, z);
        if (d.re == 0 && d.im == 0) break;
        z = z - evalq(p, z) / d;
    }
    return z;
}

CQ sqrtq(CQ y) {
    CQ s = tocq(std::sqrt(toc(y)));
    if (s.re == 0 && s.im == 0) return s;
    for (int it = 0; it < 4; ++it) s = (s + y / s) * CQ{static_cast<Q>(0.5L), 0};
    return s;
}

PolyQ mulq(const PolyQ& a, const PolyQ& b) {
    PolyQ r(a.size() + b.size() - 1, 0);
    for (size_t i = 0; i < a.size(); ++i)
        for (size_t j = 0; j < b.size(); ++j) r[i + j] += a[i] * b[j];
    return r;
}

PolyQ fromrootsq(const std::vector<CQ>& z, Q lead) {
    std::vector<CQ> c{CQ{1, 0}};
    for (CQ r : z) {
        std::vector<CQ> n(c.size() + 1);
        for (size_t i = 0; i < c.size(); ++i) {
            n[i + 1] = n[i + 1] + c[i];
            n[i] = n[i] - r * c[i];
        }
        c = n;
    }
    PolyQ p(c.size());
    for (size_t i = 0; i < c.size(); ++i) p[i] = lead * c[i].re;
    return p;
}

Q absq(Q v) { return v < 0 ? -v : v; }

PolyQ trimq(PolyQ p) {
    while (p.size() > 1 && p.back() == 0) p.pop_back();
    return p;
}

// --- Darlington synthesis -----------------------------------------------------------

// Ladder elements from g1 at the source; empty when the expansion fails.
std::vector<R> cauer(PolyQ a, PolyQ b, int n, R RL) {
    // Z = a / b. Alternately remove a series inductor (Z has a pole at infinity) or a
    // shunt capacitor (Y has a pole at infinity).
    std::vector<R> g;
    a = trimq(a);
    b = trimq(b);
    bool impedance = true; // a/b is the impedance
    for (int guard = 0; guard < 2 * n + 2 && (a.size() > 1 || b.size() > 1); ++guard) {
        if (a.size() == b.size() + 1) {
            Q e = a.back() / b.back();
            for (size_t i = 0; i < b.size(); ++i) a[i + 1] -= e * b[i];
            a.pop_back();
            // The remainder vanishes at infinity: its next coefficient cancels too.
            if (a.size() == b.size() && b.size() > 1) {
                Q scale = 0;
                for (Q v : a) scale = std::max(scale, absq(v));
                if (absq(a.back()) > static_cast<Q>(1e-12L) * scale) return {};
                a.pop_back();
            }
            a = trimq(a);
            g.push_back(static_cast<R>(e));
        }
        std::swap(a, b);
        impedance = !impedance;
    }
    if (static_cast<int>(g.size()) != n) return {};
    if (a.size() != 1 || b.size() != 1) return {};
    R rest = static_cast<R>(impedance ? a[0] / b[0] : b[0] / a[0]);
    if (std::fabs(rest - RL) > 1e-9L * RL) return {};
    for (R v : g)
        if (!(v > 0)) return {};
    return g;
}

// Transducer power gain of the ladder (source Rs, first element shunt when cfirst).
R ladderpowergain(const std::vector<R>& g, bool cfirst, R Rs, R RL, R w) {
    // Chain matrix from the source side; V1 = A V2 + B I2, I1 = C V2 + D I2.
    C A = 1, B = 0, Cc = 0, D = 1;
    bool shunt = cfirst;
    for (R e : g) {
        if (shunt) { // [1 0; sC 1]
            C y(0, w * e);
            Cc += D * y;
            A += B * y;
        } else { // [1 sL; 0 1]
            C zz(0, w * e);
            B += A * zz;
            D += Cc * zz;
        }
        shunt = !shunt;
    }
    C vs = A * RL + B + Rs * (Cc * RL + D); // source EMF per unit load current
    R v2 = RL;                              // load voltage per unit load current
    return 4 * Rs / RL * v2 * v2 / std::norm(vs);
}

std::vector<R> synthesise(const Poly& dl, R Rs, R RL, bool cfirst) {
    int n = static_cast<int>(dl.size()) - 1;
    PolyQ d(dl.begin(), dl.end());
    Q rs = Rs, rl = RL;
    Q k2 = 4 * rs * rl / ((rs + rl) * (rs + rl));
    Q gamma0 = (rl - rs) / (rl + rs);
    PolyQ dm(d.size());
    for (size_t k = 0; k < d.size(); ++k) dm[k] = (k % 2 ? -d[k] : d[k]);
    PolyQ p = mulq(d, dm);
    p[0] -= k2;
    PolyQ q; // in y = s^2
    for (size_t k = 0; k < p.size(); k += 2) q.push_back(p[k]);
    if (absq(q[0]) < static_cast<Q>(1e-40L)) q[0] = 0;
    Poly ql(q.begin(), q.end());
    std::vector<CQ> zs;
    std::vector<size_t> flippable;
    for (C yl : roots(ql)) {
        CQ y = (std::abs(yl) == 0) ? CQ{} : polishq(q, tocq(yl));
        CQ r = sqrtq(y);
        zs.push_back(r.re > 0 ? CQ{-r.re, -r.im} : r);
        if (absq(y.im) < static_cast<Q>(1e-20L) * (1 + absq(y.re)) && y.re > 0) flippable.push_back(zs.size() - 1);
    }
    Q sigma = cfirst ? -1 : 1;
    std::vector<std::vector<CQ>> choices{zs};
    for (size_t i : flippable) {
        auto c = zs;
        c[i] = CQ{-c[i].re, -c[i].im};
        choices.push_back(c);
    }
    for (const auto& zc : choices) {
        PolyQ nn = fromrootsq(zc, sigma * d.back());
        if (absq(gamma0) > static_cast<Q>(1e-12L) && (nn[0] > 0) != (gamma0 > 0)) continue;
        PolyQ a(d.size()), b(d.size());
        for (size_t k = 0; k < d.size(); ++k) {
            a[k] = rs * (d[k] + nn[k]);
            b[k] = d[k] - nn[k];
        }
        if (cfirst) a.back() = 0; else b.back() = 0; // exact cancellation
        auto g = cauer(a, b, n, RL);
        if (g.empty()) continue;
        // Check the ladder against the transfer function.
        bool good = true;
        R k2l = static_cast<R>(k2);
        for (R w : {0.0L, 0.3L, 0.7L, 1.0L, 1.5L, 3.0L}) {
            R want = k2l / mag2(dl, w), got = ladderpowergain(g, cfirst, Rs, RL, w);
            if (std::fabs(got - want) > 1e-12L * want + 1e-16L) good = false;
        }
        if (good) return g;
    }
    return {};
}

// --- Output -------------------------------------------------------------------------

const std::vector<R> kOddRatios{1, 0.9L, 0.8L, 0.7L, 0.6L, 0.5L, 0.4L, 0.3L, 0.25L, 0.2L, 0.15L, 0.1L, 0.05L, 0.02L, 0.01L};
const std::vector<R> kEvenRatios{1.0001L, 1.1L, 1.2L, 1.3L, 1.4L, 1.5L, 1.75L, 2, 2.5L, 3, 4, 5, 7, 10, 20, 50, 100};

std::string num(R v) {
    std::ostringstream o;
    o << std::setprecision(12) << static_cast<double>(v);
    return o.str();
}

struct Family {
    const char* file;
    const char* name;
    Poly (*make)(int n);
};

Poly fbessel(int n) { return bessel(n); }
Poly fgauss(int n) { return gaussian(n); }
Poly fgauss6(int n) { return transitional(n, 6); }
Poly fgauss12(int n) { return transitional(n, 12); }
Poly flegendre(int n) { return legendre(n); }
Poly flin05(int n) { return linearphasefamily(n, 0.05L); }
Poly flin5(int n) { return linearphasefamily(n, 0.5L); }

const Family kFamilies[] = {
    {"bessel.tbl", "Bessel", fbessel},          {"gaussian.tbl", "Gaussian", fgauss},
    {"gauss6.tbl", "Transitional Gaussian to 6 dB", fgauss6},
    {"gauss12.tbl", "Transitional Gaussian to 12 dB", fgauss12},
    {"legendre.tbl", "Legendre", flegendre},    {"linph05.tbl", "Linear phase 0.05 degree", flin05},
    {"linph5.tbl", "Linear phase 0.5 degree", flin5},
};

void checkmonotonic(const Poly& d, const char* name, int n) {
    R prev = 1;
    for (R w = 0.01L; w < 20; w += 0.01L) {
        R m = mag2(d, w);
        if (m < prev * (1 - 1e-12L)) fail(std::string(name) + " order " + std::to_string(n) + " is not monotonic");
        prev = m;
    }
}

void show() {
    for (const Family& f : kFamilies)
        for (int n = 1; n <= 10; ++n) {
            Poly d = f.make(n);
            std::cout << f.name << " n=" << n << " D(s) =";
            for (R v : d) std::cout << " " << num(v);
            std::cout << "\n   3 dB scaled:";
            for (R v : scale3db(d)) std::cout << " " << num(v);
            std::cout << "\n";
        }
    for (int n = 1; n <= 6; ++n) {
        std::cout << "L" << n << "(x) =";
        for (R v : legendreL(n)) std::cout << " " << num(v);
        std::cout << "\n";
    }
    for (R dd : {0.05L, 0.5L})
        for (int n = 2; n <= 10; ++n) {
            R edge = 0;
            linearphasefamily(n, dd, &edge);
            std::cout << "linear phase " << num(dd) << " n=" << n << " equiripple band to " << num(edge)
                      << " rad/s (delay 1 s)\n";
        }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: tablegen OUTDIR | tablegen --show\n";
        return 2;
    }
    std::string arg = argv[1];
    if (arg == "--show") {
        show();
        return 0;
    }
    for (const Family& f : kFamilies) {
        std::ofstream out(arg + "/" + f.file);
        if (!out) fail("cannot write " + arg + "/" + f.file);
        for (int n = 1; n <= 10; ++n) {
            Poly d = scale3db(f.make(n));
            checkmonotonic(d, f.name, n);
            const auto& ratios = (n % 2) ? kOddRatios : kEvenRatios;
            for (R r : ratios) {
                std::vector<R> g = (n % 2) ? synthesise(d, r, 1, true) : synthesise(d, 1, r, false);
                if (g.empty()) fail(std::string(f.name) + " order " + std::to_string(n) + " ratio " + num(r) + " failed");
                out << n << "," << num(r);
                for (R v : g) out << "," << num(v);
                out << "\n";
            }
        }
        std::cout << "wrote " << f.file << "\n";
    }
    return 0;
}
