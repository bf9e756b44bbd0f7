// Placement of the schematic row: cells, connections, transformer frames, the rail, the
// half scale of a narrow window, the labels and the clearing of the element lists; and
// the dipole pictures drawn in its cells.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/surface.h"
#include "reference.h"
#include "schematic/dipolepictures.h"
#include "schematic/schematicview.h"
#include "testsupport.h"
#include "schematic/report.h"
#include "shell/frame.h"

namespace zelk {
namespace {

using test::Part;

int made(const std::vector<SchematicElement>& list) {
    return static_cast<int>(std::count_if(list.begin() + 1, list.end(), [](const SchematicElement& e) { return e.made; }));
}

TEST(SchematicLayout, OneCellPerSeriesShuntPairAndNoWireForAnOpenShunt) {
    test::Session session;
    // R, C to ground, L, open shunt, C in series, C to ground, wire, load R. (Where the
    // terminals meet the wires is the pictures test's.)
    test::ladder({{1, 50}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {38}, {3, 0, 2e-9}, {33, 0, 1e-9}, {6}, {31, 50}});
    test::options(false, false);
    schematicbuild();
    SchematicWindow& w = schematicwindow(0);
    ASSERT_TRUE(w.visible);
    ASSERT_EQ(schem.cellsize, 64.0f);
    const double size = 64, step = 16 + size * 0.968; // a quarter cell of wire, then the cell
    EXPECT_TRUE(w.symbol[2].vertical);
    EXPECT_DOUBLE_EQ(w.symbol[3].left, 40 + step);
    // The open shunt (38) makes no connection and moves on by 0.968 of a cell only.
    EXPECT_DOUBLE_EQ(w.symbol[5].left, 40 + step + size * 0.968);
    EXPECT_EQ(schem.connectioncount[0], 3);
    EXPECT_EQ(made(w.connection), 3);
    EXPECT_EQ(schem.transformercount[0], 0);
    // The rail runs from 40 to the end of the row at 1.96 cells below the row's top.
    const double end = 40 + 3 * step + size * 0.968;
    EXPECT_DOUBLE_EQ(schem.xpos, end);
    EXPECT_TRUE(w.Line1.set);
    EXPECT_DOUBLE_EQ(w.Line1.x1, 40);
    EXPECT_DOUBLE_EQ(w.Line1.x2, end);
    EXPECT_DOUBLE_EQ(w.Line1.y1, 30 + size * 1.96);
    // With both options off only the eight labels and the bold caption are printed.
    ASSERT_EQ(w.printed.size(), 9u);
    EXPECT_EQ(w.printed.back().text, "Test Schematic");
    EXPECT_TRUE(w.printed.back().bold);
    EXPECT_TRUE(report.lines.empty());
    EXPECT_TRUE(menuenabled("pSch"));
}

TEST(SchematicLayout, TransformerHangsFromAFrameInACellOfItsOwn) {
    test::Session session;
    test::ladder({{1, 50}, {35, 0, 1e-9, 1e-6}, {4, 0, 1e-9, 1e-6}, {55, 0, 1e-9, 1e-6}, {2, 0, 0, 1e-6}, {31, 50}});
    test::options(false, false);
    schematicbuild();
    SchematicWindow& w = schematicwindow(0);
    // The frame starts 0.968 of a cell after dipole 3, on the row; the windings hang
    // under it and the next series dipole starts another 0.968 of a cell on.
    const double frame = 40 + 16 + 64 * 0.968 * 2;
    EXPECT_EQ(schem.transformercount[0], 1);
    EXPECT_DOUBLE_EQ(w.transformer[1].left, frame);
    EXPECT_DOUBLE_EQ(w.symbol[4].left, frame);
    EXPECT_DOUBLE_EQ(w.symbol[4].top, 30 + 64);
    EXPECT_DOUBLE_EQ(w.symbol[5].left, frame + 64 * 0.968);
    EXPECT_EQ(schem.connectioncount[0], 2);
    // The next clear removes every element that was made and zeroes both counts.
    schematicclear(0);
    EXPECT_EQ(made(w.symbol) + made(w.connection) + made(w.transformer), 0);
    EXPECT_EQ(schem.transformercount[0], 0);
    EXPECT_EQ(w.find("symbol", 4), nullptr);
    EXPECT_TRUE(w.printed.empty());
}

TEST(SchematicLayout, NarrowWindowDrawsAtHalfSizeAndSkipClearKeepsTheRow) {
    test::Session session;
    frame.framewidth = 500;
    test::ladder({{1, 50}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {31, 50}});
    test::options(false, false);
    schematicbuild();
    SchematicWindow& w = schematicwindow(0);
    ASSERT_LT(w.clientwidth, 600);
    EXPECT_EQ(schem.cellsize, 32.0f);
    EXPECT_DOUBLE_EQ(w.symbol[1].width, 32);
    EXPECT_DOUBLE_EQ(w.symbol[3].left, 40 + 8 + 32 * 0.968);

    // A skipped clear returns at once and clears the flag; the elements stay.
    schem.skipclear = true;
    schematicclear(0);
    EXPECT_FALSE(schem.skipclear);
    EXPECT_TRUE(w.symbol[3].made);
    // With no design open the clear does nothing at all.
    store.curslot = -1;
    schematicclear(0);
    EXPECT_TRUE(w.symbol[3].made);
}

TEST(SchematicLayout, ClosingTheLastWindowAsksToSaveAChangedDesign) {
    test::Session session;
    test::ladder({{1, 50}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {31, 50}});
    schematicbuild();
    SchematicWindow& w = schematicwindow(0);
    frame.designsaved = false;
    session.runner.desk.queue.push_back({"msgbox", {"Cancel"}, false, 0, 0});
    w.closebox();
    EXPECT_TRUE(w.loaded);
    EXPECT_EQ(store.lastslot, 0);
    ASSERT_FALSE(session.runner.desk.messages.empty());
    EXPECT_EQ(session.runner.desk.messages.back().text, "Do you want to save this design before closing?");
    EXPECT_EQ(session.runner.desk.messages.back().title, "WARNING");

    session.runner.desk.queue.push_back({"msgbox", {"No"}, false, 0, 0});
    w.closebox();
    EXPECT_FALSE(w.loaded);
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_FALSE(menuenabled("pSch"));
    EXPECT_EQ(store.help1, "Use [File  Open]  to load an existing schematic file from disk.");
    EXPECT_EQ(store.help4, "(You can turn this Helpline off / on under [Options  Helpline])");
}

TEST(SchematicLayout, ClosingTheSecondWindowLeavesTheFirstDesign) {
    test::Session session;
    test::ladder({{1, 50}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {31, 50}});
    schematicbuild();
    store.lastslot = 1;
    store.curslot = 1;
    slot(1) = slot(0);
    slot(1).designtitle = "Second";
    schematicbuild();
    SchematicWindow& w1 = schematicwindow(1);
    EXPECT_TRUE(w1.loaded);
    EXPECT_EQ(w1.caption, "Second");
    // The second window cascades from the first.
    EXPECT_GT(w1.left, schematicwindow(0).left);
    // No click on a dipole does anything while two filters are open.
    schem.dipoleselected = false;
    w1.click("symbol", 2);
    EXPECT_FALSE(schem.dipoleselected);
    w1.closebox();
    EXPECT_FALSE(w1.loaded);
    EXPECT_EQ(store.lastslot, 0);
    EXPECT_EQ(store.curslot, 0);
    EXPECT_TRUE(schematicwindow(0).loaded);
}

// The dipole pictures: every palette entry that stands for a network draws one whose
// terminals meet the schematic's wires; blanks draw nothing. Writes a contact sheet of
// both palettes for looking at.

bool touches(const RecordingSurface& s, double x, double y) {
    for (const auto& op : s.ops)
        if (op.kind == RecordingSurface::Op::Line &&
            ((std::abs(op.x1 - x) < 1e-6 && std::abs(op.y1 - y) < 1e-6) ||
             (std::abs(op.x2 - x) < 1e-6 && std::abs(op.y2 - y) < 1e-6)))
            return true;
    return false;
}

TEST(DipolePictures, TerminalsMeetTheWiresOfTheSchematic) {
    const double size = 64;
    for (int t = 1; t <= 29; ++t) {
        if (t == 8 || t == 25 || t == 26) continue;
        RecordingSurface s(size, size);
        drawdipolepicture(s, t, false, 0, 0, size, size);
        EXPECT_TRUE(touches(s, 0, size * WIRELEVEL)) << "series type " << t;
        EXPECT_TRUE(touches(s, size, size * WIRELEVEL)) << "series type " << t;
    }
    for (int t = 31; t <= 73; ++t) {
        RecordingSurface s(size, size);
        drawdipolepicture(s, t, true, 0, 0, size, size);
        if (t == 38 || t == 44 || t == 63 || t == 64) {
            EXPECT_TRUE(s.ops.empty()) << "type " << t << " has no picture";
            continue;
        }
        ASSERT_FALSE(s.ops.empty()) << t;
        bool transformer = t >= 55 && t != 67 && t != 68;
        if (transformer) {
            EXPECT_TRUE(touches(s, 0.2 * size, 0)) << "transformer type " << t;
            EXPECT_TRUE(touches(s, 0.8 * size, 0)) << "transformer type " << t;
        } else {
            EXPECT_TRUE(touches(s, 0.5 * size, 0)) << "shunt type " << t;
        }
        // Everything reaches the ground rail.
        bool rail = false;
        for (const auto& op : s.ops)
            rail = rail || (op.kind == RecordingSurface::Op::Line && std::abs(op.y2 - RAILLEVEL * size) < 1e-6);
        EXPECT_TRUE(rail) << t;
    }
    // The frame carries the line in and out at the wire level and drops to its foot.
    RecordingSurface f(size, size);
    drawdipolepicture(f, 0, true, 0, 0, size, size);
    EXPECT_TRUE(touches(f, 0, size * WIRELEVEL));
    EXPECT_TRUE(touches(f, size, size * WIRELEVEL));
    EXPECT_TRUE(touches(f, 0.2 * size, size));
    EXPECT_TRUE(touches(f, 0.8 * size, size));
    // The palette buttons.
    RecordingSurface b(size, size);
    drawdipolepicture(b, 8, false, 0, 0, size, size);
    drawdipolepicture(b, 26, false, 0, 0, size, size);
    drawdipolepicture(b, 30, true, 0, 0, size, size);
    EXPECT_EQ(b.texts(), (std::vector<std::string>{"DONE", "CANCEL", "CANCEL"}));
}

} // namespace
} // namespace zelk
