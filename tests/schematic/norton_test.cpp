// Norton transforms and auto transformers: an ideal transformer absorbed into the ladder
// must leave the power effective gain where it was (the load is scaled with the rest), the
// default turns ratio must remove the element it names, and every refusal leaves the design
// and the undo stack as they were.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "analysis/response.h"
#include "core/desktop.h"
#include "entry/panel.h"
#include "reference.h"
#include "schematic/norton.h"
#include "schematic/schematicview.h"
#include "schematic/undo.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::Part;

// 200 frequencies, 100 kHz to 100 MHz.
std::vector<double> pegsweep() {
    std::vector<double> g;
    for (int i = 0; i < 200; ++i) {
        store.wA = TWOPI * 1e5 * std::pow(1000.0, i / 199.0);
        g.push_back(response(Quantity::PEG, 0));
    }
    return g;
}

void expectsamegain(const std::vector<double>& before, const std::vector<double>& after) {
    ASSERT_EQ(before.size(), after.size());
    int compared = 0;
    for (size_t i = 0; i < before.size(); ++i) {
        if (before[i] <= -100) continue;
        ++compared;
        EXPECT_NEAR(after[i], before[i], 1e-4) << "point " << i << " " << before[i];
    }
    EXPECT_GT(compared, 100);
}

// Inductors and capacitors in the live design (blanks hold none).
int elements() {
    int n = 0;
    for (int d = 2; d < slot(0).count(); ++d) {
        const Dipole& p = slot(0).dip(d);
        if (p.type == 6 || p.type == 38) continue;
        n += (p.L != 0) + (p.C != 0);
    }
    return n;
}

// Lossless to 1e-12 everywhere, blanks too (a far neighbour created from a blank keeps
// the blank's Q): the catalogue's fixed loss for Q = 0 would not scale with N squared.
// Capacitors keep a fixed 1e-6 loss whatever is done to them, so the gain tests either
// keep them out of the scaled part or bring the ladder down to an impedance level z
// times its own, where that loss is small in series and in shunt alike.
DesignSlot& build(std::vector<Part> parts, double z = 1) {
    for (Part& p : parts) {
        if (p.type != 1 && p.type != 31) p.Qu = 1e12;
        p.R *= z, p.L *= z, p.C /= z;
    }
    DesignSlot& s = test::ladder(parts);
    s.r0 = 50 * z;
    schematicbuild();
    return s;
}

void click(int n) { schematicwindow(0).click("symbol", n); }

struct NortonCase {
    const char* name;
    std::vector<Part> parts;
    int d;
    const char* answer; // the Getdata answer line
    int near, neartype; // the reduced neighbour and its type afterwards
    int far, fartype;   // the other neighbour
    int delta;          // change in the count of inductors and capacitors
};

class NortonDefault : public ::testing::TestWithParam<NortonCase> {};

TEST_P(NortonDefault, KeepsTheGainAndRemovesTheNamedElement) {
    const NortonCase& c = GetParam();
    test::Session session;
    build(c.parts, 0.04); // 2 ohms
    const std::vector<double> before = pegsweep();
    const int count = elements();
    const double Rload = slot(0).dip(slot(0).count()).R;
    click(c.d);
    ASSERT_TRUE(menuenabled("norton"));
    ASSERT_EQ(session.run(std::string(c.answer) + "\nnorton\n"), 0) << session.err.str();
    EXPECT_TRUE(session.runner.desk.messages.empty());
    EXPECT_EQ(undostate.undodepth, 1);
    EXPECT_EQ(slot(0).dip(c.near).type, c.neartype);
    EXPECT_EQ(slot(0).dip(c.far).type, c.fartype);
    EXPECT_EQ(elements(), count + c.delta);
    // The load is to the right: scaled by N squared.
    const double N2 = norton.N * norton.N;
    EXPECT_DOUBLE_EQ(slot(0).dip(slot(0).count()).R, norton.stepup ? Rload * N2 : Rload / N2);
    expectsamegain(before, pegsweep());
}

// Series places between shunt places and the other way round, with the defaults worked
// by hand: 2 L 1u between 32 L 2u | 3u: up 4/3 (L 4), down 3/2 (L 2).
const std::vector<Part> seriesL = {
    {1, 50}, {32, 0, 0, 2e-6}, {2, 0, 0, 1e-6}, {32, 0, 0, 3e-6}, {3, 0, 1e-9}, {33, 0, 2e-9},
    {6},     {31, 50}};
const std::vector<Part> seriesLopen = {
    {1, 50}, {38}, {2, 0, 0, 1e-6}, {32, 0, 0, 3e-6}, {3, 0, 1e-9}, {33, 0, 2e-9}, {6}, {31, 50}};
