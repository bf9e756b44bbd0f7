// Inductor design: air-wound and toroid windings, the inductor list, the accept checks and
// the winding lines of the report, driven through the window as a batch script drives it.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "core/hostmath.h"
#include "schematic/inductors.h"
#include "core/commands.h"
#include "files.h"
#include "reference.h"
#include "schematic/schematicview.h"
#include "testsupport.h"
#include "schematic/report.h"

namespace zelk {
namespace {

using Lines = std::vector<std::string>;

// Wheeler's short-solenoid formula as the window uses it: microhenries from turns, mean
// radius and winding length in inches.
double wheeler(double turns, double radius, double length) {
    return (turns * radius) * (turns * radius) / (9 * radius + 10 * length);
}

TEST(Inductors, AirWoundLoopTurnsAndInductanceWithinHalfTurn) {
    for (const test::Row& row : test::datarows("schematic.txt", "airwound")) {
        const double target = row.num(0), diameter = row.num(1), tpi = row.num(2), turns = row.num(3);
        const int layers = row.whole(4);
        SCOPED_TRACE(row.text(0) + " uH on " + row.text(1) + " in at " + row.text(2));
        AirWinding w = airwinding(target, diameter, tpi);
        EXPECT_DOUBLE_EQ(w.turns, turns);
        EXPECT_EQ(w.layers, layers);
        const double r = (1 / tpi + diameter) / 2;
        EXPECT_DOUBLE_EQ(w.coilradius, r);
        EXPECT_DOUBLE_EQ(w.coillength, std::floor(turns) / tpi * layers);
        // The winding reaches the target, and half a turn less does not.
        EXPECT_GE(wheeler(turns, r, std::floor(turns) / tpi * layers), target);
        EXPECT_LT(wheeler(turns - 0.5, r, std::floor(turns - 0.5) / tpi * layers), target);
        // The loop ends on the first layer that is at least as long as the coil is wide.
        EXPECT_GE(w.coillength, 2 * r);
    }
}

TEST(Inductors, TargetsOfZeroOrLessAndBelowOneTurnEndAndZeroToroidsHaveNoTurns) {
    for (double target : {0.0, -1.0, -1e9}) {
        AirWinding w = airwinding(target, 0.5, 36.56);
        EXPECT_EQ(w.turns, 0) << target;
        EXPECT_EQ(w.layers, 0) << target;
    }
    // Half a turn already exceeds the target: no whole turn, one layer.
    AirWinding w = airwinding(1e-6, 0.5, 36.56);
    EXPECT_EQ(w.turns, 0.5);
    EXPECT_EQ(w.layers, 1);
    EXPECT_EQ(airwinding(1, 0.5, 0).turns, 0);
    EXPECT_EQ(toroidturns("T50-2", 0, 49), 0);
    EXPECT_EQ(toroidturns("T50-2", 1e-6, 0), 0);
}

TEST(Inductors, ToroidTurnsGiveTheInductanceInTheLettersUnit) {
    for (const test::Row& r : test::datarows("schematic.txt", "toroid")) {
        const double L = r.num(1), AL = r.num(2), n = toroidturns(r.text(0), L, AL);
        EXPECT_NEAR(AL * r.num(3) * n * n, L, L * 1e-12) << r.text(0);
    }
}

TEST(Inductors, ListHoldsWindableInductorsByType) {
    test::Session session;
    // 2 series L: listed. 3 has an L but is not a coil type. 12 lists L and La; 42 only La
    // (its L is 0); 25 is not a coil type; 69 lists both; a 2 with L = 0 is not listed.
    test::ladder({{1, 50},
                  {2, 0, 0, 1e-6},
                  {3, 0, 0, 1e-6},
                  {12, 0, 1e-9, 2e-6, 0, 3e-6},
                  {42, 0, 0, 0, 0, 4e-6},
                  {25, 0, 0, 1e-6, 0, 1e-6},
                  {2, 0, 0, 0},
                  {69, 0, 0, 5e-6, 0, 6e-6},
                  {31, 50}});
    EXPECT_EQ(inductorlist(), (Lines{"L 2", "L 4", "La 4", "La 5", "L 8", "La 8"}));
}

// A 3-dipole ladder with one coil, run through the window by a script.
struct CoilRun {
    test::Session session;
    explicit CoilRun(double L, double La = 0, int type = 2) {
        test::ladder({{1, 50}, {type, 0, 1e-9, L, 0, La}, {31, 50}});
        test::options(true, false, false, true);
        schematicbuild();
    }
    int window(const std::string& actions, const std::string& answers = "") {
        return session.run("> inductors: " + actions + "\n" + answers + "dinductor\n");
    }
    Dipole& d() { return slot(0).dip(2); }
};

TEST(Inductors, LaOnAToroidIsWoundForL) {
    // L = 1 uH, La = 4 uH on a T50-2: both rows give 100 * sqrt(1/49) turns.
    CoilRun run(1e-6, 4e-6, 12);
    ASSERT_EQ(run.window(R"(List1="T50-2" List2="22" List3="La 2" Command1 List3="L 2" Command1 Command2)"), 0);
    EXPECT_NEAR(run.d().Laturns, 100 * std::sqrt(1.0 / 49), 1e-9);
    EXPECT_EQ(run.d().Laturns, run.d().Lturns);
    EXPECT_EQ(run.d().Lacore, "T50-2");
    // Air-wound, La is wound for La: 4 uH on half an inch in AWG 22 (36.56 turns per inch).
    ASSERT_EQ(run.window(R"(Command3 List1=".500" List2="22" List3="La 2" Command1 Command2)"), 0);
    EXPECT_EQ(run.d().Laturns, airwinding(4, 0.5, 36.56).turns);
    EXPECT_NE(run.d().Laturns, airwinding(1, 0.5, 36.56).turns);
}

// The accept checks answered either way, and the single-layer (negative length, close
// wound) and two-layer (space wound) report lines, are the golden scripts
// inductors_airwound and inductors_checks.

TEST(Inductors, NothingChosenStoresNothingAndUnknownRowStopsTheScript) {
    CoilRun run(1e-6);
    ASSERT_EQ(run.window(R"(List2="22" List3="L 2" Command1 Command2)"), 0);
    EXPECT_TRUE(run.d().Lcore.empty());
    EXPECT_EQ(run.window(R"(List3="L 7" Command2)"), 1);
}

TEST(Inductors, DamagedTableNamesTheFileAndKeepsWhatWasRead) {
    CoilRun run(1e-6);
    const auto dir = std::filesystem::path(run.session.runner.desk.userdatadir_) / "tables";
    std::filesystem::create_directories(dir);
    const auto file = dir / "awg.txt";
    std::ofstream(file) << "\"20\",29.32\n\"21\",32.75\n\"22\",36.56\n";
    const int status = run.window(R"(List1="T50-2" List2="22" List3="L 2" Command1 Command2)");
    std::filesystem::remove(file);
    ASSERT_EQ(status, 0) << run.session.err.str();
    auto& msgs = run.session.runner.desk.messages;
    ASSERT_EQ(msgs.size(), 1u);
    EXPECT_EQ(msgs[0].text, "The table \\tables\\awg.txt ends after 3 of 31 wire gauges.");
    EXPECT_EQ(inductorswindow.ctl("List2").items.size(), 3u);
    EXPECT_EQ(run.d().Lawg, 22);
}

} // namespace
} // namespace zelk
