#include "analysis/spiceexport.h"

#include <cmath>
#include <functional>
#include <sstream>
#include <vector>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "core/filewrite.h"
#include "core/hostmath.h"
#include "core/notation.h"

namespace zelk {

namespace {

// A part that cannot be written: the dipole's type or position has no plain-part form.
struct NotExportable {
    std::string why;
};

std::string num(double v) {
    std::ostringstream o;
    o.precision(17);
    o << v;
    return o.str();
}

// The netlist under construction. Every two-terminal piece is written between two named
// nodes; inner nodes of a dipole get fresh names.
class Net {
  public:
    Net(std::ostream& out, int d) : out_(out), d_(d) {}
    using Piece = std::function<void(const std::string&, const std::string&)>;

    std::string node() { return "d" + std::to_string(d_) + "_" + std::to_string(++nodes_); }
    std::string name(char kind) {
        return std::string(1, kind) + std::to_string(d_) + "_" + std::to_string(++parts_);
    }
    void part(char kind, const std::string& a, const std::string& b, double v) {
        out_ << name(kind) << ' ' << a << ' ' << b << ' ' << num(v) << '\n';
    }
    // A resistance wA*L/Q: the series loss of an inductor, at the analysis frequency.
    void seriesloss(const std::string& a, const std::string& b, double L, double Q) {
        out_ << name('B') << ' ' << a << ' ' << b << " I=V(" << a << ',' << b
             << ")/(6.283185308*(hertz+1e-9)*" << num(L / Q) << ")\n";
    }
    // A conductance ((1/wA)/L)/Q: the parallel loss of an inductor.
    void parallelloss(const std::string& a, const std::string& b, double LQ) {
        out_ << name('B') << ' ' << a << ' ' << b << " I=V(" << a << ',' << b
             << ")/(6.283185308*(hertz+1e-9)*" << num(LQ) << ")\n";
    }
    // Pieces one after another from a to b.
    void chain(const std::string& a, const std::string& b, const std::vector<Piece>& pieces) {
        std::string from = a;
        for (size_t i = 0; i < pieces.size(); ++i) {
            std::string to = i + 1 == pieces.size() ? b : node();
            pieces[i](from, to);
            from = to;
        }
    }

  private:
    std::ostream& out_;
    int d_;
    int nodes_ = 0, parts_ = 0;
};

void need(double v, int d, const char* field) {
    if (v == 0 || !std::isfinite(v))
        throw NotExportable{"dipole " + std::to_string(d) + " has a zero or missing " + field};
}

// The pieces one dipole is written from, with the dipole and its place.
struct Parts {
    using Piece = Net::Piece;
    Net& n;
    const Dipole& dp;
    const int d;
    const bool shunt;

