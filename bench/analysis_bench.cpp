// Timings of one 513-point sweep of a 32-dipole ladder for every kind of frequency plot
// (through the block walk, and the gain and the group delay through the one-point walk
// too), one time-domain pass and its two halves, full redraws of the gain plot onto a
// recording surface, and Monte Carlo passes.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>
#include <sstream>

#include "analysis/plots.h"
#include "analysis/statistics.h"
#include "analysis/sweep.h"
#include "analysis/timedomain.h"
#include "batch/runner.h"
#include "core/designstore.h"
#include "core/surface.h"

namespace {

using namespace zelk;

// A fresh program on the scripted desktop, holding a 32-dipole ladder in slot 0: the
// source resistor, a 30th-order Butterworth low-pass at 1 MHz (shunt C first), the load.
// The same ladder is written by ngspice_compare.sh for the simulator.
struct Program {
    std::ostringstream out, err;
    BatchRunner runner{out, err};
    Program() {
        store.lastslot = 0;
        store.curslot = 0;
        DesignSlot& s = slot(0);
        s.code = "BLP";
        s.w0 = s.w1 = 6283185.308;
        s.w2 = 2 * 6283185.308;
        s.dipolecount = 32;
        const double r = 50, wc = 2 * 3.14159265358979 * 1e6;
        dipole(0, 1).type = 1, dipole(0, 1).R = r;
        for (int k = 1; k <= 30; ++k) {
            double g = 2 * std::sin((2 * k - 1) * 3.14159265358979 / 60);
            Dipole& d = dipole(0, k + 1);
            if (k % 2) d.type = 33, d.C = g / (r * wc);
            else d.type = 2, d.L = g * r / wc;
        }
        dipole(0, 32).type = 31, dipole(0, 32).R = r;
    }
};

Program& program() {
    static Program p;
    return p;
}

void sweep(benchmark::State& state, Quantity q, bool onepoint) {
    program();
    double wA[SWEEPPOINTS], v[SWEEPPOINTS];
    for (auto _ : state) {
        sweepfrequencies(1e5, 1e7, wA);
        bool ok = onepoint ? sweepvalues_onepoint(q, 0, wA, v) : sweepvalues(q, 0, wA, v);
        benchmark::DoNotOptimize(ok);
        benchmark::DoNotOptimize(v[SWEEPPOINTS - 1]);
    }
    state.counters["blockpoints"] = onepoint ? 0 : sweepstats.blockpoints;
}

void BM_PEGSweep(benchmark::State& s) { sweep(s, Quantity::PEG, false); }
void BM_PEGSweepOnePoint(benchmark::State& s) { sweep(s, Quantity::PEG, true); }
void BM_GroupDelaySweep(benchmark::State& s) { sweep(s, Quantity::GroupDelay, false); }
void BM_GroupDelaySweepOnePoint(benchmark::State& s) { sweep(s, Quantity::GroupDelay, true); }
void BM_PhaseSweep(benchmark::State& s) { sweep(s, Quantity::Phase, false); }
void BM_OutputImpedanceSweep(benchmark::State& s) { sweep(s, Quantity::OutputImpedance, false); }
void BM_InputImpedanceSweep(benchmark::State& s) { sweep(s, Quantity::InputImpedance, false); }
void BM_ReturnLossSweep(benchmark::State& s) { sweep(s, Quantity::ReturnLoss, false); }
void BM_VoltageInsertionGainSweep(benchmark::State& s) { sweep(s, Quantity::VIG, false); }

void BM_StepResponsePass(benchmark::State& state) {
    program();
    Harmonics h;
    double v[SWEEPPOINTS];
    for (auto _ : state) {
        harmonicpass(TimeKind::Step, 0, 10e-6, 0, 0, h);
        timevalues(TimeKind::Step, h, 10e-6, v);
        benchmark::DoNotOptimize(v[SWEEPPOINTS - 1]);
    }
}

// The step response's two halves: the 100 harmonic walks, and the 513 sums of 100
// cosines with the running sum.
void BM_StepHarmonicWalks(benchmark::State& state) {
    program();
    Harmonics h;
    for (auto _ : state) {
        harmonicpass(TimeKind::Step, 0, 10e-6, 0, 0, h);
        benchmark::DoNotOptimize(h.hph[HARMONICS]);
    }
}

void BM_StepCosineSums(benchmark::State& state) {
    program();
    Harmonics h;
    harmonicpass(TimeKind::Step, 0, 10e-6, 0, 0, h);
    double v[SWEEPPOINTS];
    for (auto _ : state) {
        timevalues(TimeKind::Step, h, 10e-6, v);
        benchmark::DoNotOptimize(v[SWEEPPOINTS - 1]);
    }
}

// The gain plot drawn again onto a recording surface: with the ladder unchanged (a new
// scale, a resize), whose values the plot keeps; and after a part has changed, which
// sweeps again (one capacitor moved between two values in turn).
void redrawgain(benchmark::State& state, bool edit) {
    program();
    PlotForm& p = plotPEG;
    RecordingSurface surface(&p.clientwidth, &p.clientheight, 15);
    p.clientwidth = 10240;
    p.clientheight = 5760;
    p.layout();
    p.surface = &surface;
    p.loaded = p.visible = true;
    p.freq1 = 1e5, p.freq2 = 1e7, p.db1 = -120, p.db2 = 0;
    Dipole& c = dipole(0, 2);
    const double was = c.C;
    int k = 0;
    for (auto _ : state) {
        if (edit) c.C = ++k % 2 ? was * 1.01 : was;
        p.db1 = -120, p.db2 = 0;
        benchmark::DoNotOptimize(p.redraw());
    }
    c.C = was;
    p.surface = nullptr;
}

void BM_PEGPlotRedraw(benchmark::State& s) { redrawgain(s, false); }
void BM_PEGPlotRedrawAfterEdit(benchmark::State& s) { redrawgain(s, true); }

// A Monte Carlo pass: slot 1 perturbed from slot 0 at 5 %, then the curve of every open
// plot added onto its recording surface (the recording is emptied outside the pass's
// work, keeping its storage, as a screen's pixels would be reused).
struct OpenPlot {
    PlotForm* p;
    std::unique_ptr<RecordingSurface> surface;
};

std::vector<OpenPlot> openplots(bool all) {
    std::vector<OpenPlot> open;
    for (PlotForm* p : statisticsplots()) {
        if (!all && p != &plotPEG) continue;
        OpenPlot o{p, std::make_unique<RecordingSurface>(&p->clientwidth, &p->clientheight, 15)};
        p->clientwidth = 10240;
        p->clientheight = 5760;
        p->layout();
        p->surface = o.surface.get();
        p->loaded = p->visible = true;
        p->freq1 = 1e5, p->freq2 = 1e7;
        switch (p->kind) {
        case PlotKind::Impedance: p->db1 = 0.1, p->db2 = 1000; break;
        case PlotKind::Phase: p->db1 = -360, p->db2 = 360; break;
        case PlotKind::Delay: p->db1 = 0, p->db2 = 10e-6; break;
        case PlotKind::Time:
            p->Time = 10e-6, p->FM = 1e7, p->N1 = 2, p->N2 = -2, p->DC = 0.5, p->tone = 6283185.308;
            break;
        default: p->db1 = -120, p->db2 = 0; break;
        }
        p->redraw();
        open.push_back(std::move(o));
    }
    return open;
}

void montecarlo(benchmark::State& state, bool all) {
    program();
    store.lastslot = 1;
    slot(1) = slot(0);
    store.Rtol = store.Ltol = store.Ctol = 0.05, store.Qtol = 0.2;
    stats.passes = 0;
    stats.bandcount.fill(0);
    std::vector<OpenPlot> open = openplots(all);
    for (auto _ : state) {
        benchmark::DoNotOptimize(statisticspass(Analysis::MonteCarlo));
        state.PauseTiming();
        for (OpenPlot& o : open) o.surface->clear();
        state.ResumeTiming();
    }
    state.counters["passes/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    for (OpenPlot& o : open) {
        o.p->surface = nullptr;
        o.p->loaded = o.p->visible = false;
    }
    store.lastslot = 0;
}

void BM_MonteCarloPassPEG(benchmark::State& s) { montecarlo(s, false); }
void BM_MonteCarloPassAll(benchmark::State& s) { montecarlo(s, true); }

BENCHMARK(BM_PEGSweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PEGSweepOnePoint)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GroupDelaySweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GroupDelaySweepOnePoint)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PhaseSweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OutputImpedanceSweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_InputImpedanceSweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ReturnLossSweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_VoltageInsertionGainSweep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StepResponsePass)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StepHarmonicWalks)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StepCosineSums)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PEGPlotRedraw)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PEGPlotRedrawAfterEdit)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MonteCarloPassPEG)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MonteCarloPassAll)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
