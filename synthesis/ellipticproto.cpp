#include "synthesis/ellipticproto.h"
#include "core/hostmath.h"

#include <cmath>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"

namespace zelk {

namespace {


using Poly = std::array<double, 17>;

double pw(double x, double y) { return hfinite(std::pow(x, y)); }

// A sum extended term by term until a pass changes it by less than 1e-9: the value at
// the top of each pass is compared with the one kept from the pass before (kept starts
// at 0, so at least one term is always added).
template <class Term> double series(double start, Term term) {
    double sum = start, kept = 0;
    for (int m = 1; std::fabs(sum - kept) >= 1e-9; ++m) {
        if (m > 200) raisefault(6); // a series that does not settle: the nome is not below 1
        kept = sum;
        sum = hfinite(sum + term(m));
    }
    return sum;
}

// Multiplies A (degree up to 2i) in place by a2 s^2 + a1 s + a0.
void multiply(Poly& A, int i, double a2, double a1, double a0) {
    for (int j = 2 * i; j >= 0; --j) {
        A[j + 2] = A[j + 2] + A[j] * a2;
        A[j + 1] = A[j + 1] + A[j] * a1;
        A[j] = A[j] * a0;
    }
}

// The transmission zeros in extraction order, spread along the ladder; other orders leave
// the list as it was.
void zeroorder(int n, bool odd) {
    static const int oddrows[7][7] = {{2},          {2, 4},          {2, 6, 4},          {2, 6, 8, 4},
                                      {2, 6, 10, 8, 4}, {2, 6, 10, 12, 8, 4}, {2, 6, 10, 14, 12, 8, 4}};
    static const int evenrows[7][7] = {{3},          {3, 5},          {3, 7, 5},          {3, 7, 9, 5},
                                       {3, 7, 11, 9, 5}, {3, 7, 11, 13, 9, 5}, {3, 7, 11, 15, 13, 9, 5}};
    const int row = odd ? (n - 3) / 2 : (n - 4) / 2;
    if (row < 0 || row > 6 || (odd ? n % 2 == 0 : n % 2 != 0)) return;
    const int(&list)[7] = odd ? oddrows[row] : evenrows[row];
    for (int k = 0; k < row + 1; ++k) elliptic.zeroat[static_cast<size_t>(k + 1)] = list[k];
}

// Step 7: the terminations, the reference resistance and the end the ladder starts from.
void terminations(DesignSlot& s, bool odd) {
    EllipticWork& e = elliptic;
    const bool pi = flow.configuration == "Pi";
    const double t = hdiv(s.Zout, s.Zin);
    if (t >= 10) {
        e.termmode = "Maxvoltage";
        s.Zout = s.Zin * 100;
        const bool in = odd ? pi : !pi;
        s.r0 = in ? s.Zin.value() : s.Zout.value();
        e.fromoutput = !in;
    } else if (t <= 0.1) {
        e.termmode = "Maxcurrent";
        s.Zin = s.Zout * 100;
        const bool out = odd ? pi : !pi;
        s.r0 = out ? s.Zout.value() : s.Zin.value();
        e.fromoutput = out;
    } else {
        e.termmode = "Maxpower";
        if (odd) {
            s.r0 = s.Zin.value();
        } else if (flow.termchoice == "Zin") {
            s.Zout = pi ? s.Zin * hdiv(1 - e.rho, 1 + e.rho) : s.Zin * hdiv(1 + e.rho, 1 - e.rho);
            s.r0 = s.Zin.value();
        } else if (flow.termchoice == "Zout") {
            s.Zin = pi ? s.Zout * hdiv(1 + e.rho, 1 - e.rho) : s.Zout * hdiv(1 - e.rho, 1 + e.rho);
            s.r0 = s.Zout.value();
        } else {
            s.r0 = s.Zin.value();
        }
    }
}

// W of an even design: sqrt((1 - y^2 yn^2) (1 - y^2 / yn^2)).
double Weven(double y, double yn) { return hsqr((1 - y * y * yn * yn) * (1 - hdiv(y * y, yn * yn))); }

} // namespace

void ellipticprotoorder() {
    EllipticWork& e = elliptic;
    DesignSlot& s = slot(store.curslot);

    // Steps 1 to 4: modulus, nome, order and its limit.
    const double Apass = s.Apass;
    e.rho = hsqr(1 - pw(10, -Apass / 10));
    e.kmod = hdiv(1, store.wA);
    const double k1 = hsqr(1 - e.kmod * e.kmod);
    const double u = hdiv(1 - hsqr(k1), hsqr(k1) + 1) / 2;
    e.nome = u + 2 * pw(u, 5) + 15 * pw(u, 9) + 150 * pw(u, 13);
    if (s.order == 0) {
        const double d = hdiv(pw(10, 0.1 * s.Astop) - 1, pw(10, 0.1 * Apass) - 1);
        const double est = hdiv(hlog(16 * d), hlog(hdiv(1, e.nome)));
        s.order = Number::integer(Int(est + 0.99));
    }
    if (s.order > 11) {
        MsgBox("Maximum order is 11.\nReduce stopband requirement,\nor allow more passband ripple,\nor specify a lower order.",
               vbOKOnly | vbExclamation, "WARNING");
        store.cancelled = true;
        return;
    }
    const int n = clampint(s.order.value(), 0, 11);
    if (n < 1) raisefault(5);

    // Step 5: parity (an even order is then asked how to terminate).
    const bool odd = n % 2 != 0;
    store.oddorder = odd;
    e.halforder = odd ? (n - 1) / 2 : n / 2;
}

void ellipticprotoelements() {
    EllipticWork& e = elliptic;
    DesignSlot& s = slot(store.curslot);
    const double Apass = s.Apass;
    const int n = static_cast<int>(s.order.value());
    const bool odd = store.oddorder;
    const int M = e.halforder;

    // Step 6: the attenuation this order achieves.
    s.Astop = 10 * log10host(hfinite(1 + hdiv((pw(10, 0.1 * Apass) - 1) / 16, pw(e.nome, n))));

    // Steps 7 and 8: terminations and design type.
    terminations(s, odd);
    if (odd) e.designtype = "a";
    else if (e.termmode == "Maxvoltage" || e.termmode == "Maxcurrent" || flow.termchoice != "BOTH")
        e.designtype = "b";
    else e.designtype = "c";
    const bool maxpower = e.termmode == "Maxpower";

    // Step 9: the elliptic sines. Both sums take a minus sign at every term.
    const double q = e.nome;
    for (int i = 1; i <= n; ++i) {
        const double c = series(1.0, [&](int m) { return -2 * pw(q, m * m) * std::cos(m * PI * i / n); });
        double sv = series(std::sin(PI * i / 2 / n),
                           [&](int m) { return -pw(q, m * (m + 1)) * std::sin((2 * m + 1) * PI * i / 2 / n); });
        sv = 2 * sv * pw(q, 0.25);
        e.sn[static_cast<size_t>(i)] = hdiv(sv, c);
    }
    auto sn = [&](int i) { return e.sn.at(static_cast<size_t>(i)); };

    // Step 10: sigma, with alternating signs.
    const double a05 = pw(10, 0.05 * Apass);
    const double L = (hlog(hdiv(a05 + 1, a05 - 1)) / 2) / n;
    {
        const double c = series(1.0, [&](int m) {
            return 2 * (m % 2 ? -1.0 : 1.0) * pw(q, m * m) * (std::exp(2 * m * L) + std::exp(-2 * m * L)) / 2;
        });
        double sv = series((std::exp(L) - std::exp(-L)) / 2, [&](int m) {
            return (m % 2 ? -1.0 : 1.0) * pw(q, m * (m + 1)) *
                   (std::exp((2 * m + 1) * L) - std::exp(-(2 * m + 1) * L)) / 2;
        });
        sv = 2 * sv * pw(q, 0.25);
        e.sigma = hdiv(sv, c);
    }
    const double sg = e.sigma;

    // Step 11: numerator P and denominator D, ascending powers of s.
    Poly P{}, D{}, E{}, F{}, H{}, R{}, S{};
    const std::array<double, 17>* zeros = &e.sn;
    if (e.designtype == "a") {
        if (maxpower) {
            P[1] = 1;
            for (int i = 1; i <= M; ++i) multiply(P, i, 1, 0, sn(2 * i) * sn(2 * i));
        }
        const double V = hsqr((1 + e.kmod * sg * sg) * (1 + hdiv(sg * sg, e.kmod)));
        D[0] = sg;
        D[1] = 1;
        for (int i = 1; i <= M; ++i) {
            const double y = sn(2 * i);
            const double W = hsqr((1 - e.kmod * y * y) * (1 - hdiv(y * y, e.kmod)));
            const double den = 1 + sg * sg * y * y;
            const double b = hdiv(-2 * sg * W, den);
            const double c = hdiv(sg * W * (sg * W) + y * V * (y * V), den * den);
            multiply(D, i, 1, -b, c);
        }
        e.scale = sn(n);
    } else {
        const double y1 = sn(1), yn = sn(n);
        const bool typeb = e.designtype == "b";
        double G = 0;
        if (typeb) {
            G = hsqr((1 - y1 * y1 * yn * yn) * (1 - hdiv(y1 * y1, yn * yn)));
            for (int i = 1; i <= n; ++i) {
                const double y = sn(i);
                e.snb[static_cast<size_t>(i)] = hsqr(hdiv(G, hdiv(1, y * y) - y1 * y1));
                e.snc[static_cast<size_t>(i)] = hsqr(hdiv(y * y - y1 * y1, G));
            }
            s.w2 = hdiv(hdiv(s.w1, e.snc[static_cast<size_t>(n)]), e.snc[static_cast<size_t>(n)]);
            zeros = &e.snc;
            e.scale = hsqr(sn(n) * sn(n - 1));
        } else {
            for (int i = 1; i <= n; ++i) {
                const double y = sn(i);
                e.snd[static_cast<size_t>(i)] = hsqr(hdiv(y * y - y1 * y1, 1 - y * y * y1 * y1));
            }
            s.w2 = hdiv(hdiv(s.w1, e.snd[static_cast<size_t>(n)]), e.snd[static_cast<size_t>(n)]);
            zeros = &e.snd;
            e.scale = sn(n - 1);
        }
        if (maxpower) {
            const std::array<double, 17>& z = typeb ? e.snb : e.snd;
            P[0] = typeb ? z[1] * z[1] : 0;
            P[2] = 1;
            for (int i = 1; i <= M - 1; ++i) {
                const double zi = z.at(static_cast<size_t>(2 * i + 1));
                multiply(P, i, 1, 0, zi * zi);
            }
        }
        D[0] = 1;
        const double y14 = y1 * y1 * y1 * y1;
        for (int i = 1; i <= M; ++i) {
            const double y = sn(2 * i - 1);
            const double W = Weven(y, yn);
            const double den = 1 + sg * sg * y * y;
            const double b = hdiv((typeb ? -2 : 2) * sg * W, den);
            const double ee = hdiv(sg * sg + y * y, den);
            const double A = b * b - 2 * ee;
            const double B = ee * ee;
            const double T = B * y14 + A * y1 * y1 + 1;
            double p, r;
            if (typeb) {
                const double uu = hdiv((A + 2 * B * y1 * y1) * G, T);
                const double v = hdiv(B * G * G, T);
                p = -hsqr(uu + hsqr(v) + hsqr(v));
                r = hsqr(v);
            } else {
                const double uu = hdiv(A * y14 + 2 * (B + 1) * y1 * y1 + A, T);
                const double v = hdiv(y14 + A * y1 * y1 + B, T);
                p = -hsqr(hsqr(v) + hsqr(v) + uu);
                r = hsqr(v);
            }
            multiply(D, i, 1, -p, r);
        }
    }

    // Step 12: the pair E, F.
    if (odd) {
        for (int i = 0; i <= M; ++i) {
            E[2 * i + 1] = D[2 * i + 1] + P[2 * i + 1];
            F[2 * i] = D[2 * i] - P[2 * i];
        }
    } else {
        for (int i = 0; i <= M; ++i) E[2 * i] = D[2 * i] + P[2 * i];
        for (int i = 1; i <= M; ++i) F[2 * i - 1] = D[2 * i - 1] - P[2 * i - 1];
    }

    // Step 13: the zeros in extraction order.
    zeroorder(n, odd);

    // Step 14: zero shifting, one trap per transmission zero.
    const int last = odd ? M : M - 1;
    int k = 1;
    for (; k <= last; ++k) {
        const double z = zeros->at(static_cast<size_t>(e.zeroat.at(static_cast<size_t>(k))));
        const double x = hdiv(-1, z * z);
        const double w = -x;
        double A = 0, B = 0;
        if (odd) {
            for (int j = 0; j <= M; ++j) A += E[2 * j + 1] * std::pow(x, j);
            for (int j = 0; j <= M; ++j) B += F[2 * j] * std::pow(x, j);
            R[2 * k - 1] = hdiv(A, B);
            for (int j = 0; j <= M; ++j) E[2 * j + 1] = E[2 * j + 1] - F[2 * j] * R[2 * k - 1];
            for (int i = 0; i <= M - 1; ++i) {
                H[2 * i + 1] = hdiv(E[2 * i + 1], w);
                if (2 * i - 1 >= 0) H[2 * i + 1] = H[2 * i + 1] - hdiv(H[2 * i - 1], w);
            }
            A = 0;
            B = 0;
            for (int j = 0; j <= M - 1; ++j) A += H[2 * j + 1] * std::pow(x, j + 1);
            for (int j = 0; j <= M; ++j) B += F[2 * j] * std::pow(x, j);
            R[2 * k] = hdiv(A, B);
            S[2 * k] = hdiv(hdiv(1, R[2 * k]), w);
            for (int j = 1; j <= M; ++j) F[2 * j] = F[2 * j] - hdiv(H[2 * j - 1], R[2 * k]);
        } else {
            for (int j = 0; j <= M; ++j) A += E[2 * j] * std::pow(x, j);
            for (int j = 1; j <= M; ++j) B += F[2 * j - 1] * std::pow(x, j);
            R[2 * k - 1] = hdiv(A, B);
            for (int j = 1; j <= M; ++j) E[2 * j] = E[2 * j] - F[2 * j - 1] * R[2 * k - 1];
            for (int i = 0; i <= M - 1; ++i) {
                H[2 * i] = hdiv(E[2 * i], w);
                if (2 * i - 2 >= 0) H[2 * i] = H[2 * i] - hdiv(H[2 * i - 2], w);
            }
            A = 0;
            B = 0;
            for (int j = 0; j <= M - 1; ++j) A += H[2 * j] * std::pow(x, j);
            for (int j = 0; j <= M - 1; ++j) B += F[2 * j + 1] * std::pow(x, j);
            R[2 * k] = hdiv(A, B);
            S[2 * k] = hdiv(hdiv(1, R[2 * k]), w);
            for (int j = 0; j <= M - 1; ++j) F[2 * j + 1] = F[2 * j + 1] - hdiv(H[2 * j], R[2 * k]);
        }
    }

    // Step 15: the last element (and for even order the closing series inductor).
    R[2 * k - 1] = hdiv(E[n], F[n - 1]);
    if (!odd) {
        for (int j = n; j >= 1; j -= 2) E[j] = E[j] - R[2 * k - 1] * F[j - 1];
        S[2 * k] = hdiv(F[n - 1], E[n - 2]);
    }

    // Step 16: frequency scale.
    e.elemA.fill(0);
    e.elemB.fill(0);
    for (int i = 1; i <= n; ++i) {
        e.elemA[static_cast<size_t>(i)] = hfinite(R[i] * e.scale);
        e.elemB[static_cast<size_t>(i)] = hfinite(S[i] * e.scale);
    }
}

} // namespace zelk
