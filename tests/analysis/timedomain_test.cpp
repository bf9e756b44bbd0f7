// The time-domain sums against a closed-form first-order RC low-pass and hand-written
// harmonic series.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "analysis/timedomain.h"
#include "core/designstore.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

constexpr double RS = 50, RL = 50, C = 10e-9;
constexpr double TP = 6.283185308; // the program's two-pi sets the harmonic frequencies

// 50 ohms, a shunt 10 nF, an empty series place, a 50 ohm load.
void rcladder() { test::ladder({{1, RS}, {33, 0, C}, {6}, {31, RL}}); }

// The divider's voltage ratio over the source EMF, with no parasitics (the catalogue's
// 1e-6 siemens across the capacitor moves the walk's numbers by about 5e-5 relative).
std::complex<double> H(double w) {
    std::complex<double> zc(0, -1 / (w * C));
    std::complex<double> zp = zc * RL / (zc + RL);
    return zp / (RS + zp);
}

TEST(TimeDomain, HarmonicSeriesOfAnRCLowPass) {
    test::Session session;
    rcladder();
    const double T = 20e-6, D = 0.25;
    const double w1 = TP / T;
    Harmonics h;
    double v[513];

    // Impulse: sum of |H| cos(k w1 t + arg H), k = 1..100, no direct term.
    ASSERT_TRUE(harmonicpass(TimeKind::Impulse, 0, T, 0, 0, h));
    timevalues(TimeKind::Impulse, h, T, v);
    double maximp = 0;
    for (int i = 0; i <= 512; i += 16) {
        double t = T * i / 512, ref = 0;
        for (int k = 1; k <= 100; ++k) {
            auto Hk = H(k * w1);
            ref += std::abs(Hk) * std::cos(k * w1 * t + std::arg(Hk));
        }
        EXPECT_NEAR(v[i], ref, 3e-4) << i;
        maximp = std::max(maximp, std::abs(ref));
    }
    EXPECT_GT(maximp, 1);

    // Step: the running sum of the impulse curve scaled by 4/512.
    double step[513];
    timevalues(TimeKind::Step, h, T, step);
    double sum = 0;
    for (int i = 0; i <= 512; ++i) {
        sum += (v[i] / 512) * 4;
        ASSERT_NEAR(step[i], sum, 1e-9) << i;
    }

    // Pulse: direct term at 1 Hz, harmonics weighted by 2 D sin(a)/a and delayed by half
    // the pulse; the curve is twice the series less the direct term.
    ASSERT_TRUE(harmonicpass(TimeKind::Pulse, 0, T, D, 0, h));
    EXPECT_NEAR(h.hamp[0], std::abs(H(TP)) * D, 1e-5);
    timevalues(TimeKind::Pulse, h, T, v);
    for (int i = 0; i <= 512; i += 16) {
        double t = T * i / 512;
        double a0 = std::abs(H(TP)) * D, s = a0;
        for (int k = 1; k <= 100; ++k) {
            auto Hk = H(k * w1);
            double a = k * 3.141592654 * D;
            s += 2 * std::abs(Hk) * D * std::sin(a) / a *
                 std::cos(k * w1 * t + std::arg(Hk) - k * (w1 * D * T) / 2);
        }
        EXPECT_NEAR(v[i], s * 2 - a0, 3e-4) << i;
    }
    // By hand: the 50/50 divider passes 0.5 V of the 1 V pulse once the 0.25 us time
    // constant has passed, and the direct term is 0.5*D = 0.125; the plot draws twice
    // the series less the direct term: 2*0.5 - 0.125 mid-pulse, -0.125 after it.
    EXPECT_NEAR(v[static_cast<int>(512 * D * 0.9)], 0.875, 0.01);
    EXPECT_NEAR(v[400], -0.125, 0.01);

    // Tone pulse: the tone's upper sideband shifted to base band, sign turned over.
    const double tone = 2 * 3.141592654 * 100e3;
    ASSERT_TRUE(harmonicpass(TimeKind::TonePulse, 0, T, D, tone, h));
    timevalues(TimeKind::TonePulse, h, T, v);
    for (int i = 0; i <= 512; i += 32) {
        double t = T * i / 512, s = 0;
        for (int k = 1; k <= 100; ++k) {
            auto Hk = H(tone + k * w1);
            double a = k * 3.141592654 * D;
            s += 2 * std::abs(Hk) * D * std::sin(a) / a *
                 std::cos(k * w1 * t + std::arg(Hk) - k * (w1 * D * T) / 2);
        }
        EXPECT_NEAR(v[i], -s, 3e-4) << i;
    }
}

TEST(TimeDomain, ZeroDutyCycleAndZeroTimeFault) {
    test::Session session;
    rcladder();
    Harmonics h;
    try {
        harmonicpass(TimeKind::Pulse, 0, 1e-5, 0, 0, h);
        FAIL() << "a duty cycle of 0 divides by 0";
    } catch (const RuntimeFault& f) {
        EXPECT_EQ(f.number, 6); // 0/0: the host's "Overflow"
    }
    try {
        harmonicpass(TimeKind::Impulse, 0, 0, 0, 0, h);
        FAIL() << "a plot time of 0 divides by 0";
    } catch (const RuntimeFault& f) {
        EXPECT_EQ(f.number, 11);
    }
}

} // namespace
} // namespace zelk