const std::vector<Part> seriesC = {{1, 50},         {33, 0, 2e-9},    {3, 0, 1e-9}, {33, 0, 3e-9},
                                   {2, 0, 0, 1e-6}, {32, 0, 0, 2e-6}, {6},          {31, 50}};
// Tank 5 between tanks: up L 1.625 beats C 7; down L 1.5 beats C 5.
const std::vector<Part> seriesTank = {
    {1, 50}, {35, 0, 2e-9, 1e-6}, {5, 0, 0.5e-9, 0.5e-6}, {35, 0, 3e-9, 0.8e-6}, {6}, {31, 50}};
// (A tank of large L at the end: a bare capacitor's fixed loss would not scale.)
const std::vector<Part> shuntL = {
    {1, 50}, {38},    {2, 0, 0, 2e-6}, {32, 0, 0, 1e-6}, {2, 0, 0, 3e-6}, {35, 0, 1e-9, 1e-5},
    {6},     {31, 50}};
const std::vector<Part> shuntC = {{1, 50},          {38}, {3, 0, 2e-9}, {33, 0, 1e-9}, {3, 0, 3e-9},
                                  {32, 0, 0, 1e-6}, {6},  {31, 50}};
// Series L-C in a shunt arm between series L-C arms: up L 3 beats C 5; down C 3/2 beats
// L 4.
const std::vector<Part> shuntLC = {
    {1, 50}, {38}, {4, 0, 0.5e-9, 2e-6}, {34, 0, 2e-9, 1e-6}, {4, 0, 4e-9, 3e-6}, {31, 50}};

INSTANTIATE_TEST_SUITE_P(
    Cases, NortonDefault,
    ::testing::Values(
        NortonCase{"SeriesLUp", seriesL, 3, "> Getdata: accept", 4, 38, 2, 32, -1},
        NortonCase{"SeriesLDown", seriesL, 3, "> Getdata: selectT accept", 2, 38, 4, 32, -1},
        NortonCase{"SeriesLUpCreatesTheFarInductor", seriesLopen, 3, "> Getdata: accept", 4, 38, 2,
                   32, 0},
        NortonCase{"SeriesLBelowDefaultRemovesNothing", seriesL, 3, "> Getdata: 1.2", 4, 32, 2, 32,
                   0},
        NortonCase{"SeriesCUp", seriesC, 3, "> Getdata: accept", 4, 38, 2, 33, -1},
        NortonCase{"SeriesCDown", seriesC, 3, "> Getdata: selectT accept", 2, 38, 4, 33, -1},
        NortonCase{"SeriesTankUp", seriesTank, 3, "> Getdata: accept", 4, 33, 2, 35, -1},
        NortonCase{"SeriesTankDown", seriesTank, 3, "> Getdata: selectT accept", 2, 33, 4, 35, -1},
        NortonCase{"ShuntLUp", shuntL, 4, "> Getdata: accept", 3, 6, 5, 2, -1},
        NortonCase{"ShuntLDown", shuntL, 4, "> Getdata: selectT accept", 5, 6, 3, 2, -1},
        NortonCase{"ShuntCUp", shuntC, 4, "> Getdata: accept", 3, 6, 5, 3, -1},
        NortonCase{"ShuntCDown", shuntC, 4, "> Getdata: selectT accept", 5, 6, 3, 3, -1},
        NortonCase{"ShuntLCUp", shuntLC, 4, "> Getdata: accept", 3, 3, 5, 4, -1},
        NortonCase{"ShuntLCDown", shuntLC, 4, "> Getdata: selectT accept", 5, 2, 3, 4, -1}),
    [](const auto& info) { return std::string(info.param.name); });

// The prompt's two defaults and a ratio read as a plain number are the golden scripts
// norton_prompt and norton_ratio.

// ---- Auto transformer ----

// The Getdata answer that clicks the picture n times, then sets the rows and accepts.
std::string pictures(int n, const std::string& rows) {
    std::string a = "> Getdata: ";
    for (int i = 0; i < n; ++i) a += "getdataimage(0) ";
    return a + rows + " accept";
}

struct AutoCase {
    const char* name;
    std::vector<Part> parts;
    int d;
    std::string answer;
    int type;     // of the tapped dipole afterwards
    double K;     // tap ratio held
    double L, C;  // of the tapped dipole afterwards
    double scale; // factor on the impedances after it (the load)
};

class AutoTap : public ::testing::TestWithParam<AutoCase> {};

