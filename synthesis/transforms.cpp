#include "synthesis/transforms.h"
#include "core/hostmath.h"

#include <cmath>

#include "core/designflow.h"
#include "core/designstore.h"

namespace zelk {

namespace {


void settype(int d, short type) {
    cleardipole(d);
    dipole(store.curslot, d).type = type;
}

// Scales every dipole to the real impedance and frequency.
void scaleall() {
    DesignSlot& s = current();
    const double kc = hdiv(hdiv(1, s.w0), s.r0);
    const double kl = hdiv(s.r0, s.w0);
    for (int d = 1; d <= s.count(); ++d) {
        Dipole& p = s.dip(d);
        p.C *= kc;
        p.Ca *= kc;
        p.L *= kl;
        p.La *= kl;
    }
}

// The series/parallel rewrites of a double-resonance arm.
void rewriteSPT(Dipole& p) {
    const double a = p.L, b = p.C, c = p.La, d = p.Ca;
    const double D = (a * b - c * d) * (a * b - c * d);
    p.Ca = b + d;
    p.C = hdiv(b * d * (b + d) * (a + c) * (a + c), D);
    p.L = hdiv(hdiv(D, a + c), (b + d) * (b + d));
    p.La = hdiv(a * c, a + c);
    p.type = 49;
}

void rewriteSPPi(Dipole& p) {
    const double a = p.L, b = p.C, c = p.La, d = p.Ca;
    const double D = (a * b - c * d) * (a * b - c * d);
    p.La = a + c;
    p.L = hdiv(a * c * (a + c) * (b + d) * (b + d), D);
    p.C = hdiv(hdiv(D, b + d), (a + c) * (a + c));
    p.Ca = hdiv(b * d, b + d);
    p.type = 13;
}

} // namespace

void schematicrealize() {
    DesignSlot& s = current();
    const double n = s.order;
    if (n < 1 || n > 16) raisefault(5);
    const int last = clampint(Int(n), 1, 16);
    const double zin = s.Zin, zout = s.Zout;
    store.oddorder = n / 2 != Int(n / 2);
    settype(1, 1);
    s.dip(1).R = zin;

    const bool pi = flow.configuration == "Pi";
    bool cfirst, forwards, wireend;
    if (pi && store.oddorder) {
        forwards = zin <= zout;
        cfirst = true;
        wireend = true;
    } else if (pi) {
        forwards = zin >= zout;
        cfirst = forwards;
        wireend = !forwards;
    } else if (store.oddorder) {
        forwards = zin >= zout;
        cfirst = false;
        wireend = false;
    } else {
        forwards = zin <= zout;
        cfirst = !forwards;
        wireend = forwards;
    }
    s.r0 = forwards ? zin : zout;

    layladder(last, cfirst, forwards, wireend, zout);
}

void layladder(int last, bool cfirst, bool forwards, bool wireend, double zout) {
    DesignSlot& s = current();
    const auto& g = store.g;
    // The element values in the order they are laid out.
    auto value = [&](int i) {
        const int k = forwards ? i : last + 1 - i;
        if (k < 0 || k > 16) raisefault(9);
        return g[static_cast<size_t>(k)];
    };
    int d = 1;
    if (!cfirst) {
        settype(2, 38);
        d = 2;
    }
    for (int i = 1; i <= last; i += 2) {
        const int at = cfirst ? i + 1 : i + 2;
        settype(at, cfirst ? 33 : 2);
        if (cfirst) s.dip(at).C = value(i);
        else s.dip(at).L = value(i);
        d = at;
        if (i < last) {
            settype(at + 1, cfirst ? 2 : 33);
            if (cfirst) s.dip(at + 1).L = value(i + 1);
            else s.dip(at + 1).C = value(i + 1);
            d = at + 1;
        }
    }
    if (wireend) settype(++d, 6);
    settype(++d, 31);
    s.dip(d).R = zout;
    s.dipolecount = d;
}

void LPtoLP() {
    DesignSlot& s = current();
    for (int d = 1; d <= s.count(); ++d) {
        Dipole& p = s.dip(d);
        if (p.L > 0) {
            p.L = hdiv(p.L * s.r0, s.w0);
            p.Qu = flow.Qdesign;
        }
        if (p.C > 0) p.C = hdiv(hdiv(p.C, s.r0), s.w0);
    }
}

void LPtoHP() {
    DesignSlot& s = current();
    for (int d = 1; d <= s.count(); ++d) {
        Dipole& p = s.dip(d);
        if (p.L > 0 && p.C > 0) {
            const double oldL = p.L, oldC = p.C;
            p.L = 1 / oldC;
            p.C = 1 / oldL;
            p.Ca = 0;
            p.Qu = flow.Qdesign;
        } else if (p.L > 0) {
            p.C = 1 / p.L;
            p.L = 0;
            p.Qu = flow.Qdesign;
            p.type = static_cast<short>(p.type + 1);
        } else if (p.C > 0) {
            p.L = 1 / p.C;
            p.Qu = flow.Qdesign;
            p.C = 0;
            p.type = static_cast<short>(p.type - 1);
        }
    }
    scaleall();
}

void LPtoBP() {
    DesignSlot& s = current();
    const double q = flow.Qratio;
    for (int d = 1; d <= s.count(); ++d) {
        Dipole& p = s.dip(d);
        switch (p.type) {
        case 2:
            p.C = hdiv(hdiv(1, q), p.L);
            p.L = p.L * q;
            p.Qu = flow.Qdesign;
            p.type = 4;
            break;
        case 33:
            p.L = hdiv(hdiv(1, q), p.C);
            p.Qu = flow.Qdesign;
            p.C = p.C * q;
            p.type = 35;
            break;
        case 34: {
            const double r = hsqr(std::pow(2 * q * hsqr(p.L * p.C), 2) + 1);
            const double t = p.L;
            p.C = hdiv(hdiv((r - 1) / 2 / q, r), t);
            p.Ca = hdiv(hdiv((r + 1) / 2 / q, r), t);
            p.L = hdiv(1, p.Ca);
            p.La = hdiv(1, p.C);
            p.Qu = p.Qa = flow.Qdesign;
            p.type = 47;
            if (flow.configuration == "SPT") rewriteSPT(p);
            break;
        }
        case 5: {
            const double r = hsqr(std::pow(2 * q * hsqr(p.L * p.C), 2) + 1);
            const double t = p.C;
            p.L = hdiv(hdiv((r - 1) / 2 / q, r), t);
            p.La = hdiv(hdiv((r + 1) / 2 / q, r), t);
            p.Qu = p.Qa = flow.Qdesign;
            p.C = hdiv(1, p.La);
            p.Ca = hdiv(1, p.L);
            p.type = 18;
            if (flow.configuration == "SPPi") rewriteSPPi(p);
            break;
        }
        default: break;
        }
    }
    scaleall();
}

void LPtoBR() {
    DesignSlot& s = current();
    const double q = flow.Qratio;
    for (int d = 1; d <= s.count(); ++d) {
        Dipole& p = s.dip(d);
        switch (p.type) {
        case 2:
            p.C = hdiv(q, p.L);
            p.L = hdiv(p.L, q);
            p.Qu = flow.Qdesign;
            p.type = 5;
            break;
        case 33:
            p.L = hdiv(q, p.C);
            p.Qu = flow.Qdesign;
            p.C = hdiv(p.C, q);
            p.type = 34;
            break;
        case 34: {
            // The inductors of these arms stay lossless: no Q is written.
            const double r = hsqr(std::pow(hdiv(2 * q, hsqr(p.L * p.C)), 2) + 1);
            const double t = p.C;
            p.C = hdiv((t * (r - 1) / 2) / q, r);
            p.Ca = hdiv((t * (r + 1) / 2) / q, r);
            p.L = hdiv(1, p.Ca);
            p.La = hdiv(1, p.C);
            p.type = 47;
            if (flow.configuration == "SPT") rewriteSPT(p);
            break;
        }
        case 5: {
            const double r = hsqr(std::pow(hdiv(2 * q, hsqr(p.L * p.C)), 2) + 1);
            const double t = p.L;
            p.L = hdiv((t * (r - 1) / 2) / q, r);
            p.La = hdiv((t * (r + 1) / 2) / q, r);
            p.C = hdiv(1, p.La);
            p.Ca = hdiv(1, p.L);
            p.type = 18;
            if (flow.configuration == "SPPi") rewriteSPPi(p);
            break;
        }
        default: break;
        }
    }
    scaleall();
}

void stopbandratio() {
    DesignSlot& s = slot(store.curslot);
    const double w1 = s.w1, w2 = s.w2, w3 = s.w3, w4 = s.w4;
    switch (flow.functionkind) {
    case 0:
        s.w0 = w1;
        store.wA = hdiv(w2, w1);
        break;
    case 1:
        // A high-pass is cut off at F2 and stops at F1.
        s.w0 = w2;
        store.wA = hdiv(w2, w1);
        break;
    case 2: {
        const double w0 = hsqr(w2 * w3);
        s.w0 = w0;
        const double B = w3 - w2;
        const double a = hdiv(-hdiv(w1 * w1 - w0 * w0, w1), B);
        const double b = hdiv(hdiv(w4 * w4 - w0 * w0, w4), B);
        store.wA = a < b ? a : b;
        flow.Qratio = hdiv(w0, B);
        break;
    }
    case 3: {
        // Band-reject: F1 and F4 are the pass-band corners, F2 and F3 the stop edges.
        const double w0 = hsqr(w1 * w4);
        s.w0 = w0;
        const double B = w4 - w1;
        const double a = w2 != w0 ? hdiv(-(w2 * B), w2 * w2 - w0 * w0) : 1e12;
        const double b = w3 != w0 ? hdiv(w3 * B, w3 * w3 - w0 * w0) : 1e12;
        store.wA = (a > 0 && a < b) ? a : b;
        flow.Qratio = hdiv(w0, B);
        break;
    }
    default: break;
    }
}

void scaletransform() {
    switch (flow.functionkind) {
    case 0: LPtoLP(); break;
    case 1: LPtoHP(); break;
    case 2: LPtoBP(); break;
    case 3: LPtoBR(); break;
    default: break;
    }
}

} // namespace zelk
