// The analysis against an independent circuit simulator: ladders exported as netlists
// are run through ngspice, and its voltage at the load is compared with the program's
// Power Effective Gain and phase over the whole sweep. Textbook ladders, every type of
// the catalogue, and crystal ladders of each coupling mode, with and without tapped
// matches, made through the batch runner (over the pass band and both skirts).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "analysis/response.h"
#include "analysis/spiceexport.h"
#include "files.h"
#include "core/designstore.h"
#include "ngspice.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

namespace fs = std::filesystem;
using test::Kind;
using test::havengspice;

TEST(SpiceCrossCheck, TextbookLaddersAgreeWithNgspice) {
    if (!havengspice()) GTEST_SKIP() << "ngspice is not installed: the cross-check needs it";
    test::Session s;
    for (const test::Row& r : test::datarows("ladders.txt", "spice")) {
        const std::string name = r.text(0) + "-" + r.text(1) + r.text(3) + "-" + r.text(4) + "-q" + r.text(8);
        test::buildladder(0, test::ladderrow(r));
        EXPECT_GT(test::crosscheck(name, r.num(9), r.num(10)), 200) << name;
    }
}

// Every exportable type of the catalogue, in series and in shunt places, lossy and lossless.
TEST(SpiceCrossCheck, CatalogueMixAgreesWithNgspice) {
    if (!havengspice()) GTEST_SKIP() << "ngspice is not installed: the cross-check needs it";
    test::Session s;
    const int series[] = {12, 19, 23, 28, 22, 24, 10, 67, 16, 13, 9, 4, 2, 3, 20, 17, 27, 7, 15, 29};
    const int shunt[] = {39, 43, 41, 47, 50, 54, 36, 53, 52, 49, 42, 35, 45, 46, 37, 33, 32, 34, 31, 38};
    for (int round = 0; round < 2; ++round) {
        // A few dipoles at a time keep the response above the comparison floor.
        for (size_t first = 0; first < std::size(series); first += 4) {
            std::vector<test::Part> parts{{1, 50}};
            for (size_t k = first; k < first + 4 && k < std::size(series); ++k)
                for (int t : {shunt[k], series[k]}) {
                    // A resistor in a shunt place stands across the line.
                    test::Part p{t, t == 31 && parts.size() % 2 == 1 ? 1000 : 220.0, 300e-12, 0.8e-6, 150e-12, 1.5e-6};
                    parts.push_back(p);
                }
            parts.push_back({31, 50});
            DesignSlot& sl = test::writeladder(0, parts);
            for (int d = 2; d < sl.count(); ++d) {
                Dipole& p = sl.dip(d);
                p.K = 0.6, p.Qu = round ? 90 : 0, p.Qa = round ? 60 : 0;
                p.Ls = 0.04069 / 1000, p.Cs = 1.9e-14 * 300, p.Cp = 4.5e-12, p.Rs = 5;
            }
            std::string name = "mix-" + std::to_string(round) + "-" + std::to_string(first);
            EXPECT_GT(test::crosscheck(name, 1e6, 1e8), 50) << name;
        }
    }
}

TEST(SpiceExport, TheDeckRunsAloneAndOddTypesAreRefused) {
    test::Session s;
    test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 100});
    store.lastslot = 0, store.curslot = 0;
    fs::path file = test::scratch("spice") / "export-verb.cir";
    std::string path = file.generic_string();
    EXPECT_TRUE(s.ok("export spice \"" + path + "\"\n"));
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    const std::string deck = text.str();
    EXPECT_NE(deck.find("V1 src 0 DC 0 AC 1\n"), std::string::npos);
    EXPECT_NE(deck.find("R1_1 src n1 50\n"), std::string::npos);
    EXPECT_NE(deck.find("R6_1 out 0 50\n"), std::string::npos);
    EXPECT_NE(deck.find("hertz"), std::string::npos); // the inductor losses follow frequency
    // The default span: a decade around the 1 MHz corner, at least 512 steps.
    EXPECT_NE(deck.find(".ac dec 512 316227.7"), std::string::npos) << deck;
    EXPECT_NE(deck.find(".end\n"), std::string::npos);
    if (havengspice()) {
        EXPECT_EQ(test::runngspice(file).size(), 513u);
    }

    // Types without a plain-part form, and places where a type means something else.
    struct Odd {
        int d, type;
        const char* says;
    };
    for (Odd o : {Odd{3, 44, "transformed arm"}, Odd{3, 18, "first tank"}, Odd{2, 40, "1 siemens"},
                  Odd{2, 6, "empty shunt place"}, Odd{3, 55, "transformer"}, Odd{3, 21, "ignores La"},
                  Odd{2, 67, "reactance"}, Odd{3, 25, "unused"}}) {
        test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 0});
        dipole(0, o.d).type = static_cast<short>(o.type);
        std::ostringstream deckout;
        std::string why;
        EXPECT_FALSE(spicenetlist(0, deckout, why)) << o.type;
        EXPECT_NE(why.find(o.says), std::string::npos) << why;
    }
    // A zero part fails too, and the batch verb reports it on stderr with status 1.
    test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 0});
    dipole(0, 3).L = 0;
    EXPECT_EQ(s.run("export spice \"" + path + "\"\n"), 1);
    EXPECT_NE(s.err.str().find("not exportable: dipole 3 has a zero or missing L"), std::string::npos)
        << s.err.str();
}

