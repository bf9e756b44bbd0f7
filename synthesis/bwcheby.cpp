#include "synthesis/bwcheby.h"
#include "core/hostmath.h"

#include <cmath>

#include "core/designstore.h"
#include "core/desktop.h"

namespace zelk {

namespace {

// x ^ y as the host raises it, with a result that must stay finite.
double power(double x, double y) { return hfinite(std::pow(x, y)); }

// An order above 16 does not fit the tables.
bool orderrefused(double n) {
    if (n <= 16) return false;
    MsgBox("Maximum order is 16.\nReduce stopband requirement", vbOKOnly | vbExclamation, "WARNING");
    store.cancelled = true;
    return true;
}

// The termination ratio, never below 1 whichever end is larger.
double terminationratio(const DesignSlot& s) {
    const double zin = s.Zin, zout = s.Zout;
    return zout > zin ? hsqr(hdiv(zout, zin)) : hsqr(hdiv(zin, zout));
}

// Elements are counted k = 1 to n as the host counts them for a (possibly fractional) n.
int lastindex(double n) {
    if (n > 16) raisefault(9);
    return n < 1 ? 0 : clampint(Int(n), 1, 16);
}

} // namespace

void storeprototerms(int order) {
    auto& g = store.g;
    const int n = order < 0 ? 0 : (order > 16 ? 16 : order);
    prototerms.g1term = g[1];
    prototerms.gnterm = g[static_cast<size_t>(n)];
    // The inductor hint of the coupled-resonator prompt reads the end value from the store.
    store.g1term = prototerms.g1term;
    store.gnterm = prototerms.gnterm;
    for (int i = 1; i <= n - 1; ++i)
        prototerms.kcoupling[static_cast<size_t>(i)] =
            hdiv(1, hsqr(g[static_cast<size_t>(i + 1)] * g[static_cast<size_t>(i)]));
}

void butterworthproto() {
    DesignSlot& s = slot(store.curslot);
    auto& g = store.g;
    auto& ga = store.a;
    auto& gb = store.b;
    if (s.Apass == 0) s.Apass = 3;
    const double rho = hsqr(1 - power(10, -s.Apass / 10));
    const double K = hdiv(1, rho * rho) - 1;
    const double wA = store.wA;
    if (s.order == 0) {
        const double e = hsqr((power(10, s.Astop / 10) - 1) * K);
        s.order = Int(hdiv(hlog(e), hlog(wA)) + 0.99);
    }
    if (orderrefused(s.order)) return;
    const double n = s.order;
    s.Astop = 10 * log10host(1 + hdiv(power(wA, 2 * n), K));
    store.oddorder = n / 2 != Int(n / 2);
    const double r = terminationratio(s);
    const double a1 = hexp(hdiv(hlog(hsqr(K)), n));
    double a2 = 0;
    if (r != 1) {
        // Both steps start from a1 after its n-th root, as the program has always done.
        a2 = a1 * (r * r - 1) / (r * r + 1);
        a2 = hexp(hdiv(hlog(a2), n));
    }
    const int last = lastindex(n);
    for (int k = 1; k <= last; ++k) {
        const size_t i = static_cast<size_t>(k);
        if (r == 1) {
            g[i] = hdiv(2, a1) * std::sin((((2 * k - 1) * PI) / n) / 2);
        } else if (r >= 10) {
            // The division by PI (not a product) is the program's own arithmetic.
            gb[0] = 1;
            ga[i] = std::sin((((2 * k - 1) / PI) / n) / 2) / a1;
            const double c = std::cos((((k - 1) * PI) / n) / 2);
            gb[i] = hdiv(c * c, gb[i - 1]);
            g[i] = hdiv(ga[i], gb[i]);
        } else {
            gb[0] = a2 + a1;
            const double t = 4 * a1 * a2;
            ga[i] = 2 * std::sin((((2 * k - 1) * PI) / n) / 2);
            const double sn = std::sin((((k - 1) * PI) / n) / 2);
            gb[i] = hdiv(gb[0] * gb[0] - t * sn * sn, gb[i - 1]);
            g[i] = hdiv(ga[i], gb[i]);
        }
    }
    storeprototerms(last);
}

void chebyshevproto() {
    DesignSlot& s = slot(store.curslot);
    auto& g = store.g;
    auto& ga = store.a;
    auto& gb = store.b;
    const double rho = hsqr(1 - power(10, -s.Apass / 10));
    const double K = hdiv(1, rho * rho) - 1;
    const double wA = store.wA;
    if (s.order == 0) {
        // The plus sign (where the Butterworth estimate has a minus) is the program's own.
        const double e = hsqr((power(10, s.Astop / 10) + 1) * K);
        s.order = Int(hdiv(hlog(hsqr(e * e - 1) + e), hlog(wA + hsqr(wA * wA - 1))) + 0.99);
    }
    if (orderrefused(s.order)) return;
    const double n = s.order;
    // A work value of the ripple that nothing reads; computing it still faults as the
    // program does for a ripple above 3 dB.
    const double e1 = hdiv(1, hsqr(power(10, s.Apass / 10) - 1));
    [[maybe_unused]] const double unused = hdiv(hlog(hsqr(e1 * e1 - 1) + e1), n);
    const double d = n * hlog(wA + hsqr(wA * wA - 1));
    const double c = (hexp(d) + hexp(-d)) / 2;
    s.Astop = 10 * log10host(1 + hdiv(c * c, K));
    if (n / 2 == Int(n / 2)) {
        store.oddorder = false;
        sethelp("For even order Chebyshev filters, the input impedance has a minimum ratio with the output impedance.",
                "If this minimum is not met, the specification of input impedance will be modified accordingly.",
                "From a practical point of view it is best to avoid even order filters of all types.",
                "It is recommended you round your requirements to an odd order filter.");
    } else {
        store.oddorder = true;
    }
    const double r0 = terminationratio(s);
    double v;
    if (store.oddorder) {
        v = r0;
    } else {
        const double m = hsqr(hdiv(rho + 1, 1 - rho));
        if (r0 <= m) {
            v = 1;
        } else {
            const double u = rho;
            const double h = (r0 + 1 / r0) / 2;
            v = h * hsqr(1 - u * u) + hsqr(h * h * (1 - u * u) - 1);
        }
    }
    const double vr = hdiv(v * v - 1, v * v + 1);
    double x = hdiv(1, rho) + hsqr(K);
    double y = vr * hsqr(K) + hsqr(vr * vr * K + 1);
    x = hexp(hdiv(hlog(x), n));
    y = hexp(hdiv(hlog(y), n));
    const double a1 = hdiv((x * x - 1) / 2, x);
    const double a2 = hdiv((y * y - 1) / 2, y);
    const int last = lastindex(n);
    for (int k = 1; k <= last; ++k) {
        const size_t i = static_cast<size_t>(k);
        const double A = (((2 * k - 1) * PI) / n) / 2;
        const double B = (((k - 1) * PI) / n) / 2;
        if (v == 1) {
            gb[0] = a1;
            ga[i] = 2 * std::sin(A);
            const double s2 = std::sin(2 * B);
            gb[i] = hdiv(gb[0] * gb[0] + s2 * s2, gb[i - 1]);
        } else if (v >= 10) {
            gb[0] = a1;
            ga[i] = std::sin(A);
            const double sb = std::sin(B);
            gb[i] = hdiv((gb[0] * gb[0] + sb * sb) * std::cos(B) * std::cos(B), gb[i - 1]);
        } else {
            gb[0] = a2 + a1;
            const double t = a2 * a1;
            ga[i] = 2 * std::sin(A);
            gb[i] = hdiv(gb[0] * gb[0] - 4 * std::sin(B) * std::sin(B) * (t - std::cos(B) * std::cos(B)),
                         gb[i - 1]);
        }
        g[i] = hdiv(ga[i], gb[i]);
    }
    storeprototerms(last);
}

} // namespace zelk
