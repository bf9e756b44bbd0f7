// Statistical analysis: the `statistics` window (Monte Carlo, Worst Case, Sensitivity,
// reset and one-step mode), the `Sanalysis` window of tick boxes that picks the parts a
// sensitivity run moves, and the run loop that perturbs a copy of the design in slot 1
// pass after pass and overlays every open plot, then lays the nominal curve on top.
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/plotframe.h"
#include "core/window.h"

namespace zelk {

enum class Analysis { MonteCarlo, WorstCase, Sensitivity };

// The fifteen plot forms in the order a pass visits them.
inline constexpr int STATPLOTS = 15;
const std::array<PlotForm*, STATPLOTS>& statisticsplots();

struct StatisticsState {
    bool montecarlorunning = false, worstcaserunning = false, sensitivityrunning = false;
    bool onestepmode = false;
    // Passes of the run (a second click's pass included).
    long passes = 0;
    // The ticked parts of Sanalysis, by dipole: R, L, C, La, Ca, Q (Qu and Qa).
    std::array<std::array<double, 6>, MAXDIPOLE + 1> check{};
    // The band of the run per plot (in statisticsplots() order): minimum, maximum and sum
    // of the perturbed curves at each point, and how many curves went in.
    std::array<std::array<double, SWEEPPOINTS>, STATPLOTS> bandmin{}, bandmax{}, bandsum{};
    std::array<long, STATPLOTS> bandcount{};
    // The plots open when the pass began, and the clear count of the store at the start.
    std::array<bool, STATPLOTS> wasopen{};
    long clears = 0;
};
inline StatisticsState stats;

// A random number's sign (+1, -1, or 0 for exactly one half) and the uneven spread
// Int(Rnd * 10 - 5) / 5: -1 to 0.8 by 0.2, never +1.
double randomsign();
double randomspread();

// Perturbs slot 1 from slot 0 for dipoles 1 to dipolecount.
void perturb(Analysis a);

class Statistics : public Window {
  public:
    Statistics();
    void reset() override;
    void Label_Click(int n); // 1 Monte Carlo, 2 Worst Case, 3 Sensitivity, 4 reset, 5 one step
    void Label_MouseMove(int n);

  private:
    int hovered_ = 0;
    void build();
};

class Sanalysis : public Window {
  public:
    Sanalysis();
    void reset() override;
    void activate() override;
    // Builds the rows of dipoles 1 to dipolecount - 1 of slot 0, all unticked.
    void buildrows();
    // The tick of a part: field 0 R, 1 L, 2 C, 3 La, 4 Ca, 5 Q.
    bool ticked(int d, int field) const;

  private:
    void build();
};

inline Statistics statistics;
inline Sanalysis sanalysis;

// ANALYZE "Statistical Analysis".
void statistical_Click();
// Starts (or, while it runs, stops) an analysis as its label's click does.
void startanalysis(Analysis a);
// One pass: perturbs slot 1 and adds its curve to every open plot in the fixed order and
// to the band. False when a sweep was aborted (store.abortanalysis is then set).
bool statisticspass(Analysis a);
// Runs the pass loop of the analysis until its flag falls or one-step mode holds, then
// lays the nominal curve over every open plot.
void runanalysis(Analysis a);
// The reset label.
void resetstatistics();
// Resets the windows and the run state to program start.
void resetstatisticsall();

// dump band PLOT: per point "index x min max mean" over all passes of the run.
bool dumpband(const std::vector<std::string>& args, std::ostream& out);

} // namespace zelk
