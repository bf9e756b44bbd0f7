// Dipole transforms. Every formula reads the old values first and writes the new ones
// after, in the order of terms given by the transform tables; a zero that a formula
// divides by, the root of a negative number or an overflow stops the edit with the
// host's run-time error, and the edit command restores the snapshot it took.
#include "schematic/dipoletransforms.h"

#include "core/designstore.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "schematic/report.h"
#include "schematic/schematicview.h"
#include "schematic/undo.h"

namespace zelk {

namespace {

// The host's x^2.
double sq(double x) { return x * x; }

// New values of one step; a field left unset keeps its value.
struct Step {
    double L = 0, C = 0, La = 0, Ca = 0;
    bool setL = false, setC = false, setLa = false, setCa = false;
    void l(double v) { L = hfinite(v), setL = true; }
    void c(double v) { C = hfinite(v), setC = true; }
    void la(double v) { La = hfinite(v), setLa = true; }
    void ca(double v) { Ca = hfinite(v), setCa = true; }
};

// The root step of 13 -> 18 and 23 -> 17: the four values m, p, q, t.
struct Roots {
    double m, p, q, t;
};
Roots rootstep(double A, double B, double S, double T) {
    const double r = hfinite((B + hsqr(hfinite((B * B) - (4 * A)))) / 2);
    const double m = hdiv(hdiv(A * (A - (r * r)), r), (A * S) - (r * T));
    const double p = hdiv(A - (r * r), T - (r * S));
    const double q = hdiv((A * S) - (r * T), A - (r * r));
    const double t = hdiv(r * (T - (r * S)), A - (r * r));
    return {hfinite(m), hfinite(p), hfinite(q), hfinite(t)};
}

// The new values of the step from base type `from` (a series form) for a = L, b = C,
// c = La, e = Ca.
Step sequencestep(int from, double a, double b, double c, double e) {
    Step s;
    switch (from) {
    case 9:
        s.l(a * sq(hdiv(b, b + e)));
        s.c(e * (1 + hdiv(e, b)));
        s.ca(b + e);
        break;
    case 10:
        // Ca stays e, so that this step is not the inverse of 9 -> 10.
        s.l(a * sq(hdiv(b + e, e)));
        s.c(hdiv(e, 1 + hdiv(b, e)));
        break;
    case 20:
        s.l(hdiv(c, 1 + hdiv(a, c)));
        s.la(hdiv(c, 1 + hdiv(c, a)));
        s.c(b * sq(hdiv(a + c, c)));
        break;
    case 21:
        s.l(c * (1 + hdiv(c, a)));
        s.la(a + c);
        s.c(b * sq(hdiv(a, a + c)));
        break;
    case 12:
        s.l(c * (1 + hdiv(c, a)));
        s.c(b * sq(hdiv(a, a + c)));
        s.la(a + c);
        s.ca(e);
        break;
    case 13: {
        const double A = a * c * b * e;
        const double B = (e * c) + (b * a) + (c * b);
        const double S = c;
        const double T = (a * c) * b;
        const Roots k = rootstep(A, B, S, T);
        s.l(k.q);
        s.c(k.m);
        s.la(k.t);
        s.ca(k.p);
        break;
    }
    case 17:
        s.l(hdiv(hdiv(sq(a * b - c * e), a + c), sq(b + e)));
        s.la(hdiv(a * c, a + c));
        s.c(hdiv(((b * e) * (b + e)) * sq(a + c), sq(a * b - c * e)));
        s.ca(b + e);
        break;
    case 18:
        s.l(hdiv((a * c) * (a + c) * sq(a * b - c * e), sq((a * a * b) + (c * c * e))));
        s.c(hdiv((b * e) * ((a * a * b) + (c * c * e)), sq(a * b - c * e)));
        s.la(a + c);
        s.ca(hdiv((a * a * b) + (c * c * e), sq(a + c)));
        break;
    case 19:
        s.l(c * (1 + hdiv(c, a)));
        s.la(c + a);
        s.c(b * sq(hdiv(a, c + a)));
        s.ca(e);
        break;
    case 22:
        s.la(hdiv(a * c, a + c));
        s.ca(hdiv(e, 1 + (hdiv(e, b) * sq(hdiv(c, a + c)))));
        s.l(hdiv(hdiv(hdiv(hdiv(hdiv(sq((b * sq(a + c)) + ((c * c) * e)), a + c), c), c), e), e));
        s.c(hdiv(e, 1 + (hdiv(b, e) * sq(hdiv(a + c, c)))));
        break;
    case 23: {
        const double A = c * a * e * b;
        const double B = (c * e) + (a * b) + (c * b);
        const double S = e + b;
        const double T = (a * e) * b;
        const Roots k = rootstep(A, B, S, T);
        s.l(k.m);
        s.la(k.p);
        s.c(k.q);
        s.ca(k.t);
        break;
    }
    case 24:
        s.l(hdiv(c, 1 + (hdiv(a, c) * sq(hdiv(b + e, e)))));
        s.la(hdiv(c, 1 + (hdiv(c, a) * sq(hdiv(e, b + e)))));
        s.ca(hdiv(b * e, b + e));
        s.c(hdiv(sq((a * sq(b + e)) + ((c * e) * e)), (((c * c) * e) * e) * (b + e)));
        break;
    }
    return s;
}

const char* const matchhelp[4] = {
    "Warning: Impedance matching is generally a narrow-band function.",
    "They should be used mainly for band pass and band reject filters",
    "with bandwidths < 20% of their center frequency.",
    "Some insertion loss will result from their use."};

void sethelplines(const char* const h[4]) { sethelp(h[0], h[1], h[2], h[3]); }

// Input end, dipole 2 a tank: a capacitive divider down to a lower source impedance, an
// inductance raised with every dipole to its right scaled up, or both.
void matchinput() {
    DesignSlot& s0 = slot(0);
    double Zold = s0.dip(1).R;
    const double Lold = s0.dip(2).L;
    double shown = Zold;
    panelclear();
    getdata.getvalue(0).text = engformat(shown);
    paneldipole(57);
    double newZ = 0, newL = 0;
    getnewZL(2, Zold, Lold, newZ, newL);
    if (newZ == Zold && newL == Lold) return;
    if (store.cancelled || !(newZ < Zold || newL > Lold)) return;
    undopush();
    Dipole& d2 = s0.dip(2);
    d2.type = 57;
    if (newL > Lold) {
        const double ratio = hdiv(newL, Lold);
        const double Znew = hfinite(hdiv(Zold * newL, Lold));
        const double C = hdiv(d2.C * Lold, newL);
        d2.L = newL;
        Zold = Znew;
        d2.C = C;
        transformdipole(3, ratio);
    }
    if (newZ < Zold) {
        const double v = hsqr(hdiv(Zold, newZ));
        const double Ca = hfinite(d2.C * v);
        const double C = hdiv(Ca, v - 1);
        d2.Ca = Ca;
        d2.C = C;
        s0.dip(1).R = newZ;
    }
}

// Output end, the tank at dipolecount - 2: a capacitive divider down to a lower load.
void matchoutput(int d) {
    DesignSlot& s0 = slot(0);
    const int last = s0.count();
    const double Zold = s0.dip(last).R;
    panelclear();
    double shown = Zold;
    panelrow(0, "Output Z", engformat(shown), "Output impedance");
    getdata.setnote(plainnum(Zold) + " ohms");
    paneldipole(58);
    double newZ = 0;
    getnewz(Zold, newZ);
    if (store.cancelled || newZ >= Zold) return;
    undopush();
    Dipole& dp = s0.dip(d);
    dp.type = 58;
    const double v = hsqr(hdiv(Zold, newZ));
    const double Ca = hfinite(dp.C * v);
    const double C = hdiv(Ca * dp.C, Ca - dp.C);
    dp.Ca = Ca;
    dp.C = C;
    s0.dip(last).R = newZ;
}

void warning(const std::string& text) { MsgBox(text, vbOKOnly, "WARNING"); }

} // namespace

int nexttransformtype(int type) {
    const int base = type > 30 ? type - 30 : type;
    int next = 0;
    switch (base) {
    case 9:
        next = 10;
        break;
    case 10:
        next = 9;
        break;
    case 20:
        next = 21;
        break;
    case 21:
        next = 20;
        break;
    case 12:
        next = 13;
        break;
    case 13:
        next = 18;
        break;
    case 18:
        next = 24;
        break;
    case 24:
        next = 12;
        break;
    case 17:
        next = 19;
        break;
    case 19:
        next = 22;
        break;
    case 22:
        next = 23;
        break;
    case 23:
        next = 17;
        break;
    default:
        return 0;
    }
    return next + (type - base);
}

void transform_Click() {
    sethelp("Replaces the dipole with a different configuration.",
            "There are several transforms available and this command will sequence through them.",
            "One of them may have a better parts value spread.",
            "Any inductor designs will be destroyed. You will have to design new ones.");
    const int n = static_cast<int>(schem.selecteddipole);
    DesignSlot& s = slot(store.curslot);
    const int type = s.dip(n).type;
    if (const int next = nexttransformtype(type)) {
        undopush();
        Dipole& dp = s.dip(n);
        const int base = type > 30 ? type - 30 : type;
        const Step st = sequencestep(base, dp.L, dp.C, dp.La, dp.Ca);
        if (st.setL) dp.L = st.L;
        if (st.setC) dp.C = st.C;
        if (st.setLa) dp.La = st.La;
        if (st.setCa) dp.Ca = st.Ca;
        dp.type = static_cast<short>(next);
    } else if (type == 35) {
        // Only the tanks next to the ends have a match; elsewhere nothing happens.
        if (n == 2)
            matchinput();
        else if (n == s.count() - 2)
            matchoutput(n);
    } else {
        notransform(n);
    }
    schem.dipoleselected = false;
    schematicbuild();
}

void transformdipole(int first, double factor) {
    DesignSlot& s0 = slot(0);
    for (int n = first; n <= s0.count(); ++n) {
        Dipole& d = s0.dip(n);
        const double R = hfinite(d.R * factor), L = hfinite(d.L * factor),
                     La = hfinite(d.La * factor);
        const double C = hdiv(d.C, factor), Ca = hdiv(d.Ca, factor);
        d.R = R;
        d.L = L;
        d.La = La;
        d.C = C;
        d.Ca = Ca;
    }
}

void notransform(int n) {
    MsgBox("No transformation available for dipole" + numtext(n) + ".", vbOKOnly,
           "TRANSFORMATIONS");
}

void schematictransform(int n) {
    struct Field {
        const char* label;
        double Dipole::*value;
    };
    static const Field fields[] = {
        {"R =", &Dipole::R},   {"C =", &Dipole::C},   {"L =", &Dipole::L},  {"Qu =", &Dipole::Qu},
        {"Ca =", &Dipole::Ca}, {"La =", &Dipole::La}, {"Qa =", &Dipole::Qa}};
    Dipole& dp = dipole(store.curslot, n);
    panelclear();
    paneldipole(dp.type);
    int row = 0;
    for (const Field& f : fields) {
        double v = dp.*f.value;
        if (v > 0) panelrow(row++, f.label, engformat(v));
    }
    if (!panelshow()) return;
    for (int i = 0; i < row; ++i) {
        // Each row goes back to the field its label names, by the label's first two
        // letters.
        const std::string key = getdata.Label2(i).caption.substr(0, 2);
        for (const Field& f : fields)
            if (std::string(f.label).substr(0, 2) == key) dp.*f.value = panelvalue(i);
    }
    frame.designsaved = false;
    dipolelisting();
}

void getnewZL(int d, double Zold, double Lold, double& newZ, double& newL) {
    const std::string note = "Enter a new input impedance < " + plainnum(Zold) +
                             " ohms or a new inductance L" + plainnum(d) + " > " + plainnum(Lold) +
                             "Hy.  \r\nAll dipoles to the right will be scaled accordingly.";
    double z = Zold, l = Lold;
    panelrow(0, "New Z", engformat(z), "New impedance");
    panelrow(1, "New L", engformat(l), "New inductance");
    getdata.setnote(note);
    sethelplines(matchhelp);
    for (;;) {
        store.cancelled = !panelshow();
        if (store.cancelled) return;
        newZ = panelvalue(0);
        newL = panelvalue(1);
        if (!(newZ > Zold || newL < Lold)) return;
        warning(note);
        z = Zold;
        l = Lold;
        getdata.getvalue(0).text = engformat(z);
        getdata.getvalue(1).text = engformat(l);
    }
}

void getnewz(double Zold, double& newZ) {
    getdata.getvalue(0).tooltip = "New impedance value";
    getdata.getvalue(0).visible = true;
    getdata.Label2(0).visible = true;
    sethelplines(matchhelp);
    const std::string before = getdata.getvalue(0).text;
    for (;;) {
        store.cancelled = !panelshow();
        if (store.cancelled) return;
        newZ = panelvalue(0);
        if (newZ < Zold) return;
        warning("The NEW impedance must be < " + plainnum(Zold) + " ohms");
        getdata.getvalue(0).text = before;
    }
}

void getnewL(double Lold, double& newL) {
    getdata.getvalue(0).tooltip = "New inductance value";
    getdata.getvalue(0).visible = true;
    getdata.Label2(0).visible = true;
    getdata.ctl("selectT").visible = true;
    sethelp("Narrow Band Transform.",
            "Used to increase the value of inductance for a single dipole.",
            "This transform will increase the complexity of the filter by one capacitor.", "");
    const std::string before = getdata.getvalue(0).text;
    for (;;) {
        store.cancelled = !panelshow();
        if (store.cancelled) return;
        if (getdata.retryentry) continue; // the panel asks for the prompt again
        newL = panelvalue(0);
        // The test refuses a larger value while the message asks for one.
        if (!(newL >= Lold)) return;
        warning("The NEW inductance must be > " + plainnum(Lold) + "Hy");
        getdata.getvalue(0).text = before;
    }
}

void gettransform(double& Zfactor, double& Ffactor) {
    DesignSlot& s0 = slot(0);
    DesignSlot& cur = slot(store.curslot);
    for (int i = 2; i < PANELROWS; ++i) {
        getdata.Label2(i).visible = false;
        getdata.getvalue(i).visible = false;
    }
    double w0 = cur.w0, r0 = s0.r0;
    double f = w0 / 2 / PI;
    panelrow(1, "New F =", w0 > 0 ? engformat(f) : "", "New design frequency");
    panelrow(0, "New Z =", r0 > 0 ? engformat(r0) : "", "New design impedance");
    for (;;) {
        store.cancelled = !panelshow();
        // The factors are taken from the rows as the panel left them, also on cancel.
        const double F = panelvalue(1);
        const double Z = panelvalue(0);
        Ffactor = hdiv((F + F) * PI, s0.w0);
        s0.w0 = (F + F) * PI;
        Zfactor = hdiv(Z, s0.r0);
        s0.r0 = Z;
        if (Ffactor != 0 && Zfactor != 0) return;
        warning("The following must be true\rNew F > 0\rMpy Z by > 0");
    }
}

void tzfm_Click() {
    sethelp("Allows you to transform the design impedance and or frequency.",
            "Transforming the design impedance can produce more realistic component values.",
            "You then use one of the impedance matching utilities to get back to the origional Z "
            "in or Z out.",
            "Transforming the frequency moves an existing design to a new frequency range.");
    DesignSlot& s0 = slot(0);
    panelclear();
    getdata.setnote("Enter the NEW values of design impedance and or frequency");
    Control& picture = getdata.ctl("getdataimage", 0);
    picture.visible = false;
    if (s0.r0 == 0) s0.r0 = s0.dip(1).R;
    double Zfactor = 0, Ffactor = 0;
    gettransform(Zfactor, Ffactor);
    if (store.cancelled) return;
    picture.visible = true;
    undopush();
    DesignSlot& s = slot(store.curslot);
    for (int n = 1; n <= s.count(); ++n) {
        Dipole& d = s.dip(n);
        const double R = hfinite(d.R * Zfactor);
        const double C = hdiv(hdiv(d.C, Zfactor), Ffactor);
        const double Ca = hdiv(hdiv(d.Ca, Zfactor), Ffactor);
        const double L = hdiv(d.L * Zfactor, Ffactor);
        const double La = hdiv(d.La * Zfactor, Ffactor);
        d.R = R;
        d.C = C;
        d.Ca = Ca;
        d.L = L;
        d.La = La;
    }
    // Zin, Zout and w4 are outside the snapshot: checked before any is written.
    const double Zin = hfinite(s0.Zin * Zfactor), Zout = hfinite(s0.Zout * Zfactor);
    const double w1 = hfinite(s0.w1 * Ffactor), w2 = hfinite(s0.w2 * Ffactor),
                 w3 = hfinite(s0.w3 * Ffactor), w4 = hfinite(s0.w4 * Ffactor),
                 bw = hfinite(s0.bw * Ffactor);
    s0.Zin = Zin;
    s0.Zout = Zout;
    s0.w1 = w1;
    s0.w2 = w2;
    s0.w3 = w3;
    s0.w4 = w4;
    s0.bw = bw;
    for (int i = 0; i <= 3; ++i) getdata.getvalue(i).text.clear();
    frame.designsaved = false;
    schematicbuild();
}

} // namespace zelk
