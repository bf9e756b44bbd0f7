// Coupled-resonator band-pass designs: the closed-form and table prototypes, the
// capacitive end match and its boundary, and the band edges of an analysed design read
// from the plotted curve.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/designflow.h"
#include "core/designstore.h"
#include "entry/panel.h"
#include "synthesis/bwcheby.h"
#include "synthesis/coupled.h"
#include "files.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::pi;

// The three windows of a coupled-resonator command in the order they open, then the title.
std::string crscript(const std::string& command, const std::string& band,
                     const std::string& lc = "accept", const std::string& zcr = "accept") {
    return "> Getdata: " + band + "\n> Getdata: " + lc + "\n> Getdata: " + zcr +
           "\n>? designtitle: Text1=\"CR\" Command1\n" + command + "\n";
}

TEST(CoupledResonator, ButterworthOrder3CouplingsAndBandEdges) {
    test::Session s;
    ASSERT_TRUE(s.ok(crscript("BCR", "10M 500K 3") + "> Getdata: 9.5M 10.5M 0 -40\nPEG\n"));
    const DesignSlot& d = slot(0);
    ASSERT_EQ(d.code, "BCR");
    ASSERT_EQ(d.count(), 10);
    const std::vector<double> g = test::butterworthg(3);
    const double w0 = d.w0, bw = d.bw, L = d.dip(4).L;
    for (int i = 1; i <= 2; ++i) {
        const double k = 1 / std::sqrt(g[i] * g[i + 1]);
        EXPECT_NEAR(prototerms.kcoupling[static_cast<size_t>(i)], k, 1e-8 * k);
        // The coupling capacitor normalised by the resonator's own C and the loaded Q.
        EXPECT_NEAR(d.dip(2 * i + 3).C * (w0 / bw) * w0 * w0 * L, k, 1e-8 * k);
    }
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(d.dip(2 * i + 2).Qu, 1000) << "lossless reads Q 1000";
    // The -3 dB crossings of the transducer gain, from the plotted points.
    const auto c = test::curve(s, "plotPEG");
    ASSERT_GE(c.size(), 512u);
    std::vector<double> edges;
    for (size_t j = 1; j < c.size(); ++j) {
        const double y0 = c[j - 1].value + 3, y1 = c[j].value + 3;
        if (y0 * y1 < 0) edges.push_back(c[j - 1].x + (c[j].x - c[j - 1].x) * -y0 / (y1 - y0));
    }
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_NEAR(edges[0], 9.75e6, 0.02 * 9.75e6);
    EXPECT_NEAR(edges[1], 10.25e6, 0.02 * 10.25e6);
}

TEST(CoupledResonator, ChebyshevElementsAreTextbookValuesMovedToThreeDecibels) {
    test::Session s;
    store.curslot = 0;
    // The published 0.1 dB prototypes, the load g(n+1) included.
    for (const test::Row& r : test::datarows("prototypes.txt", "chebyshev")) {
        if (r.num(1) != 0.1) continue;
        const int n = r.whole(0);
        slot(0).order = n;
        slot(0).Apass = 0.1;
        chebyshevelements();
        const double eps = std::sqrt(std::pow(10, 0.01) - 1);
        const double h = std::cosh(std::acosh(std::sqrt(std::pow(10, 0.3) - 1) / eps) / n);
        for (int k = 1; k <= n; ++k)
            EXPECT_NEAR(store.g[static_cast<size_t>(k)] / h, r.num(static_cast<size_t>(k) + 1), 6e-5) << n << ' ' << k;
        EXPECT_NEAR(store.g[static_cast<size_t>(n + 1)], r.num(static_cast<size_t>(n) + 2), 6e-5) << "load not rescaled";
        EXPECT_EQ(store.oddorder, n % 2 == 1);
    }
}

// The prompt's refusals and defaults are the golden scripts coupled_prompts and
// coupled_defaults.

