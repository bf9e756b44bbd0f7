// The value listing and title block, line for line, against values worked by hand; and
// inductor design: air-wound and toroid windings, the inductor list, the accept checks and
// the winding lines of the report, driven through the window as a batch script drives it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "core/commands.h"
#include "core/hostmath.h"
#include "files.h"
#include "reference.h"
#include "schematic/inductors.h"
#include "schematic/schematicview.h"
#include "testsupport.h"
#include "schematic/report.h"

namespace zelk {
namespace {

using test::Part;
using Lines = std::vector<std::string>;

// The listing, tuning and title block of a low-pass worked by hand, and the lines of a
// coil's winding, a crystal and a tapped coupling coil, are the golden scripts
// report_listing and report_coils.

// The title block starts 50 pixels right of the widest listing line, in bold.
TEST(DesignReport, TitleBlockStandsRightOfTheListing) {
    test::Session session;
    DesignSlot& s = test::ladder({{1, 50}, {33, 0, 3.1831e-9}, {2, 0, 0, 15.9155e-6}, {33, 0, 3.1831e-9}, {31, 50}},
                                 "BLP", "My LP");
    s.order = 3;
    s.w1 = 6283185.308;
    test::options(true, true, true, false, true);
    schematicbuild();
    SchematicWindow& w = schematicwindow(0);
    const SchematicWindow::Printed* order = nullptr;
    for (const auto& p : w.printed)
        if (p.text == "3rd order My LP") order = &p;
    ASSERT_NE(order, nullptr);
    EXPECT_TRUE(order->bold);
    double widest = 0;
    for (size_t i = 0; i < 19; ++i) widest = std::max(widest, w.textwidth(report.lines[i]));
    EXPECT_DOUBLE_EQ(widest, w.textwidth("707.106528KHz"));
    EXPECT_DOUBLE_EQ(order->x, 10 + widest + 50);
}

TEST(DesignReport, NonPositivePartsAreBlueAndSetTheWarning) {
    test::Session session;
    DesignSlot& s = test::ladder({{1, 50}, {33, 0, -2e-9}, {2, 0, 0, 1e-6}, {33, 0, 0}, {31, 50}});
    s.order = 5;
    test::options(true, true, false, false, true);
    schematicbuild();
    EXPECT_TRUE(report.valuewarning);
    EXPECT_EQ(report.lines[4], "C 2=-2.nF");
    // The listing leaves the stored field positive, as its formatter does.
    EXPECT_DOUBLE_EQ(s.dip(2).C, 2e-9);
    SchematicWindow& w = schematicwindow(0);
    for (const auto& p : w.printed) {
        if (p.text == "C 2=-2.nF" || p.text == "C 4=0") {
            EXPECT_EQ(p.colour, BLUE) << p.text;
        }
        if (p.text == "L 3=1.uHy") {
            EXPECT_EQ(p.colour, BLACK);
        }
    }
    // "5.th": the order is written through the engineering format with its point. The
    // spread whose minimum is zero is left out.
    EXPECT_NE(std::find(report.lines.begin(), report.lines.end(), "5.th order Test"), report.lines.end());
    EXPECT_EQ(report.lines.back(), "  Inductance Spread = L 3 : L 3 = 1.");
}

TEST(DesignReport, ColumnsWrapAtTheFootOfTheWindow) {
    test::Session session;
    // Eleven blocks of three lines run past the foot of a short window.
    std::initializer_list<Part> parts = {{1, 50}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {33, 0, 1e-9}, {2, 0, 0, 1e-6},
                                         {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {33, 0, 1e-9}, {2, 0, 0, 1e-6},
                                         {33, 0, 1e-9}, {31, 50}};
    test::ladder(parts);
    test::options(true, false);
    schematicbuild();
    SchematicWindow& w = schematicwindow(0);
    w.clientheight = 400;
    schematicbuild();
    // listtop = 3 cells + ypos = 222; the foot is at 400 - 100 = 300: six lines of 13
    // pixels fit (222 .. 287), the seventh goes to the top of the next column.
    EXPECT_EQ(report.listtop, 222);
    std::vector<const SchematicWindow::Printed*> listing;
    for (const auto& p : w.printed)
        if (p.y >= 222 && p.text.rfind("dipole", 0) != 0 && !p.bold) listing.push_back(&p);
    ASSERT_GE(listing.size(), 8u);
    EXPECT_EQ(listing[0]->text, "DIPOLE 1");
    EXPECT_DOUBLE_EQ(listing[0]->x, 10);
    // "DIPOLE 1", "R 1=50.", blank, "DIPOLE 2", "C 2=1.nF", blank, "DIPOLE 3": the 7th
    // printed line of the column is "DIPOLE 3" at y = 222 + 6 * 13 = 300: a new column.
    const auto* third = listing[4];
    EXPECT_EQ(third->text, "DIPOLE 3");
    EXPECT_DOUBLE_EQ(third->y, 222);
    // The column is as wide as its widest line, the line that wraps included.
    double widest = 0;
    for (const char* t : {"DIPOLE 1", "R 1=50.", "DIPOLE 2", "C 2=.001uF", "DIPOLE 3"})
        widest = std::max(widest, w.textwidth(t));
    EXPECT_EQ(listing[3]->text, "C 2=.001uF");
    EXPECT_DOUBLE_EQ(third->x, 10 + widest + 10);
}

TEST(DesignReport, TitleBlockKinds) {
    test::Session session;
    test::options(false, true);
    auto title = [](const std::string& code) {
        DesignSlot& s = test::ladder({{1, 50}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {31, 75}}, code, "T");
        s.order = 4;
        s.Apass = 0.5;
        s.Astop = 40;
        s.r0 = 50;
        s.w0 = 2 * PI * 10e6;
        s.w1 = 2 * PI * 9e6;
        s.w2 = 2 * PI * 9.5e6;
        s.w3 = 2 * PI * 10.5e6;
        s.w4 = 2 * PI * 11e6;
        s.bw = 2 * PI * 2400;
        schematicbuild();
        return report.lines;
    };
    for (const test::Row& r : test::datarows("schematic.txt", "titleblock"))
        EXPECT_EQ(title(r.text(0)).at(static_cast<size_t>(r.whole(1))), r.text(2)) << r.text(0);
    EXPECT_EQ(title("DLSB"), (Lines{"4.th order T", "  Center Frequency = 10.Mhz", "  Bandwidth = 2.4Khz @ 3 db",
                         "  Design Impedance=50 ohms", "  r0v3 =  0"}));
}

// Inductor design: air-wound and toroid windings, the inductor list, the accept checks and
// the winding lines of the report, driven through the window as a batch script drives it.

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
