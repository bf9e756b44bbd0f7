// The dipole pictures: every palette entry that stands for a network draws one whose
// terminals meet the schematic's wires; blanks draw nothing. Writes a contact sheet of
// both palettes for looking at.
#include <gtest/gtest.h>

#include <cmath>

#include "core/surface.h"
#include "schematic/dipolepictures.h"

namespace zelk {
namespace {

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
