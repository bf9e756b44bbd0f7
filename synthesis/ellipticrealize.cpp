#include "synthesis/ellipticrealize.h"

#include "core/designflow.h"
#include "core/designstore.h"
#include "synthesis/ellipticproto.h"

namespace zelk {

namespace {

double A(int k) { return elliptic.elemA.at(static_cast<size_t>(k)); }
double B(int k) { return elliptic.elemB.at(static_cast<size_t>(k)); }

// Writes dipole d afresh with a type and its normalised values.
void put(int d, short type, double C = 0, double L = 0) {
    cleardipole(d);
    Dipole& p = dipole(store.curslot, d);
    p.type = type;
    p.C = C;
    p.L = L;
}

void putR(int d, short type, double R) {
    put(d, type);
    dipole(store.curslot, d).R = R;
}

// Bartlett's bisection at the middle dipole: the half towards the load is scaled to the
// load's impedance level.
void bisect(DesignSlot& s) {
    const double zratio = s.Zout / s.Zin;
    const int count = s.count();
    int d = count / 2;
    if (s.dip(2).type == 38) d = d + 1;
    Dipole& m = s.dip(d);
    switch (m.type) {
    case 5:
        m.L = (m.L / 2) * (1 + zratio);
        m.C = (m.C + m.C) / (1 + zratio);
        break;
    case 33: m.C = ((m.C / 2) * (1 + zratio)) / zratio; break;
    case 2: m.L = (m.L / 2) * (1 + zratio); break;
    case 34:
        m.L = ((m.L + m.L) * zratio) / (1 + zratio);
        m.C = ((m.C / 2) * (1 + zratio)) / zratio;
        break;
    default: return;
    }
    for (int j = d + 1; j <= count - 1; ++j) {
        Dipole& p = s.dip(j);
        p.L = p.L * zratio;
        p.C = p.C / zratio;
    }
    if (m.type == 5) {
        s.dip(1).R = s.Zin;
        s.dip(count).R = s.Zout;
    }
}

} // namespace

void ellipticrealize() {
    DesignSlot& s = slot(store.curslot);
    const int n = clampint(s.order.value(), 0, 11);
    const bool odd = store.oddorder;
    const int m = elliptic.halforder;
    const int c = odd ? m : m - 1;
    const std::string& cf = flow.configuration;
    const bool pifamily = cf == "NODAL" || cf == "Pi" || cf == "SPPi";
    const bool tfamily = cf == "T" || cf == "SPT";

    putR(1, 1, s.Zin);
    if (!elliptic.fromoutput) {
        if (pifamily) {
            int d = 2;
            for (int k = 1; k <= c; ++k) {
                put(d, 33, A(2 * k - 1));
                put(d + 1, 5, A(2 * k), B(2 * k));
                d += 2;
            }
            const int k = c + 1;
            put(d, 33, A(2 * k - 1));
            if (odd) put(d + 1, 6);
            else put(d + 1, 2, 0, B(2 * k));
            putR(d + 2, 31, s.Zout);
            s.dipolecount = Number::integer(d + 2);
        } else if (tfamily) {
            put(2, 38);
            int d = 3;
            for (int k = 1; k <= c; ++k) {
                put(d, 2, 0, A(2 * k - 1));
                put(d + 1, 34, B(2 * k), A(2 * k));
                d += 2;
            }
            const int k = c + 1;
            put(d, 2, 0, A(2 * k - 1));
            ++d;
            if (!odd) {
                put(d, 33, B(2 * k));
                put(d + 1, 6);
                d += 2;
            }
            putR(d, 31, s.Zout);
            s.dipolecount = Number::integer(d);
        }
    } else {
        if (pifamily) {
            const int count = odd ? n + 3 : n + 4;
            s.dipolecount = Number::integer(count);
            int d = count;
            putR(d--, 31, s.Zout);
            put(d--, 6);
            for (int k = 1; k <= c; ++k) {
                put(d--, 33, A(2 * k - 1));
                put(d--, 5, A(2 * k), B(2 * k));
            }
            const int k = c + 1;
            put(d--, 33, A(2 * k - 1));
            if (!odd) {
                put(d--, 2, 0, B(2 * k));
                put(d--, 38);
            }
        } else if (tfamily) {
            const int count = n + 3;
            s.dipolecount = Number::integer(count);
            int d = count;
            putR(d--, 31, s.Zout);
            for (int k = 1; k <= c; ++k) {
                put(d--, 2, 0, A(2 * k - 1));
                put(d--, 34, B(2 * k), A(2 * k));
            }
            const int k = c + 1;
            put(d--, 2, 0, A(2 * k - 1));
            if (odd) put(d--, 38);
            else put(d--, 33, B(2 * k));
        }
    }

    if (odd && s.Zout / s.Zin < 10) bisect(s);
}

} // namespace zelk
