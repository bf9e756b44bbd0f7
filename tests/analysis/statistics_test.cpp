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
    struct Case {
        double rnd, spread, sign;
    };
    const Case cases[] = {{0, -1, -1},      {0.05, -1, -1},  {0.1, -0.8, -1}, {0.45, -0.2, -1},
                          {0.5, 0, 0},      {0.55, 0, 1},    {0.7, 0.4, 1},   {0.9, 0.8, 1},
                          {0.99999, 0.8, 1}};
    GivenRandom g;
    setdesktop(&g);
    for (const Case& c : cases) {
        g.r = {c.rnd};
        EXPECT_NEAR(randomspread(), c.spread, 1e-15) << c.rnd;
        EXPECT_EQ(randomsign(), c.sign) << c.rnd;
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

// A designed band-pass with slot 1 copied, tolerances in fractions.
void prepare(test::Session& s, double rtol, double ltol, double ctol, double qtol) {
    ASSERT_EQ(s.run(chebyshevbp), 0) << s.err.str();
    // A lossy inductor, so that the Q fields take part.
    dipole(0, 2).Qu = 100;
    store.Rtol = rtol, store.Ltol = ltol, store.Ctol = ctol, store.Qtol = qtol;
    slot(1) = slot(0);
    s.runner.desk.seeded = true;
    s.runner.desk.seed = 1;
    s.runner.desk.randomize();
}

TEST(Perturb, MonteCarloKeepsEveryPartInsideItsTolerance) {
    test::Session s;
    prepare(s, 0.05, 0.05, 0.05, 0.2);
    const int n = slot(0).count();
    for (int pass = 0; pass < 500; ++pass) {
        perturb(Analysis::MonteCarlo);
        for (int d = 1; d <= n; ++d) {
            const Dipole &p = dipole(0, d), &q = dipole(1, d);
            const std::pair<double, double> fields[] = {{p.R, q.R},   {p.L, q.L},   {p.C, q.C}, {p.La, q.La},
                                                        {p.Ca, q.Ca}, {p.Qu, q.Qu}, {p.Qa, q.Qa}};
            for (int f = 0; f < 7; ++f) {
                const double tol = f == 0 ? 0.05 : f >= 5 ? 0.2 : 0.05;
                const double nominal = fields[f].first, moved = fields[f].second;
                if (nominal == 0) {
                    EXPECT_EQ(moved, 0);
                    continue;
                }
                // Within -tol .. +0.8 tol: the spread never reaches +1.
                EXPECT_GE(moved, nominal * (1 - tol) * (1 - 1e-12)) << pass << ' ' << d << ' ' << f;
                EXPECT_LE(moved, nominal * (1 + 0.8 * tol) * (1 + 1e-12)) << pass << ' ' << d << ' ' << f;
            }
        }
    }
}

TEST(Perturb, WorstCasePutsEveryPartAtALimit) {
    test::Session s;
    prepare(s, 0.05, 0.1, 0.02, 0.2);
    const int n = slot(0).count();
    for (int pass = 0; pass < 50; ++pass) {
        perturb(Analysis::WorstCase);
        for (int d = 1; d <= n; ++d) {
            const Dipole &p = dipole(0, d), &q = dipole(1, d);
            auto atlimit = [](double nominal, double moved, double tol) {
                return moved == nominal * (1 + tol) || moved == nominal * (1 - tol);
            };
            EXPECT_TRUE(atlimit(p.R, q.R, 0.05)) << d;
            EXPECT_TRUE(atlimit(p.L, q.L, 0.1)) << d;
            EXPECT_TRUE(atlimit(p.C, q.C, 0.02)) << d;
            EXPECT_TRUE(atlimit(p.Qu, q.Qu, 0.2)) << d;
        }
    }
}

TEST(Perturb, SensitivityMovesOnlyTheTickedParts) {
    test::Session s;
    prepare(s, 0.1, 0.1, 0.1, 0.1);
    stats.check = {};
    stats.check[2][1] = 1; // L of dipole 2
    stats.check[3][2] = 1; // C of dipole 3
    const int n = slot(0).count();
    bool movedL = false, movedC = false;
    for (int pass = 0; pass < 50; ++pass) {
        perturb(Analysis::Sensitivity);
        for (int d = 1; d <= n; ++d) {
            const Dipole &p = dipole(0, d), &q = dipole(1, d);
            EXPECT_EQ(q.R, p.R) << d;
            EXPECT_EQ(q.Qu, p.Qu) << d;
            EXPECT_EQ(q.La, p.La) << d;
            EXPECT_EQ(q.Ca, p.Ca) << d;
            if (d != 2) {
                EXPECT_EQ(q.L, p.L) << d;
            }
            if (d != 3) {
                EXPECT_EQ(q.C, p.C) << d;
            }
        }
        movedL |= dipole(1, 2).L != dipole(0, 2).L;
        movedC |= dipole(1, 3).C != dipole(0, 3).C;
    }
    EXPECT_TRUE(movedL);
    EXPECT_TRUE(movedC);
}

struct BandPoint {
    double x, lo, hi, mean;
};

std::vector<BandPoint> band(test::Session& s, const std::string& plot) {
    s.take();
    EXPECT_EQ(s.run("dump band " + plot + "\n"), 0);
    std::istringstream in(s.take());
    std::vector<BandPoint> b;
    int i;
    BandPoint p;
    while (in >> i >> p.x >> p.lo >> p.hi >> p.mean) b.push_back(p);
    return b;
}

TEST(MonteCarlo, SeededRunBandsTheNominalGain) {
    test::Session s;
    ASSERT_EQ(s.run(std::string(chebyshevbp) + pegplot), 0) << s.err.str();
    ASSERT_EQ(s.run("option seed 1\noption passes 500\nstatistical\n> Getdata: 5 5 20 5\n"
                    "event statistics Label1 click\n"),
              0)
        << s.err.str();
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
    ASSERT_EQ(s.run("> Getdata: 5 5 20 5\nevent statistics Label1 click\n"), 0);
    const std::vector<BandPoint> again = band(s, "plotPEG");
    ASSERT_EQ(again.size(), b.size());
    for (size_t i = 0; i < b.size(); ++i) EXPECT_EQ(again[i].hi, b[i].hi) << i;
}

TEST(MonteCarlo, OneStepModeRunsOnePassPerClick) {
    test::Session s;
    ASSERT_EQ(s.run(std::string(chebyshevbp) + pegplot + "statistical\nevent statistics Label5 click\n"), 0);
    EXPECT_EQ(statistics.ctl("Label5").caption, "Select Analysis Type");
    ASSERT_EQ(s.run("> Getdata: 5 5 20 5\nevent statistics Label1 click\n"), 0) << s.err.str();
    EXPECT_EQ(statistics.ctl("Label5").caption, "Plot One Step");
    EXPECT_EQ(stats.passes, 1);
    EXPECT_TRUE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, 1);
    ASSERT_EQ(s.run("event statistics Label5 click\nevent statistics Label5 click\n"), 0);
    EXPECT_EQ(stats.passes, 3);
    // A second click on the label stops the run with one more pass.
    ASSERT_EQ(s.run("event statistics Label1 click\n"), 0);
    EXPECT_EQ(stats.passes, 4);
    EXPECT_FALSE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, 0);
    // Reset.
    ASSERT_EQ(s.run("event statistics Label4 click\n"), 0);
    EXPECT_FALSE(stats.onestepmode);
    EXPECT_EQ(statistics.ctl("Label5").caption, "Enable One Step Mode");
    EXPECT_EQ(store.help2, "Click 'Restore Defaults' on plot window to reset analysis.");
}

