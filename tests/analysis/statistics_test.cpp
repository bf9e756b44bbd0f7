// Statistical analysis through the batch runner and the logic: the random rules, the
// perturbations of Monte Carlo, Worst Case and Sensitivity, the band of a seeded run
// around the nominal gain, one-step mode, and the refusals and stops of a run.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/plots.h"
#include "analysis/statistics.h"
#include "core/designstore.h"
#include "core/framestate.h"
#include "files.h"
#include "testsupport.h"

namespace zelk {
namespace {

const char* const chebyshevbp =
    "> selfunction: selection(2) selection(4)\n> Getdata: 10M 2M 2 0.5 \"\" 5 50 50\n"
    ">? Getdata: Lossless\n>? designtitle: Command1\nchebyshev\n";
const char* const pegplot = "> Getdata: 8M 12M 0 -80\nPEG\n";

// A desktop whose random numbers are given.
struct GivenRandom : ScriptedDesktop {
    std::vector<double> r;
    size_t i = 0;
    double rnd() override { return r[i++ % r.size()]; }
};

TEST(RandomRules, SpreadAndSignOfGivenNumbers) {
    test::Session s;
    GivenRandom g;
    setdesktop(&g);
    for (const test::Row& r : test::datarows("analysis.txt", "random")) {
        g.r = {r.num(0)};
        EXPECT_NEAR(randomspread(), r.num(1), 1e-15) << r.text(0);
        EXPECT_EQ(randomsign(), r.num(2)) << r.text(0);
    }
    setdesktop(&s.runner.desk);
}

TEST(RandomRules, SpreadTakesTheTenUnevenValuesAndNeverOne) {
    test::Session s;
    s.runner.desk.seeded = true;
    s.runner.desk.seed = 7;
    s.runner.desk.randomize();
    std::set<long> seen;
    for (int k = 0; k < 20000; ++k) seen.insert(std::lround(randomspread() * 5));
    EXPECT_EQ(seen, (std::set<long>{-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}));
}

// Every field of every part after 200 passes of each analysis, against the tolerances
// 5 % (R), 10 % (L), 2 % (C) and 20 % (Q): Monte Carlo within -tol .. +0.8 tol (the
// spread never reaches +1), Worst Case at one of the two limits, Sensitivity moving only
// the ticked L of dipole 2 and C of dipole 3, both of which do move.
TEST(Perturb, EachAnalysisMovesThePartsByItsRule) {
    for (Analysis a : {Analysis::MonteCarlo, Analysis::WorstCase, Analysis::Sensitivity}) {
        SCOPED_TRACE(static_cast<int>(a));
        test::Session s;
        ASSERT_TRUE(s.ok(chebyshevbp));
        dipole(0, 2).Qu = 100; // a lossy inductor, so that the Q fields take part
        store.Rtol = 0.05, store.Ltol = 0.1, store.Ctol = 0.02, store.Qtol = 0.2;
        slot(1) = slot(0);
        s.runner.desk.seeded = true;
        s.runner.desk.seed = 1;
        s.runner.desk.randomize();
        stats.check = {};
        stats.check[2][1] = 1; // L of dipole 2
        stats.check[3][2] = 1; // C of dipole 3
        bool moved = false;
        for (int pass = 0; pass < 200; ++pass) {
            perturb(a);
            for (int d = 1; d <= slot(0).count(); ++d) {
                const Dipole &p = dipole(0, d), &q = dipole(1, d);
                const struct {
                    double nominal, now, tol;
                    bool ticked;
                } fields[] = {{p.R, q.R, 0.05, false},        {p.L, q.L, 0.1, d == 2},  {p.La, q.La, 0.1, false},
                              {p.C, q.C, 0.02, d == 3},       {p.Ca, q.Ca, 0.02, false}, {p.Qu, q.Qu, 0.2, false},
                              {p.Qa, q.Qa, 0.2, false}};
                for (const auto& f : fields) {
                    const double lo = f.nominal * (1 - f.tol), hi = f.nominal * (1 + f.tol);
                    if (a == Analysis::MonteCarlo) {
                        EXPECT_GE(f.now, lo * (1 - 1e-12)) << d;
                        EXPECT_LE(f.now, f.nominal * (1 + 0.8 * f.tol) * (1 + 1e-12)) << d;
                    } else if (a == Analysis::WorstCase) {
                        EXPECT_TRUE(f.now == lo || f.now == hi) << d << ": " << f.now << " from " << f.nominal;
                    } else if (!f.ticked) {
                        EXPECT_EQ(f.now, f.nominal) << d;
                    }
                    moved |= f.ticked && f.now != f.nominal;
                }
            }
        }
        EXPECT_TRUE(moved);
    }
}

struct BandPoint {
    double x, lo, hi, mean;
};

std::vector<BandPoint> band(test::Session& s, const std::string& plot) {
    s.take();
    EXPECT_TRUE(s.ok("dump band " + plot + "\n"));
    std::istringstream in(s.take());
    std::vector<BandPoint> b;
    int i;
    BandPoint p;
    while (in >> i >> p.x >> p.lo >> p.hi >> p.mean) b.push_back(p);
    return b;
}

TEST(MonteCarlo, SeededRunBandsTheNominalGain) {
    test::Session s;
    ASSERT_TRUE(s.ok(std::string(chebyshevbp) + pegplot));
    ASSERT_TRUE(s.ok("option seed 1\noption passes 500\nstatistical\n> Getdata: 5 5 20 5\n"
                     "event statistics Label1 click\n"));
    EXPECT_EQ(stats.passes, 500);
    EXPECT_FALSE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, 0);
    EXPECT_EQ(plotPEG.passslots, 2);
    const std::vector<BandPoint> b = band(s, "plotPEG");
    ASSERT_EQ(b.size(), static_cast<size_t>(SWEEPPOINTS));
    int inside = 0;
    for (int i = 0; i < SWEEPPOINTS; ++i) {
        const double nominal = plotPEG.values[0][static_cast<size_t>(i)];
        const BandPoint& p = b[static_cast<size_t>(i)];
        EXPECT_LE(p.lo, p.mean);
        EXPECT_LE(p.mean, p.hi);
        if (nominal >= p.lo - 1e-9 && nominal <= p.hi + 1e-9) ++inside;
    }
    EXPECT_GE(inside, SWEEPPOINTS * 95 / 100);
    // The same seed gives the same band.
    ASSERT_TRUE(s.ok("> Getdata: 5 5 20 5\nevent statistics Label1 click\n"));
    const std::vector<BandPoint> again = band(s, "plotPEG");
    ASSERT_EQ(again.size(), b.size());
    for (size_t i = 0; i < b.size(); ++i) EXPECT_EQ(again[i].hi, b[i].hi) << i;
}

TEST(MonteCarlo, OneStepModeRunsOnePassPerClickUntilStoppedOrFileNew) {
    test::Session s;
    ASSERT_TRUE(s.ok(std::string(chebyshevbp) + pegplot + "statistical\nevent statistics Label5 click\n"));
    EXPECT_EQ(statistics.ctl("Label5").caption, "Select Analysis Type");
    ASSERT_TRUE(s.ok("> Getdata: 5 5 20 5\nevent statistics Label1 click\n"));
    EXPECT_EQ(statistics.ctl("Label5").caption, "Plot One Step");
    EXPECT_EQ(stats.passes, 1);
    EXPECT_TRUE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, 1);
    ASSERT_TRUE(s.ok("event statistics Label5 click\nevent statistics Label5 click\n"));
    EXPECT_EQ(stats.passes, 3);
    // A second click on the label stops the run with one more pass.
    ASSERT_TRUE(s.ok("event statistics Label1 click\n"));
    EXPECT_EQ(stats.passes, 4);
    EXPECT_FALSE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, 0);
    // Reset.
    ASSERT_TRUE(s.ok("event statistics Label4 click\n"));
    EXPECT_FALSE(stats.onestepmode);
    EXPECT_EQ(statistics.ctl("Label5").caption, "Enable One Step Mode");
    EXPECT_EQ(store.help2, "Click 'Restore Defaults' on plot window to reset analysis.");
    // File New during a one-step run: the next step finds the design gone and stops
    // without touching the slots.
    ASSERT_TRUE(s.ok("event statistics Label5 click\n> Getdata: 5 5 20 5\nevent statistics Label1 click\n"));
    ASSERT_TRUE(stats.montecarlorunning);
    ASSERT_TRUE(s.ok("newfilter\nevent statistics Label5 click\n"));
    EXPECT_FALSE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, -1);
}

