#include "analysis/spiceexport.h"

#include <cmath>
#include <functional>
#include <sstream>
#include <vector>

#include "core/commands.h"
#include "core/designstore.h"
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

// Writes dipole d of slot s between a and b (b is "0" for a shunt arm).
// A tapped match in a shunt place moves the ladder on to an inner node: `moved` takes it.
void writedipole(Net& n, const Dipole& dp, int d, bool shunt, const std::string& a,
                 const std::string& b, std::string* moved = nullptr) {
    using Piece = Net::Piece;
    const int t = dp.type;
    // Inductor with the series loss of q(L,Q).
    auto Lq = [&](double L, double Q) -> Piece {
        return [&n, L, Q](const std::string& x, const std::string& y) {
            std::string m = n.node();
            n.part('L', x, m, L);
            if (Q > 0) n.seriesloss(m, y, L, Q);
            else n.part('R', m, y, 1e-06);
        };
    };
    auto Lonly = [&](double L) -> Piece {
        return [&n, L](const std::string& x, const std::string& y) { n.part('L', x, y, L); };
    };
    auto Conly = [&](double C) -> Piece {
        return [&n, C](const std::string& x, const std::string& y) { n.part('C', x, y, C); };
    };
    auto Ronly = [&](double R) -> Piece {
        return [&n, R](const std::string& x, const std::string& y) { n.part('R', x, y, R); };
    };
    // Series loss wA*L/Q alone (only where Q > 0).
    auto rloss = [&](double L, double Q) -> Piece {
        return [&n, L, Q](const std::string& x, const std::string& y) { n.seriesloss(x, y, L, Q); };
    };
    // Branch S(L,C,Q): L with its series loss, then C.
    auto S = [&](double L, double C, double Q) -> Piece {
        return [&n, Lq, Conly, L, C, Q](const std::string& x, const std::string& y) {
            n.chain(x, y, {Lq(L, Q), Conly(C)});
        };
    };
    // Tank P(L,C,Q) with a scale on L and C (the tapped tanks): L, C and p(L,Q) across.
    auto tank = [&](double L, double C, double LQ) -> Piece {
        return [&n, L, C, LQ](const std::string& x, const std::string& y) {
            n.part('L', x, y, L);
            n.part('C', x, y, C);
            if (LQ > 0) n.parallelloss(x, y, LQ);
            else n.part('R', x, y, 1e6);
        };
    };
    auto P = [&](double L, double C, double Q) -> Piece { return tank(L, C, Q > 0 ? L * Q : 0); };
    // Crystal X with a capacitance across it.
    auto X = [&](double Cacross) -> Piece {
        return [&n, &dp, Lonly, Conly, Ronly, Cacross](const std::string& x, const std::string& y) {
            n.chain(x, y, {Ronly(dp.Rs == 0 ? 1e-06 : dp.Rs), Lonly(dp.Ls), Conly(dp.Cs)});
            n.part('C', x, y, Cacross);
        };
    };
    // Several pieces side by side between the same two nodes.
    auto across = [](std::vector<Piece> ps) -> Piece {
        return [ps](const std::string& x, const std::string& y) {
            for (auto& p : ps) p(x, y);
        };
    };
    auto odd = [&](const char* what) {
        throw NotExportable{"dipole " + std::to_string(d) + " (type " + std::to_string(t) +
                            ") " + what};
    };
    auto crystal = [&] {
        need(dp.Ls, d, "Ls");
        need(dp.Cs, d, "Cs");
    };

    switch (t) {
    case 1:
    case 31: need(dp.R, d, "R"); n.part('R', a, b, dp.R); break;
    case 2:
    case 32: need(dp.L, d, "L"); Lq(dp.L, dp.Qu)(a, b); break;
    case 3:
    case 33:
        need(dp.C, d, "C");
        // The impedance carries 1e-06 ohm in series, the admittance 1e-06 siemens across.
        // A shunt arm's node voltage comes from its impedance, so the impedance form is
        // written in both places.
        n.chain(a, b, {Conly(dp.C), Ronly(1e-06)});
        break;
    case 4:
    case 34: need(dp.L, d, "L"); need(dp.C, d, "C"); S(dp.L, dp.C, dp.Qu)(a, b); break;
    case 5:
    case 35: need(dp.L, d, "L"); need(dp.C, d, "C"); P(dp.L, dp.C, dp.Qu)(a, b); break;
    case 6:
        if (shunt) odd("is an empty shunt place: a short to the divider, nothing to the ladder");
        n.part('V', a, b, 0); // a wire: a source of 0 V
        break;
    case 7:
    case 37: crystal(); X(dp.Cp)(a, b); break;
    case 8:
    case 38: n.part('R', a, b, 1e12); break;
    case 9:
    case 39:
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.Ca, d, "Ca");
        across({S(dp.L, dp.C, dp.Qu), Conly(dp.Ca)})(a, b);
        break;
    case 10:
    case 40:
        if (shunt) odd("in a shunt place has an admittance of 1 siemens whatever its parts");
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.Ca, d, "Ca");
        n.chain(a, b, {P(dp.L, dp.C, dp.Qu), Conly(dp.Ca)});
        break;
    case 11:
    case 41:
    case 14:
    case 36: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.K, d, "K");
        double K2 = dp.K * dp.K;
        double C = (t == 11 || t == 41) ? dp.C / K2 : dp.Ca / K2 + dp.C;
        tank(dp.L * K2, C, dp.Qu > 0 ? dp.L * K2 * dp.Qu : 0)(a, b);
        break;
    }
    case 12:
    case 42: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La"); need(dp.Ca, d, "Ca");
        std::vector<Piece> arm{P(dp.L, dp.C, dp.Qu)};
        if (dp.Qu > 0) arm.push_back(rloss(dp.L, dp.Qu)); // the loss of L, also for La
        arm.push_back(Lonly(dp.La));
        n.chain(a, b, arm);
        n.part('C', a, b, dp.Ca);
        break;
    }
    case 13:
    case 43:
    case 20:
    case 50: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La");
        std::vector<Piece> ps{S(dp.L, dp.C, dp.Qu), Lonly(dp.La)};
        if (dp.Qa > 0) ps.push_back([&n, &dp](const std::string& x, const std::string& y) {
            n.parallelloss(x, y, dp.La * dp.Qa);
        });
        if (t == 13 || t == 43) { need(dp.Ca, d, "Ca"); ps.push_back(Conly(dp.Ca)); }
        across(ps)(a, b);
        break;
    }
    case 15:
    case 45: crystal(); X(dp.C + dp.Cp)(a, b); break;
    case 16:
    case 46: crystal(); need(dp.C, d, "C"); n.chain(a, b, {X(dp.Cp), Conly(dp.C)}); break;
    case 27:
        if (shunt) odd("in a shunt place has an admittance of 1 siemens whatever its parts");
        crystal(); need(dp.Ca, d, "Ca");
        n.chain(a, b, {X(dp.C + dp.Cp), Conly(dp.Ca)});
        break;
    case 17:
    case 47:
    case 29: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La"); need(dp.Ca, d, "Ca");
        std::vector<Piece> second;
        if (dp.Qa > 0) second.push_back(rloss(dp.La, dp.Qa));
        second.push_back(Lonly(dp.La));
        second.push_back(Conly(dp.Ca));
        std::vector<Piece> ps{S(dp.L, dp.C, dp.Qu), [&n, second](const std::string& x, const std::string& y) {
                                  n.chain(x, y, second);
                              }};
        if (t == 29) { need(dp.R, d, "R"); ps.push_back(Ronly(dp.R)); }
        across(ps)(a, b);
        break;
    }
    case 19:
    case 49: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La"); need(dp.Ca, d, "Ca");
        std::vector<Piece> arm{P(dp.L, dp.C, dp.Qu)};
        if (dp.Qa > 0) arm.push_back(rloss(dp.La, dp.Qa));
        arm.push_back(Conly(dp.Ca));
        arm.push_back(Lonly(dp.La));
        n.chain(a, b, arm);
        break;
    }
    case 22:
    case 52:
    case 24:
    case 54: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La"); need(dp.Ca, d, "Ca");
        Piece gLa = [&n, &dp](const std::string& x, const std::string& y) {
            if (dp.Qa > 0) n.parallelloss(x, y, dp.La * dp.Qa);
        };
        if (t == 22 || t == 52) {
            n.chain(a, b, {across({S(dp.L, dp.C, dp.Qu), Lonly(dp.La), gLa}), Conly(dp.Ca)});
        } else {
            Piece arm = [&n, P, Conly, &dp](const std::string& x, const std::string& y) {
                n.chain(x, y, {P(dp.L, dp.C, dp.Qu), Conly(dp.Ca)});
            };
            across({arm, Lonly(dp.La), gLa})(a, b);
        }
        break;
    }
    case 23:
    case 53: {
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.La, d, "La"); need(dp.Ca, d, "Ca");
        std::vector<Piece> arm{across({S(dp.L, dp.C, dp.Qu), Conly(dp.Ca)})};
        if (dp.Qa > 0) arm.push_back(rloss(dp.La, dp.Qa));
        arm.push_back(Lonly(dp.La));
        n.chain(a, b, arm);
        break;
    }
    case 28: {
        need(dp.L, d, "L"); need(dp.C, d, "C");
        std::vector<Piece> arm;
        if (dp.R != 0) arm.push_back(Ronly(dp.R));
        arm.push_back(Lq(dp.L, dp.Qu));
        arm.push_back(Conly(dp.C));
        n.chain(a, b, arm);
        break;
    }
    case 67:
        if (shunt) odd("in a shunt place takes the reactance for its conductance");
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.R, d, "R");
        n.chain(a, b, {P(dp.L, dp.C, dp.Qu), Ronly(dp.R)});
        break;
    case 18:
    case 48:
    case 68: odd("drops the first tank's real part and has no plain-part form"); break;
    case 21:
    case 51: odd("ignores La and Qa and has no plain-part form"); break;
    case 44: odd("is a transformed arm with no plain-part form"); break;
    case 57:
    case 58: {
        // Tapped match: shunt Ca, series C, shunt L (57) or shunt L, series C, shunt Ca
        // (58); the next series arm starts at the node after C.
        need(dp.L, d, "L"); need(dp.C, d, "C"); need(dp.Ca, d, "Ca");
        if (!shunt || !moved) odd("is a tapped match with no plain-part form in this place");
        const std::string m = n.node();
        if (t == 57) {
            Conly(dp.Ca)(a, b);
            Conly(dp.C)(a, m);
            Lq(dp.L, dp.Qu)(m, b);
        } else {
            Lq(dp.L, dp.Qu)(a, b);
            Conly(dp.C)(a, m);
            Conly(dp.Ca)(m, b);
        }
        *moved = m;
        break;
    }
    default: odd("is a transformer, composite or unused type with no plain-part form");
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