TEST(Statistics, NoPlotOpenShowsTheBox) {
    struct Case {
        const char* label;
        const char* text;
    };
    const Case cases[] = {
        {"Label1", "You must have some kind of plot window open to do Monte Carlo analysis on"},
        {"Label2", "You must have some kind of plot window open to do Worst Case analysis on"},
        {"Label3", "You must have some kind of plot window open to do Sensitivity analysis on"}};
    for (const Case& c : cases) {
        test::Session s;
        ASSERT_EQ(s.run(std::string(chebyshevbp) + "statistical\nevent statistics " + c.label + " click\n"), 0);
        ASSERT_FALSE(s.runner.desk.messages.empty());
        EXPECT_EQ(s.runner.desk.messages.back().title, "NO plot window open");
        EXPECT_EQ(s.runner.desk.messages.back().text, c.text);
        EXPECT_EQ(store.lastslot, 0);
    }
}

TEST(Statistics, SensitivityAsksForTheTickedParts) {
    test::Session s;
    ASSERT_EQ(s.run(std::string(chebyshevbp) + pegplot + "option passes 20\nstatistical\n"
                    "> Getdata: 10 10 20 10\n> Sanalysis: Check2(2) Command1\n"
                    "event statistics Label3 click\n"),
              0)
        << s.err.str();
    EXPECT_EQ(stats.passes, 20);
    for (int d = 1; d <= slot(0).count(); ++d) {
        const Dipole &p = dipole(0, d), &q = dipole(1, d);
        EXPECT_EQ(q.R, p.R) << d;
        EXPECT_EQ(q.C, p.C) << d;
        if (d != 2) {
            EXPECT_EQ(q.L, p.L) << d;
        }
    }
    EXPECT_EQ(sanalysis.ctl("Label1", 1).caption, "Dipole 1");
    EXPECT_EQ(sanalysis.find("Label1", slot(0).count()), nullptr); // no row for the load
}

