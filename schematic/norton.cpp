// The Norton transform. A series arm d between two shunt arms (or a shunt arm between two
// series arms) absorbs an ideal 1:N transformer: d itself is multiplied or divided by N,
// the neighbour on one side (the "far" one, which may be empty and is then created) gets
// a positive part added, the neighbour on the other side (the "near" one, which must be
// there) gets a negative part added, and everything to the right is scaled by N squared.
// The default N is the one at which the near neighbour's element cancels out.
#include "schematic/norton.h"

#include <cmath>

#include "core/designstore.h"
#include "core/desktop.h"
#include "core/dipoles.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "schematic/dipoletransforms.h"
#include "schematic/schematicview.h"
#include "schematic/undo.h"

namespace zelk {

namespace {

// Two elements of the same kind in parallel inductors or series capacitors.
double par(double x, double y) { return hdiv(x * y, x + y); }

// The arrangement around dipole d for one case.
struct Sides {
    bool series; // d is in a series arm (types 2, 3, 5)
    int base;    // 2 (L), 3 (C), or 5 and 4 for the L-C pairs of series and shunt arms
    int mate;    // the same element in the neighbours' arm
    int blank;   // the empty place of the neighbours' arm
    int near, far;
};

Sides sides(int d, int t, bool up) {
    Sides s{};
    s.series = t < 30;
    s.base = s.series ? t : t - 30;
    s.mate = s.series ? t + 30 : t - 30;
    s.blank = s.series ? 38 : 6;
    // Series arms reduce the right neighbour on a step-up, shunt arms the left one.
    if (s.series == up) {
        s.near = d + 1;
        s.far = d - 1;
    } else {
        s.near = d - 1;
        s.far = d + 1;
    }
    return s;
}

// The default N of one case, the element it eliminates and the panel picture.
void defaults(int d, int t, bool up) {
    const DesignSlot& s0 = slot(0);
    const Sides s = sides(d, t, up);
    const Dipole& D = s0.dip(d);
    const Dipole& M = s0.dip(s.near);
    double NL = 0, NC = 0;
    if (s.base != 3) NL = (s.series ? hdiv(D.L, M.L) : hdiv(M.L, D.L)) + 1;
    if (s.base != 2) NC = (s.series ? hdiv(M.C, D.C) : hdiv(D.C, M.C)) + 1;
    // For an L-C pair the smaller ratio wins; a tie names the capacitor.
    const bool byL = s.base == 2 || (s.base != 3 && NL < NC);
    const double N = byL ? NL : NC;
    const std::string text = (byL ? "L" : "C") + numtext(s.near);
    // Pictures: series L 39/40, C 35/36, tank 43/44; shunt L 41/42, C 37/38, LC 45/46.
    int key = 0;
    switch (t) {
    case 2:
        key = 39;
        break;
    case 3:
        key = 35;
        break;
    case 5:
        key = 43;
        break;
    case 32:
        key = 41;
        break;
    case 33:
        key = 37;
        break;
    case 34:
        key = 45;
        break;
    }
    if (up) {
        norton.Nup = N;
        norton.eliminatesup = text;
        norton.keyup = static_cast<short>(key);
    } else {
        norton.Ndown = N;
        norton.eliminatesdown = text;
        norton.keydown = static_cast<short>(key + 1);
    }
}

// The new values of d and its neighbours for turns ratio N.
void applyN(int d, int t, bool up, double N) {
    DesignSlot& s0 = slot(0);
    const Sides s = sides(d, t, up);
    Dipole& D = s0.dip(d);
    const double L0 = D.L, C0 = D.C;
    const bool hasL = s.base != 3, hasC = s.base != 2;
    double Lx = 0, Ly = 0, Cx = 0, Cy = 0;
    if (s.series) {
        if (up) {
            Lx = hdiv(L0 * N, N - 1);
            Ly = hdiv(N * N * L0, 1 - N);
            Cx = hdiv(C0 * (N - 1), N);
            Cy = hdiv(hdiv(C0 * (1 - N), N), N);
        } else {
            Lx = hdiv(hdiv(L0, N - 1), N);
            Ly = hdiv(L0, 1 - N);
            Cx = hfinite(C0 * (N - 1) * N);
            Cy = hfinite(C0 * (1 - N));
        }
    } else {
        if (up) {
            Lx = hfinite(N * (N - 1) * L0);
            Ly = hfinite(L0 * (1 - N));
            Cx = hdiv(hdiv(C0, N - 1), N);
            Cy = hdiv(C0, 1 - N);
        } else {
            Lx = hdiv(L0 * (N - 1), N);
            Ly = hdiv(hdiv(L0 * (1 - N), N), N);
            Cx = hdiv(N * C0, N - 1);
            Cy = hdiv(C0 * N * N, 1 - N);
        }
    }
    // Series rows put the neighbours' inductors in parallel and add their capacitors;
    // shunt rows add the inductors and put the capacitors in series.
    auto addL = [&](double L, double x) { return s.series ? par(L, x) : hfinite(L + x); };
    auto addC = [&](double C, double x) { return s.series ? hfinite(C + x) : par(C, x); };

    if (hasL) D.L = up ? hfinite(L0 * N) : hdiv(L0, N);
    if (hasC) D.C = up ? hdiv(C0, N) : hfinite(C0 * N);

    Dipole& F = s0.dip(s.far);
    if (F.type == s.mate) {
        const double L = hasL ? addL(F.L, Lx) : F.L;
        const double C = hasC ? addC(F.C, Cx) : F.C;
        F.L = L;
        F.C = C;
    } else {
        F.type = static_cast<short>(s.mate);
        if (hasL) F.L = Lx;
        if (hasC) F.C = Cx;
    }

    Dipole& M = s0.dip(s.near);
    const short blank = static_cast<short>(s.blank);
    if (s.base == 2) {
        if (s.series) {
            if (M.L + Ly < -1e-13)
                M.L = par(M.L, Ly);
            else
                M.L = 0, M.type = blank;
        } else {
            if (M.L + Ly > 1e-13)
                M.L = hfinite(M.L + Ly);
            else
                M.L = 0, M.type = blank;
        }
    } else if (s.base == 3) {
        if (s.series) {
            if (M.C + Cy > 1e-13)
                M.C = hfinite(M.C + Cy);
            else
                M.C = 0, M.type = blank;
        } else {
            if (M.C + Cy > -1e-13)
                M.C = 0, M.type = blank;
            else
                M.C = par(M.C, Cy);
        }
    } else {
        const bool goneL = std::fabs(M.L + Ly) < 1e-10;
        const bool goneC = std::fabs(M.C + Cy) < 1e-13;
        if (goneL && goneC) {
            M.L = 0;
            M.C = 0;
            M.type = blank;
        } else if (goneL) {
            M.L = 0;
            M.C = addC(M.C, Cy);
            M.type = static_cast<short>(s.series ? 33 : 3);
        } else if (goneC) {
            M.C = 0;
            M.L = addL(M.L, Ly);
            M.type = static_cast<short>(s.series ? 32 : 2);
        } else {
            const double L = addL(M.L, Ly), C = addC(M.C, Cy);
            M.L = L;
            M.C = C;
        }
    }
}

} // namespace

void nonortonUP() {
    MsgBox("N must be less than the default, try again", vbOKOnly, "Norton ERROR");
}
void nonortonDWN() {
    MsgBox("N must be less than the default, try again", vbOKOnly, "Norton ERROR");
}

void transformN(int first) {
    DesignSlot& s0 = slot(0);
    const double n2 = norton.N * norton.N;
    for (int n = first; n <= s0.count(); ++n) {
        Dipole& d = s0.dip(n);
        if (norton.stepup) {
            const double R = hfinite(d.R * n2), L = hfinite(d.L * n2), La = hfinite(d.La * n2);
            const double C = hdiv(d.C, n2), Ca = hdiv(d.Ca, n2);
            d.R = R, d.L = L, d.La = La, d.C = C, d.Ca = Ca;
        } else {
            const double R = hdiv(d.R, n2), L = hdiv(d.L, n2), La = hdiv(d.La, n2);
            const double C = hfinite(d.C * n2), Ca = hfinite(d.Ca * n2);
            d.R = R, d.L = L, d.La = La, d.C = C, d.Ca = Ca;
        }
    }
}

void getN() {
    Getdata& p = getdata;
    panelclear();
    const bool up = norton.stepup;
    const double N = up ? norton.Nup : norton.Ndown;
    panelrow(0, "N =", numtext(N), "Transformer turns ratio");
    p.setnote("N > 1 but < or = default value.\nDefault value eliminates " +
              (up ? norton.eliminatesup : norton.eliminatesdown));
    p.dipolechoice = up ? norton.keyup : norton.keydown;
    paneldipole(p.dipolechoice);
    if (schem.stepupok && schem.stepdownok) {
        // The toggle offers the other case: first the step-up, second the step-down.
        p.Tname1 = norton.eliminatesup;
        p.TN1 = norton.Nup;
        p.Tname2 = norton.eliminatesdown;
        p.TN2 = norton.Ndown;
        p.ctl("selectT").visible = true;
    }
    store.cancelled = !panelshow();
    // A turns ratio is a plain number: "2K" is 2.
    norton.N = Val(paneltext(0));
    // Each press of the toggle moved the picture to the other case; odd keys step up.
    norton.stepup = p.dipolechoice % 2 == 1;
}

void norton_Click() {
    sethelp("Insert a Norton transformer to modify component values or termination resistance..",
            "Enter a value of N > 1 but < = the default value.",
            "All components to the right will be modified by N squared.",
            "You can UNDO this change from the UTILITIES menu.");
    norton.N = norton.Nup = norton.Ndown = 1;
    undopush();
    const int d = static_cast<int>(schem.selecteddipole);
    const int t = slot(0).dip(d).type;
    if (!among(t, {2, 3, 5, 32, 33, 34})) {
        notransform(d);
        undopop();
        return;
    }
    // Step-up wins when both cases are open: its defaults are worked out last.
    if (schem.stepdownok) {
        defaults(d, t, false);
        norton.stepup = false;
    }
    if (schem.stepupok) {
        defaults(d, t, true);
        norton.stepup = true;
    }
    getN();
    if (store.cancelled || norton.N <= 1) {
        undopop();
        return;
    }
    const bool up = norton.stepup;
    const double limit = up ? norton.Nup : norton.Ndown;
    // The step-down of a series capacitor and of a shunt L-C compare without the margin.
    const bool nomargin = !up && (t == 3 || t == 34);
    if (nomargin ? norton.N > limit : norton.N > limit + 1e-13) {
        if (up)
            nonortonUP();
        else
            nonortonDWN();
        undopop();
        return;
    }
    transformN(d + 1);
    applyN(d, t, up, norton.N);
    schem.dipoleselected = false;
    frame.designsaved = false;
    schematicbuild();
}

} // namespace zelk
