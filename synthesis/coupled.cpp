#include "synthesis/coupled.h"

#include <cmath>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "synthesis/bwcheby.h"

namespace zelk {

// A list of n elements that would not fit g[0..n+1] or the 32 dipoles of a slot is the
// host's "Subscript out of range".
int ordercount(int most) {
    const double n = Int(current().order);
    if (n < 0 || n > most) raisefault(9);
    return static_cast<int>(n);
}

namespace {

constexpr int MOSTORDER = 14; // g[0..n+1] within g[0..16]



double& gk(int k) {
    if (k < 0 || k > 16) raisefault(9);
    return store.g[static_cast<size_t>(k)];
}

double coth(double x) {
    const double ep = hexp(x), em = hexp(-x);
    return hdiv(ep + em, ep - em);
}

double sinh(double x) { return (hexp(x) - hexp(-x)) / 2; }

// Step 3 of both layouts: Qf, Cres and the design resistance.
void resonatorvalues() {
    DesignSlot& s = current();
    const double w0 = s.w0;
    coupled.Qf = hdiv(w0, s.bw);
    coupled.Cres = hdiv(hdiv(1, w0 * w0), coupled.Lres);
    s.r0 = w0 * coupled.Lres * prototerms.g1term * coupled.Qf;
}

// The capacitor that matches a termination z below r0 to the end resonator.
double matchcapacitor(double gterm, double z) {
    const DesignSlot& s = current();
    const double w0 = s.w0, bw = s.bw, q = flow.Qdesign;
    const double T = hdiv(gterm * w0 * q, bw * q - gterm * w0);
    return hdiv(hdiv(1, w0), hsqr(z * T * w0 * coupled.Lres - z * z));
}

// The tapped form of an end resonator d: t = sqrt(r0 / z), Ca = C t, C = C Ca / (Ca - C).
void tap(Dipole& d, int type, double r0, double z) {
    d.type = static_cast<short>(type);
    const double t = hsqr(hdiv(r0, z));
    d.Ca = d.C * t;
    d.C = hdiv(d.C * d.Ca, d.Ca - d.C);
}

void cleardipoles(DesignSlot& s) {
    for (int d = 1; d <= MAXDIPOLE; ++d) s.dip(d) = Dipole{};
}

} // namespace

void butterworthCRproto() {
    const int n = ordercount(MOSTORDER);
    gk(0) = 1;
    for (int k = 1; k <= n; ++k) gk(k) = 2 * std::sin((((2 * k - 1) * PI) / 2) / n);
    gk(n + 1) = 1;
    storeprototerms(n);
}

void chebyshevelements() {
    DesignSlot& s = current();
    const int n = ordercount(MOSTORDER);
    if (n < 1) raisefault(5);
    auto& a = store.a;
    auto& b = store.b;
    store.oddorder = n % 2 == 1;
    const double beta = hlog(coth(s.Apass / 17.37));
    const double gamma = sinh((beta / 2) / n);
    for (int k = 1; k <= n; ++k) {
        a[static_cast<size_t>(k)] = std::sin((((2 * k - 1) * PI) / 2) / n);
        const double sk = std::sin((k * PI) / n);
        b[static_cast<size_t>(k)] = gamma * gamma + sk * sk;
    }
    gk(0) = 1;
    gk(1) = hdiv(2 * a[1], gamma);
    for (int k = 2; k <= n; ++k)
        gk(k) = hdiv(hdiv((4 * a[static_cast<size_t>(k - 1)]) * a[static_cast<size_t>(k)],
                          b[static_cast<size_t>(k - 1)]),
                     gk(k - 1));
    if (store.oddorder) {
        gk(n + 1) = 1;
    } else {
        const double c = coth(beta / 4);
        gk(n + 1) = c * c;
    }
    // Move the band edge from the ripple corner to the 3 dB point.
    const double rho = hsqr(1 - hfinite(std::pow(10.0, -s.Apass / 10)));
    const double K = hdiv(1, rho * rho) - 1;
    const double p = hsqr((hfinite(std::pow(10.0, 0.3)) - 1) * K);
    const double c = hlog(p + hsqr(p * p - 1)) / n;
    const double h = (hexp(c) + hexp(-c)) / 2;
    for (int k = 1; k <= n; ++k) gk(k) = h * gk(k);
}

void crcentre() {
    DesignSlot& s = current();
    const double w1 = s.w1, w2 = s.w2;
    s.w0 = (w1 + w2) - hsqr((w2 - w1) * (w2 - w1) + w1 * w2);
    s.bw = w2 - w1;
    coupled.Lres = hdiv(hdiv(hdiv(s.r0 * s.bw, s.w0), prototerms.g1term), s.w0);
}

double crdefaultinductance() { return hdiv(10, current().w0); }

void craccept(double Li, double Qu) {
    DesignSlot& s = current();
    coupled.Lres = Li;
    s.r0 = hdiv(s.w0 * coupled.Lres * prototerms.g1term * s.w0, s.bw);
    flow.Qdesign = Qu == 0 ? 1000 : Qu;
}

void crlayout() {
    DesignSlot& s = current();
    const int n = ordercount(MOSTORDER);
    resonatorvalues();
    const double r0 = s.r0;
    cleardipoles(s);
    s.dip(1).type = 1;
    s.dip(1).R = r0;
    s.dip(2).type = 38;
    s.dip(3).type = 6;
    for (int i = 1; i <= n - 1; ++i) {
        s.dip(2 * i + 3).type = 3;
        s.dip(2 * i + 3).C =
            hdiv(prototerms.kcoupling[static_cast<size_t>(i)] * coupled.Cres, coupled.Qf);
    }
    // The last series position stays a wire until the ends are matched.
    s.dip(2 * n + 3).type = 6;
    for (int i = 1; i <= n; ++i) {
        Dipole& r = s.dip(2 * i + 2);
        r.type = 35;
        r.L = coupled.Lres;
        r.Qu = flow.Qdesign;
        r.C = coupled.Cres - s.dip(2 * i + 1).C - s.dip(2 * i + 3).C;
    }
    const int last = 2 * n + 4;
    s.dip(last).type = 31;
    s.dip(last).R = s.w0 * coupled.Lres * prototerms.gnterm * coupled.Qf;
    s.dipolecount = last;
    if (s.Zin + 1 < r0) {
        const double c = matchcapacitor(prototerms.g1term, s.Zin);
        s.dip(3).type = 3;
        s.dip(3).C = c;
        s.dip(4).C -= c;
        s.dip(1).R = s.Zin;
    }
    if (s.Zout + 1 < r0) {
        const double c = matchcapacitor(prototerms.gnterm, s.Zout);
        s.dip(last - 1).type = 3;
        s.dip(last - 1).C = c;
        s.dip(last - 2).C -= c;
        s.dip(last).R = s.Zout;
    }
}

void crlayouttapped() {
    DesignSlot& s = current();
    const int n = ordercount(MOSTORDER);
    resonatorvalues();
    const double r0 = s.r0;
    cleardipoles(s);
    const int count = 2 * n + 2;
    s.dipolecount = count;
    s.dip(1).type = 1;
    s.dip(1).R = r0;
    for (int i = 1; i <= n - 1; ++i) {
        s.dip(2 * i + 1).type = 3;
        s.dip(2 * i + 1).C =
            hdiv(prototerms.kcoupling[static_cast<size_t>(i)] * coupled.Cres, coupled.Qf);
    }
    for (int i = 1; i <= n; ++i) {
        Dipole& r = s.dip(2 * i);
        r.type = 35;
        r.L = coupled.Lres;
        r.Qu = flow.Qdesign;
        r.C = coupled.Cres - s.dip(2 * i - 1).C - s.dip(2 * i + 1).C;
    }
    s.dip(count - 1).type = 6;
    s.dip(count).type = 31;
    s.dip(count).R = s.w0 * coupled.Lres * prototerms.gnterm * coupled.Qf;
    if (s.Zin + 1 < r0) {
        tap(s.dip(2), 57, r0, s.Zin);
        s.dip(1).R = s.Zin;
    }
    if (s.Zout + 1 < r0) {
        tap(s.dip(count - 2), 58, r0, s.Zout);
        s.dip(count).R = s.Zout;
    }
}

} // namespace zelk