TEST(Statistics, AbortInTheAnalysisErrorStopsTheRun) {
    test::Session s;
    // 100 % at the limits makes parts of 0: the walk's fault box comes, Abort ends the run.
    ASSERT_EQ(s.run(std::string(chebyshevbp) + pegplot + "option passes 50\nstatistical\n"
                    "> Getdata: 100 100 20 100\n>? msgbox: Abort\nevent statistics Label2 click\n"),
              0)
        << s.err.str();
    ASSERT_FALSE(s.runner.desk.messages.empty());
    EXPECT_EQ(s.runner.desk.messages.back().title, "ANALYSIS ERROR");
    EXPECT_LT(stats.passes, 50);
    EXPECT_FALSE(stats.worstcaserunning);
    EXPECT_EQ(store.lastslot, 0);
    EXPECT_FALSE(store.abortanalysis);
}

TEST(Statistics, FileNewDuringARunLeavesNothingRunning) {
    test::Session s;
    ASSERT_EQ(s.run(std::string(chebyshevbp) + pegplot + "statistical\nevent statistics Label5 click\n"
                    "> Getdata: 5 5 20 5\nevent statistics Label1 click\n"),
              0);
    ASSERT_TRUE(stats.montecarlorunning);
    ASSERT_EQ(s.run("newfilter\n"), 0) << s.err.str();
    // The next step finds the design gone and stops without touching the slots.
    ASSERT_EQ(s.run("event statistics Label5 click\n"), 0) << s.err.str();
    EXPECT_FALSE(stats.montecarlorunning);
    EXPECT_EQ(store.lastslot, -1);
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
        ASSERT_EQ(s.run(std::string(chebyshevbp) + pegplot + "> Getdata: 8M 12M 0 -80\nPIG\nstatistical\n"), 0)
            << s.err.str();
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

TEST(Statistics, BatchOptionsTakeWholeNumbersOnly) {
    const char* const bad[] = {"option seed -1\n", "option seed x\n", "option passes 0\n",
                               "option passes 1.5\n", "option passes\n", "dump band plotNONE\n"};
    for (const char* line : bad) {
        test::Session s;
        EXPECT_EQ(s.run(line), 1) << line;
    }
    test::Session s;
    EXPECT_EQ(s.run("option seed 42\noption passes 3\n"), 0);
    EXPECT_EQ(s.runner.desk.seed, 42u);
    EXPECT_EQ(s.runner.desk.runpasses(), 3);
}

} // namespace
} // namespace zelk