// The layout on its own, with the design resistance known to the test.
TEST(CoupledResonator, EndMatchAndItsBoundary) {
    test::Session s;
    store.curslot = 0;
    DesignSlot& d = slot(0);
    d.order = 3;
    d.w1 = 2 * pi * 9.75e6;
    d.w2 = 2 * pi * 10.25e6;
    butterworthCRproto();
    crcentre();
    coupled.Lres = 1.6e-7;
    flow.Qdesign = 1000;
    const double w0 = d.w0, bw = d.bw;
    const double r0 = w0 * coupled.Lres * prototerms.g1term * (w0 / bw);
    const double cres = 1 / (w0 * w0) / coupled.Lres;
    struct Case {
        double zin, zout;
        bool inmatch, outmatch;
    };
    const Case cases[] = {{r0, r0, false, false},       {r0 - 1, r0 - 1, false, false},
                          {r0 - 1.01, r0, true, false}, {50, 1e6, true, false},
                          {r0, 75, false, true},        {50, 75, true, true}};
    for (const Case& c : cases) {
        d.Zin = c.zin;
        d.Zout = c.zout;
        crlayout();
        ASSERT_EQ(d.count(), 10);
        EXPECT_NEAR(d.r0, r0, 1e-12 * r0);
        EXPECT_EQ(d.dip(3).type, c.inmatch ? 3 : 6) << c.zin;
        EXPECT_EQ(d.dip(9).type, c.outmatch ? 3 : 6) << c.zout;
        EXPECT_EQ(d.dip(1).R, c.inmatch ? c.zin : r0);
        EXPECT_NEAR(d.dip(10).R, c.outmatch ? c.zout : r0, 1e-9 * r0);
        // Each resonator node keeps the total capacitance that tunes it to w0.
        for (int i = 1; i <= 3; ++i)
            EXPECT_NEAR(d.dip(2 * i + 1).C + d.dip(2 * i + 2).C + d.dip(2 * i + 3).C, cres,
                        1e-12 * cres);
        const double T = prototerms.g1term * w0 * 1000 / (bw * 1000 - prototerms.g1term * w0);
        if (c.inmatch) {
            EXPECT_NEAR(d.dip(3).C,
                        1 / w0 / std::sqrt(c.zin * T * w0 * coupled.Lres - c.zin * c.zin),
                        1e-12 * d.dip(3).C);
        }
    }
    // The tapped form: the end resonators become types 57 and 58.
    d.Zin = 50;
    d.Zout = 75;
    crlayouttapped();
    EXPECT_EQ(d.count(), 8);
    EXPECT_EQ(d.dip(2).type, 57);
    EXPECT_EQ(d.dip(6).type, 58);
    EXPECT_NEAR(d.dip(2).Ca / std::sqrt(r0 / 50), cres - d.dip(3).C, 1e-12 * cres);
}

TEST(CoupledResonator, MatchedDesignPassesThePowerOfAFiftyOhmSource) {
    for (const char* z : {"50 50", "getvalue(0)=50 accept", "getvalue(1)=50 accept"}) {
        test::Session s;
        ASSERT_TRUE(s.ok(crscript("BCR", "10M 500K 3", "accept", z) + "> Getdata: 9.5M 10.5M 0 -40\nPEG\n"))
            << z << s.err.str();
        double peak = -1e9;
        for (const auto& p : test::curve(s, "plotPEG")) peak = std::max(peak, p.value);
        EXPECT_GT(peak, -1.5) << z;
    }
}

TEST(CoupledResonator, TableCommandsReadTheFirstRecordOfTheOrder) {
    for (const test::Row& c : test::datarows("design.txt", "crtables")) {
        // The first record of order 5 in the file, read here on its own.
        std::vector<double> first;
        for (const auto& v : test::tablelines(c.text(1) + ".tbl"))
            if (v[0] == 5 && first.empty()) first.assign(v.begin() + 2, v.end());
        ASSERT_EQ(first.size(), 5u) << c.text(1);
        test::Session s;
        ASSERT_TRUE(s.ok(crscript(c.text(0), "10M 500K 5"))) << c.text(0) << s.err.str();
        EXPECT_EQ(slot(0).code, "TCR");
        EXPECT_EQ(slot(0).title, c.text(2));
        EXPECT_EQ(prototerms.g1term, first[0]) << c.text(0);
        EXPECT_EQ(prototerms.gnterm, first[4]) << c.text(0);
        EXPECT_NEAR(prototerms.kcoupling[2], 1 / std::sqrt(first[1] * first[2]), 1e-15)
            << c.text(0);
        EXPECT_EQ(slot(0).count(), 14);
    }
}

// The run-time faults of a zero load and a Q too low are the golden script design_faults.

} // namespace
} // namespace zelk
