#include "analysis/statistics.h"

#include "analysis/plots.h"
#include "core/commands.h"
#include "core/desktop.h"
#include "core/designstore.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "schematic/tolerance.h"

namespace zelk {

namespace {

bool& runningflag(Analysis a) {
    switch (a) {
    case Analysis::MonteCarlo: return stats.montecarlorunning;
    case Analysis::WorstCase: return stats.worstcaserunning;
    default: return stats.sensitivityrunning;
    }
}

bool anyplotopen() {
    for (PlotForm* p : statisticsplots())
        if (p->loaded) return true;
    return false;
}

// Folds the perturbed curve of the pass into the band of plot k.
void accumulate(int k, const PlotForm& p) {
    const double* v = p.values[1].data();
    double* lo = stats.bandmin[static_cast<size_t>(k)].data();
    double* hi = stats.bandmax[static_cast<size_t>(k)].data();
    double* sum = stats.bandsum[static_cast<size_t>(k)].data();
    if (stats.bandcount[static_cast<size_t>(k)]++ == 0) {
        for (int i = 0; i < SWEEPPOINTS; ++i) lo[i] = hi[i] = sum[i] = v[i];
        return;
    }
    for (int i = 0; i < SWEEPPOINTS; ++i) {
        const double x = v[i];
        if (x < lo[i]) lo[i] = x;
        if (x > hi[i]) hi[i] = x;
        sum[i] += x;
    }
}

// The design the run started on is still in the store, beside nothing else.
bool designstands() {
    return store.clears == stats.clears && store.lastslot >= 0 && store.lastslot <= 1;
}

// Every plot that took part in the pass is still open.
bool plotsstand() {
    const auto& plots = statisticsplots();
    for (int k = 0; k < STATPLOTS; ++k)
        if (stats.wasopen[static_cast<size_t>(k)] && !plots[static_cast<size_t>(k)]->loaded) return false;
    return true;
}

void stopall() {
    stats.montecarlorunning = stats.worstcaserunning = stats.sensitivityrunning = false;
}

// Ends a run that something other than its label stopped (a closed plot, a fault, an
// Abort): the flags fall and, if the design still stands, the menus come back to it.
void endrun() {
    stopall();
    if (designstands()) {
        store.lastslot = 0;
        updatemenus();
    }
}

// The nominal curve over every open plot.
void nominalpass() {
    for (PlotForm* p : statisticsplots()) {
        if (!p->loaded) continue;
        if (!p->addpass(0)) {
            store.abortanalysis = false;
            return;
        }
    }
}

} // namespace

const std::array<PlotForm*, STATPLOTS>& statisticsplots() {
    static const std::array<PlotForm*, STATPLOTS> order = {
        &plotCEG, &plotCIG, &PLOTGD, &PLOTIR, &plotPEG, &PLOTPHASE, &plotPIG, &PLOTPR,
        &PLOTRL,  &PLOTSR,  &PLOTTP, &plotVEG, &plotVIG, &plotZin, &plotZout};
    return order;
}

double randomsign() { return Sgn(desktop().rnd() - 0.5); }

double randomspread() { return Int(desktop().rnd() * 10 - 5) / 5; }

void perturb(Analysis a) {
    const DesignSlot& s0 = slot(0);
    DesignSlot& s1 = slot(1);
    const int n = s1.count();
    const double Rtol = store.Rtol, Ltol = store.Ltol, Ctol = store.Ctol, Qtol = store.Qtol;
    for (int d = 1; d <= n; ++d) {
        const Dipole& p = s0.dip(d);
        Dipole& q = s1.dip(d);
        switch (a) {
        case Analysis::MonteCarlo:
            q.R = p.R * (1 + randomspread() * Rtol);
            q.C = p.C * (1 + randomspread() * Ctol);
            q.Ca = p.Ca * (1 + randomspread() * Ctol);
            q.L = p.L * (1 + randomspread() * Ltol);
            q.La = p.La * (1 + randomspread() * Ltol);
            q.Qu = p.Qu * (1 + randomspread() * Qtol);
            q.Qa = p.Qa * (1 + randomspread() * Qtol);
            break;
        case Analysis::WorstCase:
            q.R = p.R * (1 + randomsign() * Rtol);
            q.C = p.C * (1 + randomsign() * Ctol);
            q.Ca = p.Ca * (1 + randomsign() * Ctol);
            q.L = p.L * (1 + randomsign() * Ltol);
            q.La = p.La * (1 + randomsign() * Ltol);
            q.Qu = p.Qu * (1 + randomsign() * Qtol);
            q.Qa = p.Qa * (1 + randomsign() * Qtol);
            break;
        case Analysis::Sensitivity: {
            const auto& c = stats.check[static_cast<size_t>(d)];
            if (q.R != 0) q.R = p.R * (1 + randomspread() * Rtol * c[0]);
            if (q.C != 0) q.C = p.C * (1 + randomspread() * Ctol * c[2]);
            if (q.Ca != 0) q.Ca = p.Ca * (1 + randomspread() * Ctol * c[4]);
            if (q.L != 0) q.L = p.L * (1 + randomspread() * Ltol * c[1]);
            if (q.La != 0) q.La = p.La * (1 + randomspread() * Ltol * c[3]);
            if (q.Qu != 0) q.Qu = p.Qu * (1 + randomspread() * Qtol * c[5]);
            if (q.Qa != 0) q.Qa = p.Qa * (1 + randomspread() * Qtol * c[5]);
            break;
        }
        }
    }
}

bool statisticspass(Analysis a) {
    const auto& plots = statisticsplots();
    perturb(a);
    for (int k = 0; k < STATPLOTS; ++k) {
        PlotForm& p = *plots[static_cast<size_t>(k)];
        stats.wasopen[static_cast<size_t>(k)] = p.loaded;
        if (!p.loaded) continue;
        bool ok;
        if (stats.onestepmode && a == Analysis::MonteCarlo && &p == &plotPEG) {
            // Each step of the gain plot stands alone: the nominal and this pass.
            p.open();
            ok = p.redraw();
        } else {
            ok = p.addpass(1);
        }
        if (!ok) return false;
        accumulate(k, p);
    }
    ++stats.passes;
    return true;
}

void runanalysis(Analysis a) {
    bool& running = runningflag(a);
    if (!designstands()) {
        // File New or another file since the run began: nothing of it is left to plot.
        stopall();
        return;
    }
    try {
        do {
            if (!statisticspass(a)) {
                // Abort in the analysis error box ends the run where it stands.
                store.abortanalysis = false;
                endrun();
                return;
            }
            desktop().yield();
            if (!designstands() || !plotsstand()) {
                const bool design = designstands();
                endrun();
                if (design) nominalpass();
                return;
            }
            const long limit = desktop().runpasses();
            if (running && !stats.onestepmode && limit > 0 && stats.passes >= limit) {
                // The host's limit stops the run as a second click would.
                running = false;
                store.lastslot = 0;
                updatemenus();
            }
        } while (running && !stats.onestepmode);
        nominalpass();
    } catch (const RuntimeFault&) {
        endrun();
        throw;
    }
}

void startanalysis(Analysis a) {
    static const char* const noplot[3] = {
        "You must have some kind of plot window open to do Monte Carlo analysis on",
        "You must have some kind of plot window open to do Worst Case analysis on",
        "You must have some kind of plot window open to do Sensitivity analysis on"};
    if (!anyplotopen()) {
        MsgBox(noplot[static_cast<int>(a)], vbOKOnly, "NO plot window open");
        return;
    }
    if (stats.onestepmode) statistics.ctl("Label5").caption = "Plot One Step";
    store.lastslot = 1;
    bool& running = runningflag(a);
    if (running) {
        // A second click: the run ends with one more pass and the nominal curve.
        running = false;
        store.lastslot = 0;
        updatemenus();
        runanalysis(a);
        return;
    }
    gettolerance();
    if (store.cancelled) return;
    store.Rtol /= 100;
    store.Ltol /= 100;
    store.Ctol /= 100;
    store.Qtol /= 100;
    if (a == Analysis::Sensitivity) {
        sanalysis.buildrows();
        sanalysis.showmodal();
        for (int d = 0; d <= MAXDIPOLE; ++d)
            for (int f = 0; f < 6; ++f) stats.check[static_cast<size_t>(d)][static_cast<size_t>(f)] = sanalysis.ticked(d, f);
    }
    const DesignSlot& s0 = slot(0);
    DesignSlot& s1 = slot(1);
    s1.dipolecount = s0.dipolecount;
    s1.w0 = s0.w0;
    const int n = s0.count();
    for (int d = 1; d <= n; ++d) {
        const Dipole& p = s0.dip(d);
        Dipole& q = s1.dip(d);
        q.type = p.type;
        q.R = p.R, q.C = p.C, q.Ca = p.Ca, q.L = p.L, q.Qu = p.Qu, q.K = p.K, q.Qa = p.Qa, q.La = p.La;
        q.Ls = p.Ls, q.Cs = p.Cs, q.Cp = p.Cp, q.Rs = p.Rs, q.Qx = p.Qx;
    }
    desktop().randomize();
    stats.passes = 0;
    stats.bandcount.fill(0);
    stats.clears = store.clears;
    running = true;
    runanalysis(a);
}

void resetstatistics() {
    stopall();
    statistics.ctl("Label5").caption = "Enable One Step Mode";
    store.lastslot = 0;
    updatemenus();
    stats.onestepmode = false;
    sethelp("Statistical Analysis", "Click 'Restore Defaults' on plot window to reset analysis.",
            "Sweep Expansion works and will reset the analysis.", "");
}

// ---------------------------------------------------------------------------------------
// The statistics window

Statistics::Statistics() : Window("statistics", "Statistical Analysis") { build(); }

void Statistics::reset() {
    controls.clear();
    loaded = visible = false;
    focusname.clear();
    focusindex = -1;
    hovered_ = 0;
    build();
}

void Statistics::build() {
    clientwidth = 180;
    clientheight = 170;
    static const char* const captions[5] = {"Monte Carlo", "Worst Case", "Sensitivity", "Reset",
                                            "Enable One Step Mode"};
    for (int i = 0; i < 5; ++i) {
        Control& l = add(ControlKind::Label, "Label" + std::to_string(i + 1), -1, captions[i]);
        l.left = 10;
        l.top = 10 + 30 * i;
        l.width = 160;
        l.height = 24;
        const int n = i + 1;
        l.onclick = [this, n](int) { Label_Click(n); };
        l.onmousemove = [this, n](int, int, int, double, double) { Label_MouseMove(n); };
    }
}

void Statistics::Label_Click(int n) {
    switch (n) {
    case 1: startanalysis(Analysis::MonteCarlo); break;
    case 2: startanalysis(Analysis::WorstCase); break;
    case 3: startanalysis(Analysis::Sensitivity); break;
    case 4: resetstatistics(); break;
    case 5:
        stats.onestepmode = true;
        if (stats.montecarlorunning) runanalysis(Analysis::MonteCarlo);
        else if (stats.worstcaserunning) runanalysis(Analysis::WorstCase);
        else if (stats.sensitivityrunning) runanalysis(Analysis::Sensitivity);
        else ctl("Label5").caption = "Select Analysis Type";
        break;
    default: break;
    }
}

void Statistics::Label_MouseMove(int n) {
    if (n == hovered_) return;
    hovered_ = n;
    static const char* const lines[3][4] = {
        {"Monte Carlo analysis randomly adjusts component values within the specified tolerance using a uniform distribution.",
         "Each set of values is then analyzed and plotted without erasing the previous plots.",
         "The result is a 'band' of plots showing the limits of filter performance when built with parts of the specified tolerance.",
         "All open plots will be analyzed. This can be slow if too many plots are open."},
        {"Worst Case Analysis randomly adjusts component values at the limits of the specified tolerance. Each set of values is then",
         "analyzed and plotted without erasing the previous plots. The result is a 'band' of plots showing the limits of filter",
         "performance when built with parts at the extreme limits of the specified tolerance.",
         "All open plots will be analyzed. This can be slow if too many plots are open."},
        {"Sensitivity analysis randomly adjusts SELECTED component values within the specified tolerance using a uniform distribution.",
         "Each set of values is then analyzed and plotted without erasing the previous plots.",
         "The result is a 'band' of plots showing the limits of filter performance as effected by variations in the selected components.",
         "All open plots will be analyzed. This can be slow if too many plots are open."}};
    if (n >= 1 && n <= 3) sethelp(lines[n - 1][0], lines[n - 1][1], lines[n - 1][2], lines[n - 1][3]);
}

// ---------------------------------------------------------------------------------------
// Sanalysis

namespace {
// The tick boxes of a row, by the field they move: R, L, C, La, Ca, Qu.
const char* const checknames[6] = {"check1", "Check2", "Check3", "Check4", "Check5", "Check6"};
} // namespace

Sanalysis::Sanalysis() : Window("Sanalysis", "Sensitivity Analysis") { build(); }

void Sanalysis::reset() {
    controls.clear();
    loaded = visible = false;
    focusname.clear();
    focusindex = -1;
    build();
}

void Sanalysis::build() {
    clientwidth = 420;
    clientheight = 80;
    Control& ok = add(ControlKind::Button, "Command1", -1, "OK");
    ok.width = 90, ok.height = 28, ok.left = 10, ok.top = 40;
    ok.onclick = [this](int) { hide(); };
    // Row 1's resistor box stands at first; the rest are made for the design.
    Control& c = add(ControlKind::Check, "check1", 1, "R");
    c.visible = false;
}

void Sanalysis::activate() {}

void Sanalysis::buildrows() {
    controls.clear();
    build();
    controls.pop_back();
    const DesignSlot& s = slot(0);
    const int n = s.count();
    double y = 10;
    for (int d = 1; d <= n - 1; ++d) {
        const Dipole& p = s.dip(d);
        Control& l = add(ControlKind::Label, "Label1", d, "Dipole " + std::to_string(d));
        l.left = 10, l.top = y, l.width = 80, l.height = 22;
        const double fields[6] = {p.R, p.L, p.C, p.La, p.Ca, p.Qu};
        static const char* const captions[6] = {"R", "L", "C", "La", "Ca", "Qu"};
        for (int f = 0; f < 6; ++f) {
            if (fields[f] == 0) continue;
            Control& c = add(ControlKind::Check, checknames[f], d, captions[f]);
            c.left = 100 + 50 * f, c.top = y, c.width = 45, c.height = 22;
            c.value = 0;
        }
        y += 25;
    }
    Control& ok = ctl("Command1");
    ok.top = y + 5;
    clientheight = y + 45;
}

bool Sanalysis::ticked(int d, int field) const {
    if (field < 0 || field > 5) return false;
    const Control* c = find(checknames[field], d);
    return c && c->visible && c->value == 1;
}

void statistical_Click() {
    statistics.left = 0;
    statistics.top = 0;
    statistics.show();
}

void resetstatisticsall() {
    stats = StatisticsState{};
    statistics.reset();
    sanalysis.reset();
}

bool dumpband(const std::vector<std::string>& args, std::ostream& out) {
    if (args.size() != 1) return false;
    const auto& plots = statisticsplots();
    for (int k = 0; k < STATPLOTS; ++k) {
        const PlotForm& p = *plots[static_cast<size_t>(k)];
        if (p.formname != args[0]) continue;
        const long n = stats.bandcount[static_cast<size_t>(k)];
        for (int i = 0; n > 0 && i < SWEEPPOINTS; ++i) {
            const size_t u = static_cast<size_t>(k), j = static_cast<size_t>(i);
            out << i << ' ' << roundtrip(p.xs[1][j]) << ' ' << roundtrip(stats.bandmin[u][j]) << ' '
                << roundtrip(stats.bandmax[u][j]) << ' ' << roundtrip(stats.bandsum[u][j] / n) << '\n';
        }
        return true;
    }
    return false;
}

} // namespace zelk
