// The pictures of the prompts and of the function selector, drawn as vectors so that
// they stay sharp at any size and in SVG: response sketches (loss against frequency with
// the band edges and levels the prompt asks for), the two attenuator pads, and the
// ladder configurations of the selector built from inductor and capacitor symbols.
#include "entry/pictures.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/hostmath.h"
#include "core/surface.h"

namespace zelk {

namespace {

constexpr long GREY = RGB(150, 150, 150);
constexpr long CURVE = RGB(0, 0, 192);

// ---- response sketches -----------------------------------------------------------------

enum class Family { Butterworth, Chebyshev, Elliptic, Table };
enum class Kind { LP, HP, BP, BR, LSB, USB };

double chebyshevT(int n, double x) {
    if (std::fabs(x) <= 1) return std::cos(n * std::acos(x));
    return std::cosh(n * std::acosh(std::fabs(x))) * (x < 0 && n % 2 ? -1 : 1);
}

// Loss in dB (positive) of a fifth-order low-pass prototype at normalised frequency x.
double prototypeloss(Family f, double x) {
    x = std::fabs(x);
    switch (f) {
    case Family::Butterworth: return 10 * std::log10(1 + std::pow(x, 10));
    case Family::Table: return 10 * std::log10(1 + std::pow(x, 6));
    case Family::Chebyshev: {
        double t = chebyshevT(5, x);
        return 10 * std::log10(1 + 0.26 * t * t);
    }
    case Family::Elliptic: {
        if (x <= 1) {
            double t = chebyshevT(5, x);
            return 10 * std::log10(1 + 0.26 * t * t);
        }
        // Stop band from 1.35 on: notches at two finite frequencies, bounded lobes.
        const double xs = 1.35, n1 = 1.45, n2 = 2.1;
        if (x < xs) return 3 + (x - 1) / (xs - 1) * 37;
        double d = std::fabs((x - n1) * (x - n2)) / std::fabs((xs - n1) * (xs - n2));
        double loss = 40 - 20 * std::log10(std::max(d, 1e-4)) * 0.5;
        // Beyond the last notch the lobes stay above the guaranteed minimum.
        return std::max(36.0, x > n2 ? std::min(loss, 40 + 6 * (x - n2)) : loss);
    }
    }
    return 0;
}

struct Sketch {
    Family family;
    Kind kind;
    std::string title;
};

bool sketchfor(int index, Sketch& s) {
    static const char* kinds[4] = {"Low-Pass", "High-Pass", "Band-Pass", "Band-Reject"};
    auto set = [&](Family f, int k, const std::string& name) {
        s.family = f;
        s.kind = static_cast<Kind>(k);
        s.title = name + (k < 4 ? std::string(" ") + kinds[k] : "");
    };
    if (index >= 1 && index <= 4) set(Family::Butterworth, index - 1, "Butterworth");
    else if (index >= 5 && index <= 8) set(Family::Chebyshev, index - 5, "Chebyshev");
    else if (index >= 27 && index <= 30) set(Family::Elliptic, index - 27, "Elliptic");
    else if (index >= 31 && index <= 34) set(Family::Table, index - 31, "Table");
    else if (index == 17) set(Family::Butterworth, 2, "Coupled Resonator");
    else if (index == 18) set(Family::Chebyshev, 2, "Coupled Resonator");
    else if (index == 47) set(Family::Chebyshev, 4, "Lower Sideband Crystal Filter");
    else if (index == 48) set(Family::Chebyshev, 5, "Upper Sideband Crystal Filter");
    else return false;
    return true;
}

// Frequency axis 0..1 of the plot; the band edges of each kind at fixed places.
double sketchloss(const Sketch& s, double f) {
    f = std::max(f, 1e-3);
    double x = 0;
    switch (s.kind) {
    case Kind::LP: x = f / 0.3; break;
    case Kind::HP: x = 0.6 / f; break;
    case Kind::BP: {
        const double f0 = 0.5, b = 0.16;
        x = (f * f - f0 * f0) / (f * b);
        break;
    }
    case Kind::BR: {
        const double f0 = 0.5, b = 0.36;
        double d = f * f - f0 * f0;
        x = std::fabs(d) < 1e-9 ? 1e9 : f * b / d;
        break;
    }
    case Kind::LSB:
    case Kind::USB: {
        // A sideband filter: a band-pass whose skirt on the carrier side is the steeper.
        const double f0 = 0.5, b = 0.2;
        x = (f * f - f0 * f0) / (f * b);
        bool carrierside = s.kind == Kind::LSB ? x > 0 : x < 0;
        if (carrierside) x *= 2.2;
        break;
    }
    }
    return prototypeloss(s.family, x);
}

void dashed(Surface& s, double x1, double y1, double x2, double y2) {
    double len = std::hypot(x2 - x1, y2 - y1);
    // A dash every 6 units, at most as many as a window can show.
    int n = clampint(len / 6, 1, 100000);
    for (int i = 0; i < n; i += 2) {
        double a = static_cast<double>(i) / n, b = std::min(1.0, static_cast<double>(i + 1) / n);
        s.line(x1 + (x2 - x1) * a, y1 + (y2 - y1) * a, x1 + (x2 - x1) * b, y1 + (y2 - y1) * b);
    }
}

void centredtext(Surface& s, double cx, double y, const std::string& t) { s.drawtext(cx - s.textwidth(t) / 2, y, t); }

void drawsketch(Surface& s, const Sketch& k, double x, double y, double w, double h) {
    double th = s.textheight("X");
    // Plot box inside the picture: room for the title above and the edge names below.
    double px = x + th * 3.2, py = y + th * 1.6, pw = w - th * 4, ph = h - th * 4.2;
    if (pw < 10 || ph < 10) return;
    const double floordb = 60;
    auto X = [&](double f) { return px + f * pw; };
    auto Y = [&](double db) { return py + std::clamp(db, 0.0, floordb) / floordb * ph; };

    s.setcolour(BLACK);
    s.setbold(true);
    centredtext(s, x + w / 2, y + 2, k.title);
    s.setbold(false);
    s.line(px, py, px, py + ph);
    s.line(px, py + ph, px + pw, py + ph);
    s.drawtext(px - s.textwidth("0 dB") - 3, Y(0) - th / 2, "0 dB");
    s.drawtext(px - s.textwidth("Loss") - 3, py + ph * 0.85 - th / 2, "Loss");
    centredtext(s, px + pw / 2, py + ph + th * 1.25, "Frequency");

    // The curve.
    s.setcolour(CURVE);
    const int n = 240;
    for (int i = 0; i <= n; ++i) {
        double f = static_cast<double>(i) / n;
        double yy = Y(sketchloss(k, f));
        if (i == 0) s.moveto(X(f), yy);
        else s.lineto(X(f), yy);
    }

    // Levels and band edges.
    const double apass = k.family == Family::Butterworth || k.family == Family::Table ? 3 : 1.8;
    const double astop = 40;
    std::vector<std::pair<double, std::string>> edges;
    auto edge = [&](double f, const std::string& name) { edges.push_back({f, name}); };
    // The frequency at which the loss first crosses `db` searching from `from` to `to`.
    auto crossing = [&](double db, double from, double to) {
        double prev = sketchloss(k, from);
        for (int i = 1; i <= 400; ++i) {
            double f = from + (to - from) * i / 400;
            double l = sketchloss(k, f);
            if ((prev - db) * (l - db) <= 0) return f;
            prev = l;
        }
        return to;
    };
    bool table = k.family == Family::Table;
    switch (k.kind) {
    case Kind::LP:
        edge(crossing(apass, 0.01, 0.99), "F1");
        if (!table) edge(crossing(astop, 0.01, 0.99), "F2");
        break;
    case Kind::HP:
        // The high-pass prompt takes F2 as its cut-off and F1 as its stop-band edge.
        if (!table) edge(crossing(astop, 0.99, 0.01), "F1");
        edge(crossing(apass, 0.99, 0.01), table ? "F1" : "F2");
        break;
    case Kind::BP:
    case Kind::LSB:
    case Kind::USB: {
        double lo = crossing(apass, 0.5, 0.01), hi = crossing(apass, 0.5, 0.99);
        s.setcolour(BLACK);
        double ya = Y(apass) + th * 0.2;
        s.line(X(lo), ya, X(hi), ya);
        s.line(X(lo), ya, X(lo) + 4, ya - 3);
        s.line(X(lo), ya, X(lo) + 4, ya + 3);
        s.line(X(hi), ya, X(hi) - 4, ya - 3);
        s.line(X(hi), ya, X(hi) - 4, ya + 3);
        centredtext(s, X(0.5), ya + 2, "BW");
        edge(0.5, "CF");
        if (!table && (k.kind == Kind::BP) && k.title.find("Coupled") == std::string::npos) {
            double slo = crossing(astop, 0.5, 0.01), shi = crossing(astop, 0.5, 0.99);
            s.setcolour(GREY);
            dashed(s, X(slo), Y(astop), X(shi), Y(astop));
            s.setcolour(BLACK);
            centredtext(s, X(0.5), py + ph - th * 1.2, "SF = BW(Astop) / BW(Apass)");
        }
        break;
    }
    case Kind::BR:
        // F1 and F4 are the pass-band corners, F2 and F3 the stop-band edges.
        edge(crossing(apass, 0.01, 0.5), "F1");
        if (!table) {
            edge(crossing(astop, 0.01, 0.5), "F2");
            edge(crossing(astop, 0.99, 0.5), "F3");
        }
        edge(crossing(apass, 0.99, 0.5), table ? "F2" : "F4");
        break;
    }
    s.setcolour(GREY);
    for (auto& [f, name] : edges) dashed(s, X(f), py, X(f), py + ph);
    if (!table) {
        dashed(s, px, Y(apass), px + pw, Y(apass));
        if (k.kind != Kind::BP || k.title.find("Coupled") != std::string::npos) dashed(s, px, Y(astop), px + pw, Y(astop));
    }
    s.setcolour(BLACK);
    for (auto& [f, name] : edges) centredtext(s, X(f), py + ph + 2, name);
    if (!table) {
        s.drawtext(px - s.textwidth("Apass") - 3, Y(apass) + 1, "Apass");
        s.drawtext(px - s.textwidth("Astop") - 3, Y(astop) - th / 2, "Astop");
    }
}

// ---- schematic symbols ----------------------------------------------------------------------

// A two-terminal network: an inductor, a capacitor, a resistor, or elements in series or
// in parallel. Its size is counted in symbol cells along and across the arm.
struct Net {
    char kind; // 'L', 'C', 'R', 'S' series, 'P' parallel
    std::vector<Net> parts;
    double along() const {
        double a = 0;
        if (kind == 'S') {
            for (const Net& n : parts) a += n.along();
        } else if (kind == 'P') {
            for (const Net& n : parts) a = std::max(a, n.along());
            a += 0.5;
        } else {
            a = 1;
        }
        return a;
    }
    double across() const {
        double c = 0;
        if (kind == 'P') {
            for (const Net& n : parts) c += n.across();
        } else if (kind == 'S') {
            for (const Net& n : parts) c = std::max(c, n.across());
        } else {
            c = 0.7;
        }
        return c;
    }
};

Net L() { return {'L', {}}; }
Net C() { return {'C', {}}; }
Net R() { return {'R', {}}; }
Net ser(std::vector<Net> p) { return {'S', std::move(p)}; }
Net par(std::vector<Net> p) { return {'P', std::move(p)}; }

// Maps arm coordinates (u along, v across) to the surface: a series arm runs to the
// right, a shunt arm downward.
struct Frame {
    double x0, y0, cell;
    bool vertical;
    void pt(double u, double v, double& x, double& y) const {
        if (vertical) {
            x = x0 + v * cell;
            y = y0 + u * cell;
        } else {
            x = x0 + u * cell;
            y = y0 + v * cell;
        }
    }
    void line(Surface& s, double u1, double v1, double u2, double v2) const {
        double a, b, c, d;
        pt(u1, v1, a, b);
        pt(u2, v2, c, d);
        s.line(a, b, c, d);
    }
};

// Draws `n` from u to u + n.along() on the centre line v.
void drawnet(Surface& s, const Frame& f, const Net& n, double u, double v) {
    switch (n.kind) {
    case 'L': {
        // Four turns as half circles, leads on both ends.
        f.line(s, u, v, u + 0.1, v);
        f.line(s, u + 0.9, v, u + 1, v);
        const double r = 0.1;
        for (int t = 0; t < 4; ++t) {
            double c = u + 0.1 + r + 2 * r * t;
            for (int k = 0; k < 8; ++k) {
                double a1 = PI * k / 8, a2 = PI * (k + 1) / 8;
                f.line(s, c - r * std::cos(a1), v - r * std::sin(a1), c - r * std::cos(a2), v - r * std::sin(a2));
            }
        }
        break;
    }
    case 'C':
        f.line(s, u, v, u + 0.44, v);
        f.line(s, u + 0.56, v, u + 1, v);
        f.line(s, u + 0.44, v - 0.25, u + 0.44, v + 0.25);
        f.line(s, u + 0.56, v - 0.25, u + 0.56, v + 0.25);
        break;
    case 'R': {
        f.line(s, u, v, u + 0.15, v);
        f.line(s, u + 0.85, v, u + 1, v);
        double pu = u + 0.15, pv = v;
        for (int k = 0; k < 6; ++k) {
            double nu = u + 0.15 + 0.7 * (k + 0.5) / 6, nv = v + (k % 2 ? 0.18 : -0.18);
            f.line(s, pu, pv, nu, nv);
            pu = nu;
            pv = nv;
        }
        f.line(s, pu, pv, u + 0.85, v);
        break;
    }
    case 'S':
        for (const Net& p : n.parts) {
            drawnet(s, f, p, u, v);
            u += p.along();
        }
        break;
    case 'P': {
        double len = n.along(), total = n.across();
        double vv = v - total / 2;
        std::vector<double> centres;
        for (const Net& p : n.parts) {
            double c = vv + p.across() / 2;
            centres.push_back(c);
            vv += p.across();
        }
        f.line(s, u, v, u + 0.25, v);
        f.line(s, u + len - 0.25, v, u + len, v);
        f.line(s, u + 0.25, centres.front(), u + 0.25, centres.back());
        f.line(s, u + len - 0.25, centres.front(), u + len - 0.25, centres.back());
        for (size_t i = 0; i < n.parts.size(); ++i) {
            const Net& p = n.parts[i];
            double inner = len - 0.5, pad = (inner - p.along()) / 2;
            f.line(s, u + 0.25, centres[i], u + 0.25 + pad, centres[i]);
            drawnet(s, f, p, u + 0.25 + pad, centres[i]);
            f.line(s, u + 0.25 + pad + p.along(), centres[i], u + len - 0.25, centres[i]);
        }
        break;
    }
    }
}

void terminal(Surface& s, double x, double y, double r) {
    for (int k = 0; k < 12; ++k) {
        double a1 = TWOPI * k / 12, a2 = TWOPI * (k + 1) / 12;
        s.line(x + r * std::cos(a1), y + r * std::sin(a1), x + r * std::cos(a2), y + r * std::sin(a2));
    }
}

// A ladder of arms: series arms along the top rail, shunt arms down to the ground rail.
struct Arm {
    bool shunt;
    Net net;
};

void drawladder(Surface& s, const std::vector<Arm>& arms, const std::string& title, double x, double y, double w, double h) {
    double th = s.textheight("X");
    // Cell size from the widest and tallest extent of the arms.
    double along = 0.6, tall = 0;
    for (const Arm& a : arms) {
        if (a.shunt) {
            along += std::max(1.0, a.net.across() + 0.4);
            tall = std::max(tall, a.net.along());
        } else {
            along += a.net.along() + 0.2;
            tall = std::max(tall, a.net.across() / 2);
        }
    }
    along += 0.6;
    double cell = std::min(w / along, (h - th * 2.5) / (tall + 1.4));
    if (cell <= 0) return;
    double top = y + th * 1.6 + cell * 0.6;
    double ground = top + cell * (tall + 0.6);
    double left = x + (w - along * cell) / 2;
    s.setcolour(BLACK);
    s.setbold(true);
    centredtext(s, x + w / 2, y + 2, title);
    s.setbold(false);
    double cx = left + cell * 0.3;
    terminal(s, cx, top, cell * 0.08);
    terminal(s, cx, ground, cell * 0.08);
    double railstart = cx;
    cx += cell * 0.3;
    for (const Arm& a : arms) {
        if (a.shunt) {
            double width = std::max(1.0, a.net.across() + 0.4) * cell;
            double mid = cx + width / 2;
            double len = a.net.along() * cell;
            double u0 = (ground - top - len) / 2;
            s.line(mid, top, mid, top + u0);
            drawnet(s, Frame{mid, top + u0, cell, true}, a.net, 0, 0);
            s.line(mid, top + u0 + len, mid, ground);
            s.line(cx, top, cx + width, top);
            cx += width;
        } else {
            s.line(cx, top, cx + cell * 0.1, top);
            drawnet(s, Frame{cx + cell * 0.1, top, cell, false}, a.net, 0, 0);
            double end = cx + cell * 0.1 + a.net.along() * cell;
            s.line(end, top, end + cell * 0.1, top);
            cx = end + cell * 0.1;
        }
    }
    s.line(cx, top, cx + cell * 0.3, top);
    cx += cell * 0.3;
    terminal(s, cx, top, cell * 0.08);
    terminal(s, cx, ground, cell * 0.08);
    s.line(railstart, ground, cx, ground);
}

// The configurations of the selector: which element each arm holds, by kind.
std::vector<Arm> ladder(bool shuntfirst, const Net& seriesarm, const Net& shuntarm, int arms = 5) {
    std::vector<Arm> out;
    for (int i = 0; i < arms; ++i) {
        bool shunt = shuntfirst ? i % 2 == 0 : i % 2 == 1;
        out.push_back({shunt, shunt ? shuntarm : seriesarm});
    }
    return out;
}

void drawpad(Surface& s, bool pi, double x, double y, double w, double h) {
    std::vector<Arm> arms = pi ? std::vector<Arm>{{true, R()}, {false, R()}, {true, R()}}
                               : std::vector<Arm>{{false, R()}, {true, R()}, {false, R()}};
    drawladder(s, arms, pi ? "Pi Attenuator Pad" : "T Attenuator Pad", x, y, w, h);
}

} // namespace

namespace {

// The pictures of the plot prompts, 60 to 67: a small framed plot of the quantity the
// prompt asks limits for, with the names of the rows on its axes.
void drawplotsketch(Surface& s, int index, double x, double y, double w, double h) {
    static const char* titles[] = {"Gain",    "Impedance", "Phase",      "Group Delay",
                                   "Impulse", "Unit Step", "Pulse",      "Tone Pulse"};
    static const char* ytop[] = {"db1", "Z2", "A2", "T1", "N1", "N1", "N1", "N1"};
    static const char* ybottom[] = {"db2", "Z1", "A1", "0", "N2", "N2", "N2", "N2"};
    const int k = index - 60;
    const bool timeplot = k >= 4;
    const double th = s.textheight("X");
    const double left = x + w * 0.16, right = x + w * 0.94;
    const double top = y + th * 1.6, bottom = y + h - th * 2.6;
    s.setbold(true);
    s.setcolour(BLACK);
    std::string title = titles[k];
    s.drawtext(x + (w - s.textwidth(title)) / 2, y + th * 0.2, title);
    s.setbold(false);
    s.line(left, top, right, top);
    s.line(right, top, right, bottom);
    s.line(right, bottom, left, bottom);
    s.line(left, bottom, left, top);
    s.setcolour(GREY);
    for (int i = 1; i < 4; ++i) {
        double gx = left + (right - left) * i / 4, gy = top + (bottom - top) * i / 4;
        s.line(gx, top, gx, bottom);
        s.line(left, gy, right, gy);
    }
    s.setcolour(BLACK);
    s.drawtext(left - s.textwidth(ytop[k]) - 4, top - th / 2, ytop[k]);
    s.drawtext(left - s.textwidth(ybottom[k]) - 4, bottom - th, ybottom[k]);
    const char* xl = timeplot ? "0" : "Freq 1";
    const char* xr = timeplot ? "Time" : "Freq 2";
    s.drawtext(left, bottom + th * 0.2, xl);
    s.drawtext(right - s.textwidth(xr), bottom + th * 0.2, xr);
    s.drawtext(x + (w - s.textwidth(timeplot ? "time" : "log frequency")) / 2, bottom + th * 1.2,
               timeplot ? "time" : "log frequency");
    s.setcolour(CURVE);
    const int n = 120;
    for (int i = 0; i <= n; ++i) {
        double t = static_cast<double>(i) / n, v = 0;
        switch (k) {
        case 0: v = 0.1 + 0.8 / (1 + std::pow(t / 0.55, 12)); v = 1 - v; break; // gain falls off
        case 1: v = 0.5 + 0.35 * std::cos(6 * t) * std::exp(-t); break;
        case 2: v = 0.9 - 0.8 * t; break;
        case 3: v = 0.85 - 0.6 * std::exp(-std::pow((t - 0.5) / 0.08, 2)); break;
        case 4: v = 0.55 - 0.4 * std::sin(12 * t) * std::exp(-5 * t); break;
        case 5: v = 0.75 - 0.45 * (1 - std::exp(-6 * t) * std::cos(14 * t)); break;
        case 6: v = 0.75 - 0.45 * (t > 0.1 && t < 0.55 ? 1 - std::exp(-30 * (t - 0.1)) : t >= 0.55 ? std::exp(-30 * (t - 0.55)) : 0); break;
        default: v = 0.5 - 0.35 * std::sin(60 * t) * (t > 0.1 && t < 0.6 ? 1 : 0); break;
        }
        double px = left + (right - left) * t, py = top + (bottom - top) * v;
        if (i == 0) s.moveto(px, py);
        else s.lineto(px, py);
    }
    s.setcolour(BLACK);
}

} // namespace

void drawpanelimage(Surface& s, int index, double x, double y, double w, double h) {
    Sketch k;
    if (sketchfor(index, k)) {
        drawsketch(s, k, x, y, w, h);
    } else if (index == 51 || index == 52) {
        drawpad(s, index == 51, x, y, w, h);
    } else if (index >= 60 && index <= 67) {
        drawplotsketch(s, index, x, y, w, h);
    }
}

void drawconfiguration(Surface& s, int picture, double x, double y, double w, double h) {
    const Net tank = par({L(), C()});
    const Net seriesLC = ser({L(), C()});
    const Net notchL = par({L(), C()});         // low-pass series arm with its notch
    const Net notchC = ser({L(), C()});         // low-pass shunt arm with its notch
    std::vector<Arm> arms;
    std::string title;
    switch (picture) {
    case 1: arms = ladder(true, L(), C()); title = "Low-Pass Pi"; break;
    case 2: arms = ladder(false, L(), C()); title = "Low-Pass T"; break;
    case 3: arms = ladder(true, C(), L()); title = "High-Pass Pi"; break;
    case 4: arms = ladder(false, C(), L()); title = "High-Pass T"; break;
    case 5: arms = ladder(true, seriesLC, tank); title = "Band-Pass Pi"; break;
    case 6: arms = ladder(false, seriesLC, tank); title = "Band-Pass T"; break;
    case 7: arms = ladder(true, tank, seriesLC); title = "Band-Reject Pi"; break;
    case 8: arms = ladder(false, tank, seriesLC); title = "Band-Reject T"; break;
    case 9:
        arms = {{true, C()}, {false, notchL}, {true, C()}, {false, notchL}, {true, C()}};
        title = "Elliptic Low-Pass Pi";
        break;
    case 10:
        arms = {{false, L()}, {true, notchC}, {false, L()}, {true, notchC}, {false, L()}};
        title = "Elliptic Low-Pass T";
        break;
    case 11:
        arms = {{true, L()}, {false, par({C(), L()})}, {true, L()}, {false, par({C(), L()})}, {true, L()}};
        title = "Elliptic High-Pass Pi";
        break;
    case 12:
        arms = {{false, C()}, {true, ser({C(), L()})}, {false, C()}, {true, ser({C(), L()})}, {false, C()}};
        title = "Elliptic High-Pass T";
        break;
    case 13:
        arms = {{true, tank}, {false, par({seriesLC, seriesLC})}, {true, tank}};
        title = "Elliptic Band-Pass Pi";
        break;
    case 14:
        arms = {{false, seriesLC}, {true, ser({tank, tank})}, {false, seriesLC}};
        title = "Elliptic Band-Pass T";
        break;
    case 15:
        arms = {{true, tank}, {false, ser({tank, C()})}, {true, tank}};
        title = "Elliptic Band-Pass SP Pi";
        break;
    case 16:
    case 17:
        arms = {{false, seriesLC}, {true, par({seriesLC, L()})}, {false, seriesLC}};
        title = picture == 16 ? "Elliptic Band-Pass SP T" : "Elliptic SP T";
        break;
    case 18:
        arms = {{true, seriesLC}, {false, ser({tank, tank})}, {true, seriesLC}};
        title = "Elliptic Band-Reject Pi";
        break;
    case 19:
        arms = {{false, tank}, {true, par({seriesLC, seriesLC})}, {false, tank}};
        title = "Elliptic Band-Reject T";
        break;
    case 20:
        arms = {{true, seriesLC}, {false, par({seriesLC, C()})}, {true, seriesLC}};
        title = "Elliptic Band-Reject SP Pi";
        break;
    case 21:
        arms = {{false, tank}, {true, ser({tank, L()})}, {false, tank}};
        title = "Elliptic Band-Reject SP T";
        break;
    default: return;
    }
    drawladder(s, arms, title, x, y, w, h);
}

} // namespace zelk
