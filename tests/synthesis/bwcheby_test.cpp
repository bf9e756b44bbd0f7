// Butterworth and Chebyshev prototypes against closed forms, published tables and the
// program's own deliberate arithmetic.
#include <gtest/gtest.h>

#include <cmath>

#include "core/designstore.h"
#include "synthesis/bwcheby.h"
#include "files.h"
#include "tests/testsupport.h"

namespace zelk {
namespace {

constexpr double exactpi = 3.14159265358979323846;
const double halfpower = 10 * std::log10(2.0); // ripple with epsilon = 1

void request(double order, double apass, double astop, double zin, double zout, double wA) {
    store.curslot = 0;
    DesignSlot& s = slot(0);
    s.order = order;
    s.Apass = apass;
    s.Astop = astop;
    s.Zin = zin;
    s.Zout = zout;
    store.wA = wA;
    store.cancelled = false;
}

// g1, g2, ... of the last prototype against a published or hand-worked list.
void expectg(std::initializer_list<double> want, double tol) {
    int k = 0;
    for (double g : want) {
        ++k;
        EXPECT_NEAR(store.g[k], g, tol) << "g" << k;
    }
}

TEST(Butterworth, EqualTerminationsFollowTheClosedForm) {
    test::Session session;
    for (int n : {1, 2, 3, 4, 5, 7, 8, 16}) {
        request(n, halfpower, 0, 50, 50, 2);
        butterworthproto();
        ASSERT_FALSE(store.cancelled);
        for (int k = 1; k <= n; ++k)
            EXPECT_NEAR(store.g[k], 2 * std::sin((2 * k - 1) * exactpi / (2 * n)), 2e-9) << n << " " << k;
        EXPECT_EQ(store.oddorder, n % 2 == 1);
        // What the order achieves at the stop-band ratio: 10 log10(1 + wA^2n).
        EXPECT_NEAR(slot(0).Astop, 10 * std::log10(1 + std::pow(2.0, 2 * n)), 1e-6);
        EXPECT_DOUBLE_EQ(prototerms.g1term, store.g[1]);
        EXPECT_DOUBLE_EQ(prototerms.gnterm, store.g[n]);
    }
    EXPECT_NEAR(prototerms.kcoupling[3], 1 / std::sqrt(store.g[3] * store.g[4]), 1e-12);

    // A cut-off at a 1 dB point: every element scales by epsilon^(1/n).
    request(3, 1, 0, 75, 75, 2);
    butterworthproto();
    const double scale = std::pow(std::pow(10, 0.1) - 1, 1.0 / 6);
    EXPECT_NEAR(scale, 0.79836, 1e-5); // hand value
    EXPECT_NEAR(store.g[2], 2 * scale, 1e-9);
    EXPECT_NEAR(store.g[1], scale, 1e-9);

    // Apass 0 is a 3 dB corner and is stored so.
    request(2, 0, 0, 50, 50, 2);
    butterworthproto();
    EXPECT_EQ(slot(0).Apass.value(), 3);
    EXPECT_NEAR(store.g[1], 2 * std::sin(exactpi / 4) * std::pow(std::pow(10, 0.3) - 1, 0.25), 1e-9);
}

TEST(Butterworth, OrderEstimateRoundsWithPointNineNine) {
    test::Session session;
    // Textbook: n >= log(10^(As/10) - 1) / (2 log wA) = 9.966 for 60 dB at an octave.
    request(0, halfpower, 60, 50, 50, 2);
    butterworthproto();
    EXPECT_EQ(slot(0).order.value(), 10);
    EXPECT_NEAR(slot(0).Astop, 60.206, 1e-3);
    // An exact requirement of 4.005 orders gives 4, one of 4.02 gives 5.
    for (auto [x, want] : {std::pair{4.005, 4.0}, std::pair{4.02, 5.0}, std::pair{3.5, 4.0}}) {
        const double e = std::pow(2.0, x);
        request(0, halfpower, 10 * std::log10(1 + e * e), 50, 50, 2);
        butterworthproto();
        EXPECT_EQ(slot(0).order.value(), want) << x;
    }
}

// The order limit of 16, given or estimated, is the golden script spine_order_limits.

TEST(Butterworth, UnequalTerminationsKeepTheProgramsArithmetic) {
    test::Session session;
    // Ratio 4 (r = 2), 3 dB corner: a1 = 1, a2 = (3/5)^(1/3); hand values of the
    // recursion: g1 = 2 sin 30deg / (a1 + a2).
    request(3, halfpower, 0, 50, 200, 2);
    butterworthproto();
    const double a2 = std::cbrt(0.6);
    EXPECT_NEAR(store.g[1], 1 / (1 + a2), 1e-8);
    expectg({0.5424662, 1.4431067, 1.5967571}, 1e-6);
    // The same terminations the other way round give the same list.
    request(3, halfpower, 0, 200, 50, 2);
    butterworthproto();
    EXPECT_NEAR(store.g[2], 1.4431067, 1e-6);

    // a2 from a1 after its root: with a 1 dB corner a2 = (a1 * 3/5)^(1/3), not
    // (sqrt(K) * 3/5)^(1/3).
    request(3, 1, 0, 50, 200, 2);
    butterworthproto();
    const double K = 1 / (std::pow(10, 0.1) - 1);
    const double a1 = std::pow(K, 1.0 / 6);
    const double slipped = std::cbrt(a1 * 0.6);
    const double gb1 = ((a1 + slipped) * (a1 + slipped)) / (a1 + slipped);
    EXPECT_NEAR(store.g[1], 2 * std::sin(3.141592654 / 6) / gb1, 1e-9);

    // Ratio 100 (r = 10): the sine argument divided by PI. Hand values for n = 2,
    // 3 dB: ga1 = sin((1/PI)/2/2), gb1 = 1, ga2 = sin((3/PI)/2/2), gb2 = cos(PI/4)^2.
    request(2, halfpower, 0, 50, 5000, 2);
    butterworthproto();
    const double a = std::pow(1 / (std::pow(10, halfpower / 10) - 1), 0.25);
    EXPECT_NEAR(store.g[1], std::sin(1 / 3.141592654 / 4) / a, 1e-9);
    EXPECT_NEAR(store.g[2], std::sin(3 / 3.141592654 / 4) / a / 0.5, 1e-9);
    EXPECT_NEAR(store.g[1], 0.0794935, 1e-6); // far from the textbook 1.414
}

TEST(Chebyshev, EqualTerminationsMatchPublishedTables) {
    test::Session session;
    for (const test::Row& r : test::datarows("prototypes.txt", "chebyshev")) {
        const int n = r.whole(0);
        request(n, r.num(1), 0, 50, 50, 2);
        chebyshevproto();
        for (int k = 1; k <= n; ++k) EXPECT_NEAR(store.g[k], r.num(static_cast<size_t>(k) + 1), 5e-5) << n << " g" << k;
        EXPECT_EQ(store.oddorder, n % 2 == 1);
    }
    // Even order with equal terminations (the last row): r0 = 1 <= m, the first case; the
    // list is the table's g1..g4 and neither termination changes.
    EXPECT_EQ(slot(0).Zin.value(), 50);
    EXPECT_EQ(slot(0).Zout.value(), 50);
    EXPECT_EQ(store.help1,
              "For even order Chebyshev filters, the input impedance has a minimum ratio with the output impedance.");
    EXPECT_EQ(store.help4, "It is recommended you round your requirements to an odd order filter.");
    // Astop = 10 log10(1 + eps^2 cosh^2(n acosh wA)): 0.1 dB, n = 4 at wA = 2 (T4(2) = 97).
    EXPECT_NEAR(slot(0).Astop, 10 * std::log10(1 + (std::pow(10, 0.01) - 1) * 97 * 97), 1e-6);
}

TEST(Chebyshev, OrderEstimateUsesThePlusSign) {
    test::Session session;
    // 1 dB ripple, 40 dB at wA = 3: e = sqrt((10^4 + 1) K), order = Int(acosh(e)/acosh(3) + .99).
    request(0, 1, 40, 50, 50, 3);
    chebyshevproto();
    const double K = 1 / (std::pow(10, 0.1) - 1);
    const double e = std::sqrt((1e4 + 1) * K);
    const double exact = std::acosh(e) / std::acosh(3.0);
    EXPECT_NEAR(exact, 3.389, 1e-3); // ln(393.1) / ln(3 + sqrt 8)
    EXPECT_EQ(slot(0).order.value(), std::floor(exact + 0.99));
    EXPECT_EQ(slot(0).order.value(), 4);
}

TEST(Chebyshev, UnequalTerminationCases) {
    test::Session session;
    // Odd order: v = r0. Hand value of g1 for n = 3, 0.5 dB, ratio 4.
    request(3, 0.5, 0, 50, 200, 2);
    chebyshevproto();
    expectg({0.9284715, 1.3233529, 1.4214727}, 1e-6);
    // Even order above the minimum ratio: v from the product formula; ratio 100 -> r0 = 10,
    // h = 5.05, v = h sqrt(1 - rho^2) + sqrt(h^2 (1 - rho^2) - 1).
    request(2, 0.5, 0, 50, 5000, 2);
    chebyshevproto();
    const double rho2 = 1 - std::pow(10, -0.05);
    const double h = 5.05;
    const double v = h * std::sqrt(1 - rho2) + std::sqrt(h * h * (1 - rho2) - 1);
    EXPECT_GT(v, 1);
    EXPECT_LT(v, 10);
    const double K = 1 / rho2 - 1;
    const double vr = (v * v - 1) / (v * v + 1);
    const double x = std::sqrt(1 / rho2 + 0) + std::sqrt(K);
    const double y = vr * std::sqrt(K) + std::sqrt(vr * vr * K + 1);
    const double xs = std::sqrt(x), ys = std::sqrt(y);
    const double a1 = (xs * xs - 1) / 2 / xs, a2 = (ys * ys - 1) / 2 / ys;
    EXPECT_NEAR(store.g[1], 2 * std::sin(3.141592654 / 4) / (a1 + a2), 1e-9);
    // A zero ripple stops with the host's division fault rather than a silent infinity.
    request(3, 0, 0, 50, 50, 2);
    EXPECT_THROW(chebyshevproto(), RuntimeFault);
}

} // namespace
} // namespace zelk
