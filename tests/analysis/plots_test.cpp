// The fifteen plots through the batch runner: every curve point against the quantities
// and harmonic sums computed here without the plot code; the cursor, the expansion, the
// buttons, the prompts' checks, and the print and clipboard items.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/plots.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/surface.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "files.h"
#include "schematic/report.h"
#include "analysis/agreement.h"
#include "testsupport.h"

namespace zelk {
namespace {

const char* const designs[] = {
    // Butterworth low-pass, 1 MHz, 3 dB, 7th order.
    "> selfunction: selection(0) selection(4)\n> Getdata: 1M 2M 3 40 \"\" 50 50\n"
    ">? Getdata: Lossless\n>? designtitle: Command1\nbutterworth\n",
    // Chebyshev band-pass, 10 MHz centre, 2 MHz wide, 0.5 dB, 5 resonators.
    "> selfunction: selection(2) selection(4)\n> Getdata: 10M 2M 2 0.5 \"\" 5 50 50\n"
    ">? Getdata: Lossless\n>? designtitle: Command1\nchebyshev\n",
    // Butterworth band-reject, 9 to 11 MHz, 3rd order.
    "> selfunction: selection(3) selection(4)\n> Getdata: 8M 9M 11M 12M 3 \"\" 3 50 50\n"
    ">? Getdata: Lossless\n>? designtitle: Command1\nbutterworth\n",
};

using test::curve;

double rel(double a, double b) { return std::abs(a - b) / std::max({std::abs(a), std::abs(b), 1e-300}); }

struct FrequencyPlot {
    const char* command;
    const char* form;
    Quantity q;
    const char* levels; // the prompt's last rows
};

const FrequencyPlot frequencyplots[] = {
    {"PEG", "plotPEG", Quantity::PEG, "0 -80"},
    {"PIG", "plotPIG", Quantity::PIG, "0 -80"},
    {"VEG", "plotVEG", Quantity::VEG, "0 -80"},
    {"VIG", "plotVIG", Quantity::VIG, "0 -80"},
    {"CEG", "plotCEG", Quantity::CEG, "0 -80"},
    {"CIG", "plotCIG", Quantity::CIG, "0 -80"},
    {"inputz", "plotZin", Quantity::InputImpedance, "1 1000"},
    {"outputz", "plotZout", Quantity::OutputImpedance, "1 1000"},
    {"RL", "PLOTRL", Quantity::ReturnLoss, "0 -240"},
    {"PHA", "PLOTPHASE", Quantity::Phase, "-360 360"},
    {"GD", "PLOTGD", Quantity::GroupDelay, "10u"},
};

TEST(Plots, FrequencyCurvesAreTheQuantitiesAtTheSweepFrequencies) {
    for (const char* design : designs) {
        test::Session s;
        ASSERT_TRUE(s.ok(design));
        const double w0 = slot(0).w0;
        const std::string f1 = Str(w0 / TWOPI / 4), f2 = Str(w0 / TWOPI * 4);
        for (const FrequencyPlot& fp : frequencyplots) {
            std::string script = std::string("> Getdata: ") + f1 + " " + f2 + " " + fp.levels + "\n" + fp.command + "\n";
            ASSERT_TRUE(s.ok(script)) << fp.command << s.err.str();
            std::vector<test::CurvePoint> pts = curve(s, fp.form);
            ASSERT_EQ(pts.size(), 513u) << fp.command;
            GroupDelayState gd;
            double ref[513], wAs[513], phase[513];
            for (int i = 0; i < 513; ++i) {
                // The sweep frequency by its definition, then the one-point quantity.
                double wA = (6.283185308 * std::stod(f1)) * std::pow(std::stod(f2) / std::stod(f1), i / 512.0);
                store.wA = wAs[i] = wA;
                ref[i] = response(fp.q, 0, gd);
                phase[i] = response(Quantity::Phase, 0);
                ASSERT_LE(rel(pts[i].x, wA / 6.283185308), 1e-12) << fp.command << " " << i;
            }
            for (int i = 0; i < 513; ++i)
                ASSERT_LE(test::deviation(fp.q, pts[i].value, ref[i], wAs, i, phase), 1e-12) << fp.command << " " << i;
            EXPECT_TRUE(menuenabled(findplot(fp.form)->printitem) || !findmenu(findplot(fp.form)->printitem));
        }
    }
}

// The time plots show the time-domain sums (checked against closed forms in
// timedomain_test) on the time axis they were asked for.
TEST(Plots, TimeCurvesRunOverTheTimeAsked) {
    test::Session s;
    ASSERT_TRUE(s.ok(designs[1]));
    const double f0 = slot(0).w0 / 6.283185308;
    const std::string t = Str(40 / f0), tone = Str(f0);
    const std::pair<const char*, std::string> plots[] = {
        {"IR", "PLOTIR"}, {"USR", "PLOTSR"}, {"pr", "PLOTPR"}, {"TPR", "PLOTTP"}};
    const std::string answers[] = {"1M " + t + " 2 -2", "1M " + t + " 2 -2", "1M " + t + " 2 -2 30",
                                   "1M " + tone + " " + t + " 2 -2 30"};
    for (size_t k = 0; k < std::size(plots); ++k) {
        ASSERT_TRUE(s.ok("> Getdata: " + answers[k] + "\n" + plots[k].first + "\n"));
        std::vector<test::CurvePoint> pts = curve(s, plots[k].second);
        ASSERT_EQ(pts.size(), 513u) << plots[k].first;
        for (int i = 0; i < 513; i += 64) {
            EXPECT_NEAR(pts[i].x, std::stod(t) * i / 512, 1e-18) << plots[k].first;
            EXPECT_TRUE(std::isfinite(pts[i].value)) << plots[k].first;
        }
    }
}

TEST(PlotFrame, DbDivisionTableTakesTheFinerRowAtItsEdge) {
    for (const test::Row& r : test::datarows("analysis.txt", "dbdivision")) {
        double d, m;
        dbdivision(r.num(0), d, m);
        EXPECT_EQ(std::vector<double>({d, m}), r.nums(1)) << r.text(0);
    }
}

TEST(PlotFrame, CursorExpansionAndButtons) {
    test::Session s;
    ASSERT_TRUE(s.ok(designs[0]));
    ASSERT_TRUE(s.ok("> Getdata: 100K 10M 0 -80\nPEG\n"));
    PlotForm& p = plotPEG;
    ASSERT_TRUE(p.loaded);
    EXPECT_EQ(p.caption, "Power Effective Gain");
    EXPECT_TRUE(menuenabled("pPEG") || !findmenu("pPEG"));
    const double left = p.horzcent, width = p.framewidth, mid = p.frametop + p.vertsize / 2;
    const auto before = p.values;

    // A right click before any left click changes nothing.
    std::string ev = "event plotPEG frame mousedown 2 " + Str(left + width * 0.7) + " " + Str(mid) + "\n";
    ASSERT_TRUE(s.ok(ev));
    EXPECT_EQ(p.freq1, 100000);
    EXPECT_EQ(p.freq2, 10000000);
    EXPECT_EQ(p.db1, -81); // rounded out to whole 3 dB divisions
    EXPECT_EQ(p.values, before);

    // The red bar follows the pointer inside the frame and goes away outside.
    ASSERT_TRUE(s.ok("event plotPEG frame mousemove 0 " + Str(left + width / 2) + " " + Str(mid) + "\n"));
    EXPECT_TRUE(p.overlay.on);
    EXPECT_EQ(p.overlay.x1, left + width / 2);
    EXPECT_EQ(p.overlay.colour, RED);

    // Left click at the middle of the axis: 1 MHz, the cut-off where the design puts its
    // 3 dB (Apass): -3.0000.. dB, cut to two decimals by Int (the floor): -3.01.
    ASSERT_TRUE(s.ok("event plotPEG frame mousedown 1 " + Str(left + width / 2) + " " + Str(mid) + "\n"));
    EXPECT_EQ(p.caption.substr(0, 11), "-3.01 db @ ") << p.caption;
    EXPECT_NE(p.caption.find("Hz"), std::string::npos);
    EXPECT_NEAR(p.leftfreq, 1e6, 1);
    ASSERT_TRUE(s.ok("event plotPEG frame mousemove 0 10 10\n"));
    EXPECT_FALSE(p.overlay.on);
    EXPECT_EQ(p.caption, "Power Effective Gain");

    // Right click at 7/10 of the axis: the sweep runs from the left frequency to there,
    // and the lower level takes the lower of the two values.
    ASSERT_TRUE(s.ok(ev));
    double fright = 1e5 * std::pow(100.0, 0.7);
    EXPECT_NEAR(p.freq1, 1e6, 1);
    EXPECT_NEAR(p.freq2, fright, fright * 1e-9);
    std::vector<test::CurvePoint> pts = curve(s, "plotPEG");
    EXPECT_NEAR(pts.front().x, 1e6, 1);
    EXPECT_NEAR(pts.back().x, fright, fright * 1e-9);
    EXPECT_LT(p.db1, -3.02);
    // Butterworth with 3 dB at the cut-off: eps^2 = 10^0.3 - 1.
    double ref = -10 * std::log10(1 + (std::pow(10.0, 0.3) - 1) * std::pow(fright / 1e6, 14));
    EXPECT_NEAR(pts.back().value, ref, 1e-2);

    // Command1 remembers the limits for the next prompt; Command2 restores the default
    // span of a low-pass, (w0/pi)/20 to (w2/pi)*5.
    ASSERT_TRUE(s.ok("event plotPEG Command1 click\n"));
    EXPECT_EQ(plotshared.plotfreq1, p.freq1);
    EXPECT_EQ(plotshared.plotdb2, p.db1);
    ASSERT_TRUE(s.ok("event plotPEG Command2 click\n"));
    EXPECT_NEAR(p.freq1, (slot(0).w0 / 3.141592654) / 20, 1e-6);
    EXPECT_NEAR(p.freq2, (slot(0).w2 / 3.141592654) * 5, 1e-6);
    // Command3 adds the return loss curve in red, keeping the gain curve in the arrays.
    ASSERT_TRUE(s.ok("event plotPEG Command3 click\n"));
    auto* rec = dynamic_cast<RecordingSurface*>(p.surface);
    ASSERT_NE(rec, nullptr);
    int red = 0;
    for (auto& op : rec->flattened()) red += op.kind == RecordingSurface::Op::Line && op.colour == RED;
    EXPECT_GT(red, 100);
    // The frame: "db" labels, the footer, the title, the family.
    std::string texts;
    for (const std::string& t : rec->texts()) texts += t + "\n";
    for (const char* t : {"0db", "db/div", "Power Effective Gain", "Butterworth"})
        EXPECT_NE(texts.find(t), std::string::npos) << t;

    // The next prompt offers the remembered limits.
    ASSERT_TRUE(s.ok("> Getdata: close\nPEG\n"));
    EXPECT_EQ(parsevalue(getdata.getvalue(0).text), parsevalue(engformatvalue(plotshared.plotfreq1)));

    // Print hides the buttons only while printing; closing the plot turns its items off.
    ASSERT_TRUE(s.ok("pPEG\n"));
    EXPECT_TRUE(p.ctl("Command1").visible);
    EXPECT_TRUE(p.ctl("Command3").visible);
    p.closebox();
    EXPECT_FALSE(p.loaded);
    EXPECT_FALSE(menuenabled("pPEG"));
    EXPECT_FALSE(menuenabled("cPEG"));
}

// A surface that takes a curve point by point (the surface's own polyline: moveto and
// lineto), recording the lines and texts it is given.
struct PointByPoint : Surface {
    RecordingSurface rec;
    explicit PointByPoint(const Window& w) : rec(w.clientwidth, w.clientheight, w.unit) {}
    void cls() override {
        rec.cls();
        moveto(0, 0);
    }
    void setcolour(long c) override { rec.setcolour(c); }
    long colour() const override { return rec.colour(); }
    void setbold(bool b) override { rec.setbold(b); }
    bool bold() const override { return rec.bold(); }
    void line(double x1, double y1, double x2, double y2) override { rec.line(x1, y1, x2, y2); }
    void drawtext(double x, double y, const std::string& t) override { rec.drawtext(x, y, t); }
    double textwidth(const std::string& t) const override { return rec.textwidth(t); }
    double textheight(const std::string& t) const override { return rec.textheight(t); }
    double scalewidth() const override { return rec.scalewidth(); }
    double scaleheight() const override { return rec.scaleheight(); }
    void fillrect(double x1, double y1, double x2, double y2) override { rec.fillrect(x1, y1, x2, y2); }
};

// A redraw keeps the sweep frequencies, the curve's places, the frequency grid and the
// axis numbers' strings of the redraws before. Each plot kind drawn at one span, at
// another, in another frame size and with the nano setting turned, then back, gives the
// picture of its first drawing again; and that picture is the one drawn point by point.
TEST(PlotFrame, RedrawsWithKeptGridsDrawWhatAFreshDrawingDraws) {
    test::Session s;
    ASSERT_EQ(s.run(designs[1]), 0) << s.err.str();
    const struct {
        const char *command, *form, *first, *second;
        bool nanolabels; // axis labels below a microsecond read the nano setting
    } cases[] = {
        {"PEG", "plotPEG", "5M 20M 0 -80", "5M 40M 0 -60", false},
        {"inputz", "plotZin", "5M 20M 1 1000", "8M 20M 10 100", false},
        {"PHA", "PLOTPHASE", "5M 20M -360 360", "9M 11M -90 90", false},
        {"GD", "PLOTGD", "5M 20M 500n", "5M 11M 2u", true},
        {"USR", "PLOTSR", "100M 4u 2 -2", "100M 1u 1 -1", true},
    };
    for (const auto& c : cases) {
        PlotForm& p = *findplot(c.form);
        auto draw = [&](const char* answers) {
            ASSERT_EQ(s.run(std::string("> Getdata: ") + answers + "\n" + c.command + "\n"), 0) << c.command << s.err.str();
        };
        auto picture = [&] { return s.runner.desk.surfacefor(p).svg(); };
        // The curve spans the prompt's first two values (a time plot: its time) and ends
        // on the frame's right edge as the frame stands; the frequency grid's lines.
        auto ends = [&](const char* answers) {
            std::istringstream in(answers);
            std::string start, end;
            in >> start >> end;
            const auto pts = test::curve(s, c.form);
            ASSERT_EQ(pts.size(), 513u) << c.command;
            EXPECT_NEAR(pts.back().x, parsevalue(end), parsevalue(end) * 1e-12) << c.command;
            const RecordingSurface::Op* last = nullptr;
            for (const auto& op : s.runner.desk.surfacefor(p).ops)
                if (op.kind == RecordingSurface::Op::Curve) last = &op;
            ASSERT_NE(last, nullptr) << c.command;
            EXPECT_EQ(last->x2, p.horzcent + p.framewidth) << c.command;
            if (p.timeplot()) return;
            EXPECT_NEAR(pts.front().x, parsevalue(start), parsevalue(start) * 1e-12) << c.command;
            // On the linear scales a point inside the levels is drawn to at its height,
            // a point below them stands on the bottom edge with the pen lifted.
            const RecordingSurface& rec = s.runner.desk.surfacefor(p);
            if (p.kind != PlotKind::Impedance) {
                const double bottom = p.frametop + p.vertsize;
                for (int i = 1; i < 513; ++i) {
                    const double v = pts[static_cast<size_t>(i)].value, y = rec.curves.y[last->first + i];
                    const bool inside = v > p.db1 + 1e-9 * (p.db2 - p.db1);
                    if (v > p.db1 - 1e-9 * (p.db2 - p.db1) && !inside) continue; // on the edge itself
                    EXPECT_EQ(rec.curves.pen[last->first + i] != 0, inside) << c.command << " " << i;
                    EXPECT_NEAR(y, inside ? bottom - p.vertsize * (v - p.db1) / (p.db2 - p.db1) : bottom, 1e-9 * p.vertsize)
                        << c.command << " " << i;
                }
            }
            // The frequency grid: a line at every multiple of a power of ten strictly
            // inside the span, placed by its logarithm.
            const double lo = parsevalue(start), hi = parsevalue(end);
            std::vector<double> want, got;
            for (double decade = std::pow(10.0, std::floor(std::log10(lo))); decade < hi; decade *= 10)
                for (int m = 1; m <= 9; ++m)
                    if (m * decade > lo * (1 + 1e-9) && m * decade < hi * (1 - 1e-9))
                        want.push_back(p.horzcent + p.framewidth * std::log10(m * decade / lo) / std::log10(hi / lo));
            for (const auto& op : s.runner.desk.surfacefor(p).ops)
                if (op.kind == RecordingSurface::Op::Line && op.x1 == op.x2 && op.y1 == p.frametop &&
                    op.y2 == p.frametop + p.vertsize && op.x1 > p.horzcent && op.x1 < p.horzcent + p.framewidth)
                    got.push_back(op.x1);
            ASSERT_EQ(got.size(), want.size()) << c.command << " " << answers;
            for (size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], want[i], 1e-9 * p.framewidth) << c.command;
        };
        draw(c.first);
        ends(c.first);
        const std::string first = picture();
        PointByPoint pbp(p);
        Surface* own = p.surface;
        p.surface = &pbp;
        ASSERT_TRUE(p.redraw());
        p.surface = own;
        EXPECT_EQ(pbp.rec.svg(), first) << c.command;

        draw(c.second);
        ends(c.second);
        EXPECT_NE(picture(), first) << c.command;
        draw(c.first);
        EXPECT_EQ(picture(), first) << c.command;

        const double width = p.clientwidth;
        p.clientwidth = width * 1.25;
        p.resized();
        ends(c.first);
        EXPECT_NE(picture(), first) << c.command;
        p.clientwidth = width;
        p.resized();
        EXPECT_EQ(picture(), first) << c.command;

        ASSERT_EQ(s.run("option nano on\n"), 0);
        ASSERT_TRUE(p.redraw());
        EXPECT_EQ(picture() != first, c.nanolabels) << c.command;
        ASSERT_EQ(s.run("option nano off\n"), 0);
        ASSERT_TRUE(p.redraw());
        EXPECT_EQ(picture(), first) << c.command;
    }
}

// A redraw keeps the values of an unchanged ladder at the same span, bit for bit what a
// sweep gives; a part one unit in the last place away, another span or a ladder that
// the one-point walk takes sweeps again; under the return-loss
// overlay the gains drawn are still the sweep's.
TEST(PlotFrame, ARedrawKeepsTheValuesOfAnUnchangedLadderOnly) {
    test::Session s;
    ASSERT_EQ(s.run(designs[1]), 0) << s.err.str();
    ASSERT_TRUE(s.ok("> Getdata: 5M 20M 0 -80\nPEG\n"));
    PlotForm& p = plotPEG;
    auto redraw = [&](int kept, const char* what) {
        ASSERT_TRUE(p.redraw()) << what;
        if (kept >= 0) {
            EXPECT_EQ(sweepstats.keptpoints, kept) << what;
        }
        std::vector<double> w(SWEEPPOINTS), fresh(SWEEPPOINTS);
        sweepfrequencies(p.freq1, p.freq2, w.data());
        ASSERT_TRUE(sweepvalues(Quantity::PEG, 0, w.data(), fresh.data()));
        for (int i = 0; i < SWEEPPOINTS; ++i)
            ASSERT_EQ(std::bit_cast<std::uint64_t>(p.values[0][static_cast<size_t>(i)]),
                      std::bit_cast<std::uint64_t>(fresh[static_cast<size_t>(i)]))
                << what << " " << i;
    };
    redraw(SWEEPPOINTS, "unchanged");
    Dipole& d = slot(0).dip(2);
    double& part = d.C != 0 ? d.C : d.L;
    const double was = part;
    part = std::nextafter(was, 2 * was);
    redraw(0, "a part one ulp up");
    redraw(SWEEPPOINTS, "the changed part again");
    part = was;
    redraw(0, "the part back");
    p.freq2 = 21e6;
    redraw(0, "another span");
    redraw(SWEEPPOINTS, "the new span again");
    ASSERT_TRUE(s.ok("event plotPEG Command3 click\n"));
    ASSERT_TRUE(p.returnloss);
    // (The overlay's own sweeps come last and leave their counts.)
    redraw(-1, "under the overlay");
    redraw(-1, "under the overlay again");
    // A type of the one-point walk: never kept.
    const short type = d.type;
    d.type = 21;
    redraw(0, "one-point ladder");
    redraw(0, "one-point ladder again");
    d.type = type;
}

TEST(Plots, PromptChecksAndDefaults) {
    test::Session s;
    ASSERT_TRUE(s.ok(designs[0]));
    // Two positive levels bring the question (the golden script plot_prompt_checks
    // answers No, and shows the zero frequency and return loss prompts); Yes negates the
    // larger.
    s.run("> Getdata: 100K 10M 10 20\n> msgbox: Yes\nPEG\n");
    auto& msgs = s.runner.desk.messages;
    EXPECT_EQ(plotPEG.db1, -20);
    EXPECT_GE(plotPEG.db2, 10);
    // (The return loss prompt's -240 and the -60 of a design without Astop are the golden
    // script plot_defaults.)
    // A design with a part that is not positive is refused.
    report.valuewarning = true;
    size_t n = msgs.size();
    ASSERT_TRUE(s.ok("PIG\n"));
    ASSERT_EQ(msgs.size(), n + 1);
    EXPECT_EQ(msgs.back().text, "Negative or zero component values in schematic. Cannot plot!!!");
    EXPECT_EQ(msgs.back().title, "Design Specification Error");
    EXPECT_FALSE(plotPIG.loaded);
}

} // namespace
} // namespace zelk