// Crystal ladders made through the batch runner.
struct CrystalCase {
    const char* name;
    const char* script;
};

const CrystalCase capacitorcases[] = {
    {"bcl-tc", "> crystalparms: Command3\n> Getdata: 4 2000\n> Getdata: accept\n"
               ">? designtitle: Command1\nBCL\n"},
    {"bcl-tc-taps", "> crystalparms: Command3\n> Getdata: 4 2000\n"
                    "> Getdata: getvalue(1)=50 getvalue(2)=2K accept\n> Getdata: 100\n"
                    ">? designtitle: Command1\nBCL\n"},
    {"mcl-uc", "> crystalparms: Command2\n> Getdata: 3 1500\n"
               "> Getdata: getdataimage(0) getdataimage(0) accept\n>? designtitle: Command1\nMCL\n"},
};

const CrystalCase inductorcases[] = {
    {"bcl-tl-taps", "> crystalparms: Command4\n> Getdata: 3 3000\n"
                    "> Getdata: getdataimage(0) getvalue(1)=75 getvalue(2)=3K accept\n> Getdata: 120\n"
                    ">? designtitle: Command1\nBCL\n"},
    {"bcl-ul", "> crystalparms: Command4\n> Getdata: 4 2500\n"
               "> Getdata: getdataimage(0) getdataimage(0) getdataimage(0) accept\n> Getdata: 80\n"
               ">? designtitle: Command1\nBCL\n"},
};

// Over four bandwidths either side of the centre: the pass band lies in the sweep and
// ngspice agrees with the program wherever the gain is above -100 dB.
//
// A lossless capacitor carries 1e-06 ohm in its impedance and 1e-06 siemens in its
// admittance. In a shunt place the walk takes the node voltage from the one and the
// impedance onward from the other, which no circuit of plain parts does, and in a
// crystal filter's narrow band that residual conductance alone moves the response by up
// to 0.03 dB. With `truecaps` each shunt capacitor is checked as a series LC of vanishing
// L: the same capacitance and 1e-06 ohm, its admittance the true inverse.
template <size_t N> void comparewithngspice(const CrystalCase (&cases)[N], bool truecaps) {
    if (!test::havengspice()) GTEST_SKIP() << "ngspice is not installed";
    for (const CrystalCase& c : cases) {
        test::Session s;
        ASSERT_TRUE(s.ok(c.script)) << c.name << s.err.str();
        const double fs0 = slot(0).w0 / TWOPI, bw = slot(0).bw / TWOPI;
        double best = -300;
        for (int i = 0; i <= 400; ++i) {
            store.wA = TWOPI * (fs0 + bw * (i / 50.0 - 4));
            best = std::max(best, response(Quantity::PEG, 0));
        }
        EXPECT_GT(best, -12) << c.name;
        int swapped = 0;
        for (int d = 2; truecaps && d < slot(0).count(); d += 2)
            if (Dipole& dp = dipole(0, d); dp.type == 33) {
                dp.type = 34;
                dp.L = 1e-30;
                ++swapped;
            }
        EXPECT_EQ(swapped > 0, truecaps) << c.name;
        EXPECT_GT(test::crosscheck(c.name, fs0 - 4 * bw, fs0 + 4 * bw), 100) << c.name;
    }
}

TEST(CrystalLadders, InductorCouplingAgreesWithNgspiceWithAndWithoutTaps) {
    comparewithngspice(inductorcases, false);
}

TEST(CrystalLadders, CapacitorCouplingAgreesWithNgspiceWithAndWithoutTaps) {
    comparewithngspice(capacitorcases, true);
}

} // namespace
} // namespace zelk
