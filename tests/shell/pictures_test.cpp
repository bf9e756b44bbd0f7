// The prompt and selector pictures: every index named by a prompt or the selector draws,
// stays inside its box, and puts its band edges in the order the prompt reads them.
#include <gtest/gtest.h>

#include <map>

#include "core/surface.h"
#include "entry/pictures.h"
#include "files.h"

using namespace zelk;

namespace {

// Horizontal centre of each printed label.
std::map<std::string, double> labels(const RecordingSurface& s) {
    std::map<std::string, double> out;
    for (const auto& op : s.ops)
        if (op.kind == RecordingSurface::Op::Text) out[std::string(s.text(op))] = (op.x1 + op.x2) / 2;
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
    for (const test::Row& r : test::datarows("pictures.txt", "sketches")) {
        RecordingSurface s(300, 220);
        drawpanelimage(s, r.whole(0), 4, 4, 292, 212);
        ASSERT_GT(s.ops.size(), 20u) << r.text(0);
        inside(s, 4, 4, 292, 212, "image " + r.text(0));
        const auto l = labels(s);
        for (size_t i = 1; i < r.field.size(); ++i) {
            const std::string& c = r.text(i);
            if (const size_t lt = c.find('<'); lt != std::string::npos) {
                EXPECT_LT(l.at(c.substr(0, lt)), l.at(c.substr(lt + 1))) << r.text(0) << " " << c;
            } else {
                EXPECT_EQ(l.count(c[0] == '!' ? c.substr(1) : c), c[0] == '!' ? 0u : 1u) << r.text(0) << " " << c;
            }
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