TEST_P(AutoTap, TapsAndKeepsTheGain) {
    const AutoCase& c = GetParam();
    test::Session session;
    build(c.parts);
    const std::vector<double> before = pegsweep();
    click(c.d);
    ASSERT_TRUE(menuenabled("auto"));
    ASSERT_EQ(session.run(c.answer + "\nauto\n"), 0) << session.err.str();
    EXPECT_TRUE(session.runner.desk.messages.empty());
    EXPECT_EQ(undostate.undodepth, 1);
    const Dipole& t = slot(0).dip(c.d);
    EXPECT_EQ(t.type, c.type);
    EXPECT_DOUBLE_EQ(t.K, c.K);
    EXPECT_NEAR(t.L, c.L, 1e-12 * c.L);
    EXPECT_NEAR(t.C, c.C, 1e-12 * c.C);
    EXPECT_NEAR(slot(0).dip(slot(0).count()).R, 50 * c.scale, 1e-9);
    expectsamegain(before, pegsweep());
}

// A series tank L 1u C 1n between shunt capacitors; a shunt tank L 1u C 1n and a shunt
// inductor 1u after a series capacitor. Load 50 ohms, r0 50.
const std::vector<Part> stank = {{1, 50},       {33, 0, 2e-9}, {5, 0, 1e-9, 1e-6},
                                 {33, 0, 2e-9}, {6},           {31, 50}};
// Inductors and tanks after the tap, which are scaled with it.
const std::vector<Part> ptank = {
    {1, 50},          {38}, {3, 0, 1e-9}, {35, 0, 1e-9, 1e-6}, {2, 0, 0, 2e-6},
    {32, 0, 0, 1e-6}, {6},  {31, 50}};
const std::vector<Part> pind = {
    {1, 50}, {38},    {3, 0, 1e-9}, {32, 0, 0, 1e-6}, {2, 0, 0, 2e-6}, {35, 0, 1e-9, 1e-6},
    {6},     {31, 50}};
const double h = std::sqrt(0.5);

INSTANTIATE_TEST_SUITE_P(
    Cases, AutoTap,
    ::testing::Values(
        // Series tank: L raised to 2u, the same C asked for: K^2 = 1/2, C on the tap halved.
        AutoCase{"SeriesTankL", stank, 3, "> Getdata: 2u 1n", 11, h, 2e-6, 1e-9 * h* h, 1},
        // Only C lowered: L follows as L/K^2.
        AutoCase{"SeriesTankC", stank, 3, "> Getdata: 1u 0.5n", 11, h, 1e-6 / h / h, 0.5e-9, 1},
        AutoCase{"SeriesTankCaAtTap", stank, 3, pictures(1, "getvalue(0)=2u getvalue(1)=400p"), 14,
                 h, 2e-6, 0.4e-9, 1},
        // Shunt inductor: up to 200 ohms (61, from the inductor itself) or down to 12.5 (62).
        AutoCase{"ShuntInductorUp", pind, 4, "> Getdata: 200", 61, 0.5, 4e-6, 0, 4},
        AutoCase{"ShuntInductorDown", pind, 4, "> Getdata: 12.5", 62, 0.5, 1e-6, 0, 0.25},
        // The same impedance is a ratio of 1 on the step-up side.
        AutoCase{"ShuntInductorSameZ", pind, 4, "> Getdata: 50", 61, 1, 1e-6, 0, 1},
        AutoCase{"ShuntTankTap", ptank, 4, pictures(1, "getvalue(1)=2u"), 41, h, 2e-6, 1e-9 * h * h,
                 1},
        // The tap is written whenever the inductance is not lowered, at a ratio of 1 too.
        AutoCase{"ShuntTankTapSameL", ptank, 4, pictures(1, ""), 41, 1, 1e-6, 1e-9, 1},
        AutoCase{"ShuntTankTapCaAtTap", ptank, 4, pictures(2, "getvalue(1)=2u getvalue(2)=600p"), 36,
                 h, 2e-6, 0.6e-9, 1},
        AutoCase{"ShuntTankStepUp", ptank, 4, pictures(3, "getvalue(0)=200"), 55, 0.5, 4e-6, 0.25e-9,
                 4},
        AutoCase{"ShuntTankStepDown", ptank, 4, pictures(4, "getvalue(0)=12.5"), 56, 0.5, 1e-6, 1e-9,
                 0.25},
        AutoCase{"ShuntTankStepUpCa", ptank, 4, pictures(5, "getvalue(0)=200 getvalue(2)=600p"), 65,
                 0.5, 4e-6, 0.6e-9, 4},
        AutoCase{"ShuntTankStepDownCa", ptank, 4, pictures(6, "getvalue(0)=12.5 getvalue(2)=600p"),
                 66, 0.5, 1e-6, 0.6e-9, 0.25}),
    [](const auto& info) { return std::string(info.param.name); });

// Every way out that does not transform: the message (or none), the design bit for bit
// and no snapshot (one only where the panel accepted a plain tank). A zero neighbour or a
// negative impedance is the host's fault with the design as it was.
struct Refusal {
    const char* name;
    const char* command;
    std::vector<Part> parts;
    int d;
    std::string answer;
    const char* text; // nullptr: no message
    const char* title = nullptr;
    int depth = 0;
};

class Refused : public ::testing::TestWithParam<Refusal> {};

