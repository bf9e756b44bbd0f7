// The exact time responses against closed forms worked here by partial fractions: a
// fifth-order Butterworth low-pass designed through the program, and a first-order
// high-pass whose step jumps at t = 0.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <string>

#include "analysis/exacttime.h"
#include "analysis/plots.h"
#include "core/designstore.h"
#include "core/dipoles.h"
#include "core/framestate.h"
#include "core/surface.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

using cplx = std::complex<double>;

const char* const butterworth5 = "> selfunction: selection(0) \"Accept design\"\n> Getdata: 1M 2M 3 \"\" 5 50 50\n"
                                 ">? Getdata: Lossless\n>? designtitle: Command1\nbutterworth\n";

// The unit step response of H(s) = 1/B_n(s/wc), the Butterworth polynomial with its
// poles p_k = exp(j pi (2k + n - 1)/(2n)) on the unit circle (B_n(0) = 1):
// y = 1 + sum_k r_k e^(p_k wc t)/p_k with the residues r_k = 1/prod_{j != k}(p_k - p_j).
double butterworthstep(int n, double wct) {
    cplx p[16];
    for (int k = 1; k <= n; ++k) p[k - 1] = std::polar(1.0, std::numbers::pi * (2 * k + n - 1) / (2 * n));
    cplx y = 1;
    for (int k = 0; k < n; ++k) {
        cplx r = 1;
        for (int j = 0; j < n; ++j)
            if (j != k) r *= p[k] - p[j];
        y += std::exp(p[k] * wct) / (r * p[k]);
    }
    return y.real();
}

struct Case {
    const char* name;
    const char* design; // empty: the high-pass ladder written here
    double rs, rl;
};

class ExactTime_ : public ::testing::TestWithParam<Case> {};

// The drawn step is 2 s(t) for a 1 V source EMF: the divider's 2 RL/(RS + RL) times the
// normalised step. The impulse, drawn as (T/2) h(t), integrates to it with the scale
// 4/T (trapezoids over the plot's points).
TEST_P(ExactTime_, StepMatchesTheClosedFormAndTheImpulseIntegratesToIt) {
    const Case& c = GetParam();
    test::Session session;
    double T;
    std::function<double(double)> closed;
    if (*c.design) {
        ASSERT_EQ(session.run(c.design), 0) << session.err.str();
        const DesignSlot& s = slot(0);
        ASSERT_EQ(s.order, 5);
        // The ladder's half-power frequency: w0 scaled by eps^(-1/n), eps^2 = 10^(Apass/10) - 1.
        const double wc = s.w0 * std::pow(std::pow(10.0, s.Apass / 10) - 1, -1.0 / 10);
        T = 31.41592654 / s.w0;
        closed = [=](double t) { return butterworthstep(5, wc * t); };
    } else {
        // Source, an open shunt place, a series 1 nF, the load: H = (RL/(RS + RL)) s tau/(1 + s tau).
        const double C = 1e-9, tau = (c.rs + c.rl) * C;
        test::ladder({{1, c.rs}, {38}, {3, 0, C}, {31, c.rl}});
        T = 5 * tau;
        closed = [=](double t) { return std::exp(-t / tau); };
    }
    ExactTime e;
    ASSERT_TRUE(exacttimevalues(0, T, e));
    ASSERT_TRUE(e.resolved) << e.accuracy;
    const double gain = 2 * c.rl / (c.rs + c.rl);
    double worst = 0, integral = e.step[0];
    for (int i = 0; i <= 512; ++i) {
        const double t = T * i / 512;
        worst = std::max(worst, std::abs(e.step[i] / gain - closed(t)));
        if (i > 0) integral += (4.0 / 512) * (e.impulse[i - 1] + e.impulse[i]) / 2;
        ASSERT_NEAR(integral, e.step[i], 2e-4) << i;
    }
    EXPECT_LT(worst, 1e-3);
}

INSTANTIATE_TEST_SUITE_P(
    Exact, ExactTime_,
    ::testing::Values(Case{"ButterworthEqual", butterworth5, 50, 50},
                      Case{"ButterworthDouble",
                           "> selfunction: selection(0) \"Accept design\"\n> Getdata: 1M 2M 3 \"\" 5 50 100\n"
                           ">? Getdata: Lossless\n>? designtitle: Command1\nbutterworth\n",
                           50, 100},
                      Case{"HighPassRC", "", 50, 50}),
    [](const auto& info) { return std::string(info.param.name); });

// Lines of a colour, and whether a text was drawn, on a plot's recording.
int lines(const PlotForm& p, long colour) {
    int n = 0;
    for (auto& op : dynamic_cast<RecordingSurface&>(*p.surface).ops) n += op.kind == RecordingSurface::Op::Line && op.colour == colour;
    return n;
}
bool drawn(const PlotForm& p, const std::string& text) {
    for (const std::string& t : dynamic_cast<RecordingSurface&>(*p.surface).texts())
        if (t == text) return true;
    return false;
}

// The option redraws the open step plot with the exact curve and its legend; the
// classic curve keeps its numbers, and off takes the second curve away again.
TEST(ExactTime, TheOptionAddsACurveAndALegendBesideTheUnchangedClassic) {
    test::Session s;
    ASSERT_EQ(s.run(std::string(butterworth5) + "> Getdata: accept\nUSR\n"), 0) << s.err.str();
    const auto classic = PLOTSR.values;
    EXPECT_EQ(lines(PLOTSR, exactcolour(0)), 0);
    ASSERT_EQ(s.run("option exacttime on\n"), 0);
    EXPECT_GT(lines(PLOTSR, exactcolour(0)), 400);
    EXPECT_TRUE(drawn(PLOTSR, "100 harmonics"));
    EXPECT_TRUE(drawn(PLOTSR, "exact"));
    EXPECT_EQ(PLOTSR.values, classic);
    ASSERT_EQ(s.run("option exacttime off\n"), 0);
    EXPECT_EQ(lines(PLOTSR, exactcolour(0)), 0);
    EXPECT_FALSE(drawn(PLOTSR, "exact"));
}

// A ladder that walks well at the 100 harmonics but faults far above them: the dense
// sampling brings the walk's own box when the option redraws the plot, and Abort ends
// the plot with nothing drawn.
TEST(ExactTime, AFaultInTheDenseSamplingEndsThePlotThroughTheFaultBox) {
    test::Session s;
    // The series inductor's reactance squared overflows above 1.34e7 rad/s; the plot
    // time puts harmonic 100 at 1e7 rad/s.
    test::ladder({{1, 50}, {31, 50}, {2, 0, 0, 1e147}, {31, 50}});
    updatemenus();
    ASSERT_EQ(s.run("> Getdata: 1M 62.83185u 2 -2\nUSR\n"), 0) << s.err.str();
    ASSERT_TRUE(PLOTSR.loaded);
    ASSERT_TRUE(s.runner.desk.messages.empty());
    ASSERT_EQ(s.run("> msgbox: Abort\noption exacttime on\n"), 0) << s.err.str();
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    EXPECT_EQ(s.runner.desk.messages[0].title, "ANALYSIS ERROR");
    EXPECT_FALSE(PLOTSR.loaded);
    EXPECT_FALSE(store.abortanalysis);
}

} // namespace
} // namespace zelk
