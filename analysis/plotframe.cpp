#include "analysis/plotframe.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "analysis/exacttime.h"
#include "analysis/walkers.h"
#include "core/commands.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/surface.h"
#include "core/notation.h"

namespace zelk {

namespace {

constexpr double BUTTONWIDTH = 1800, BUTTONHEIGHT = 360;

double log10of(double x) { return std::log(x) / std::log(10.0); }

// An axis label in engineering notation without the bare point of the notation ("1.K"
// reads "1K" on an axis).
std::string makeaxislabel(double v) {
    std::string t = engformatvalue(v);
    for (size_t i = 0; i < t.size(); ++i)
        if (t[i] == '.' && (i + 1 == t.size() || !(t[i + 1] >= '0' && t[i + 1] <= '9'))) {
            t.erase(i, 1);
            break;
        }
    if (v < 0 && (t.empty() || t[0] != '-')) t = "-" + t;
    return t;
}

// The axis numbers as strings, each formatted once. A redraw asks again for the numbers
// of the redraw before (a resize, the overlay, a statistics pass, a new span at the same
// levels), and the host's number formatting costs more than all the rest of the frame.
// Kept by the number's bits and its notation; engineering notation reads the nano
// setting in the nanoseconds' range, so that the setting is part of the key there.
enum class Notation : unsigned char { Plain, Engineering, EngineeringNano };

const std::string& numbertext(double v, Notation how) {
    struct Entry {
        std::uint64_t bits = 0;
        Notation how = Notation::Plain;
        bool made = false;
        std::string text;
    };
    static Entry memo[256];
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(v);
    Entry& e = memo[((bits ^ (bits >> 31)) * 0x9E3779B97F4A7C15ULL >> 56) ^ static_cast<unsigned>(how)];
    if (!e.made || e.bits != bits || e.how != how) {
        e.text = how == Notation::Plain ? Str(v) : makeaxislabel(v);
        e.bits = bits;
        e.how = how;
        e.made = true;
    }
    return e.text;
}

// Str of an axis number (the kept text: valid until the next number is asked for).
const std::string& axisstr(double v) { return numbertext(v, Notation::Plain); }

std::string axislabel(double v) {
    const double a = std::abs(v);
    const bool nano = a >= 1e-09 && a < 1e-06 && menuchecked("nano");
    return numbertext(v, nano ? Notation::EngineeringNano : Notation::Engineering);
}

// The code's kind letters of slot 0.
std::string codetail(size_t n) {
    const std::string& c = slot(0).code;
    return c.size() >= n ? c.substr(c.size() - n) : c;
}

long slotcolour(int s) { return RGB(0, 0, std::min(255, 255 * s)); }

// The grid lines of a logarithmic axis from lo to hi: in each decade the lines stand at
// the multiples of the decade's step, the first at (Int(lo/step) + 1)*step. Calls
// line(value, decade) for each line inside the axis.
template <class F> void loggrid(double lo, double hi, F line) {
    if (!(lo > 0) || !(hi > lo)) return;
    double step = std::pow(10.0, Int(log10of(lo) + 0.0001));
    double m = Int(lo / step) + 1;
    for (int guard = 0; guard < 400; ++guard) {
        double f = m * step;
        if (f >= hi * (1 - 1e-12)) break;
        bool decade = m >= 10 - 1e-9;
        line(f, decade);
        if (decade) {
            step *= 10;
            m = 2;
        } else {
            m += 1;
        }
    }
}

// The lines of the logarithmic frequency grid from lo to hi, each with its place in
// decades from lo, log10(f/lo), and the span in decades: kept for the span last asked
// for, as every redraw at that span asks for them again.
struct FrequencyGrid {
    struct Line {
        double f;
        bool decade;
        double decades;
    };
    std::uint64_t lo = 0, hi = 0;
    bool made = false;
    double span = 0;
    std::vector<Line> lines;
};

const FrequencyGrid& frequencygrid(double lo, double hi) {
    static FrequencyGrid g;
    const std::uint64_t klo = std::bit_cast<std::uint64_t>(lo), khi = std::bit_cast<std::uint64_t>(hi);
    if (!g.made || g.lo != klo || g.hi != khi) {
        g.lines.clear();
        loggrid(lo, hi, [&](double f, bool decade) { g.lines.push_back({f, decade, log10of(f / lo)}); });
        g.span = log10of(hi / lo);
        g.lo = klo, g.hi = khi, g.made = true;
    }
    return g;
}

// The curve's points on a linear scale, the values v[0..n) placed from the frame top
// as yof places them: t = k (v - c), or vertsize - k (v - c) for the time plots (FromTop);
// a point with t < vertsize is drawn at top + t (pen down), any other goes to the bottom
// edge with the pen lifted. Two points at a time in the compiler's vector extension
// (the processor's base vector width), the same operations lane by lane as one at a time.
typedef double D2 __attribute__((vector_size(2 * sizeof(double))));
typedef long long M2 __attribute__((vector_size(2 * sizeof(double))));

template <bool FromTop>
void placecurve(const double* v, int n, double k, double c, double vertsize, double top, double* y, bool* pen) {
    const double bottom = top + vertsize;
    const D2 vk = {k, k}, vc = {c, c}, vs = {vertsize, vertsize}, vtop = {top, top}, vbottom = {bottom, bottom};
    int i = 0;
    for (; i + 2 <= n; i += 2) {
        D2 a;
        std::memcpy(&a, v + i, sizeof a);
        const D2 t = FromTop ? vs - vk * (a - vc) : vk * (a - vc);
        const M2 inside = t < vs;
        const D2 out = (D2)(((M2)(vtop + t) & inside) | ((M2)vbottom & ~inside));
        std::memcpy(y + i, &out, sizeof out);
        pen[i] = inside[0] != 0;
        pen[i + 1] = inside[1] != 0;
    }
    for (; i < n; ++i) {
        const double t = FromTop ? vertsize - k * (v[i] - c) : k * (v[i] - c);
        pen[i] = t < vertsize;
        y[i] = pen[i] ? top + t : bottom;
    }
}

} // namespace

// ---------------------------------------------------------------------------------------
// Division tables and defaults

void dbdivision(double range, double& division, double& major) {
    static const double rows[][3] = {{30, 1, 10},  {60, 2, 20},  {90, 3, 30}, {120, 4, 20},
                                     {180, 5, 30}, {210, 6, 60}};
    for (auto& r : rows)
        if (range <= r[0]) {
            division = r[1];
            major = r[2];
            return;
        }
    division = 10;
    major = 60;
}

void defaultspan(double& f1, double& f2, bool widecr) {
    const DesignSlot& s = slot(0);
    const double w0 = s.w0, w1 = s.w1, w2 = s.w2, w3 = s.w3;
    std::string k2 = codetail(2), k3 = codetail(3);
    if (k2 == "CR") {
        if (widecr) {
            f1 = ((w0 * 0.5) / PI) / 2;
            f2 = ((w0 * 2) / PI) / 2;
        } else {
            f1 = ((w0 * 0.8) / PI) / 2;
            f2 = ((w0 * 1.2) / PI) / 2;
        }
    } else if (k2 == "CL" || k2 == "SB") {
        f1 = ((w0 * 0.99) / 2) / PI;
        f2 = ((w0 * 1.01) / 2) / PI;
    } else if (k2 == "LP" || k2 == "HP") {
        f1 = (w0 / PI) / 20;
        f2 = (w2 / PI) * 5;
    } else if (k3 == "TBP" || k3 == "TBR") {
        f1 = (w1 / PI) / 10;
        f2 = (w2 / PI) * 2.5;
    } else if (k2 == "BP" || k2 == "BR") {
        f1 = (w2 / PI) / 10;
        f2 = (w3 / PI) * 2.5;
    } else {
        f1 = (w0 / PI) / 20;
        f2 = (w0 / PI) * 5;
    }
}

PlotForm* findplot(std::string_view formname) {
    return dynamic_cast<PlotForm*>(findwindow(formname));
}

// ---------------------------------------------------------------------------------------
// The form

PlotForm::PlotForm(std::string formname, std::string name, PlotKind k, Quantity q, TimeKind tk,
                   int b, std::string pitem, std::string citem)
    : Window(std::move(formname), name), plotname(std::move(name)), kind(k), quantity(q),
      timekind(tk), buttons(b), printitem(std::move(pitem)), clipitem(std::move(citem)) {
    draws = true;
    unit = 15;
    Control& f = add(ControlKind::Picture, "frame");
    f.onmousedown = [this](int, int button, int, double x, double y) { frame_MouseDown(button, x, y); };
    f.onmousemove = [this](int, int, int, double x, double y) { frame_MouseMove(x, y); };
    static const char* names[] = {"Command1", "Command2", "Command3"};
    for (int i = 0; i < 3; ++i) {
        if (!(buttons & (1 << i))) continue;
        Control& c = add(ControlKind::Button, names[i]);
        if (i == 0) c.onclick = [this](int) { Command1_Click(); };
        if (i == 1) c.onclick = [this](int) { Command2_Click(); };
        if (i == 2) c.onclick = [this](int) { Command3_Click(); };
    }
    if (Control* c = find("Command1"))
        c->caption = timeplot() ? "Auto Scale" : "Set as Default";
    if (Control* c = find("Command2")) c->caption = "Restore Defaults";
    if (Control* c = find("Command3"))
        c->caption = quantity == Quantity::PEG || quantity == Quantity::PIG ? "Return Loss"
                                                                            : "Default Span";
}

void PlotForm::reset() {
    for (SweepKey& k : kept) k.valid = false;
    freq1 = freq2 = db1 = db2 = 0;
    Time = FM = N1 = N2 = DC = tone = 0;
    runmax = -240;
    zlow = 1000, zhigh = 0, measlow = meashigh = 0;
    anglelow = -10, anglehigh = 10;
    exactmatch = false;
    delaymax = 0;
    autoN1 = autoN2 = 0;
    tracked = returnloss = loading = shown = leftpressed = false;
    leftfreq = 0;
    passslots = 0;
    caption = plotname;
    overlay.on = false;
    for (auto& c : controls) {
        c->enabled = true;
        c->visible = true;
    }
}

void PlotForm::layout() {
    double top = clientheight - BUTTONHEIGHT - 120;
    double left = 300;
    for (const char* n : {"Command1", "Command2", "Command3"}) {
        Control* c = find(n);
        if (!c) continue;
        c->left = left;
        c->top = top;
        c->width = BUTTONWIDTH;
        c->height = BUTTONHEIGHT;
        left += BUTTONWIDTH + 300;
    }
    horzcent = 1100;
    frametop = 480;
    framewidth = std::max(1000.0, clientwidth - horzcent - 500);
    vertsize = std::max(1000.0, clientheight - frametop - 1100 - (BUTTONHEIGHT + 160));
    Control& f = ctl("frame");
    f.left = horzcent;
    f.top = frametop;
    f.width = framewidth;
    f.height = vertsize;
}

void PlotForm::open() {
    if (!loaded) {
        loading = true;
        // Half the height and two thirds of the width of the frame's client area,
        // staggered by 300 twips from the plot before.
        clientwidth = plotshared.frameclientwidth * 2 / 3;
        clientheight = plotshared.frameclientheight / 2;
        plotshared.plotstagger += 300;
        if (plotshared.plotstagger > plotshared.frameclientheight / 2) plotshared.plotstagger = 300;
        left = top = plotshared.plotstagger;
        layout();
        caption = plotname;
        show();
        loading = false;
    } else {
        show();
    }
    if (surface) surface->cls();
}

void PlotForm::resized() {
    layout();
    if (loading || !loaded) return;
    plotshared.fixedscale = true;
    redraw();
    plotshared.fixedscale = false;
}

void PlotForm::deactivate() {
    // The plot goes away: its print and clipboard items go off with it.
    setenabled(printitem, false);
    setenabled(clipitem, false);
    setenabled(exportitem(printitem), false);
    shown = false;
    overlay.on = false;
    leftpressed = false;
}

double PlotForm::yof(double v) const {
    double y;
    if (kind == PlotKind::Impedance) {
        double lo = std::max(db1, 0.1), hi = db2;
        if (!(v > 0) || !(hi > lo)) return vertsize;
        y = vertsize * log10of(hi / v) / log10of(hi / lo);
    } else if (kind == PlotKind::Time) {
        double range = N1 - N2;
        if (range == 0) return vertsize;
        y = vertsize - (vertsize / range) * (v - N2);
    } else {
        double range = db2 - db1;
        if (range == 0) return vertsize;
        y = (vertsize / (db1 - db2)) * (v - db2);
    }
    if (!(y < vertsize)) y = vertsize; // below the frame, or not a number
    return y;
}

// ---------------------------------------------------------------------------------------
// Axes

namespace {

void gridline(Surface& s, double x1, double y1, double x2, double y2) { s.line(x1, y1, x2, y2); }

void framebox(PlotForm& p) {
    Surface& s = *p.surface;
    double l = p.horzcent, t = p.frametop, r = l + p.framewidth, b = t + p.vertsize;
    s.setcolour(BLACK);
    s.line(l, t, r, t);
    s.line(r, t, r, b);
    s.line(r, b, l, b);
    s.line(l, b, l, t);
}

// A label right-aligned 100 twips left of the frame, centred on the line at y.
void leftlabel(PlotForm& p, double y, const std::string& text, bool degree = false) {
    Surface& s = *p.surface;
    double w = s.textwidth(text) + (degree ? s.textwidth("o") * 0.8 : 0);
    double x = p.horzcent - 100 - w;
    double h = s.textheight(text);
    s.drawtext(x, y - h / 2, text);
    if (degree) s.drawtext(x + s.textwidth(text), y - h / 2 - h * 0.35, "o");
}

// The footer lines under the frame and the design titles.
void footer(PlotForm& p, const std::string& text) {
    Surface& s = *p.surface;
    double h = s.textheight("X");
    double y = p.frametop + p.vertsize + h * 1.4;
    s.setcolour(BLACK);
    s.drawtext(p.horzcent + (p.framewidth - s.textwidth(text)) / 2, y, text);
    y += h * 1.2;
    s.drawtext(p.horzcent, y, slot(0).designtitle);
    if (store.lastslot > 0) {
        y += h;
        s.setcolour(BLUE);
        s.drawtext(p.horzcent, y, slot(1).designtitle);
        s.setcolour(BLACK);
    }
}

void heading(PlotForm& p) {
    Surface& s = *p.surface;
    s.setcolour(BLACK);
    s.setbold(true);
    s.drawtext(p.horzcent + (p.framewidth - s.textwidth(p.plotname)) / 2, 120, p.plotname);
    s.setbold(false);
}

// A linear vertical grid from lo to hi with the given division; labels by the predicate.
template <class L> void lineargrid(PlotForm& p, double lo, double hi, double division, L label) {
    Surface& s = *p.surface;
    if (!(division > 0) || !(hi > lo)) return;
    // A range of a great many divisions draws the first 400.
    int n = clampint(std::floor((hi - lo) / division + 1e-9), 0, 400);
    for (int i = 0; i <= n; ++i) {
        double v = lo + i * division;
        double y = p.frametop + p.vertsize * (hi - v) / (hi - lo);
        gridline(s, p.horzcent, y, p.horzcent + p.framewidth, y);
        label(v, y, i == n);
    }
}

// A step of 1, 2 or 5 times a power of ten that gives about ten divisions of range.
double nicestep(double range) {
    if (!(range > 0)) return 1;
    double e = std::pow(10.0, std::floor(log10of(range / 10)));
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (range / (m * e) <= 12) return m * e;
    return 10 * e;
}

} // namespace

void dbaxis(PlotForm& p) {
    double division, major;
    dbdivision(p.db2 - p.db1, division, major);
    // Both limits rounded out to whole divisions.
    p.db1 = Int(p.db1 / division) * division;
    p.db2 = -Int(-p.db2 / division) * division;
    if (p.db2 <= p.db1) p.db2 = p.db1 + division;
    if (!p.surface) return;
    Surface& s = *p.surface;
    s.setcolour(BLACK);
    lineargrid(p, p.db1, p.db2, division, [&](double v, double y, bool top) {
        double r = v / major - Int(v / major + 0.001);
        if (r <= 0 || top) leftlabel(p, y, axisstr(v) + "db");
    });
    footer(p, axisstr(division) + "db/div by log frequency");
}

void frequencyaxis(PlotForm& p) {
    if (p.surface) {
        Surface& s = *p.surface;
        s.setcolour(BLACK);
        const double lo = p.freq1, hi = p.freq2;
        const FrequencyGrid& grid = frequencygrid(lo, hi);
        const double span = grid.span;
        double yb = p.frametop + p.vertsize;
        double h = s.textheight("X");
        double lastright = -1e9;
        auto label = [&](double x, const std::string& t, double w) {
            double lx = std::clamp(x - w / 2, p.horzcent - w / 2, p.horzcent + p.framewidth - w / 2);
            if (lx < lastright + 60) return;
            s.drawtext(lx, yb + h * 0.2, t);
            lastright = lx + w;
        };
        const std::string lotext = axislabel(lo), hitext = axislabel(hi);
        label(p.horzcent, lotext, s.textwidth(lotext));
        double endx = p.horzcent + p.framewidth;
        double endw = s.textwidth(hitext);
        for (const FrequencyGrid::Line& g : grid.lines) {
            double x = p.horzcent + p.framewidth * g.decades / span;
            s.line(x, p.frametop, x, yb);
            if (!g.decade) continue;
            const std::string t = axislabel(g.f);
            const double w = s.textwidth(t);
            if (x + w / 2 < endx - endw / 2 - 60) label(x, t, w);
        }
        label(endx, hitext, endw);
        framebox(p);
        heading(p);
    }
    sethelp("When the cursor is inside the area bounded by the graph, a red vertical bar follows the cursor.",
            "Clicking the left mouse button will replace the title of the plots window with the exact frequency and value at the cursor position.",
            "Clicking the right button will redraw the plot from the last left button frequency to the right button",
            "This refers to the first filter opened (plotted in BLACK).");
}

void impedanceaxis(PlotForm& p) {
    if (p.db1 < 0.1) p.db1 = 0.1;
    if (p.db2 <= p.db1) p.db2 = p.db1 * 10;
    if (!p.surface) return;
    Surface& s = *p.surface;
    s.setcolour(BLACK);
    double lo = p.db1, hi = p.db2, span = log10of(hi / lo);
    double xr = p.horzcent + p.framewidth;
    auto yat = [&](double z) { return p.frametop + p.vertsize * log10of(hi / z) / span; };
    leftlabel(p, yat(lo), axislabel(lo));
    double toph = s.textheight("X");
    loggrid(lo, hi, [&](double z, bool decade) {
        double y = yat(z);
        s.line(p.horzcent, y, xr, y);
        if (decade && y > p.frametop + toph && y < p.frametop + p.vertsize - toph)
            leftlabel(p, y, axislabel(z));
    });
    leftlabel(p, yat(hi), axislabel(hi));
    footer(p, "log ohms/div by log frequency");
}

void delayaxis(PlotForm& p) {
    p.db1 = 0;
    if (!(p.db2 > 0)) p.db2 = 1e-6;
    if (!p.surface) return;
    double division = p.db2 / 10;
    lineargrid(p, p.db1, p.db2, division, [&](double v, double y, bool) {
        leftlabel(p, y, axislabel(v) + "s");
    });
    footer(p, axislabel(division) + "s/div by log frequency");
}

void phaseaxis(PlotForm& p) {
    if (p.db2 <= p.db1) p.db2 = p.db1 + 10;
    if (!p.surface) return;
    double range = p.db2 - p.db1;
    double division = 1;
    for (double d : {1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 45.0, 90.0, 180.0})
        if (range / d <= 16) {
            division = d;
            break;
        }
    if (range / division > 16) division = nicestep(range);
    lineargrid(p, p.db1, p.db2, division, [&](double v, double y, bool) {
        leftlabel(p, y, axisstr(v), true);
    });
    footer(p, axisstr(division) + " degrees/div" + " by " + "log frequency" + "/div");
}

void timeaxis(PlotForm& p) {
    if (!p.surface) return;
    Surface& s = *p.surface;
    s.setcolour(BLACK);
    double yb = p.frametop + p.vertsize, h = s.textheight("X");
    for (int i = 0; i <= 10; ++i) {
        double x = p.horzcent + p.framewidth * i / 10;
        s.line(x, p.frametop, x, yb);
        if (i % 2 == 0) {
            std::string t = axislabel(p.Time * i / 10) + "sec";
            double w = s.textwidth(t);
            s.drawtext(std::clamp(x - w / 2, p.horzcent - w / 2, p.horzcent + p.framewidth - w), yb + h * 0.2, t);
        }
    }
    framebox(p);
    heading(p);
    sethelp("When the cursor is inside the area bounded by the graph, a red vertical bar follows the cursor.",
            "Clicking the left mouse button will replace the title of the plots window",
            "with the exact time and amplitude at the cursor position.",
            "The [Window] menu can be used to select or arrange multiple plots on the screen.");
}

void amplitudeaxis(PlotForm& p) {
    if (p.N1 <= p.N2) p.N1 = p.N2 + 1;
    if (!p.surface) return;
    double division = nicestep(p.N1 - p.N2);
    double lo = std::ceil(p.N2 / division - 1e-9) * division;
    Surface& s = *p.surface;
    s.setcolour(BLACK);
    for (int i = 0; i < 400; ++i) {
        double v = lo + i * division;
        if (v > p.N1 + division * 1e-9) break;
        double y = p.frametop + p.vertsize - p.vertsize * (v - p.N2) / (p.N1 - p.N2);
        s.line(p.horzcent, y, p.horzcent + p.framewidth, y);
        leftlabel(p, y, axisstr(std::abs(v) < division * 1e-6 ? 0 : v));
    }
    footer(p, axislabel(p.Time / 10) + "sec/div" + " by " + axisstr(division) + "/div");
}

// ---------------------------------------------------------------------------------------
// Drawing

void PlotForm::drawaxes() {
    switch (kind) {
    case PlotKind::Gain:
    case PlotKind::ReturnLoss:
        dbaxis(*this);
        frequencyaxis(*this);
        break;
    case PlotKind::Impedance:
        impedanceaxis(*this);
        frequencyaxis(*this);
        break;
    case PlotKind::Phase:
        phaseaxis(*this);
        frequencyaxis(*this);
        break;
    case PlotKind::Delay:
        delayaxis(*this);
        frequencyaxis(*this);
        break;
    case PlotKind::Time:
        amplitudeaxis(*this);
        timeaxis(*this);
        break;
    }
}

bool PlotForm::redraw() {
    if (surface) surface->cls();
    overlay.on = false;
    if (freq1 > 0 && freq2 > 0 && freq2 < freq1 && !timeplot()) std::swap(freq1, freq2);
    if (!plotshared.fixedscale) {
        runmax = -240;
        zlow = 1000, zhigh = 0;
        anglelow = -10, anglehigh = 10;
        exactmatch = false;
        delaymax = 0;
        tracked = false;
        autoN1 = autoN2 = 0;
    }
    drawaxes();
    desktop().busy(true);
    bool ok = true;
    passslots = 0;
    try {
        for (int s = 0; s <= store.lastslot && ok; ++s) {
            ok = timeplot() ? timepass(s) : frequencypass(s, quantity, slotcolour(s));
            if (ok) passslots = s + 1;
        }
        if (ok && timeplot()) ok = drawexactcurves(*this);
        if (ok && returnloss && (quantity == Quantity::PEG || quantity == Quantity::PIG)) {
            // The return-loss overlay keeps the curves of the gain in the arrays.
            auto keepx = xs, keepv = values;
            for (int s = 0; s <= store.lastslot && ok; ++s)
                ok = frequencypass(s, Quantity::ReturnLossOverlay, s == 0 ? RED : RGB(255, 0, 255));
            xs = keepx, values = keepv;
        }
    } catch (const RuntimeFault&) {
        // A run-time fault of the plot's own arithmetic ends the command with the host's
        // box; the half-drawn plot goes with it.
        desktop().busy(false);
        passslots = 0;
        unload();
        throw;
    }
    desktop().busy(false);
    if (!ok) {
        // No half-plot stays on the screen.
        store.abortanalysis = false;
        unload();
        return false;
    }
    if (!plotshared.fixedscale) finishranging();
    if (!timeplot()) plotshared.lastfrequencyplot = formname;
    if (surface) surface->setcolour(BLACK);
    refresh();
    return true;
}

bool PlotForm::addpass(int s) {
    const bool ok = timeplot() ? timepass(s) : frequencypass(s, quantity, slotcolour(s));
    if (ok && passslots < s + 1) passslots = s + 1;
    if (surface) surface->setcolour(BLACK);
    refresh();
    return ok;
}

const PlotForm::SweepGrid& PlotForm::sweepgrid() {
    if (!grid.made || grid.f1 != freq1 || grid.f2 != freq2 || grid.npoints != store.npoints) {
        grid.made = false; // until the frequencies are made whole (a span the host refuses)
        sweepfrequencies(freq1, freq2, grid.w.data());
        for (size_t i = 0; i < SWEEPPOINTS; ++i) {
            grid.iw[i] = 1.0 / grid.w[i];
            grid.hz[i] = grid.w[i] / TWOPI;
        }
        grid.f1 = freq1;
        grid.f2 = freq2;
        grid.npoints = store.npoints;
        static std::uint64_t stamps = 0;
        grid.stamp = ++stamps;
        grid.made = true;
    }
    return grid;
}

bool PlotForm::frequencypass(int s, Quantity q, long colour) {
    double* v = values[static_cast<size_t>(s)].data();
    const SweepGrid& g = sweepgrid();
    // The plot's own quantity may keep the values of the pass before (the return-loss
    // overlay's passes write the arrays and put the gains back).
    if (!(q == quantity ? keptsweepvalues(q, s, g.w.data(), g.iw.data(), v, kept[static_cast<size_t>(s)], g.stamp)
                        : sweepvalues(q, s, g.w.data(), v)))
        return false;
    xs[static_cast<size_t>(s)] = g.hz;

    // Automatic ranging of the pass: one loop per kind, the running limits held in
    // locals through it.
    if (q == quantity && !plotshared.fixedscale) {
        switch (kind) {
        case PlotKind::Gain: {
            double m = runmax;
            for (int i = 0; i < SWEEPPOINTS; ++i)
                if (v[i] > m) m = Int(v[i]) + 1;
            runmax = m;
            break;
        }
        case PlotKind::Impedance: {
            double lo = zlow, hi = zhigh;
            for (int i = 0; i < SWEEPPOINTS; ++i) {
                if (v[i] < lo) lo = v[i];
                if (v[i] > hi) hi = v[i];
            }
            zlow = lo, zhigh = hi;
            break;
        }
        case PlotKind::ReturnLoss:
        case PlotKind::Phase: {
            double lo = anglelow, hi = anglehigh;
            bool match = exactmatch;
            for (int i = 0; i < SWEEPPOINTS; ++i) {
                const double x = v[i];
                if (kind == PlotKind::ReturnLoss && x == 120) match = true;
                if (x > hi) hi = Int(x / 10) * 10 + 10;
                if (x < lo) lo = Int(x / 10) * 10 - 10;
            }
            anglelow = lo, anglehigh = hi, exactmatch = match;
            break;
        }
        case PlotKind::Delay: {
            // The first point carries no previous phase and sets no scale.
            double m = delaymax;
            for (int i = 1; i < SWEEPPOINTS; ++i)
                if (v[i] > m) m = v[i];
            delaymax = m;
            break;
        }
        case PlotKind::Time: break;
        }
    }
    if (!surface) return true;
    surface->setcolour(colour);
    // The phase starts at its first value, the other curves on the bottom edge.
    drawcurve(v, 1, horzcent, kind == PlotKind::Phase ? frametop + yof(v[0]) : frametop + vertsize);
    return true;
}

const double* PlotForm::curveplaces() {
    if (!places.made || places.horzcent != horzcent || places.framewidth != framewidth ||
        places.npoints != store.npoints) {
        for (int i = 0; i < SWEEPPOINTS; ++i)
            places.x[static_cast<size_t>(i)] = horzcent + framewidth * i / store.npoints;
        places.horzcent = horzcent;
        places.framewidth = framewidth;
        places.npoints = store.npoints;
        places.made = true;
    }
    return places.x.data();
}

void PlotForm::drawcurve(const double* v, int first, double x0, double y0) {
    // A point below the frame (or not a number) lifts the pen and stands on the bottom
    // edge; the next point inside draws up from there.
    double x[SWEEPPOINTS + 1], y[SWEEPPOINTS + 1];
    bool pen[SWEEPPOINTS + 1];
    const int n = SWEEPPOINTS - first;
    const double top = frametop, bottom = frametop + vertsize;
    const double range = kind == PlotKind::Time ? N1 - N2 : db2 - db1;
    if (kind == PlotKind::Impedance || range == 0) {
        for (int k = 1; k <= n; ++k) {
            const double t = yof(v[first + k - 1]);
            pen[k] = t < vertsize;
            y[k] = pen[k] ? top + t : bottom;
        }
    } else if (kind == PlotKind::Time) {
        placecurve<true>(v + first, n, vertsize / range, N2, vertsize, top, y + 1, pen + 1);
    } else {
        placecurve<false>(v + first, n, vertsize / (db1 - db2), db2, vertsize, top, y + 1, pen + 1);
    }
    const double* xp = curveplaces() + first;
    std::copy(xp, xp + n, x + 1);
    x[0] = x0, y[0] = y0, pen[0] = false;
    surface->polyline(x, y, pen, n + 1);
}

bool PlotForm::timepass(int s) {
    Harmonics h;
    if (!harmonicpass(timekind, s, Time, DC, tone, h)) return false;
    double* x = xs[static_cast<size_t>(s)].data();
    double* v = values[static_cast<size_t>(s)].data();
    timevalues(timekind, h, Time, v);
    for (int i = 0; i < SWEEPPOINTS; ++i) x[i] = Time * i / store.npoints;

    if (!plotshared.fixedscale && s == 0) {
        // The automatic limits, from their start values by the rounding of each kind.
        switch (timekind) {
        case TimeKind::Impulse: autoN1 = 1, autoN2 = -1; break;
        case TimeKind::Step: autoN1 = 0.1, autoN2 = 0; break;
        case TimeKind::Pulse:
        case TimeKind::TonePulse: autoN1 = 0.1, autoN2 = -0.1; break;
        }
    }
    if (!plotshared.fixedscale) {
        for (int i = 0; i < SWEEPPOINTS; ++i) {
            double val = v[i];
            switch (timekind) {
            case TimeKind::Impulse:
                if (val > autoN1) autoN1 = Int(val) + 1, tracked = true;
                if (val < autoN2) autoN2 = Int(val) - 1, tracked = true;
                break;
            case TimeKind::Step:
                if (val > autoN1) autoN1 = Int(val * 10) / 10 + 0.1, tracked = true;
                if (val < autoN2) autoN2 = Int(val * 10) / 10 - 0.1, tracked = true;
                break;
            case TimeKind::Pulse:
                if (val > autoN1) autoN1 = Int(val * 10) / 10 + 0.2, tracked = true;
                if (val < autoN2) autoN2 = Int(val * 10) / 10 - 0.2, tracked = true;
                break;
            case TimeKind::TonePulse:
                // Taken literally: the tone pulse's limits come from -2 times the value.
                if (val > autoN1) autoN1 = Int(-2 * val * 10) / 10 - 0.2, tracked = true;
                if (val < autoN2) autoN2 = Int(-2 * val * 10) / 10 + 0.2, tracked = true;
                break;
            }
        }
    }
    if (!surface) return true;
    surface->setcolour(slotcolour(s));
    drawcurve(v, 0, horzcent, frametop + vertsize);
    return true;
}

// Rounds the measured extremes of the pass and sets Command2 by them.
void PlotForm::finishranging() {
    if (kind == PlotKind::Impedance) {
        if (zhigh > 0) {
            double lo = zlow, hi = zhigh;
            // Lower: to a multiple of the power of ten below it; upper: up to the next one.
            if (lo >= 10) {
                double s = std::pow(10.0, std::floor(log10of(lo)));
                lo = Int(lo / s) * s;
            }
            if (hi < 10) hi = Int(hi) + 1;
            else if (hi < 100) hi = Int(hi / 10) * 10 + 10;
            else if (hi < 1000) hi = Int(hi / 100) * 100 + 100;
            else if (hi < 10000) hi = Int(hi / 1000) * 1000 + 1000;
            else if (hi < 100000) hi = Int(hi / 10000) * 10000 + 10000;
            else hi = 1000000;
            measlow = lo, meashigh = hi;
            if (Control* c = find("Command2")) c->enabled = lo != hi;
        }
    } else if (kind == PlotKind::Phase) {
        measlow = anglelow, meashigh = anglehigh;
    } else if (kind == PlotKind::ReturnLoss) {
        measlow = anglelow, meashigh = anglehigh;
        if (Control* c = find("Command2")) c->enabled = !exactmatch;
    } else if (kind == PlotKind::Delay) {
        if (delaymax > 0) {
            double u = std::pow(10.0, Fix(log10of(delaymax)) - 1);
            delaymax = Int(delaymax / u + 0.99) * u;
        }
    }
}

// ---------------------------------------------------------------------------------------
// Cursor and expansion

double PlotForm::valueat(double wA, Quantity q) {
    store.wA = wA;
    if (q == Quantity::GroupDelay) {
        // The first difference with the sweep's step below this frequency.
        GroupDelayState gd;
        store.wA = wA / std::pow(freq2 / freq1, 1.0 / store.npoints);
        response(q, 0, gd);
        if (store.abortanalysis) return 0;
        store.wA = wA;
        return response(q, 0, gd);
    }
    return response(q, 0);
}

void PlotForm::frame_MouseMove(double x, double y) {
    bool inside = x >= horzcent && x <= horzcent + framewidth && y >= frametop &&
                  y <= frametop + vertsize;
    if (inside) {
        overlay.on = true;
        overlay.x1 = overlay.x2 = x;
        overlay.y1 = 0.1 * clientheight;
        overlay.y2 = overlay.y1 + 0.65 * clientheight;
        overlay.colour = RED;
    } else {
        overlay.on = false;
        caption = plotname;
    }
    refresh();
}

void PlotForm::frame_MouseDown(int button, double x, double y) {
    (void)y;
    if (framewidth <= 0) return;
    double frac = (x - horzcent) / framewidth;
    if (timeplot()) {
        if (button != 1 || passslots == 0) return;
        int idx = clampint(Int(frac * store.npoints), -1, SWEEPPOINTS);
        if (idx < 0 || idx >= SWEEPPOINTS) return;
        double v = Int(values[0][static_cast<size_t>(idx)] * 1000) / 1000;
        caption = Str(v) + "volts @ " + engformatvalue(frac * Time) + "sec";
        refresh();
        return;
    }
    if (!(freq1 > 0) || !(freq2 > 0)) return;
    double wA = (TWOPI * freq1) * std::pow(freq2 / freq1, frac);
    if (button == 1) {
        double v = valueat(wA, quantity);
        if (store.abortanalysis) {
            store.abortanalysis = false;
            return;
        }
        v = Int(v * 100) / 100;
        const char* unitname = kind == PlotKind::Impedance ? " ohms @ "
                               : kind == PlotKind::Phase   ? " degrees @ "
                               : kind == PlotKind::Delay   ? " sec @ "
                                                           : " db @ ";
        caption = Str(v) + unitname + engformatvalue(wA / 2 / PI) + "Hz";
        leftpressed = true;
        leftfreq = wA / 2 / PI;
        if (kind == PlotKind::Gain && codetail(2) != "BR") db1 = v;
        refresh();
    } else if (button == 2) {
        if (!leftpressed) return;
        double f = wA / 2 / PI;
        if (f == leftfreq) return;
        if (kind == PlotKind::Gain && codetail(2) != "BR") {
            double v = valueat(wA, quantity);
            if (store.abortanalysis) {
                store.abortanalysis = false;
                return;
            }
            if (v < db1) db1 = v;
            db2 = runmax;
        }
        freq1 = leftfreq;
        freq2 = f;
        redraw();
    }
}

// ---------------------------------------------------------------------------------------
// Buttons

void PlotForm::setplotdefaults() {
    defaultspan(freq1, freq2, kind == PlotKind::Impedance);
    switch (kind) {
    case PlotKind::Gain: {
        double a = slot(0).Astop;
        db2 = plotshared.plotdb1 != 0 ? plotshared.plotdb1 : 0;
        db1 = plotshared.plotdb2 != 0 ? plotshared.plotdb2 : a != 0 ? -(a * 2) : -60;
        break;
    }
    case PlotKind::Impedance:
        db1 = meashigh > 0 ? measlow : 1;
        db2 = meashigh > 0 ? meashigh : 1000;
        break;
    case PlotKind::ReturnLoss:
    case PlotKind::Phase:
        db1 = measlow;
        db2 = meashigh;
        if (db1 == 0 && db2 == 0) db1 = -10, db2 = 10;
        break;
    case PlotKind::Delay:
        if (delaymax > 0) db2 = delaymax;
        break;
    case PlotKind::Time: break;
    }
}

void PlotForm::Command1_Click() {
    if (timeplot()) {
        if (timekind == TimeKind::Impulse && !tracked) {
            N1 = 2;
            N2 = -1;
        } else {
            N1 = autoN1;
            N2 = autoN2;
        }
        plotshared.fixedscale = true;
        redraw();
        plotshared.fixedscale = false;
        return;
    }
    // Remembered for the next prompts.
    plotshared.plotfreq1 = freq1;
    plotshared.plotfreq2 = freq2;
    plotshared.plotdb2 = db1;
}

void PlotForm::Command2_Click() {
    setplotdefaults();
    bool keep = kind == PlotKind::Impedance || kind == PlotKind::Phase || kind == PlotKind::ReturnLoss;
    plotshared.fixedscale = keep;
    redraw();
    plotshared.fixedscale = false;
}

void PlotForm::Command3_Click() {
    if (quantity == Quantity::PEG || quantity == Quantity::PIG) {
        returnloss = true;
        plotshared.fixedscale = true;
        redraw();
        plotshared.fixedscale = false;
        return;
    }
    defaultspan(freq1, freq2, false);
    redraw();
}

} // namespace zelk
