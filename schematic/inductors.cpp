#include "schematic/inductors.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "core/paths.h"
#include "schematic/schematicview.h"

namespace zelk {

namespace {

const char* const FORMSFILE = "\\tables\\Forms.txt";
const char* const AWGFILE = "\\tables\\awg.txt";
const char* const ERRORTITLE = "Inductor Design Error";

// The items of a table file as sequential input reads them: separated by commas and
// line ends, a quoted item is its text without the quotes.
class Items {
  public:
    explicit Items(std::string text) : t_(std::move(text)) {}
    bool next(std::string& item, bool& quoted) {
        while (i_ < t_.size() && (t_[i_] == ' ' || t_[i_] == '\t' || t_[i_] == '\r' || t_[i_] == '\n')) ++i_;
        if (i_ >= t_.size()) return false;
        item.clear();
        quoted = t_[i_] == '"';
        if (quoted) {
            size_t close = t_.find('"', i_ + 1);
            if (close == std::string::npos) close = t_.size();
            item = t_.substr(i_ + 1, close - i_ - 1);
            i_ = close < t_.size() ? close + 1 : close;
            while (i_ < t_.size() && !delimiter(t_[i_])) ++i_;
        } else {
            size_t start = i_;
            while (i_ < t_.size() && !delimiter(t_[i_])) ++i_;
            item = t_.substr(start, i_ - start);
            while (!item.empty() && (item.back() == ' ' || item.back() == '\t')) item.pop_back();
        }
        if (i_ < t_.size() && t_[i_] == ',') ++i_;
        return true;
    }

