#include "synthesis/dishal.h"

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "synthesis/bwcheby.h"
#include "synthesis/coupled.h"
#include "synthesis/crystal.h"

namespace zelk {

namespace {

constexpr int MOSTORDER = 15; // as the crystal ladders



double kc(int i) {
    if (i < 0 || i > 16) raisefault(9);
    return crystalwork.kcrystal[static_cast<size_t>(i)];
}

// The design crystal into dipole d.
void crystalinto(int d, int type) {
    DesignSlot& s = current();
    Dipole& x = s.dip(d);
    x.type = type;
    x.Ls = s.Ls;
    x.Cs = s.Cs;
    x.Cp = s.Cp;
    x.Rs = s.Rs;
    x.Qx = s.Qx;
}

double C(int d) { return current().dip(d).C; }

} // namespace

bool r0v3outsiderange(double r0v3) { return r0v3 < 2 || r0v3 > 10; }

std::pair<double, double> lowercentrelimits(double Fs, double bwhertz, double p) {
    const double half = bwhertz / 2;
    return {Fs + half * hdiv(1 - 3 * p, 3 - p), Fs + half * hdiv(1 - 10 * p, 10 - p)};
}

double lowerr0v3(double cfo, double Fs, double bwhertz, double p) {
    const double x = hdiv((cfo - Fs) * 2, bwhertz);
    return hdiv(1 + x * p, x + p);
}

std::pair<double, double> uppercentrelimits(double Fs, double bwhertz) {
    return {Fs + bwhertz * 0.75, Fs + bwhertz * 3};
}

double upperr0v3(double cfo, double Fs, double bwhertz) { return hdiv(2 * (cfo - Fs), bwhertz); }

double dishalp() { return kc(1) + kc(2); }

void dishallsbladder() {
    DesignSlot& s = current();
    const int n = ordercount(MOSTORDER);
    const double p = dishalp(), f = s.Fs, v = flow.r0v3, B = dishal.bwhertz;
    const double Cs = s.Cs, Cp = s.Cp;
    const double t = (1 - hdiv(1, v) * p) * (1 - hdiv(1, v) * p);
    const double T = hdiv(hdiv(hdiv(hdiv(1, 2), PI), f), Cs), Tt = hdiv(T, t);
    const double u = hdiv(1 - hdiv(1, v) * hdiv(1, v), hdiv(f, B));
    const double Rz = hdiv(Tt, prototerms.g1term) * u;
    s.r0 = Rz;
    s.Zin = Rz;
    s.Zout = Rz;
    const double wx = f * 2 * PI;
    const double Cc = hdiv(Cs * f, B) * hdiv(v - p, v * v - 1) - Cp;
    s.dip(1).type = 1;
    s.dip(1).R = Rz;
    s.dip(2).type = 38;
    for (int i = 1; i <= n; ++i) {
        crystalinto(2 * i + 1, i == 2 || i == n - 1 ? 15 : 27);
        s.dip(2 * i + 1).C = Cc;
        if (i < n) {
            Dipole& c = s.dip(2 * i + 2);
            c.type = 33;
            const double r = (Tt * kc(i)) * u;
            c.C = hdiv(hdiv(hdiv(1, 2), PI) / f, r);
        }
    }
    // The trimmer of each crystal without a neighbour pair of its own makes its arm look
    // like the second crystal's: its neighbours' reactance taken off that of the second's.
    const double X = hdiv(1, wx);
    for (int i = 1; i <= n; ++i) {
        if (i == 2 || i == n - 1) continue;
        double e = hdiv(X, C(4)) + hdiv(X, C(6));
        if (C(2 * i) > 0) e -= hdiv(X, C(2 * i));
        if (C(2 * i + 2) > 0) e -= hdiv(X, C(2 * i + 2));
        s.dip(2 * i + 1).Ca = hdiv(X, e);
    }
    const int count = 2 * n + 2;
    s.dip(count).type = 31;
    s.dip(count).R = hdiv(Tt, prototerms.gnterm) * u;
    s.dipolecount = count;
}

bool dishalusbladder() {
    DesignSlot& s = current();
    const int n = ordercount(MOSTORDER);
    const double f = s.Fs, v = flow.r0v3, B = dishal.bwhertz;
    const double Cs = s.Cs, Cp = s.Cp;
    const double Rz = hdiv((v * v - 1) * B, hdiv((6.283185308 * (f * f)) * Cs, prototerms.g1term));
    s.r0 = Rz;
    s.Zin = Rz;
    s.Zout = Rz;
    const double Cn = hdiv(Cs * f, B * (v - hdiv(1, v)));
    s.dip(1).type = 1;
    s.dip(1).R = Rz;
    crystalinto(2, 45);
    for (int i = 1; i <= n - 1; ++i) {
        Dipole& c = s.dip(2 * i + 1);
        c.type = 3;
        c.C = hdiv(hdiv(Cs * kc(i) * f, B), v * v - 1);
        crystalinto(2 * i + 2, 45);
        s.dip(2 * i).C = Cn - C(2 * i - 1) - C(2 * i + 1) - Cp;
    }
    // The last shunt crystal takes off the capacitor two places back, as the ladder has
    // always been built.
    s.dip(2 * n).C = Cn - C(2 * n - 2) - C(2 * n + 1) - Cp;
    s.dip(2 * n + 1).type = 6;
    const int count = 2 * n + 2;
    s.dip(count).type = 31;
    s.dip(count).R = Rz;
    s.dipolecount = count;
    for (int i = 1; i <= n; ++i)
        if (C(2 * i) < 0) return false;
    return true;
}

} // namespace zelk