TEST_P(Refused, ShowsTheMessageAndLeavesTheDesign) {
    const Refusal& c = GetParam();
    test::Session session;
    build(c.parts);
    const DesignSlot before = slot(0);
    click(c.d);
    ASSERT_EQ(session.run(c.answer + "\n" + c.command + "\n"), 0) << session.err.str();
    EXPECT_EQ(undostate.undodepth, c.depth);
    for (int d = 1; d <= before.count(); ++d) {
        const Dipole &now = slot(0).dip(d), &was = before.dip(d);
        EXPECT_TRUE(now.type == was.type && now.C == was.C && now.L == was.L && now.R == was.R) << d;
    }
    EXPECT_EQ(slot(0).r0.value(), 50);
    const auto& m = session.runner.desk.messages;
    if (!c.text) {
        EXPECT_TRUE(m.empty());
        return;
    }
    ASSERT_EQ(m.size(), 1u);
    EXPECT_EQ(m[0].text, c.text);
    if (c.title) {
        EXPECT_EQ(m[0].title, c.title);
    }
}

const char* const aboveN = "N must be less than the default, try again";
const char* const higherL = "The new inductance must be greater than the current inductance.";

INSTANTIATE_TEST_SUITE_P(
    Cases, Refused,
    ::testing::Values(
        // Series C between shunt C's: step-up default 4.
        Refusal{"NortonAboveDefault", "norton", seriesC, 3, "> Getdata: 4.0001", aboveN, "Norton ERROR"},
        Refusal{"NortonStepDownAboveDefault", "norton", seriesC, 3, "> Getdata: selectT getvalue(0)=3.5 accept",
                aboveN, "Norton ERROR"},
        Refusal{"NortonOne", "norton", seriesC, 3, "> Getdata: 1", nullptr},
        Refusal{"NortonZero", "norton", seriesC, 3, "> Getdata: 0", nullptr},
        Refusal{"NortonText", "norton", seriesC, 3, "> Getdata: K2", nullptr},
        Refusal{"NortonCancel", "norton", seriesC, 3, "> Getdata: close", nullptr},
        // The step-down of a shunt L-C compares with no margin: a default that its 15-digit
        // text rounds up (5/3 shown as 1.66666666666667) is refused when accepted as shown.
        Refusal{"NortonShuntPairRoundedDefault", "norton",
                {{1, 50}, {38}, {4, 0, 0.5e-9, 2e-6}, {34, 0, 2e-9, 1e-6}, {4, 0, 3e-9, 3e-6}, {31, 50}}, 4,
                "> Getdata: selectT accept", aboveN, "Norton ERROR"},
        // A neighbour with a zero part: the default divides by it.
        Refusal{"NortonZeroNeighbour", "norton",
                {{1, 50}, {32, 0, 0, 2e-6}, {2, 0, 0, 1e-6}, {32, 0, 0, 0}, {3, 0, 1e-9}, {33, 0, 2e-9}, {6}, {31, 50}},
                3, "", "Run-time error '11':\n\nDivision by zero"},
        Refusal{"AutoSeriesTankUnchanged", "auto", stank, 3, "> Getdata: accept", nullptr},
        Refusal{"AutoSeriesTankSmallerL", "auto", stank, 3, "> Getdata: 0.5u 1n", higherL, "ERROR"},
        Refusal{"AutoSeriesTankLargerC", "auto", stank, 3, "> Getdata: 1u 2n",
                "The new capacitance must be less than the current capacitance.", "ERROR"},
        Refusal{"AutoSeriesTankCaLargerC", "auto", stank, 3, pictures(1, "getvalue(1)=2n"),
                "The new capacitance must be less than the default capacitance.", "WARNING"},
        Refusal{"AutoShuntTankCancel", "auto", ptank, 4, "> Getdata: close", nullptr},
        // Accepted on the plain tank: the snapshot stays, nothing else changes.
        Refusal{"AutoShuntTankNoChoice", "auto", ptank, 4, "> Getdata: accept", nullptr, nullptr, 1},
        Refusal{"AutoShuntTankStepUpLower", "auto", ptank, 4, pictures(3, "getvalue(0)=20"),
                "The new impedance must be greater than the default impedance.", "WARNING"},
        Refusal{"AutoShuntTankStepDownHigher", "auto", ptank, 4, pictures(4, "getvalue(0)=51"),
                "The new impedance must be less than the default impedance.", "WARNING"},
        Refusal{"AutoShuntTankTapSmallerL", "auto", ptank, 4, pictures(1, "getvalue(1)=0.5u"), higherL, "ERROR"},
        // A negative impedance has no tap ratio.
        Refusal{"AutoNegativeImpedance", "auto", pind, 4, "> Getdata: -200",
                "Run-time error '5':\n\nInvalid procedure call or argument"}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace zelk
