// The walkers and the response formulas against closed forms: the Butterworth corner at
// -3.0103 dB and |H|^2 = 1/(1 + (f/fc)^2n), the Chebyshev ripple, the input impedance
// against a chain-matrix computation, the floor, the open and empty places, the group
// delay's first difference and the stop on Abort.
#include <gtest/gtest.h>

#include <complex>
#include <vector>

#include "analysis/response.h"
#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/dipoles.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::Kind;

double at(Quantity q, double f, int s = 0) {
    store.wA = TWOPI * f;
    return response(q, s);
}

TEST(Walkers, ButterworthAndChebyshevLowPassFollowTheirClosedForms) {
    test::Session s;
    for (bool pi : {true, false}) {
        test::buildladder(0, {Kind::LP, test::butterworthg(5), pi, 50, 1e6, 0, 0});
        EXPECT_NEAR(at(Quantity::PEG, 1e6), -3.0103, 0.001);
        for (double x : {0.1, 0.5, 0.9, 1.3, 2.0, 4.0}) {
            double want = -10 * std::log10(1 + std::pow(x, 10));
            EXPECT_NEAR(at(Quantity::PEG, x * 1e6), want, 0.001) << x;
            // Equal terminations: the insertion power gain is the effective one, and the
            // effective voltage gain stands 6.02 dB lower.
            EXPECT_NEAR(at(Quantity::PIG, x * 1e6), want, 0.001);
            EXPECT_NEAR(at(Quantity::VEG, x * 1e6), want - 6.0206, 0.001);
        }
        // Matched at low frequency: the input impedance is the 50 ohm load.
        EXPECT_NEAR(at(Quantity::InputImpedance, 1e4), 50, 0.01);
        // The phase at the cut-off is -5 * 45 degrees, wrapped by the walk's principal
        // arctangents into a sum of arm angles; the 1e-6 siemens of each capacitor moves
        // it by a few thousandths of a degree.
        const double wrapped = std::fmod(at(Quantity::Phase, 1e6) + 225.0, 180.0);
        EXPECT_NEAR(std::min(std::abs(wrapped), 180 - std::abs(wrapped)), 0, 1e-2);
    }
    // Chebyshev 0.5 dB, order 5: equiripple between 0 and -0.5 dB below the corner,
    // -0.5 dB at it, and 10log(1 + eps^2 T5(x)^2) beyond.
    test::buildladder(0, {Kind::LP, test::chebyshevg(5, 0.5), true, 50, 1e6, 0, 0});
    double lo = 0, hi = -100;
    for (int i = 0; i <= 400; ++i) {
        double v = at(Quantity::PEG, 1e6 * i / 400.0 + 1);
        lo = std::min(lo, v), hi = std::max(hi, v);
    }
    EXPECT_NEAR(lo, -0.5, 0.002);
    EXPECT_NEAR(hi, 0, 0.001);
    double eps2 = std::pow(10, 0.05) - 1;
    for (double x : {1.0, 1.5, 2.0}) {
        double T5 = std::cosh(5 * std::acosh(x));
        EXPECT_NEAR(at(Quantity::PEG, x * 1e6), -10 * std::log10(1 + eps2 * T5 * T5), 0.002);
    }
}

TEST(Walkers, InputImpedanceAndPhaseAgreeWithAChainMatrix) {
    test::Session s;
    using cd = std::complex<double>;
    test::buildladder(0, {Kind::BP, test::chebyshevg(3, 0.2), false, 75, 9e6, 11e6, 100});
    GroupDelayState gd;
    double prevphase = 0, prevw = 0;
    for (double f : {7e6, 9.5e6, 10e6, 10.7e6, 13e6}) {
        // Reference: chain matrices from the load back, each arm as 1/Y or Z as the
        // catalogue evaluates it, with wA = 2*pi*f at the program's pi.
        store.wA = TWOPI * f;
        test::Chain m; // of dipoles 2..n
        int n = slot(0).count();
        for (int d = 2; d <= n; ++d) {
            dipoleimmittance(d, 0);
            if (d % 2) m.series({store.Zr, store.Zi});
            else m.shunt({store.Yr, store.Yi});
        }
        cd Zin = m.A / m.C; // looking into dipole 2 with the output open (load included)
        EXPECT_NEAR(at(Quantity::InputImpedance, f), std::abs(Zin), 1e-9 * std::abs(Zin));
        double Rs = 75;
        cd H = 1.0 / (m.A + Rs * m.C); // Vout / Vsource
        store.wA = TWOPI * f;
        forwardwalk(0);
        EXPECT_NEAR(walk.Vratio, std::abs(H), 1e-6 * std::abs(H));
        // The phase is a sum of principal-value arctangents: equal modulo 180 degrees.
        double diff = std::remainder(walk.Vphase - std::arg(H), M_PI);
        EXPECT_NEAR(diff, 0, 1e-6);
        // Group delay: the plain first difference against the previous point.
        store.wA = TWOPI * f;
        double tg = response(Quantity::GroupDelay, 0, gd);
        EXPECT_DOUBLE_EQ(tg, std::abs((walk.Vphase - prevphase) / (TWOPI * f - prevw)));
        prevphase = walk.Vphase, prevw = TWOPI * f;
        // Return loss against R of dipole 1: -20 log |(R1+Z)/(R1-Z)|.
        double rl = at(Quantity::ReturnLoss, f);
        EXPECT_NEAR(rl, -20 * std::log10(std::abs((Rs + Zin) / (Rs - Zin))), 1e-9);
    }
}

