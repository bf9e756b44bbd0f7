#include "analysis/dataexport.h"

#include <cmath>
#include <complex>
#include <cstdio>
#include <sstream>

#include "analysis/plotframe.h"
#include "analysis/plots.h"
#include "analysis/sweep.h"
#include "core/designstore.h"
#include "core/dipoles.h"
#include "core/filewrite.h"
#include "core/hostmath.h"

namespace zelk {

namespace {

using cplx = std::complex<double>;

std::string full(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

std::string fixed(double v, int places) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.*f", places, v);
    return buf;
}

bool samewalk(const WalkValues& a, const WalkValues& b) {
    return a.Rt == b.Rt && a.Xt == b.Xt && a.Gt == b.Gt && a.Bt == b.Bt && a.Zmag == b.Zmag &&
           a.Zmag1 == b.Zmag1 && a.Zdmag == b.Zdmag && a.Rsum == b.Rsum && a.Xsum == b.Xsum &&
           a.Zsummag == b.Zsummag && a.Vratio == b.Vratio && a.Vphase == b.Vphase;
}

// The analysis values the export borrows, put back afterwards so that an export leaves
// the design store as it found it.
struct KeepAnalysis {
    Number wA = store.wA, zscale = store.zscale;
    double Zr = store.Zr, Zi = store.Zi, Yr = store.Yr, Yi = store.Yi;
    WalkValues w = walk;
    ~KeepAnalysis() {
        store.wA = wA, store.zscale = zscale;
        store.Zr = Zr, store.Zi = Zi, store.Yr = Yr, store.Yi = Yi;
        walk = w;
        store.abortanalysis = false;
    }
};

struct NotExportable {
    std::string why;
};

// The chain matrix of the ladder between its terminations at store.wA.
struct Chain {
    cplx A = 1, B = 0, C = 0, D = 1;
    void series(cplx z) { B += A * z, D += C * z; }
    void shunt(cplx y) { A += B * y, C += D * y; }
};

Chain ladderchain(int s, double Zin, double Zout) {
    const int n = slot(s).count();
    Chain k;
    for (int d = 1; d <= n; ++d) {
        const WalkValues before = walk;
        store.zscale = 1.0;
        dipoleimmittance(d, s);
        if (store.abortanalysis) throw NotExportable{"the analysis of dipole " + std::to_string(d) + " was abandoned"};
        if (store.zscale.value() != 1 || !samewalk(before, walk))
            throw NotExportable{"dipole " + std::to_string(d) + " (type " + std::to_string(slot(s).dip(d).type) +
                                ") is a transformer or composite arm that acts on the whole ladder"};
        bool shunt = d % 2 == 0;
        if (shunt) {
            // A shunt arm divides the node voltage by its impedance (the walker's divider
            // and the SPICE deck both take that form, residual resistance included); its
            // admittance stands in only where the impedance is no number to invert.
            cplx z(store.Zr, store.Zi);
            cplx y = std::abs(z) > 0 && std::isfinite(std::abs(z)) ? 1.0 / z : cplx(store.Yr, store.Yi);
            if (d == n) y -= 1 / Zout; // the load is the far termination
            k.shunt(y);
        } else {
            cplx z(store.Zr, store.Zi);
            if (d == 1) z -= Zin; // the source resistance is the near termination
            k.series(z);
        }
    }
    return k;
}

void dbangle(std::ostream& o, cplx v) {
    double m = std::abs(v);
    double db = m > 1e-15 ? 20 * log10host(m) : -300;
    double deg = m > 0 ? std::arg(v) * 180 / 3.14159265358979323846 : 0;
    o << ' ' << fixed(db, 6) << ' ' << fixed(deg, 4);
}

const char* plotunit(const PlotForm& p) {
    switch (p.kind) {
    case PlotKind::Gain:
    case PlotKind::ReturnLoss: return "dB";
    case PlotKind::Impedance: return "ohm";
    case PlotKind::Phase: return "deg";
    case PlotKind::Delay: return "s";
    case PlotKind::Time: return "V";
    }
    return "";
}

std::string csvfield(const std::string& s) {
    if (s.find_first_of(",\"\n") == std::string::npos) return s;
    std::string out = "\"";
    for (char c : s) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

bool writeout(const char* verb, const std::string& path, const std::string& text, std::ostream& err) {
    std::string why;
    if (writefilesafely(path, text, why)) return true;
    err << "export " << verb << ": " << why << '\n';
    return false;
}

} // namespace

bool touchstonetext(int s, std::string& text, std::string& why) {
    const DesignSlot& sl = slot(s);
    const int n = sl.count();
    if (n < 2 || n % 2 != 0 || n > MAXDIPOLE) {
        why = "the ladder has no load in a shunt place (dipolecount " + std::to_string(n) + ")";
        return false;
    }
    auto number = [](const Number& v) { return v.empty() || v.kind() == Number::Kind::Text ? 0.0 : v.value(); };
    const double Zin = number(sl.Zin), Zout = number(sl.Zout);
    if (!(Zin > 0) || !(Zout > 0) || !std::isfinite(Zin) || !std::isfinite(Zout)) {
        why = "the design has no source and load resistances";
        return false;
    }
    double F1 = 0, F2 = 0;
    if (const PlotForm* p = findplot(plotshared.lastfrequencyplot); p && p->loaded && p->passslots > 0)
        F1 = p->freq1, F2 = p->freq2;
    if (!(F1 > 0 && F2 > F1)) defaultspan(F1, F2);
    if (!(F1 > 0 && F2 > F1)) {
        why = "the design has no frequencies to sweep";
        return false;
    }
    double wA[SWEEPPOINTS];
    sweepfrequencies(F1, F2, wA);

    std::ostringstream o;
    std::string title = sl.designtitle.empty() ? sl.title : sl.designtitle;
    o << "! ZELK Filter Design: S-parameters of filter " << s + 1 << '\n';
    o << "! Design: " << (title.empty() ? std::string("(untitled)") : title) << '\n';
    o << "! Zin = " << full(Zin) << " ohm, Zout = " << full(Zout) << " ohm\n";
    o << "! Both ports are referred to Zin; port 2 works into Zout in the design.\n";
    o << "! f S11 (dB, deg) S21 (dB, deg) S12 (dB, deg) S22 (dB, deg)\n";
    o << "# HZ S DB R " << full(Zin) << '\n';
    KeepAnalysis keep;
    try {
        for (double w : wA) {
            store.wA = w;
            Chain k = ladderchain(s, Zin, Zout);
            const double z0 = Zin;
            cplx den = k.A + k.B / z0 + k.C * z0 + k.D;
            cplx S11 = (k.A + k.B / z0 - k.C * z0 - k.D) / den;
            cplx S21 = 2.0 / den;
            cplx S12 = 2.0 * (k.A * k.D - k.B * k.C) / den;
            cplx S22 = (-k.A + k.B / z0 - k.C * z0 + k.D) / den;
            if (!std::isfinite(std::abs(den))) throw NotExportable{"the chain matrix overflows"};
            o << full(w / TWOPI);
            for (cplx v : {S11, S21, S12, S22}) dbangle(o, v);
            o << '\n';
        }
    } catch (const NotExportable& e) {
        why = e.why;
        return false;
    }
    text = o.str();
    return true;
}

bool plotcsvtext(const std::string& plotname, std::string& text, std::string& why) {
    PlotForm* p = findplot(plotname);
    if (!p) {
        why = "no plot " + plotname;
        return false;
    }
    if (!p->loaded || p->passslots == 0) {
        why = "plot " + plotname + " has not been drawn";
        return false;
    }
    const int slots = p->passslots;
    const char* xname = p->timeplot() ? "Time (s)" : "Frequency (Hz)";
    // A filter whose points sit at other abscissae than the first one's gets its own.
    std::vector<bool> ownx(static_cast<size_t>(slots), false);
    for (int s = 1; s < slots; ++s) ownx[static_cast<size_t>(s)] = p->xs[static_cast<size_t>(s)] != p->xs[0];
    std::ostringstream o;
    o << xname;
    for (int s = 0; s < slots; ++s) {
        std::string f = "Filter " + std::to_string(s + 1);
        if (ownx[static_cast<size_t>(s)]) o << ',' << csvfield(f + " " + xname);
        o << ',' << csvfield(f + " " + p->plotname + " (" + plotunit(*p) + ")");
    }
    o << '\n';
    for (size_t i = 0; i < static_cast<size_t>(SWEEPPOINTS); ++i) {
        o << roundtrip(p->xs[0][i]);
        for (size_t s = 0; s < static_cast<size_t>(slots); ++s) {
            if (ownx[s]) o << ',' << roundtrip(p->xs[s][i]);
            o << ',' << roundtrip(p->values[s][i]);
        }
        o << '\n';
    }
    text = o.str();
    return true;
}

bool exporttouchstone(const std::vector<std::string>& args, std::ostream& err) {
    if (args.size() != 1) {
        err << "export touchstone FILE\n";
        return false;
    }
    if (store.lastslot < 0) {
        err << "export touchstone: no design is open\n";
        return false;
    }
    std::string text, why;
    if (!touchstonetext(0, text, why)) {
        err << "export touchstone: not exportable: " << why << '\n';
        return false;
    }
    return writeout("touchstone", args[0], text, err);
}

bool exportcsv(const std::vector<std::string>& args, std::ostream& err) {
    if (args.size() != 2) {
        err << "export csv PLOT FILE\n";
        return false;
    }
    std::string text, why;
    if (!plotcsvtext(args[0], text, why)) {
        err << "export csv: " << why << '\n';
        return false;
    }
    return writeout("csv", args[1], text, err);
}

} // namespace zelk