// With no plot open each analysis refuses with its box: the golden script statistics_noplot.

// The Sensitivity dialog lists the parts (no row for the load); ticking the L of dipole 2
// moves that part alone.
TEST(Statistics, SensitivityAsksForTheTickedParts) {
    test::Session s;
    ASSERT_TRUE(s.ok(std::string(chebyshevbp) + pegplot +
                     "option passes 20\nstatistical\n"
                     "> Getdata: 10 10 20 10\n> Sanalysis: Check2(2) Command1\n"
                     "event statistics Label3 click\n"));
    EXPECT_EQ(stats.passes, 20);
    for (int d = 1; d <= slot(0).count(); ++d) {
        const Dipole &p = dipole(0, d), &q = dipole(1, d);
        EXPECT_TRUE(q.R == p.R && q.C == p.C && (d == 2 || q.L == p.L)) << d;
    }
    EXPECT_EQ(sanalysis.ctl("Label1", 1).caption, "Dipole 1");
    EXPECT_EQ(sanalysis.find("Label1", slot(0).count()), nullptr); // no row for the load
}

TEST(Statistics, AbortInTheAnalysisErrorStopsTheRun) {
    test::Session s;
    // 100 % at the limits makes parts of 0: the walk's fault box comes, Abort ends the run.
    ASSERT_TRUE(s.ok(std::string(chebyshevbp) + pegplot +
                     "option passes 50\nstatistical\n"
                     "> Getdata: 100 100 20 100\n>? msgbox: Abort\nevent statistics Label2 click\n"));
    ASSERT_FALSE(s.runner.desk.messages.empty());
    EXPECT_EQ(s.runner.desk.messages.back().title, "ANALYSIS ERROR");
    EXPECT_LT(stats.passes, 50);
    EXPECT_FALSE(stats.worstcaserunning);
    EXPECT_EQ(store.lastslot, 0);
    EXPECT_FALSE(store.abortanalysis);
}

