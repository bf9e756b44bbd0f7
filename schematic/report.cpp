#include "schematic/report.h"

#include <cmath>

#include "core/commands.h"
#include "core/designflow.h"
#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "core/dipoles.h"
#include "core/hostmath.h"
#include "core/surface.h"
#include "core/notation.h"
#include "schematic/schematicview.h"
#include "synthesis/pads.h"

namespace zelk {

namespace {


SchematicWindow& win() { return schematicwindow(store.curslot); }
Dipole& dip(int n) { return dipole(store.curslot, n); }

// The type of a neighbour; a place beyond the table reads as no type.
int typeat(int n) {
    if (n < 0 || n > MAXDIPOLE) return 0;
    return dip(n).type;
}


// engformat of a Number field, written back as the host writes a variable it was given.
std::string engfield(Number& n) {
    double v = n.value();
    std::string s = engformat(v);
    if (!n.istext() && v != n.value()) n = v;
    return s;
}

// A number joined into a text with no mask; a field holding text joins as that text.
std::string raw(const Number& n) { return n.istext() ? n.textvalue() : Str(n.value()); }

// The empty print that ends a dipole's block.
void blankline() {
    win().print("");
    report.lines.push_back("");
}

// The largest and smallest value listed so far, each with its dipole.
void enterextremes(double v, int n, double& max, int& maxat, double& min, int& minat) {
    if (v > max) {
        max = v;
        maxat = n;
    }
    if (v < min) {
        min = v;
        minat = n;
    }
}

void enterC(double v, int n) { enterextremes(v, n, report.Cmax, report.Cmaxat, report.Cmin, report.Cminat); }
void enterL(double v, int n) { enterextremes(v, n, report.Lmax, report.Lmaxat, report.Lmin, report.Lminat); }

void Rline(int n) { partline("R" + numtext(n) + "=" + engformat(dip(n).R)); }

// One C or Ca line: blue for the one line when the part is not positive.
void capacitor(int n, double& value, const char* letter) {
    enterC(value, n);
    if (value <= 0) {
        win().setcolour(BLUE);
        report.valuewarning = true;
    }
    partline(letter + numtext(n) + "=" + engformat(value) + "F");
    win().setcolour(BLACK);
}

// One inductor with its Q and winding lines. The tap line of a tapped coil (type 69)
// reads Lturns and K of the record for both inductors.
void inductor(int n, bool second) {
    Dipole& d = dip(n);
    double& value = second ? d.La : d.L;
    double& Q = second ? d.Qa : d.Qu;
    const std::string& core = second ? d.Lacore : d.Lcore;
    double length = second ? d.Lalength : d.Llength;
    double turns = second ? d.Laturns : d.Lturns;
    double gauge = second ? d.Laawg : d.Lawg;
    double form = second ? d.Laform : d.Lform;
    SchematicWindow& w = win();

    enterL(value, n);
    if (value <= 0) {
        w.setcolour(BLUE);
        report.valuewarning = true;
    }
    partline((second ? "La" : "L") + numtext(n) + "=" + engformat(value) + "Hy");
    w.setcolour(BLACK);
    if (Q > 0) partline("Qu~" + engformat(Q));
    if (!core.empty() && menuchecked("showcoil")) {
        if (core == "error") {
            // The winding could not be made: the inductor's lines end here, in blue.
            w.setcolour(BLUE);
            partline("ERROR");
            return;
        }
        w.setcolour(ORANGE);
        std::string turnsline = Format(turns, "##.#") + " turns AWG" + numtext(gauge);
        if (core == "air") {
            if (length > 0) {
                partline("Spacewind, to a");
                partline("Length of " + Format(length, "##.#") + " inches,");
            } else {
                partline("Closewind");
            }
            partline(turnsline);
            partline("on a " + numtext(form) + " inch form");
        } else {
            partline(turnsline);
            partline("on " + core);
        }
        if (d.type == 69) {
            if (d.Lturns == 0)
                partline("Tapped " + Str(Int(d.K * 100)) + "%");
            else
                partline("Tapped " + Str(Int(d.K * 4 + d.Lturns) / 4) + " turns");
            partline("from the bottom");
        }
    }
    w.setcolour(BLACK);
}

// Resonant frequency of a product L*C in hertz, with the program's pi.
std::string f(double a) {
    if (a < 0) raisefault(5);
    double r = std::sqrt(a);
    if (r == 0) raisefault(11);
    return engformatvalue(((1.0 / 2) / PI) / r) + "Hz";
}

void pair(const std::string& formula, double product) {
    partline(formula);
    partline(f(product));
}

} // namespace

void partline(const std::string& text) {
    SchematicWindow& w = win();
    report.listwidth = std::max(report.listwidth, w.textwidth(text));
    if (w.windowheight() - 100 > w.cursory) {
        w.cursorx = report.listcolumnx;
    } else {
        // The foot of the window: a new column beside the widest line of this one.
        w.cursory = report.listtop;
        report.listcolumnx = report.listcolumnx + report.listwidth + 10;
        w.cursorx = report.listcolumnx;
        report.listwidth = 0;
    }
    w.print(text);
    report.lines.push_back(text);
}

void capline(int n) { capacitor(n, dip(n).C, "C"); }
void caline(int n) { capacitor(n, dip(n).Ca, "Ca"); }
void inductorline(int n) { inductor(n, false); }
void inductoraline(int n) { inductor(n, true); }

void crystallines(int n) {
    Dipole& d = dip(n);
    if (menuchecked("Showxtal")) {
        partline("Ls" + numtext(n) + "=" + engformat(d.Ls) + "Hy");
        partline("Cs" + numtext(n) + "=" + engformat(d.Cs) + "F");
        partline("Cp" + numtext(n) + "=" + engformat(d.Cp) + "F");
        partline("Rs" + numtext(n) + "=" + engformat(d.Rs));
        partline("Qx" + numtext(n) + "=" + engformat(d.Qx));
    } else {
        partline("XTAL" + numtext(n));
    }
}

void tuningdata(int n) {
    if (!menuchecked("showtuning") || n < 2) return;
    SchematicWindow& w = win();
    w.setcolour(RED);
    const Dipole& d = dip(n);
    int t = d.type;
    std::string ds = plainnum(n);
    std::string first = "F(L" + ds + "C" + ds + ")=";
    const Tuning tuning = dipoletype(t).tuning;
    if (tuning == Tuning::LC) {
        pair(first, d.C * d.L);
    } else if (tuning == Tuning::LCandLCa) {
        pair(first, d.C * d.L);
        pair("F(L" + ds + "Ca" + ds + ")=", d.Ca * d.L);
    } else if (tuning == Tuning::LCandLaCa) {
        pair(first, d.C * d.L);
        pair("F(La" + ds + "Ca" + ds + ")=", d.La * d.Ca);
    } else if (tuning == Tuning::LCandLaC) {
        pair(first, d.C * d.L);
        pair("F(La" + ds + "C" + ds + ")=", d.La * d.C);
    } else if (tuning == Tuning::Divider) {
        pair("F[L" + ds + "(C" + ds + "Ca" + ds + "/(C" + ds + "+Ca" + ds + ")]",
             ((d.Ca * d.C) / (d.Ca + d.C)) * d.L);
    } else {
        // A single element tunes with its neighbours.
        int p = n - 1, q = n + 1;
        int tp = typeat(p), tq = typeat(q);
        std::string ps = plainnum(p), qs = plainnum(q);
        auto C = [](int k) { return k >= 0 && k <= MAXDIPOLE ? dip(k).C : 0.0; };
        auto L = [](int k) { return k >= 0 && k <= MAXDIPOLE ? dip(k).L : 0.0; };
        if (among(t, {3, 33}) && among(tp, {2, 32})) {
            pair("F(C" + ds + "L" + ps + ")=", C(n) * L(p));
        } else if (among(t, {2, 32}) && among(tp, {3, 33})) {
            pair("F(L" + ds + "C" + ps + ")=", C(p) * L(n));
        } else if (t == 35 && tp == 3 && tq == 3) {
            pair("F[L" + ds + "(C" + ps + "+C" + ds + "+C" + qs + ")]", (C(n) + C(p) + C(q)) * L(n));
        } else if (t == 35 && tp == 1 && tq == 3) {
            pair("F[L" + ds + "(C" + ds + "+C" + qs + ")]", (C(q) + C(n)) * L(n));
        } else if (t == 35 && tp == 3 && tq == 6) {
            pair("F[L" + ds + "(C" + ps + "+C" + ds + ")]", (C(n) + C(p)) * L(n));
        } else if (t == 57 && tq == 3) {
            pair("F[L" + ds + "(C" + ds + "Ca" + ds + "/(C" + ds + "+Ca" + ds + ")+C" + qs + ")]",
                 ((d.Ca * d.C) / (d.Ca + d.C) + C(q)) * L(n));
        } else if (t == 58 && tp == 3) {
            pair("F[L" + ds + "(C" + ds + "Ca" + ds + "/(C" + ds + "+Ca" + ds + ")+C" + ps + ")]",
                 ((d.Ca * d.C) / (d.Ca + d.C) + C(p)) * L(n));
        }
    }
    w.setcolour(BLACK);
}

void dipolelisting() {
    report.lines.clear();
    report.Cmin = 10;
    report.Cmax = 0;
    report.Lmin = 10;
    report.Lmax = 0;
    report.Cminat = report.Cmaxat = report.Lminat = report.Lmaxat = 0;
    report.valuewarning = false;
    if (!menuchecked("partslist")) return;
    SchematicWindow& w = win();
    report.listcolumnx = 10;
    w.cursorx = 10;
    report.listtop = static_cast<short>(w.element(ElementList::symbol, 0).height * 3 + schem.ypos);
    w.cursory = report.listtop;
    report.listwidth = 0;
    int count = slot(store.curslot).count();
    for (int n = 1; n <= count; ++n) {
        // Blanks have no values; a tap with Ca at the tap (36) gets no block either.
        const char* lines = dipoletype(dip(n).type).report;
        if (!lines) continue;
        w.setcolour(BLACK);
        partline("DIPOLE " + plainnum(n));
        for (const char* k = lines; *k; ++k) {
            switch (*k) {
            case 'R': Rline(n); break;
            case 'C': capline(n); break;
            case 'c': caline(n); break;
            case 'L': inductorline(n); break;
            case 'l': inductoraline(n); break;
            case 'X': crystallines(n); break;
            case 'K': partline("coupling = " + numtext(dip(n).K)); break;
            }
        }
        tuningdata(n);
        blankline();
    }
}

void titleblock() {
    if (!menuchecked("sfp")) return;
    SchematicWindow& w = win();
    DesignSlot& s = slot(store.curslot);
    w.setbold(true);
    report.listcolumnx = report.listcolumnx + report.listwidth + 50;
    w.cursorx = report.listcolumnx;
    report.listwidth = 0;
    const std::string& cap = s.designtitle;
    auto fr = [](double wv) { return engformatvalue((wv / 2) / PI); };

    const std::string& code = s.code;
    std::string mid = code.size() > 1 ? code.substr(1, 2) : "";
    std::string last = code.size() >= 2 ? code.substr(code.size() - 2) : code;
    std::string kind;
    if (mid == "LP" || mid == "HP" || mid == "BP" || mid == "BR" || mid == "CR") kind = mid;
    else if (last == "CL") kind = "CL";
    else if (code == "DLSB" || code == "DUSB") kind = "SB";
    else if (code == "PAD") kind = "PAD";

    if (kind == "PAD") {
        double attn = pad.padattn;
        double zin = pad.padZin;
        double zout = pad.padZout;
        partline(engformat(attn) + "db " + cap);
        partline("  Input Impedance = " + Str(zin) + " ohms");
        partline("  Output Impedance = " + Str(zout) + " ohms");
        w.setbold(false);
        w.setcolour(BLACK);
        return;
    }

    if (s.order.value() == 3) partline("3rd order " + cap);
    else partline(engfield(s.order) + "th order " + cap);
    std::string center = "  Center Frequency = " + fr(s.w0) + "hz";
    if (kind == "LP") {
        partline("  Cutoff = " + engfield(s.Apass) + " db @ " + fr(s.w1) + "hz");
        if (s.Astop > 0)
            partline("  Stopband = " + engfield(s.Astop) + " db minimum @ " + fr(s.w2) + "hz");
    } else if (kind == "HP") {
        partline("  Stopband = " + raw(s.Astop) + " db minimum @ " + fr(s.w1) + "hz");
        partline("  Cutoff = " + raw(s.Apass) + " db @ " + fr(s.w2) + "hz");
    } else if (kind == "BP" && !code.empty() && code[0] == 'T') {
        partline(center);
        partline("  Bandwidth = " + fr(s.w2 - s.w1) + "hz @ 3db");
    } else if (kind == "BP") {
        partline(center);
        partline("  Bandwidth = " + fr(s.w3 - s.w2) + "hz @ " + raw(s.Apass) + " db");
        partline("  Stopband = " + raw(s.Astop) + " db minimum @ " + fr(s.w1) + "hz and " + fr(s.w4) + "hz");
    } else if (kind == "BR") {
        partline(center);
        partline("  Bandwidth = " + fr(s.w4 - s.w1) + "hz @ 3db");
        partline("  Stopband = " + raw(s.Astop) + " db minimum @ " + fr(s.w2) + "hz and " + fr(s.w3) + "hz");
    } else if (kind == "CR") {
        partline(center);
        partline("  Bandwidth = " + fr(s.bw) + "hz @ 3 db");
    } else if (kind == "CL") {
        partline("  Bandwidth = " + fr(s.bw) + "hz @ 3 db");
    } else if (kind == "SB") {
        partline(center);
        partline("  Bandwidth = " + fr(s.bw) + "hz @ 3 db");
        partline("  Design Impedance=" + raw(s.r0) + " ohms");
        partline("  r0v3 = " + numtext(flow.r0v3));
        w.setbold(false);
        w.setcolour(BLACK);
        return;
    }
    int count = s.count();
    partline("  Design Impedance=" + engfield(s.r0) + " ohms");
    partline("  Input Impedance = " + engformat(dip(1).R) + " ohms");
    partline("  Output Impedance = " + engformat(dip(count).R) + " ohms");

    bool inductors = false;
    for (int n = 1; n <= count && !inductors; ++n) inductors = dip(n).L > 0;
    if (inductors) {
        w.setcolour(BLUE);
        // A zero minimum (a zero part, already marked blue) leaves its spread out.
        if (report.Cmin != 0)
            partline("  Capacitance Spread = C" + numtext(report.Cmaxat) + " : C" + numtext(report.Cminat) +
                     " = " + engformatvalue(report.Cmax / report.Cmin));
        if (report.Lmin != 0)
            partline("  Inductance Spread = L" + numtext(report.Lmaxat) + " : L" + numtext(report.Lminat) +
                     " = " + engformatvalue(report.Lmax / report.Lmin));
    }
    w.setbold(false);
    w.setcolour(BLACK);
}

bool dumpreport(const std::vector<std::string>& args, std::ostream& out) {
    if (!args.empty()) return false;
    for (const std::string& line : report.lines) out << line << '\n';
    return true;
}

} // namespace zelk
