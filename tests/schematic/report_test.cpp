// The value listing and title block, line for line, against values worked by hand.
#include <gtest/gtest.h>

#include <algorithm>

#include "files.h"
#include "reference.h"
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

} // namespace
} // namespace zelk