// A desktop whose event loop closes a plot, or starts File New, during the third yield of
// an unbounded run (and resets the window after 100 yields, should the run not stop).
struct InterruptingDesktop : ScriptedDesktop {
    void (*action)() = nullptr;
    int yields = 0;
    long runpasses() override { return 0; }
    void yield() override {
        ++yields;
        if (yields == 3) action();
        if (yields == 100) statistics.Label_Click(4);
    }
};

TEST(Statistics, ClosingAPlotOrFileNewDuringARunStopsIt) {
    struct Case {
        void (*action)();
        int lastslot;
        bool nominal; // the remaining plot got the nominal curve
    };
    const Case cases[] = {{[] { plotPEG.unload(); }, 0, true}, {[] { newfilter_Click(); }, -1, false}};
    for (const Case& c : cases) {
        test::Session s;
        ASSERT_TRUE(s.ok(std::string(chebyshevbp) + pegplot + "> Getdata: 8M 12M 0 -80\nPIG\nstatistical\n"));
        InterruptingDesktop d;
        d.action = c.action;
        d.queue.push_back({"Getdata", {"5", "5", "20", "5"}, false, 0, 0});
        setdesktop(&d);
        statistics.Label_Click(1);
        setdesktop(&s.runner.desk);
        EXPECT_EQ(d.yields, 3);
        EXPECT_EQ(stats.passes, 3);
        EXPECT_FALSE(stats.montecarlorunning);
        EXPECT_EQ(store.lastslot, c.lastslot);
        if (c.nominal) {
            // The last curve drawn on the gain plot that stayed is the nominal one.
            const auto* ops = &s.runner.desk.surfacefor(plotPIG).ops;
            ASSERT_FALSE(ops->empty());
            EXPECT_EQ(ops->back().colour, 0);
        }
    }
}

} // namespace
} // namespace zelk
