#include "schematic/dipolepictures.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include "core/dipolecatalogue.h"
#include "core/surface.h"

namespace zelk {

namespace {

// Drawing in the unit square of a picture box; `mirror` flips left and right so that a
// step-up picture is the step-down one seen from the other side.
struct Pen {
    Surface& s;
    double x, y, w, h;
    bool mirror = false;
    double X(double u) const { return x + (mirror ? 1 - u : u) * w; }
    double Y(double v) const { return y + v * h; }
    void line(double u1, double v1, double u2, double v2) const { s.line(X(u1), Y(v1), X(u2), Y(v2)); }
    void poly(const std::vector<std::pair<double, double>>& p) const {
        for (size_t i = 1; i < p.size(); ++i) line(p[i - 1].first, p[i - 1].second, p[i].first, p[i].second);
    }
    void dot(double u, double v) const {
        double r = std::max(1.0, w * 0.025);
        s.fillrect(X(u) - r, Y(v) - r, X(u) + r, Y(v) + r);
    }
};

// Letters of the parts, as strokes in a box one unit wide and one unit tall (y down), so
// that they scale with the picture.
using Strokes = std::vector<std::vector<std::pair<double, double>>>;

std::vector<std::pair<double, double>> arc(double cx, double cy, double rx, double ry, double a0, double a1,
                                           int steps) {
    std::vector<std::pair<double, double>> p;
    for (int i = 0; i <= steps; ++i) {
        double a = a0 + (a1 - a0) * i / steps;
        p.push_back({cx + rx * std::cos(a), cy + ry * std::sin(a)});
    }
    return p;
}

const Strokes& glyph(char c, double& advance) {
    static const Strokes L = {{{0, 0}, {0, 1}, {0.75, 1}}};
    static const Strokes C = {arc(0.5, 0.5, 0.5, 0.5, 0.8, 5.48, 14)};
    static const Strokes R = {{{0, 1}, {0, 0}, {0.55, 0}, {0.75, 0.1}, {0.8, 0.25}, {0.75, 0.4}, {0.55, 0.5}, {0, 0.5}},
                              {{0.45, 0.5}, {0.8, 1}}};
    static const Strokes a = {arc(0.33, 0.72, 0.3, 0.28, 0, 6.2832, 12), {{0.63, 0.42}, {0.63, 1}}};
    static const Strokes X = {{{0, 0}, {0.8, 1}}, {{0.8, 0}, {0, 1}}};
    static const Strokes K = {{{0, 0}, {0, 1}}, {{0.75, 0}, {0, 0.6}}, {{0.25, 0.4}, {0.8, 1}}};
    static const Strokes none;
    advance = c == 'a' ? 0.95 : 1.05;
    switch (c) {
    case 'L': return L;
    case 'C': return C;
    case 'R': return R;
    case 'a': return a;
    case 'X': return X;
    case 'K': return K;
    default: return none;
    }
}

constexpr double LETTER = 0.13; // letter height, fraction of the picture

double labelwidth(const std::string& t) {
    double width = 0, adv;
    for (char c : t) {
        glyph(c, adv);
        width += adv * LETTER * 0.62;
    }
    return width;
}

// A label with its top left corner at (u, v).
void label(const Pen& p, const std::string& t, double u, double v) {
    if (p.w < 24) return; // too small to read: the listing names the parts
    double lw = LETTER * 0.62; // letter width
    if (p.mirror) u = 1 - u - labelwidth(t);
    Pen plain{p.s, p.x, p.y, p.w, p.h, false};
    for (char c : t) {
        double adv;
        for (const auto& stroke : glyph(c, adv)) {
            std::vector<std::pair<double, double>> q;
            for (auto [gx, gy] : stroke) q.push_back({u + gx * lw, v + gy * LETTER});
            plain.poly(q);
        }
        u += adv * lw;
    }
}

// One part between (a0) and (a1) along a line; `horizontal` lines run in u at height c,
// vertical ones in v at u = c. The body sits in the middle, leads fill the rest.
enum class Part { R, L, C, X };

constexpr double BW = 0.07; // half width of a body across its line

void drawpart(const Pen& p, Part kind, double a0, double a1, double c, bool horizontal, const std::string& text,
              bool labelleft = false) {
    double mid = (a0 + a1) / 2;
    double bl = std::min(0.34, 0.8 * (a1 - a0));
    double b0 = mid - bl / 2, b1 = mid + bl / 2;
    // pt(along, across offset) in picture coordinates
    auto pt = [&](double al, double ac) {
        return horizontal ? std::pair<double, double>{al, c + ac} : std::pair<double, double>{c + ac, al};
    };
    auto seg = [&](double al1, double ac1, double al2, double ac2) {
        auto q1 = pt(al1, ac1), q2 = pt(al2, ac2);
        p.line(q1.first, q1.second, q2.first, q2.second);
    };
    std::vector<std::pair<double, double>> body;
    switch (kind) {
    case Part::R: {
        seg(a0, 0, b0, 0);
        seg(b1, 0, a1, 0);
        body.push_back(pt(b0, 0));
        const int peaks = 6;
        for (int i = 0; i < peaks; ++i) body.push_back(pt(b0 + bl * (i + 0.5) / peaks, (i % 2 ? BW : -BW) * 0.8));
        body.push_back(pt(b1, 0));
        p.poly(body);
        break;
    }
    case Part::L: {
        seg(a0, 0, b0, 0);
        seg(b1, 0, a1, 0);
        // Four turns, each a half circle bulging away from the line (up, or to the left).
        double r = bl / 8;
        for (int k = 0; k < 4; ++k) {
            double cx = b0 + r * (2 * k + 1);
            for (int i = 0; i <= 8; ++i) {
                double ang = 3.14159265 * i / 8;
                body.push_back(pt(cx - r * std::cos(ang), -std::sin(ang) * r * 1.15));
            }
        }
        p.poly(body);
        break;
    }
    case Part::C: {
        double g = 0.035;
        seg(a0, 0, mid - g, 0);
        seg(mid + g, 0, a1, 0);
        seg(mid - g, -0.1, mid - g, 0.1);
        seg(mid + g, -0.1, mid + g, 0.1);
        break;
    }
    case Part::X: {
        double g = 0.06;
        seg(a0, 0, mid - g, 0);
        seg(mid + g, 0, a1, 0);
        seg(mid - g, -0.09, mid - g, 0.09);
        seg(mid + g, -0.09, mid + g, 0.09);
        p.poly({pt(mid - 0.028, -0.11), pt(mid + 0.028, -0.11), pt(mid + 0.028, 0.11), pt(mid - 0.028, 0.11),
                pt(mid - 0.028, -0.11)});
        break;
    }
    }
    if (text.empty()) return;
    double lw = labelwidth(text);
    if (horizontal) {
        double top = kind == Part::L ? c - bl / 8 * 1.15 - 0.03 - LETTER : c - 0.1 - 0.03 - LETTER;
        if (kind == Part::R) top = c - BW - 0.03 - LETTER;
        label(p, text, mid - lw / 2, top);
    } else {
        double off = kind == Part::L ? bl / 8 * 1.15 : 0.1;
        if (kind == Part::R) off = BW;
        double u = labelleft ? c - off - 0.03 - lw : c + off + 0.03;
        label(p, text, u, mid - LETTER / 2);
    }
}

// Networks of series and parallel parts, laid out by their extent along and across.
struct Net {
    char kind; // 'R', 'L', 'C', 'X' a part, 'W' a wire, 'S' series, 'P' parallel
    std::string text;
    std::vector<Net> kids;
};

Net part(char k, std::string t) { return Net{k, std::move(t), {}}; }

double along(const Net& n) {
    if (n.kind == 'S') {
        double s = 0;
        for (const Net& k : n.kids) s += along(k);
        return s;
    }
    if (n.kind == 'P') {
        double m = 0;
        for (const Net& k : n.kids) m = std::max(m, along(k));
        return m;
    }
    return 1;
}

double across(const Net& n) {
    if (n.kind == 'P') {
        double s = 0;
        for (const Net& k : n.kids) s += across(k);
        return s;
    }
    if (n.kind == 'S') {
        double m = 0;
        for (const Net& k : n.kids) m = std::max(m, across(k));
        return m;
    }
    return 1;
}

Part partof(char k) {
    switch (k) {
    case 'R': return Part::R;
    case 'L': return Part::L;
    case 'C': return Part::C;
    default: return Part::X;
    }
}

// Horizontal pictures: parallel branches stack upwards from the line they hang on.
// Vertical pictures: parallel branches spread symmetrically about their line.
void render(const Pen& p, const Net& n, double a0, double a1, double c, bool horizontal, double unit) {
    if (n.kind == 'S') {
        double total = along(n), a = a0;
        for (const Net& k : n.kids) {
            double b = a + (a1 - a0) * along(k) / total;
            render(p, k, a, b, c, horizontal, unit);
            a = b;
        }
        return;
    }
    if (n.kind == 'P') {
        double total = across(n), offset = 0;
        std::vector<double> lines;
        for (const Net& k : n.kids) {
            double w = across(k);
            double pos = horizontal ? c - offset * unit : c + (offset + (w - 1) / 2 - (total - 1) / 2) * unit;
            lines.push_back(pos);
            offset += w;
        }
        double lo = *std::min_element(lines.begin(), lines.end());
        double hi = *std::max_element(lines.begin(), lines.end());
        if (horizontal) {
            p.line(a0, lo, a0, hi);
            p.line(a1, lo, a1, hi);
        } else {
            p.line(lo, a0, hi, a0);
            p.line(lo, a1, hi, a1);
            if (lo > c || hi < c) {
                p.line(c, a0, lo, a0);
                p.line(c, a1, lo, a1);
            }
        }
        double inset = 0.04;
        for (size_t i = 0; i < n.kids.size(); ++i) {
            // Branch leads from the bars, then the branch itself.
            if (horizontal) {
                p.line(a0, lines[i], a0 + inset, lines[i]);
                p.line(a1 - inset, lines[i], a1, lines[i]);
            } else {
                p.line(lines[i], a0, lines[i], a0 + inset);
                p.line(lines[i], a1 - inset, lines[i], a1);
            }
            render(p, n.kids[i], a0 + inset, a1 - inset, lines[i], horizontal, unit);
        }
        return;
    }
    if (n.kind == 'W') {
        if (horizontal) p.line(a0, c, a1, c);
        else p.line(c, a0, c, a1);
        return;
    }
    drawpart(p, partof(n.kind), a0, a1, c, horizontal, n.text, !horizontal && c < 0.49);
}

void ground(const Pen& p, double u) {
    p.line(u, RAILLEVEL - 0.05, u, RAILLEVEL);
    p.line(u - 0.12, RAILLEVEL, u + 0.12, RAILLEVEL);
    p.line(u - 0.07, RAILLEVEL + 0.02, u + 0.07, RAILLEVEL + 0.02);
    p.line(u - 0.025, RAILLEVEL + 0.04, u + 0.025, RAILLEVEL + 0.04);
}

// The network a catalogue record writes as text: parts R L C La Ca X, each drawn as its
// letter with the name as label, in series S(..) and parallel P(..).
Net parse(const char*& f) {
    if ((f[0] == 'S' || f[0] == 'P') && f[1] == '(') {
        Net n{f[0], "", {}};
        f += 2;
        for (;;) {
            n.kids.push_back(parse(f));
            if (*f++ != ',') return n; // the closing bracket
        }
    }
    std::string name;
    while (std::isalpha(static_cast<unsigned char>(*f))) name += *f++;
    return part(name[0], name);
}

// The network of a type that is a plain series-parallel combination, or false.
bool network(int t, Net& out) {
    const char* f = dipoletype(t).network;
    if (!f) return false;
    out = parse(f);
    return true;
}

void series(const Pen& p, int t) {
    const double W = WIRELEVEL;
    Net n;
    const DipoleType& type = dipoletype(t);
    const bool tap = type.place == Place::Series &&
                     (type.picture == Picture::TapTank || type.picture == Picture::TapTankCa);
    if (type.picture == Picture::Wire) {
        p.line(0, W, 1, W);
        return;
    }
    if (tap) {
        // A tank with the right terminal on a tap of its coil; with Ca from the tap to
        // the far end of the coil on the second.
        p.line(0, W, 0.15, W);
        drawpart(p, Part::L, 0.15, 0.72, W, true, "");
        label(p, "L", 0.36, W + 0.0);
        p.line(0.15, W, 0.15, W - 0.36);
        p.line(0.72, W, 0.72, W - 0.36);
        drawpart(p, Part::C, 0.15, 0.72, W - 0.36, true, "C");
        double tap = 0.55;
        p.line(tap, W, tap, W + 0.07);
        p.line(tap, W + 0.07, 0.86, W + 0.07);
        p.line(0.86, W + 0.07, 0.86, W);
        p.line(0.86, W, 1, W);
        p.dot(tap, W);
        if (type.picture == Picture::TapTankCa) {
            drawpart(p, Part::C, W - 0.36, W, 0.86, false, "Ca");
            p.line(0.72, W - 0.36, 0.86, W - 0.36);
        }
        return;
    }
    // The value panel draws a shunt type across; 55 to 59 have always shown the network
    // of the series type 30 below them there.
    if (!network(t >= 55 && t <= 59 ? t - 30 : t, n)) return;
    p.line(0, W, 0.08, W);
    p.line(0.92, W, 1, W);
    render(p, n, 0.08, 0.92, W, true, 0.3);
}

// Vertical pictures of the transformer family, between the terminals at u = 0.2 (the
// source side) and u = 0.8 (the load side).
void tapped(const Pen& p, bool withC, bool withCa) {
    // Source on the tap, load on the top of the coil (the mirrored picture is the other
    // way about).
    double top = 0.14, bottom = 0.84, tap = 0.58, u = 0.48;
    p.line(0.8, 0, 0.8, top);
    p.line(0.8, top, u, top);
    drawpart(p, Part::L, top, bottom, u, false, "");
    label(p, "L", u + 0.04, 0.3);
    p.line(u, bottom, u, RAILLEVEL - 0.05);
    ground(p, u);
    p.line(0.2, 0, 0.2, tap);
    p.line(0.2, tap, u - 0.09, tap);
    p.dot(0.2, tap);
    if (withC) {
        drawpart(p, Part::C, top, bottom, 0.8, false, "C");
        p.line(0.8, bottom, u, bottom);
    }
    if (withCa) {
        drawpart(p, Part::C, tap, bottom, 0.2, false, "Ca", true);
        p.line(0.2, bottom, u, bottom);
    }
}

void windings(const Pen& p, bool up) {
    double top = 0.2, bottom = 0.8;
    p.line(0.2, 0, 0.2, top);
    p.line(0.8, 0, 0.8, top);
    Pen left = p, right = p;
    drawpart(left, Part::L, top, bottom, 0.2, false, "");
    right.mirror = !p.mirror;
    drawpart(right, Part::L, top, bottom, 0.2, false, "");
    p.line(0.2, bottom, 0.2, RAILLEVEL - 0.05);
    p.line(0.8, bottom, 0.8, RAILLEVEL - 0.05);
    ground(p, 0.2);
    ground(p, 0.8);
    // The arrow tells the direction of the step.
    double a0 = up ? 0.72 : 0.28, a1 = up ? 0.28 : 0.72, head = up ? 0.08 : -0.08;
    p.line(0.5, a0, 0.5, a1);
    p.line(0.5, a1, 0.44, a1 + head);
    p.line(0.5, a1, 0.56, a1 + head);
}

void divider(const Pen& p) {
    // Source on the tap between C and Ca, the coil across both.
    double top = 0.12, tap = 0.5, bottom = 0.86;
    p.line(0.8, 0, 0.8, top);
    p.line(0.4, top, 0.8, top);
    drawpart(p, Part::L, top, bottom, 0.8, false, "L");
    drawpart(p, Part::C, top, tap, 0.4, false, "C", true);
    drawpart(p, Part::C, tap, bottom, 0.4, false, "Ca", true);
    p.line(0.2, 0, 0.2, tap);
    p.line(0.2, tap, 0.4, tap);
    p.dot(0.4, tap);
    p.line(0.4, bottom, 0.8, bottom);
    p.line(0.6, bottom, 0.6, RAILLEVEL - 0.05);
    ground(p, 0.6);
}

// The coils, with C on the source side (primary), Ca on the load side across the coil
// (secondary) or in series with it.
void coupled(const Pen& p, Picture k) {
    double top = 0.16, bottom = 0.84;
    bool C1 = k == Picture::CoupledTuned || k == Picture::CoupledSeriesTuned || k == Picture::CoupledPrimaryTuned,
         C2 = k == Picture::CoupledTuned || k == Picture::CoupledSecondaryTuned,
         series2 = k == Picture::CoupledSeriesTuned;
    p.line(0.2, 0, 0.2, top);
    p.line(0.8, 0, 0.8, top);
    p.line(0.2, top, 0.38, top);
    p.line(0.62, top, 0.8, top);
    Pen left = p, right = p;
    right.mirror = !p.mirror;
    // The coils face one another across the coupling.
    drawpart(right, Part::L, top, bottom, 0.62, false, "");
    drawpart(left, Part::L, top, bottom, 0.62, false, "");
    label(p, "L", 0.26, 0.5);
    label(p, "La", 0.64, 0.5);
    label(p, "K", 0.46, 0.02);
    p.line(0.38, bottom, 0.38, RAILLEVEL - 0.05);
    ground(p, 0.38);
    if (C1) {
        drawpart(p, Part::C, top, bottom, 0.2, false, "C", true);
        p.line(0.2, bottom, 0.38, bottom);
    }
    if (series2) {
        // The load side tuned in series: Ca between the coil and the load terminal.
        p.line(0.62, bottom, 0.62, RAILLEVEL - 0.05);
        ground(p, 0.62);
        drawpart(p, Part::C, top, bottom, 0.8, false, "Ca");
        return;
    }
    p.line(0.62, bottom, 0.62, RAILLEVEL - 0.05);
    ground(p, 0.62);
    if (C2) {
        drawpart(p, Part::C, top, bottom, 0.8, false, "Ca");
        p.line(0.8, bottom, 0.62, bottom);
    }
}

void shunt(const Pen& p, int t) {
    if (t == 0) {
        // The transformer frame: the line comes in and turns down to the windings below.
        const double W = WIRELEVEL;
        p.line(0, W, 0.2, W);
        p.line(0.2, W, 0.2, 1);
        p.line(0.8, 1, 0.8, W);
        p.line(0.8, W, 1, W);
        return;
    }
    const DipoleType& type = dipoletype(t);
    Pen m = p;
    m.mirror = true;
    switch (type.picture) {
    case Picture::StepDownTank: tapped(p, true, false); return;
    case Picture::StepUpTank: tapped(m, true, false); return;
    case Picture::StepDownTankCa: tapped(p, true, true); return;
    case Picture::StepUpTankCa: tapped(m, true, true); return;
    case Picture::StepDownCoil: tapped(p, false, false); return;
    case Picture::StepUpCoil: tapped(m, false, false); return;
    case Picture::StepDown: windings(p, false); return;
    case Picture::StepUp: windings(p, true); return;
    case Picture::DividerIn: divider(p); return;
    case Picture::DividerOut: divider(m); return;
    case Picture::CoupledTuned:
    case Picture::CoupledSeriesTuned:
    case Picture::CoupledPrimaryTuned:
    case Picture::CoupledSecondaryTuned:
    case Picture::CoupledUntuned: coupled(p, type.picture); return;
    default: break;
    }
    if (type.place == Place::Shunt &&
        (type.picture == Picture::TapTank || type.picture == Picture::TapTankCa)) {
        // A shunt tank reached through a tap of its coil; with Ca from the tap to ground
        // on the second.
        double top = 0.18, bottom = 0.84, tap = 0.56, u = 0.5;
        p.line(0.5, 0, 0.5, 0.07);
        p.line(0.5, 0.07, 0.26, 0.07);
        p.line(0.26, 0.07, 0.26, tap);
        p.line(0.26, tap, u, tap);
        p.dot(u, tap);
        Pen r = p;
        r.mirror = !p.mirror;
        drawpart(r, Part::L, top, bottom, 1 - u, false, "");
        label(p, "L", u + 0.1, 0.28);
        p.line(u, top, 0.8, top);
        drawpart(p, Part::C, top, bottom, 0.8, false, "C");
        p.line(u, bottom, 0.8, bottom);
        if (type.picture == Picture::TapTankCa) {
            drawpart(p, Part::C, tap, bottom, 0.26, false, "Ca", true);
            p.line(0.26, bottom, u, bottom);
        }
        p.line(u, bottom, u, RAILLEVEL - 0.05);
        ground(p, u);
        return;
    }
    Net n;
    if (!network(t, n)) return;
    p.line(0.5, 0, 0.5, 0.06);
    double w = across(n);
    render(p, n, 0.06, 0.86, 0.5, false, std::min(0.32, 0.7 / std::max(1.0, w)));
    p.line(0.5, 0.86, 0.5, RAILLEVEL - 0.05);
    ground(p, 0.5);
}

void button(Surface& s, double x, double y, double w, double h, const std::string& caption) {
    s.line(x + 2, y + 2, x + w - 2, y + 2);
    s.line(x + w - 2, y + 2, x + w - 2, y + h - 2);
    s.line(x + w - 2, y + h - 2, x + 2, y + h - 2);
    s.line(x + 2, y + h - 2, x + 2, y + 2);
    s.drawtext(x + (w - s.textwidth(caption)) / 2, y + (h - s.textheight(caption)) / 2, caption);
}

} // namespace

void drawdipolepicture(Surface& s, int type, bool vertical, double x, double y, double w, double h) {
    Pen p{s, x, y, w, h};
    if (!vertical) {
        if (type == 8) return button(s, x, y, w, h, "DONE");
        if (type == 26) return button(s, x, y, w, h, "CANCEL");
        if (type == 25) {
            // The icon: a low-pass response over a frame.
            p.line(0.1, 0.9, 0.9, 0.9);
            p.line(0.1, 0.9, 0.1, 0.1);
            p.poly({{0.1, 0.3}, {0.45, 0.3}, {0.55, 0.38}, {0.65, 0.7}, {0.8, 0.86}, {0.9, 0.88}});
            return;
        }
        series(p, type);
        return;
    }
    if (type == 30) return button(s, x, y, w, h, "CANCEL");
    shunt(p, type);
}

void drawconnection(Surface& s, double x, double y, double w, double h) {
    Pen p{s, x, y, w, h};
    // The wire at mid height, and the tee down to the top of the shunt picture, whose
    // stub stands 0.156 of a cell to the right of the connection's left edge.
    p.line(0, 0.5, 1, 0.5);
    double tee = 0.625;
    p.line(tee, 0.5, tee, 0.5 + (1 - WIRELEVEL));
    double r = std::max(1.0, h * 0.025);
    s.fillrect(x + tee * w - r, y + 0.5 * h - r, x + tee * w + r, y + 0.5 * h + r);
}

} // namespace zelk
