#include "schematic/tolerance.h"

#include <cmath>

#include "core/designstore.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "entry/panel.h"
#include "schematic/schematicview.h"

namespace zelk {

void gettolerance() {
    panelclear();
    getdata.setnote("Enter component tolerances");
    panelrow(0, "R% =", "5", "Resistance tolerance");
    panelrow(1, "L% =", "5", "Inductance tolerance");
    panelrow(2, "Q% =", "20", "Inductor Q tolerance");
    panelrow(3, "C% =", "5", "Capacitance tolerance");
    if (!panelshow()) return;
    store.Rtol = panelvalue(0);
    store.Ltol = panelvalue(1);
    store.Qtol = panelvalue(2);
    store.Ctol = panelvalue(3);
}

void Tpercent(double& value, double percent) {
    // 0 and negative values would never reach 1 by multiplying by ten: they stay.
    if (percent == 0 || !(value > 0)) return;
    const double steps = 100 / percent;
    int e = 0;
    while (value < 1) {
        value = value * 10;
        ++e;
    }
    value = Int(value * steps + 0.5) / steps / std::pow(10.0, e);
}

void normalizenumber(double value, double& mantissa, int& exponent) {
    mantissa = value;
    exponent = 0;
    if (!(value > 0)) return;
    while (mantissa >= 10) {
        mantissa = mantissa / 10;
        ++exponent;
    }
    while (mantissa < 1) {
        mantissa = mantissa * 10;
        --exponent;
    }
}

void tolerance_Click() {
    sethelp("Sets a component tolerance for inductors and capacitors.",
            "The component values will be set to the nearest specified % of their ideal value.",
            "They are NOT set to the RETMA decade for that tolerance, but more like in the real world,",
            "are set to within some value better than or equal to that tolerance.");
    gettolerance();
    if (store.cancelled) return;
    DesignSlot& s = slot(store.curslot);
    const int n = s.count();
    // Every group is rounded by the inductor tolerance; the others only switch theirs on.
    const double percent = store.Ltol;
    if (store.Rtol > 0)
        for (int d = 1; d <= n; ++d) Tpercent(s.dip(d).R, percent);
    if (store.Ltol > 0)
        for (int d = 1; d <= n; ++d) {
            Tpercent(s.dip(d).L, percent);
            Tpercent(s.dip(d).La, percent);
        }
    if (store.Ctol > 0)
        for (int d = 1; d <= n; ++d) {
            Tpercent(s.dip(d).C, percent);
            Tpercent(s.dip(d).Ca, percent);
        }
    frame.designsaved = false;
    schematicbuild();
}

// ---------------------------------------------------------------------------------------
// The standard window

namespace {

struct Step {
    double ratio;
    double scale;
};
// .5%, 1%, 2%, 5%, 10%, 20%
constexpr Step steps[6] = {{1.012, 100},         {1.024275221, 100}, {1.049139729, 100},
                           {1.10100694171, 10}, {1.211527659, 10},  {1.467799268, 10}};

const char* const framecaptions[3] = {"R   .5%  1%    2%   5%  10%  20%",
                                      "L   .5%   1%    2%   5%  10%  20%",
                                      "C   .5%   1%   2%    5%  10%  20%"};

} // namespace

Standard::Standard() : Window("standard", "Standardize values") { build(); }

void Standard::reset() {
    controls.clear();
    loaded = visible = false;
    focusname.clear();
    focusindex = -1;
    Rratio = Lratio = Cratio = 0;
    Lscale = RCscale = 0;
    lower = 0;
    build();
}

void Standard::build() {
    clientwidth = 300;
    clientheight = 200;
    for (int g = 0; g < 3; ++g) {
        Control& f = add(ControlKind::Frame, "Frame" + std::to_string(g + 1), -1, framecaptions[g]);
        f.left = 10;
        f.top = 10 + 50 * g;
        f.width = 280;
        f.height = 45;
        for (int i = 0; i < 6; ++i) {
            int n = g * 6 + i + 1;
            Control& o = add(ControlKind::Option, "Option" + std::to_string(n));
            o.left = 30 + 40 * i;
            o.top = f.top + 20;
            o.width = 20;
            o.height = 20;
            o.onclick = [this, n](int) { Option_Click(n); };
        }
    }
    Control& ok = add(ControlKind::Button, "Command1", -1, "OK");
    ok.left = 40, ok.top = 165, ok.width = 90, ok.height = 28;
    ok.onclick = [this](int) { Command1_Click(); };
    Control& cancel = add(ControlKind::Button, "Command2", -1, "Cancel");
    cancel.left = 170, cancel.top = 165, cancel.width = 90, cancel.height = 28;
    cancel.onclick = [this](int) { Command2_Click(); };
}

void Standard::Option_Click(int n) {
    if (n < 1 || n > 18) return;
    const int g = (n - 1) / 6, i = (n - 1) % 6;
    // The options of a frame are exclusive.
    for (int k = 1; k <= 6; ++k) ctl("Option" + std::to_string(g * 6 + k)).value = (g * 6 + k == n);
    const Step& s = steps[i];
    switch (g) {
    case 0:
        Rratio = s.ratio;
        // Of the resistor options only .5% writes a scale, and it is the shared one.
        if (i == 0) RCscale = s.scale;
        break;
    case 1:
        Lratio = s.ratio;
        Lscale = s.scale;
        break;
    default:
        Cratio = s.ratio;
        RCscale = s.scale;
        break;
    }
}

void Standard::standardize(double& value, double ratio, double scale) {
    if (!(value > 0)) return;
    double mantissa;
    int exponent;
    normalizenumber(value, mantissa, exponent);
    // The series starts at 1 and climbs by the ratio.
    double upper = 1;
    while (mantissa > upper) {
        lower = upper;
        upper = upper * ratio;
    }
    double taken = mantissa - lower > upper - mantissa ? upper : lower;
    taken = hdiv(Int(taken * scale + 0.5), scale);
    value = taken * std::pow(10.0, exponent);
}

void Standard::Command1_Click() {
    if (store.lastslot < 0) return;
    DesignSlot& s = slot(store.curslot);
    const int n = s.count();
    // A fault (a resistor group with no scale chosen yet) leaves the design as it was.
    const auto before = s.dipoles;
    try {
        if (Rratio > 1)
            for (int d = 1; d <= n; ++d) standardize(s.dip(d).R, Rratio, RCscale);
        if (Lratio > 1) {
            for (int d = 1; d <= n; ++d) standardize(s.dip(d).L, Lratio, Lscale);
            for (int d = 1; d <= n; ++d) standardize(s.dip(d).La, Lratio, Lscale);
        }
        if (Cratio > 1) {
            for (int d = 1; d <= n; ++d) standardize(s.dip(d).C, Cratio, RCscale);
            for (int d = 1; d <= n; ++d) standardize(s.dip(d).Ca, Cratio, RCscale);
        }
    } catch (const RuntimeFault&) {
        s.dipoles = before;
        throw;
    }
    frame.designsaved = false;
    schematicbuild();
}

void Standard::Command2_Click() { hide(); }

void standardT_Click() { standard.show(); }

} // namespace zelk