  private:
    std::string t_;
    size_t i_ = 0;
    static bool delimiter(char c) { return c == ',' || c == '\r' || c == '\n'; }
};

// True when the unquoted item is a number as a whole.
bool isnumber(const std::string& item, bool quoted) {
    if (quoted || item.empty()) return false;
    std::istringstream in(item);
    double v;
    in >> v;
    return !in.fail() && in.eof();
}

bool readfile(const char* literal, std::string& text) {
    std::ifstream in(mappath(literal), std::ios::binary);
    if (!in) return false;
    std::ostringstream s;
    s << in.rdbuf();
    text = s.str();
    return true;
}

std::string damaged(const char* literal, const std::string& what) {
    return std::string("The table ") + literal + " " + what + ".";
}

} // namespace

AirWinding airwinding(double target, double diameter, double turnsperinch) {
    AirWinding w;
    if (!(turnsperinch > 0)) return w;
    w.coilradius = (1 / turnsperinch + diameter) / 2;
    if (!(target > 0)) return w;
    // A coil of a million turns is no coil; the cap keeps an absurd target finite (its
    // length then ends the layer loop and the accept check refuses it).
    const double maxturns = 1e6;
    while (w.coillength < w.coilradius * 2) {
        w.turns = 0;
        w.layers = w.layers + 1;
        double value = 0;
        while (value < target && w.turns < maxturns) {
            w.turns = w.turns + 0.5;
            // The length counts whole turns only and grows with the layer count.
            w.coillength = Int(w.turns) / turnsperinch * w.layers;
            value = (w.turns * w.coilradius) * (w.turns * w.coilradius) /
                    (9 * w.coilradius + 10 * w.coillength);
        }
        // Under one whole turn the length stays 0 whatever the layers: one layer it is.
        if (w.coillength == 0) break;
    }
    return w;
}

double toroidturns(const std::string& core, double L, double AL) {
    if (!(L > 0) || !(AL > 0)) return 0;
    const char first = core.empty() ? ' ' : core.front();
    switch (first) {
    case 'F':
    case 'P': return 1000 * hsqr(L * 1000 / AL);
    case 'L': return 100 * hsqr(L * 1000000 / (AL * 0.9));
    default: return 100 * hsqr(L * 1000000 / AL);
    }
}

std::vector<std::string> inductorlist() {
    std::vector<std::string> out;
    if (store.lastslot < 0) return out;
    const DesignSlot& s = slot(0);
    const int count = std::min(s.count(), MAXDIPOLE);
    for (int n = 1; n <= count; ++n) {
        const Dipole& d = s.dip(n);
        const Fields coils = dipoletype(d.type).coils;
        if (d.L > 0 && has(coils, Field::L)) out.push_back("L" + numtext(n));
        if (d.La > 0 && has(coils, Field::La)) out.push_back("La" + numtext(n));
    }
    return out;
}

std::string readforms(std::vector<CoreForm>& out) {
    out.clear();
    std::string text;
    if (!readfile(FORMSFILE, text)) return damaged(FORMSFILE, "cannot be opened (File not found)");
    Items items(text);
    std::string item;
    bool quoted = false;
    if (!items.next(item, quoted) || !isnumber(item, quoted) || Val(item) < 1)
        return damaged(FORMSFILE, "does not begin with the number of cores");
    const int n = static_cast<int>(std::min(Fix(Val(item)), 10000.0));
    for (int k = 0; k < n; ++k) {
        CoreForm f;
        std::string size;
        bool q1, q2, q3, q4;
        if (!items.next(f.name, q1) || !items.next(size, q2) || !items.next(f.AL, q3) || !items.next(f.range, q4))
            return damaged(FORMSFILE, "ends after " + std::to_string(k) + " of " + std::to_string(n) + " cores");
        if (!isnumber(size, q2) || !(Val(f.AL) > 0))
            return damaged(FORMSFILE, "has a bad size or inductance factor for core " + std::to_string(k + 1));
        f.formsize = Val(size);
        out.push_back(std::move(f));
    }
    return {};
}

std::string readgauges(std::vector<WireGauge>& out) {
    out.clear();
    std::string text;
    if (!readfile(AWGFILE, text)) return damaged(AWGFILE, "cannot be opened (File not found)");
    Items items(text);
    for (int k = 0; k <= 30; ++k) {
        WireGauge g;
        std::string tpi;
        bool q1, q2;
        if (!items.next(g.gauge, q1) || !items.next(tpi, q2))
            return damaged(AWGFILE, "ends after " + std::to_string(k) + " of 31 wire gauges");
        if (!isnumber(tpi, q2) || !(Val(tpi) > 0))
            return damaged(AWGFILE, "has a bad turns per inch for gauge " + g.gauge);
        g.turnsperinch = Val(tpi);
        out.push_back(std::move(g));
    }
    return {};
}

InductorsWindow::InductorsWindow() : Window("inductors", "Design Inductors") { build(); }

void InductorsWindow::reset() {
    controls.clear();
    loaded = visible = false;
    airwound = false;
    core.clear();
    gauge.clear();
    formsize = turnsperinch = turns = coillength = coilradius = 0;
    layers = 0;
    inductornumber = 0;
    toroidrow = airrow = -1;
    forms.clear();
    gauges.clear();
    build();
}

void InductorsWindow::build() {
    clientwidth = 640;
    clientheight = 420;
    auto place = [](Control& c, double l, double t, double w, double h) -> Control& {
        c.left = l;
        c.top = t;
        c.width = w;
        c.height = h;
        return c;
    };
    place(add(ControlKind::Label, "Label1", -1, "Coil Form (Bytemark)"), 12, 8, 180, 20);
    place(add(ControlKind::Label, "Label2", -1, "Wire AWG"), 212, 8, 120, 20);
    place(add(ControlKind::Label, "Label5", -1, "Inductor"), 352, 8, 120, 20);
    Control& l1 = place(add(ControlKind::List, "List1"), 12, 30, 180, 200);
    l1.tooltip = "Select core type";
    l1.onclick = [this](int) { List1_Click(); };
    Control& l2 = place(add(ControlKind::List, "List2"), 212, 30, 120, 200);
    l2.tooltip = "Select Wire size";
    l2.onclick = [this](int) { List2_Click(); };
    Control& l3 = place(add(ControlKind::List, "List3"), 352, 30, 120, 200);
    l3.tooltip = "Inductor for dipole";
    l3.onclick = [this](int) { List3_Click(); };
    place(add(ControlKind::Label, "Label3", -1, "Usable Freq Range"), 12, 240, 180, 20);
    place(add(ControlKind::Label, "Label4"), 12, 262, 180, 20);
    place(add(ControlKind::Label, "Label6"), 212, 240, 260, 20);
    place(add(ControlKind::Label, "Label7"), 212, 262, 260, 20);
    place(add(ControlKind::Label, "Label8", -1,
              "Coil winding data is approximate and results will vary with core material, winding "
              "technique, and dimensional accuracy."),
          12, 300, 616, 40);
    place(add(ControlKind::Label, "Label9", -1,
              "Suggest you wind about 10% too many turns and remove turns while measuring inductance "
              "with your Tarvix Five until desired value is obtained."),
          12, 344, 616, 40);
    Control& c1 = place(add(ControlKind::Button, "Command1", -1, "OK"), 492, 30, 136, 30);
    c1.tooltip = "Accept this inductors design";
    c1.enabled = false;
    c1.onclick = [this](int) { Command1_Click(); };
    Control& c2 = place(add(ControlKind::Button, "Command2", -1, "DONE"), 492, 70, 136, 30);
    c2.tooltip = "Conclude inductor design";
    c2.onclick = [this](int) { Command2_Click(); };
    Control& c3 = place(add(ControlKind::Button, "Command3", -1, "Toroid/airwound"), 492, 110, 136, 30);
    c3.tooltip = "Toggle coil form type";
    c3.onclick = [this](int) { Command3_Click(); };
}

void InductorsWindow::fillforms() {
    std::string problem = readforms(forms);
    Control& l = ctl("List1");
    l.items.clear();
    for (const CoreForm& f : forms) l.items.push_back(f.name);
    l.listindex = -1;
    if (!problem.empty()) MsgBox(problem, vbExclamation, caption);
}

void InductorsWindow::filldiameters() {
    Control& l = ctl("List1");
    l.items.clear();
    for (double d = 0.1; d <= 1.01; d += 0.025) l.items.push_back(Format(d, "#.#00"));
    l.listindex = -1;
}

void InductorsWindow::open() {
    sethelp("For each inductor (column 1) select toroid or airwound form, form type or diameter, and wire size.",
            "When selecting a toroid the usable frequency range of that core will be displayed",
            "After selecting form, wire and inductor the number of turns will be displayed. Changing the form "
            "will change the turns.",
            "If you like that result click OK. When all inductors have been designed click done.");
    airwound = false;
    core.clear();
    gauge.clear();
    formsize = turnsperinch = turns = 0;
    toroidrow = airrow = -1;
    inductornumber = 0;
    ctl("Label1").caption = "Coil Form (Bytemark)";
    ctl("Label3").caption = "Usable Freq Range";
    ctl("Label4").caption.clear();
    ctl("Label6").caption.clear();
    ctl("Label7").caption.clear();
    ctl("Command1").enabled = false;
    fillforms();
    std::string problem = readgauges(gauges);
    Control& l2 = ctl("List2");
    l2.items.clear();
    for (const WireGauge& g : gauges) l2.items.push_back(g.gauge);
    l2.listindex = -1;
    if (!problem.empty()) MsgBox(problem, vbExclamation, caption);
    Control& l3 = ctl("List3");
    l3.items = inductorlist();
    l3.listindex = -1;
}

void InductorsWindow::List1_Click() {
    Control& l = ctl("List1");
    const int i = l.listindex;
    if (i < 0 || i >= static_cast<int>(l.items.size())) return;
    if (airwound) {
        airrow = i;
        core = "air";
        formsize = Val(l.items[static_cast<size_t>(i)]);
    } else {
        toroidrow = i;
        if (i >= static_cast<int>(forms.size())) return;
        const CoreForm& f = forms[static_cast<size_t>(i)];
        core = f.name;
        formsize = f.formsize;
        ctl("Label3").caption = "Usable freq range";
        ctl("Label4").caption = f.range + " MHz";
    }
    compute();
}

void InductorsWindow::List2_Click() {
    Control& l = ctl("List2");
    const int i = l.listindex;
    if (i < 0 || i >= static_cast<int>(gauges.size())) return;
    turnsperinch = gauges[static_cast<size_t>(i)].turnsperinch;
    gauge = gauges[static_cast<size_t>(i)].gauge;
    compute();
}

void InductorsWindow::List3_Click() {
    Control& l = ctl("List3");
    const int i = l.listindex;
    if (i < 0 || i >= static_cast<int>(l.items.size())) return;
    const std::string& item = l.items[static_cast<size_t>(i)];
    inductornumber = static_cast<int>(Val(item.size() >= 2 ? item.substr(item.size() - 2) : item));
    compute();
}

// Turns for the inductor that List3 shows, once form, wire and inductor are chosen.
void InductorsWindow::compute() {
    const Control& l1 = ctl("List1");
    const Control& l2 = ctl("List2");
    const Control& l3 = ctl("List3");
    if (l1.listindex < 0 || l2.listindex < 0 || l3.listindex < 0 || inductornumber < 1 ||
        inductornumber > MAXDIPOLE)
        return;
    const std::string& item = l3.items[static_cast<size_t>(l3.listindex)];
    const bool second = item.rfind("La", 0) == 0;
    const Dipole& d = slot(0).dip(inductornumber);
    if (airwound) {
        AirWinding w = airwinding((second ? d.La : d.L) * 1000000, formsize, turnsperinch);
        turns = w.turns;
        layers = w.layers;
        coillength = w.coillength;
        coilradius = w.coilradius;
    } else {
        // Both inductors of a dipole are wound for its L on a toroid.
        const CoreForm* f = nullptr;
        if (toroidrow >= 0 && toroidrow < static_cast<int>(forms.size())) f = &forms[static_cast<size_t>(toroidrow)];
        turns = f ? toroidturns(core, d.L, Val(f->AL)) : 0;
    }
    ctl("Label6").caption = std::string("Number of turns for ") + (second ? "La" : "L") + numtext(inductornumber);
    ctl("Label7").caption = Format(turns, "##.#");
    ctl("Command1").enabled = true;
}

void InductorsWindow::Command1_Click() {
    if (!ctl("Command1").enabled) return;
    const Control& l3 = ctl("List3");
    if (l3.listindex < 0 || inductornumber < 1 || inductornumber > MAXDIPOLE) return;
    if (airwound && coillength > 20 * coilradius) {
        if (MsgBox("Coil is getting too long.\rUse a larger diameter form\ror try using a toroid form", vbOKCancel,
                   ERRORTITLE) == vbCancel)
            return;
    }
    if (!airwound && formsize > 0 && turns / turnsperinch > formsize * PI) {
        if (MsgBox("Cannot get " + Format(turns, "##.#") + " turns awg " + gauge + " on a " + core +
                       " form.\rSuggest using larger form or smaller wire.",
                   vbOKCancel, ERRORTITLE) == vbCancel)
            return;
    }
    if (!airwound && turns < 4) {
        if (MsgBox("Coil has very few turns.\rSuggest using airwound coil\ror lower permeability core.", vbOKCancel,
                   ERRORTITLE) == vbCancel)
            return;
    }
    Dipole& d = slot(0).dip(inductornumber);
    const std::string& item = l3.items[static_cast<size_t>(l3.listindex)];
    // The sign of the length marks a single-layer winding.
    const double length = layers > 1 ? coillength : 0 - coillength;
    const double awg = Val(gauge);
    if (item.rfind("L ", 0) == 0) {
        d.Lcore = core;
        d.Lform = formsize;
        d.Lawg = awg;
        d.Lturns = turns;
        d.Llength = length;
    } else {
        d.Lacore = core;
        d.Laform = formsize;
        d.Laawg = awg;
        d.Laturns = turns;
        d.Lalength = length;
    }
}

void InductorsWindow::Command2_Click() {
    unload();
    frame.designsaved = false;
    schematicbuild();
}

void InductorsWindow::Command3_Click() {
    Control& l1 = ctl("List1");
    airwound = !airwound;
    ctl("Command1").enabled = false;
    if (airwound) {
        filldiameters();
        ctl("Label1").caption = "Coil Diameter in inches";
        if (airrow >= 0 && airrow < static_cast<int>(l1.items.size())) selectitem("List1", -1, airrow);
    } else {
        fillforms();
        ctl("Label1").caption = "Coil Form (ByteMark)";
        if (toroidrow >= 0 && toroidrow < static_cast<int>(l1.items.size())) selectitem("List1", -1, toroidrow);
    }
}

void dinductor_Click() {
    if (store.lastslot < 0) return;
    InductorsWindow& w = inductorswindow;
    w.open();
    w.showmodal();
}

} // namespace zelk