    // Inductor with the series loss of q(L,Q).
    Piece Lq(double L, double Q) const {
        return [&n = n, L, Q](const std::string& x, const std::string& y) {
            std::string m = n.node();
            n.part('L', x, m, L);
            if (Q > 0) n.seriesloss(m, y, L, Q);
            else n.part('R', m, y, 1e-06);
        };
    }
    Piece Lonly(double L) const {
        return [&n = n, L](const std::string& x, const std::string& y) { n.part('L', x, y, L); };
    }
    Piece Conly(double C) const {
        return [&n = n, C](const std::string& x, const std::string& y) { n.part('C', x, y, C); };
    }
    Piece Ronly(double R) const {
        return [&n = n, R](const std::string& x, const std::string& y) { n.part('R', x, y, R); };
    }
    // Series loss wA*L/Q alone (only where Q > 0).
    Piece rloss(double L, double Q) const {
        return [&n = n, L, Q](const std::string& x, const std::string& y) { n.seriesloss(x, y, L, Q); };
    }
    // Parallel loss of La, where Qa > 0.
    Piece gLa() const {
        return [&n = n, &dp = dp](const std::string& x, const std::string& y) {
            if (dp.Qa > 0) n.parallelloss(x, y, dp.La * dp.Qa);
        };
    }
    // Branch S(L,C,Q): L with its series loss, then C.
    Piece S(double L, double C, double Q) const {
        Piece l = Lq(L, Q), c = Conly(C);
        return [&n = n, l, c](const std::string& x, const std::string& y) { n.chain(x, y, {l, c}); };
    }
    // Tank P(L,C,Q) with a scale on L and C (the tapped tanks): L, C and p(L,Q) across.
    Piece tank(double L, double C, double LQ) const {
        return [&n = n, L, C, LQ](const std::string& x, const std::string& y) {
            n.part('L', x, y, L);
            n.part('C', x, y, C);
            if (LQ > 0) n.parallelloss(x, y, LQ);
            else n.part('R', x, y, 1e6);
        };
    }
    Piece P(double L, double C, double Q) const { return tank(L, C, Q > 0 ? L * Q : 0); }
    // Crystal X with a capacitance across it.
    Piece X(double Cacross) const {
        Piece r = Ronly(dp.Rs == 0 ? 1e-06 : dp.Rs), l = Lonly(dp.Ls), c = Conly(dp.Cs);
        return [&n = n, r, l, c, Cacross](const std::string& x, const std::string& y) {
            n.chain(x, y, {r, l, c});
            n.part('C', x, y, Cacross);
        };
    }
    // Several pieces side by side between the same two nodes.
    static Piece across(std::vector<Piece> ps) {
        return [ps](const std::string& x, const std::string& y) {
            for (auto& p : ps) p(x, y);
        };
    }
    [[noreturn]] void odd(const char* what) const {
        throw NotExportable{"dipole " + std::to_string(d) + " (type " + std::to_string(dp.type) +
                            ") " + what};
    }
    void needcrystal() const {
        need(dp.Ls, d, "Ls");
        need(dp.Cs, d, "Cs");
    }
    void needLC() const {
        need(dp.L, d, "L");
        need(dp.C, d, "C");
    }
    void needLCLaCa() const {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La"); need(dp.Ca, d, "Ca");
    }
};

// Single parts, series LC, tank, series RLC, the wire and the open circuit.
void plainparts(const Parts& w, SpiceForm f, const std::string& a, const std::string& b) {
    const Dipole& dp = w.dp;
    const int d = w.d;
    switch (f) {
    case SpiceForm::Resistor: need(dp.R, d, "R"); w.n.part('R', a, b, dp.R); break;
    case SpiceForm::Inductor: need(dp.L, d, "L"); w.Lq(dp.L, dp.Qu)(a, b); break;
    case SpiceForm::Capacitor:
        need(dp.C, d, "C");
        // The impedance carries 1e-06 ohm in series, the admittance 1e-06 siemens across.
        // A shunt arm's node voltage comes from its impedance, so the impedance form is
        // written in both places.
        w.n.chain(a, b, {w.Conly(dp.C), w.Ronly(1e-06)});
        break;
    case SpiceForm::SeriesLC: w.needLC(); w.S(dp.L, dp.C, dp.Qu)(a, b); break;
    case SpiceForm::Tank: w.needLC(); w.P(dp.L, dp.C, dp.Qu)(a, b); break;
    case SpiceForm::Wire:
        if (w.shunt) w.odd("is an empty shunt place: a short to the divider, nothing to the ladder");
        w.n.part('V', a, b, 0); // a wire: a source of 0 V
        break;
    case SpiceForm::Open: w.n.part('R', a, b, 1e12); break;
    case SpiceForm::SeriesRLC: {
        w.needLC();
        std::vector<Net::Piece> arm;
        if (dp.R != 0) arm.push_back(w.Ronly(dp.R));
        arm.push_back(w.Lq(dp.L, dp.Qu));
        arm.push_back(w.Conly(dp.C));
        w.n.chain(a, b, arm);
        break;
    }
    default: break;
    }
}

// A series LC or a tank combined with La, Ca or R.
void lcpairs(const Parts& w, SpiceForm f, const std::string& a, const std::string& b) {
    using Piece = Net::Piece;
    const Dipole& dp = w.dp;
    const int d = w.d;
    Net& n = w.n;
    switch (f) {
    case SpiceForm::SeriesLCAcrossCa:
        w.needLC(); need(dp.Ca, d, "Ca");
        w.across({w.S(dp.L, dp.C, dp.Qu), w.Conly(dp.Ca)})(a, b);
        break;
    case SpiceForm::TankThenCa:
        if (w.shunt) w.odd("in a shunt place has an admittance of 1 siemens whatever its parts");
        w.needLC(); need(dp.Ca, d, "Ca");
        n.chain(a, b, {w.P(dp.L, dp.C, dp.Qu), w.Conly(dp.Ca)});
        break;
    case SpiceForm::TankLaAcrossCa: {
        w.needLCLaCa();
        std::vector<Piece> arm{w.P(dp.L, dp.C, dp.Qu)};
        if (dp.Qu > 0) arm.push_back(w.rloss(dp.L, dp.Qu)); // the loss of L, also for La
        arm.push_back(w.Lonly(dp.La));
        n.chain(a, b, arm);
        n.part('C', a, b, dp.Ca);
        break;
    }
    case SpiceForm::SeriesLCAcrossLaCa:
    case SpiceForm::SeriesLCAcrossLa: {
        w.needLC(); need(dp.La, d, "La");
        std::vector<Piece> ps{w.S(dp.L, dp.C, dp.Qu), w.Lonly(dp.La)};
        if (dp.Qa > 0) ps.push_back([&n, &dp](const std::string& x, const std::string& y) {
            n.parallelloss(x, y, dp.La * dp.Qa);
        });
        if (f == SpiceForm::SeriesLCAcrossLaCa) { need(dp.Ca, d, "Ca"); ps.push_back(w.Conly(dp.Ca)); }
        w.across(ps)(a, b);
        break;
    }
    case SpiceForm::TwoBranches:
    case SpiceForm::TwoBranchesR: {
        w.needLCLaCa();
        std::vector<Piece> second;
        if (dp.Qa > 0) second.push_back(w.rloss(dp.La, dp.Qa));
        second.push_back(w.Lonly(dp.La));
        second.push_back(w.Conly(dp.Ca));
        std::vector<Piece> ps{w.S(dp.L, dp.C, dp.Qu), [&n, second](const std::string& x, const std::string& y) {
                                  n.chain(x, y, second);
                              }};
        if (f == SpiceForm::TwoBranchesR) { need(dp.R, d, "R"); ps.push_back(w.Ronly(dp.R)); }
        w.across(ps)(a, b);
        break;
    }
    case SpiceForm::TankLaCa: {
        w.needLCLaCa();
        std::vector<Piece> arm{w.P(dp.L, dp.C, dp.Qu)};
        if (dp.Qa > 0) arm.push_back(w.rloss(dp.La, dp.Qa));
        arm.push_back(w.Conly(dp.Ca));
        arm.push_back(w.Lonly(dp.La));
        n.chain(a, b, arm);
        break;
    }
    case SpiceForm::SeriesLCAcrossLaThenCa:
        w.needLCLaCa();
        n.chain(a, b, {w.across({w.S(dp.L, dp.C, dp.Qu), w.Lonly(dp.La), w.gLa()}), w.Conly(dp.Ca)});
        break;
    case SpiceForm::TankCaAcrossLa: {
        w.needLCLaCa();
        Piece P = w.P(dp.L, dp.C, dp.Qu), Ca = w.Conly(dp.Ca);
        Piece arm = [&n, P, Ca](const std::string& x, const std::string& y) { n.chain(x, y, {P, Ca}); };
        w.across({arm, w.Lonly(dp.La), w.gLa()})(a, b);
        break;
    }
    case SpiceForm::SeriesLCAcrossCaThenLa: {
        w.needLCLaCa();
        std::vector<Piece> arm{w.across({w.S(dp.L, dp.C, dp.Qu), w.Conly(dp.Ca)})};
        if (dp.Qa > 0) arm.push_back(w.rloss(dp.La, dp.Qa));
        arm.push_back(w.Lonly(dp.La));
        n.chain(a, b, arm);
        break;
    }
    case SpiceForm::TankThenR:
        if (w.shunt) w.odd("in a shunt place takes the reactance for its conductance");
        w.needLC(); need(dp.R, d, "R");
        n.chain(a, b, {w.P(dp.L, dp.C, dp.Qu), w.Ronly(dp.R)});
        break;
    default: break;
    }
}

// A tank on a tap of its coil, written as the tank it looks like from the tap.
void taptank(const Parts& w, SpiceForm f, const std::string& a, const std::string& b) {
    const Dipole& dp = w.dp;
    w.needLC(); need(dp.K, w.d, "K");
    double K2 = dp.K * dp.K;
    double C = f == SpiceForm::TapTank ? dp.C / K2 : dp.Ca / K2 + dp.C;
    w.tank(dp.L * K2, C, dp.Qu > 0 ? dp.L * K2 * dp.Qu : 0)(a, b);
}

// The crystal, alone or with C across it, C in series, or both and Ca.
void crystals(const Parts& w, SpiceForm f, const std::string& a, const std::string& b) {
    const Dipole& dp = w.dp;
    const int d = w.d;
    switch (f) {
    case SpiceForm::Crystal: w.needcrystal(); w.X(dp.Cp)(a, b); break;
    case SpiceForm::CrystalAcrossC: w.needcrystal(); w.X(dp.C + dp.Cp)(a, b); break;
    case SpiceForm::CrystalThenC:
        w.needcrystal(); need(dp.C, d, "C");
        w.n.chain(a, b, {w.X(dp.Cp), w.Conly(dp.C)});
        break;
    case SpiceForm::CrystalAcrossCThenCa:
        if (w.shunt) w.odd("in a shunt place has an admittance of 1 siemens whatever its parts");
        w.needcrystal(); need(dp.Ca, d, "Ca");
        w.n.chain(a, b, {w.X(dp.C + dp.Cp), w.Conly(dp.Ca)});
        break;
    default: break;
    }
}

// Tapped match: shunt Ca, series C, shunt L (in) or shunt L, series C, shunt Ca (out);
// the next series arm starts at the node after C.
void divider(const Parts& w, SpiceForm f, const std::string& a, const std::string& b, std::string* moved) {
    const Dipole& dp = w.dp;
    w.needLC(); need(dp.Ca, w.d, "Ca");
    if (!w.shunt || !moved) w.odd("is a tapped match with no plain-part form in this place");
    const std::string m = w.n.node();
    if (f == SpiceForm::DividerIn) {
        w.Conly(dp.Ca)(a, b);
        w.Conly(dp.C)(a, m);
        w.Lq(dp.L, dp.Qu)(m, b);
    } else {
        w.Lq(dp.L, dp.Qu)(a, b);
        w.Conly(dp.C)(a, m);
        w.Conly(dp.Ca)(m, b);
    }
    *moved = m;
}

// Writes dipole d of slot s between a and b (b is "0" for a shunt arm), in the form its
// type's record names. A tapped match in a shunt place moves the ladder on to an inner
// node: `moved` takes it.
void writedipole(Net& n, const Dipole& dp, int d, bool shunt, const std::string& a,
                 const std::string& b, std::string* moved = nullptr) {
    const DipoleType& type = dipoletype(dp.type);
    const Parts w{n, dp, d, shunt};
    switch (type.spice) {
    case SpiceForm::None: w.odd(type.nospice);
    case SpiceForm::Resistor:
    case SpiceForm::Inductor:
    case SpiceForm::Capacitor:
    case SpiceForm::SeriesLC:
    case SpiceForm::Tank:
    case SpiceForm::Wire:
    case SpiceForm::Open:
    case SpiceForm::SeriesRLC: plainparts(w, type.spice, a, b); break;
    case SpiceForm::SeriesLCAcrossCa:
    case SpiceForm::TankThenCa:
    case SpiceForm::TankLaAcrossCa:
    case SpiceForm::SeriesLCAcrossLaCa:
    case SpiceForm::SeriesLCAcrossLa:
    case SpiceForm::TwoBranches:
    case SpiceForm::TwoBranchesR:
    case SpiceForm::TankLaCa:
    case SpiceForm::SeriesLCAcrossLaThenCa:
    case SpiceForm::TankCaAcrossLa:
    case SpiceForm::SeriesLCAcrossCaThenLa:
    case SpiceForm::TankThenR: lcpairs(w, type.spice, a, b); break;
    case SpiceForm::TapTank:
    case SpiceForm::TapTankCa: taptank(w, type.spice, a, b); break;
    case SpiceForm::Crystal:
    case SpiceForm::CrystalAcrossC:
    case SpiceForm::CrystalThenC:
    case SpiceForm::CrystalAcrossCThenCa: crystals(w, type.spice, a, b); break;
    case SpiceForm::DividerIn:
    case SpiceForm::DividerOut: divider(w, type.spice, a, b, moved); break;
    }
}

// The sweep span: a decade around the design's frequencies, wider when they spread.
void defaultspan(const DesignSlot& sl, double& F1, double& F2) {
    double lo = 0, hi = 0;
    for (double w : {sl.w0.value(), sl.w1.value(), sl.w2.value()}) {
        if (!(w > 0) || !std::isfinite(w)) continue;
        double f = w / TWOPI;
        if (lo == 0 || f < lo) lo = f;
        if (f > hi) hi = f;
    }
    if (lo == 0) lo = hi = 1e6;
    F1 = lo / std::sqrt(10.0);
    F2 = hi * std::sqrt(10.0);
}

} // namespace

bool spicenetlist(int s, std::ostream& out, std::string& why, double F1, double F2) {
    const DesignSlot& sl = slot(s);
    const int count = sl.count();
    if (count < 2 || count % 2 != 0 || count > MAXDIPOLE) {
        why = "the ladder has no load in a shunt place (dipolecount " + std::to_string(count) + ")";
        return false;
    }
    if (F1 <= 0 || F2 <= F1) defaultspan(sl, F1, F2);
    std::ostringstream body;
    try {
        std::string node = "src";
        for (int d = 1; d <= count; d += 2) {
            const Dipole& ser = sl.dip(d);
            const Dipole& sh = sl.dip(d + 1);
            std::string next = d + 1 == count ? "out" : "n" + std::to_string(d);
            Net ns(body, d);
            writedipole(ns, ser, d, false, node, next);
            Net n(body, d + 1);
            std::string after = next;
            writedipole(n, sh, d + 1, true, next, "0", d + 1 == count ? nullptr : &after);
            node = after;
        }
    } catch (const NotExportable& e) {
        why = e.why;
        return false;
    }
    double decades = log10host(F2 / F1);
    // Two frequencies a hair apart would ask for points beyond counting.
    long perdecade = clampint(std::ceil(512 / decades), 1, 1000000000);
    std::string title = sl.designtitle.empty() ? sl.title : sl.designtitle;
    out << "* " << (title.empty() ? std::string("ZELK filter") : title) << '\n';
    out << "* Ladder of filter " << s + 1 << " as plain parts. Inductor losses follow the\n"
        << "* analysis: a series resistance wA*L/Qu or a parallel conductance (1/wA)/L/Qu,\n"
        << "* written as B sources of the AC frequency 'hertz'; a lossless inductor or\n"
        << "* capacitor keeps the analysis' residual 1e-06 ohm or 1e-06 siemens.\n";
    out << "V1 src 0 DC 0 AC 1\n" << body.str();
    out << ".ac dec " << perdecade << ' ' << num(F1) << ' ' << num(F2) << '\n';
    out << ".print ac vm(out) vp(out)\n";
    out << ".end\n";
    return true;
}

bool exportspice(const std::vector<std::string>& args, std::ostream& err) {
    if (args.empty() || args.size() == 2 || args.size() > 3) {
        err << "export spice FILE [F1 F2]\n";
        return false;
    }
    double F1 = 0, F2 = 0;
    if (args.size() == 3) {
        F1 = parsevalue(args[1]);
        F2 = parsevalue(args[2]);
        if (!(F1 > 0) || !(F2 > F1)) {
            err << "export spice: the sweep needs 0 < F1 < F2\n";
            return false;
        }
    }
    if (store.lastslot < 0) {
        err << "export spice: no design is open\n";
        return false;
    }
    std::ostringstream deck;
    std::string why;
    if (!spicenetlist(0, deck, why, F1, F2)) {
        err << "export spice: not exportable: " << why << '\n';
        return false;
    }
    if (!writefilesafely(args[0], deck.str(), why)) {
        err << "export spice: " << why << '\n';
        return false;
    }
    return true;
}

} // namespace zelk
