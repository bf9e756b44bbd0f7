#include "synthesis/crystal.h"

#include <cmath>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "synthesis/bwcheby.h"
#include "synthesis/coupled.h"

namespace zelk {

namespace {


// Orders up to 15: elements 1..n and the 2n + 2 dipoles of the ladder fit g[0..16] and
// the 32 dipoles of a slot.
constexpr int MOSTORDER = 15;

double& kc(int i) {
    if (i < 0 || i > 16) raisefault(9);
    return crystalwork.kcrystal[static_cast<size_t>(i)];
}

void setends(double g1, double gn) {
    prototerms.g1term = g1;
    prototerms.gnterm = gn;
    store.g1term = g1;
    store.gnterm = gn;
}

// kcrystal[i] = 1 / sqrt(g[i+1] g[i]): the couplings of the prototype terms.
void couplingsfromg(int n) {
    storeprototerms(n);
    for (int i = 1; i <= n - 1; ++i) kc(i) = prototerms.kcoupling[static_cast<size_t>(i)];
}

} // namespace

void BCLterms() {
    butterworthCRproto();
    const int n = ordercount(MOSTORDER);
    couplingsfromg(n);
    setends(store.g[1], store.g[1]);
}

void CCLterms() {
    chebyshevelements();
    const int n = ordercount(MOSTORDER);
    couplingsfromg(n);
    setends(store.g[1], store.g[1]);
}

void TCLterms() {
    const int n = ordercount(MOSTORDER);
    couplingsfromg(n);
    setends(store.g[1], store.g[static_cast<size_t>(n)]);
}

void MCLterms() {
    const int n = ordercount(MOSTORDER);
    const double h = hexp(hdiv(hlog(2), n)) / 2;
    setends(hdiv(1, h), hdiv(1, h));
    for (int i = 1; i <= n - 1; ++i) kc(i) = h;
}

bool crystalQsufficient() {
    const DesignSlot& s = current();
    return !(hdiv(s.Qx * s.bw, s.Fs) < 2 * double(s.order));
}

double narrowestbandwidth() {
    const DesignSlot& s = current();
    return hdiv(2 * double(s.order) * s.Fs, s.Qx);
}

void crystaldesignvalues() {
    DesignSlot& s = current();
    const double ws = hdiv(1, hsqr(s.Ls * s.Cs));
    s.r0 = hdiv(s.bw * s.Ls, prototerms.g1term);
    s.w0 = ws;
}

void crystalladder(const std::string& mode) {
    DesignSlot& s = current();
    const int n = ordercount(MOSTORDER);
    const double r0 = s.r0, w0 = s.w0, bw = s.bw;
    s.dip(1).type = 1;
    s.dip(1).R = r0;
    s.dip(2).type = 38;
    for (int i = 1; i <= n; ++i) {
        Dipole& x = s.dip(2 * i + 1);
        x.type = 7;
        x.Ls = s.Ls;
        x.Cs = s.Cs;
        x.Cp = s.Cp;
        x.Rs = s.Rs;
        x.Qx = s.Qx;
    }
    const int count = 2 * n + 2;
    s.dip(count).type = 31;
    s.dip(count).R = r0;
    s.dipolecount = count;
    const bool capacitive = mode == "UC" || mode == "TC";
    for (int i = 1; i <= n - 1; ++i) {
        Dipole& c = s.dip(2 * i + 2);
        if (capacitive) {
            c.type = 33;
            c.C = hdiv(hdiv(s.Cs * w0, kc(i)), bw);
        } else {
            c.type = 32;
            c.L = ((s.Ls / w0) * kc(i)) * bw;
            c.Qu = flow.Qdesign;
        }
    }
    auto trim = [&s](int d, double t) {
        s.dip(d).type = 16;
        s.dip(d).C = t;
    };
    if (mode == "TC") {
        // Each crystal is tuned so that the capacitance at every node equals that of the
        // node between the first two couplings.
        auto C = [&s](int d) { return s.dip(d).C; };
        const double Cnode = hdiv(1, hdiv(1, C(6)) + hdiv(1, C(4)));
        crystalwork.Cnode = Cnode;
        double t = hdiv(1, hdiv(1, Cnode) - hdiv(1, C(4)));
        if (t > 0) trim(3, t);
        for (int d = 5; d <= count - 3; d += 2) {
            const double v = hdiv(1, Cnode) - hdiv(1, C(d - 1)) - hdiv(1, C(d + 1));
            if (v > 0) {
                t = hdiv(1, v);
                // A coupling so small that the trimmer would be out of range leaves the
                // crystal bare.
                if (t > 0 && t < 1000 * Cnode) trim(d, t);
            }
        }
        t = hdiv(1, hdiv(1, Cnode) - hdiv(1, C(count - 2)));
        if (t > 0) trim(count - 1, t);
    } else if (mode == "TL") {
        auto L = [&s](int d) { return s.dip(d).L; };
        const double w2 = w0 * w0;
        trim(3, hdiv(1, w2 * L(4)));
        for (int d = 5; d <= count - 3; d += 2) trim(d, hdiv(1, w2 * (L(d + 1) + L(d - 1))));
        trim(count - 1, hdiv(1, w2 * L(count - 2)));
    }
}

namespace {

// The tap of an end: type `up` when t > 1, else `down`, from the trimmer c of the end
// crystal, which is left bare.
void tapend(Dipole& d, Dipole& crystal, double t, short up, short down) {
    const double w0 = current().w0;
    const double c = crystal.C;
    if (t > 1) {
        d.type = up;
        d.Ca = (t * (t - 1)) * c;
        d.C = t * c;
        d.L = hdiv(-1, (w0 * w0 * (1 - t)) * c);
    } else {
        d.type = down;
        d.Ca = (1 - t) * c;
        d.C = t * c;
        d.L = hdiv(-1, ((w0 * w0 * t) * (t - 1)) * c);
    }
    d.Qu = flow.Qdesign;
    crystal.C = 0;
    crystal.type = 7;
}

} // namespace

void crystaltapinput(double Zin) {
    DesignSlot& s = current();
    const double t = hsqr(hdiv(s.r0, Zin));
    tapend(s.dip(2), s.dip(3), t, 57, 58);
}

void crystaltapoutput(double Zout) {
    DesignSlot& s = current();
    const double t = hsqr(hdiv(s.r0, Zout));
    const int d = s.count();
    // The load moves two places on; its dipole becomes the tap.
    s.dip(d + 1).type = 6;
    s.dip(d + 2).type = 31;
    s.dip(d + 2).R = Zout;
    s.dipolecount = d + 2;
    s.dip(d).R = 0;
    tapend(s.dip(d), s.dip(d - 1), t, 58, 57);
}

} // namespace zelk