TEST(Walkers, FloorOpenAndEmptyPlacesAndAbort) {
    test::Session s;
    // Plain dipoles of the given types and resistances, every one with C = 1 nF.
    auto plain = [](std::initializer_list<std::pair<int, double>> ds) {
        std::vector<test::Part> parts;
        for (auto [t, R] : ds) parts.push_back({t, R, 1e-9});
        test::writeladder(0, parts);
    };
    store.wA = TWOPI * 1e6;
    // Type 6 in a shunt place: a1 = 0 by sign(0), Zdmag 0, Vratio to the floor.
    plain({{1, 50}, {6, 0}, {6, 0}, {31, 50}});
    forwardwalk(0);
    EXPECT_EQ(walk.Vratio, 1e-12);
    EXPECT_DOUBLE_EQ(at(Quantity::VEG, 1e6), -240);
    // Type 8 in a series place: a deep but finite loss, 50/(1e12 + 100).
    plain({{1, 50}, {38, 0}, {8, 0}, {31, 50}});
    forwardwalk(0);
    EXPECT_NEAR(walk.Vratio, 50 / (1e12 + 100), 1e-20);
    EXPECT_NEAR(walk.Vphase, 0, 1e-15);
    // Type 38 in a shunt place barely touches the divider: 0.5 for the matched pair.
    plain({{1, 50}, {38, 0}, {6, 0}, {31, 50}});
    forwardwalk(0);
    EXPECT_NEAR(walk.Vratio, 0.5, 1e-10);
    EXPECT_DOUBLE_EQ(walk.Zmag1, 50);
    EXPECT_DOUBLE_EQ(walk.Zdmag, 50);
    EXPECT_NEAR(at(Quantity::PEG, 1e6), 0, 1e-9);
    EXPECT_NEAR(at(Quantity::OutputImpedance, 1e6), 50, 1e-6);
    // Equal R1 and input resistance: a return loss of exactly 120.
    plain({{1, 2}, {31, 2}});
    EXPECT_EQ(at(Quantity::ReturnLoss, 1e6), 120);
    // No dipoles: Vratio 1, Rt, Xt and Vphase 0.
    slot(0).dipolecount = 0;
    forwardwalk(0);
    EXPECT_EQ(walk.Vratio, 1);
    EXPECT_EQ(walk.Vphase, 0);

    // A zero capacitor: the box names dipole 4 of filter 1, Abort stops the walk there and
    // the program goes on with the next point.
    test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 0});
    dipole(0, 4).C = 0;
    dipole(0, 4).type = 33;
    dipole(0, 2).C = 0; // now dipole 2 is the first to fault
    s.runner.desk.queue.push_back({"msgbox", {"Abort"}});
    at(Quantity::PEG, 1e6);
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    EXPECT_EQ(s.runner.desk.messages[0].title, "ANALYSIS ERROR");
    EXPECT_EQ(s.runner.desk.messages[0].text.substr(0, 51),
              "ERROR 11, Division by zero In DIPOLE 2 of FILTER 1\n");
    EXPECT_TRUE(store.abortanalysis);
    store.abortanalysis = false;
    test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 0});
    EXPECT_TRUE(std::isfinite(at(Quantity::PEG, 1e6)));
    EXPECT_EQ(s.runner.desk.messages.size(), 1u);
}

} // namespace
} // namespace zelk
