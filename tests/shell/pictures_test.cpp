// The prompt and selector pictures: every index named by a prompt or the selector draws,
// stays inside its box, and puts its band edges in the order the prompt reads them.
#include <gtest/gtest.h>

#include <map>

#include "core/surface.h"
#include "entry/pictures.h"

using namespace zelk;

namespace {

// Horizontal centre of each printed label.
std::map<std::string, double> labels(const RecordingSurface& s) {
    std::map<std::string, double> out;
    for (const auto& op : s.ops)
        if (op.kind == RecordingSurface::Op::Text) out[op.text] = (op.x1 + op.x2) / 2;
    return out;
}

void inside(const RecordingSurface& s, double x, double y, double w, double h, const std::string& what) {
    for (const auto& op : s.ops) {
        if (op.kind != RecordingSurface::Op::Line) continue;
        for (double px : {op.x1, op.x2}) EXPECT_TRUE(px >= x - 0.5 && px <= x + w + 0.5) << what << " x=" << px;
        for (double py : {op.y1, op.y2}) EXPECT_TRUE(py >= y - 0.5 && py <= y + h + 0.5) << what << " y=" << py;
    }
}

} // namespace

TEST(Pictures, ResponseSketchesOfEveryPrompt) {
    for (int index : {1, 2, 3, 4, 5, 6, 7, 8, 17, 18, 27, 28, 29, 30, 31, 32, 33, 34, 47, 48, 51, 52}) {
        RecordingSurface s(300, 220);
        drawpanelimage(s, index, 4, 4, 292, 212);
        ASSERT_GT(s.ops.size(), 20u) << index;
        inside(s, 4, 4, 292, 212, "image " + std::to_string(index));
        auto l = labels(s);
        switch (index) {
        case 1: case 5: case 27:
            EXPECT_LT(l.at("F1"), l.at("F2")) << index;
            break;
        case 2: case 6: case 28:
            // High-pass: F1 is the stop-band edge, below the cut-off F2.
            EXPECT_LT(l.at("F1"), l.at("F2")) << index;
            EXPECT_TRUE(l.count("Astop"));
            break;
        case 4: case 8: case 30:
            EXPECT_LT(l.at("F1"), l.at("F2")) << index;
            EXPECT_LT(l.at("F2"), l.at("F3")) << index;
            EXPECT_LT(l.at("F3"), l.at("F4")) << index;
            break;
        case 3: case 7: case 29: case 17: case 18: case 33: case 47: case 48:
            EXPECT_TRUE(l.count("CF") && l.count("BW")) << index;
            break;
        case 31: case 32:
            EXPECT_TRUE(l.count("F1") && !l.count("F2") && !l.count("Apass")) << index;
            break;
        case 34:
            EXPECT_LT(l.at("F1"), l.at("F2"));
            EXPECT_FALSE(l.count("F3"));
            break;
        default: break;
        }
    }
    // The pads name themselves; an index no prompt uses draws nothing.
    RecordingSurface pi(300, 220), none(300, 220);
    drawpanelimage(pi, 51, 0, 0, 300, 220);
    EXPECT_EQ(pi.texts(), std::vector<std::string>{"Pi Attenuator Pad"});
    drawpanelimage(none, 40, 0, 0, 300, 220);
    EXPECT_TRUE(none.ops.empty());
    // The sketches follow the box they are given.
    RecordingSurface big(1200, 900);
    drawpanelimage(big, 28, 100, 50, 1000, 800);
    inside(big, 100, 50, 1000, 800, "large high-pass");
}

TEST(Pictures, SelectorConfigurations) {
    // Low-pass Pi begins with a shunt arm: its first vertical line is left of its first
    // series inductor turn; T begins with the series inductor.
    for (int p = 1; p <= 21; ++p) {
        RecordingSurface s(310, 280);
        drawconfiguration(s, p, 10, 10, 290, 260);
        ASSERT_GT(s.ops.size(), 30u) << p;
        inside(s, 10, 10, 290, 260, "configuration " + std::to_string(p));
        ASSERT_EQ(s.texts().size(), 1u) << p;
    }
    auto title = [](int p) {
        RecordingSurface s(310, 280);
        drawconfiguration(s, p, 0, 0, 310, 280);
        return s.texts().at(0);
    };
    EXPECT_EQ(title(1), "Low-Pass Pi");
    EXPECT_EQ(title(4), "High-Pass T");
    EXPECT_EQ(title(9), "Elliptic Low-Pass Pi");
    EXPECT_EQ(title(21), "Elliptic Band-Reject SP T");
    // A Pi ladder of five arms has three shunt arms between the rails, a T two: count the
    // vertical lines that end on the ground rail (the longest horizontal line).
    auto shuntarms = [](int p) {
        RecordingSurface s(310, 280);
        drawconfiguration(s, p, 0, 0, 310, 280);
        double ground = 0, longest = 0;
        for (auto& op : s.ops)
            if (op.kind == RecordingSurface::Op::Line && op.y1 == op.y2 && op.x2 - op.x1 > longest) {
                longest = op.x2 - op.x1;
                ground = op.y1;
            }
        int n = 0;
        for (auto& op : s.ops)
            if (op.kind == RecordingSurface::Op::Line && op.x1 == op.x2 && op.y2 == ground && op.y1 < ground) ++n;
        return n;
    };
    EXPECT_EQ(shuntarms(1), 3);
    EXPECT_EQ(shuntarms(2), 2);
    EXPECT_EQ(shuntarms(5), 3);
    EXPECT_EQ(shuntarms(8), 2);
    RecordingSurface none(310, 280);
    drawconfiguration(none, 22, 0, 0, 310, 280);
    EXPECT_TRUE(none.ops.empty());
}
