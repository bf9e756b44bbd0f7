#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <fstream>

#include "core/designstore.h"
#include "core/notation.h"
#include "core/paths.h"
#include "entry/crystalsets.h"
#include "entry/nodalprompt.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;
namespace fs = std::filesystem;

namespace {

void expectnear(double got, double want, const char* what) {
    EXPECT_NEAR(got, want, std::abs(want) * 1e-12) << what;
}

// A session whose user folder holds no saved crystal sets.
struct CrystalSession : test::Session {
    explicit CrystalSession(bool fresh = true) {
        if (fresh) fs::remove_all(fs::path(runner.desk.userdatadir_) / "tables");
    }
    fs::path userset(int n) const {
        return fs::path(runner.desk.userdatadir_) / "tables" / ("crystal" + std::to_string(n) + ".tbl");
    }
};

struct Measured {
    int choice;
    const char* rows; // the four texts typed
    // Expected Cp, Ls, Cs, Rs, Fp, Fs, Qx, Fbw (hand-worked from the definitions).
    CrystalSet want;
};

class MeasuredData : public testing::TestWithParam<Measured> {};

} // namespace

TEST(CrystalSets, BuiltInCrystalsDeriveTheirMotionalValues) {
    // 5.724 MHz, Q 100000, Rs 14.6: Ls = Q Rs / w, Cs = 1 / (w^2 Ls), Fp from 1 + Cs/Cp.
    CrystalSession s;
    s.run("> crystalparms: Command3\n");
    crystalparms_show();
    const DesignSlot& d = slot(0);
    expectnear(d.Cp, 4.5e-12, "Cp");
    expectnear(d.Ls, 0.040595076324917274, "Ls");
    expectnear(d.Cs, 1.9044415614992154e-14, "Cs");
    expectnear(d.Fp, 5736099.4603384305, "Fp");
    expectnear(d.Fbw, 57.24, "Fbw");
    EXPECT_FALSE(crystalparms.visible);
    // The other three take the same road: check the series resonance comes back.
    for (const char* b : {"Command1", "Command2", "Command4"}) {
        s.run(std::string("> crystalparms: ") + b + "\n");
        crystalparms_show();
        const double fs = 1 / std::sqrt(d.Ls * d.Cs) / 6.283185308;
        EXPECT_NEAR(fs, double(d.Fs), 1e-6 * d.Fs) << b;
    }
}

TEST_P(MeasuredData, DerivesTheCrystalFromTheRows) {
    const Measured& m = GetParam();
    CrystalSession s;
    s.run("> crystalparms: crystalchoice(" + std::to_string(m.choice) + ")\n> Getdata: " + m.rows + "\n");
    crystalparms_show();
    EXPECT_TRUE(s.runner.desk.messages.empty());
    EXPECT_EQ(getdata.picturekey, "dipole 25");
    const CrystalSet got = designcrystal();
    expectnear(got.Cp, m.want.Cp, "Cp");
    expectnear(got.Ls, m.want.Ls, "Ls");
    expectnear(got.Cs, m.want.Cs, "Cs");
    expectnear(got.Rs, m.want.Rs, "Rs");
    expectnear(got.Fp, m.want.Fp, "Fp");
    expectnear(got.Fs, m.want.Fs, "Fs");
    expectnear(got.Qx, m.want.Qx, "Qx");
    expectnear(got.Fbw, m.want.Fbw, "Fbw");
    EXPECT_FALSE(crystalparms.visible);
}

INSTANTIATE_TEST_SUITE_P(
    CrystalSets, MeasuredData,
    testing::Values(
        // Cp 0 reads 3.5p, Qx 0 reads 100000.
        Measured{0, "0 50m .02p 0",
                 {3.5e-12, 0.05, 2e-14, 15.811388300841898, 5047280.500625284, 5032921.209791541, 100000,
                  50.32921209791541}},
        // Rs blank: 50 ohms for an Fs between 5 and 6 MHz.
        Measured{1, "4p 50m .02p \"\"",
                 {4e-12, 0.05, 2e-14, 50, 5045487.8241344905, 5032921.2097915411, 31622.776601683796,
                  159.15494307111402}},
        // Fs of exactly 10 MHz is not below 10 MHz: 30 ohms.
        Measured{2, "5p 10M 10.02M \"\"",
                 {5e-12, 0.01266514795198477, 2e-14, 30, 10.02e6, 10e6, 26525.823845185667, 376.99111848000007}},
        Measured{3, "0 4M 4.01M 40",
                 {3.5e-12, 0.090465342514176914, 1.7500000000000001e-14, 22.736420438730569, 4.01e6, 4e6, 100000,
                  40}},
        // Fs of exactly 5 MHz gives 50 ohms, not 55; Q blank reads 100000.
        Measured{4, "4.5p 5M \"\" \"\"",
                 {4.5e-12, 0.15915494307111402, 6.366197722844561e-15, 50, 5003535.5265179155, 5e6, 100000, 50}}));

TEST(CrystalSets, TypicalSeriesResistanceTakesTheFirstLimitAbove) {
    const std::pair<double, double> cases[] = {{1999999, 750}, {2000000, 500}, {4999999, 55},
                                               {5000000, 50},  {15999999, 25}, {16000000, 20}};
    for (auto [fs, rs] : cases) EXPECT_EQ(typicalRs(fs), rs) << fs;
}

TEST(CrystalSets, ImpossibleDataIsRefusedAndAskedAgain) {
    struct Case {
        int choice;
        const char* bad;
        const char* reason;
        const char* good;
    };
    const Case cases[] = {
        {2, "5p 10M 10M 20", "Fp must be greater than Fs.", "5p 10M 10.02M 20"},
        {3, "5p -4M 4.01M 40", "Fs must be greater than zero.", "5p 4M 4.01M 40"},
        {0, "5p 50m 0 0", "Cs must be greater than zero.", "5p 50m .02p 0"},
        {4, "5p 0 10 0", "Fs must be greater than zero.", "5p 5M 10 0"},
        {3, "5p 4M 4.01M 0", "bw must be greater than zero.", "5p 4M 4.01M 40"},
    };
    for (const Case& c : cases) {
        CrystalSession s;
        const CrystalSet before = designcrystal();
        s.run("> crystalparms: crystalchoice(" + std::to_string(c.choice) + ")\n> Getdata: " + c.bad +
              "\n> Getdata: " + c.good + "\n");
        crystalparms_show();
        auto& m = s.runner.desk.messages;
        ASSERT_EQ(m.size(), 1u) << c.bad;
        EXPECT_EQ(m[0].title, "WARNING");
        EXPECT_EQ(m[0].text, std::string("These values cannot describe a crystal.\n") + c.reason);
        EXPECT_NE(designcrystal().Ls, before.Ls) << "the second, good entry is taken";
        EXPECT_TRUE(s.runner.desk.queue.empty());
    }
}

TEST(CrystalSets, CancellingTheMeasuredDataKeepsTheCrystal) {
    CrystalSession s;
    const CrystalSet before = designcrystal();
    s.run("> crystalparms: crystalchoice(2)\n> Getdata: close\n");
    crystalparms_show();
    EXPECT_EQ(designcrystal().Ls, before.Ls);
    EXPECT_FALSE(crystalparms.visible);
}

TEST(CrystalSets, EditingADipoleStartsFromItsCrystal) {
    CrystalSession s;
    crystalparms.editingdipole = true;
    crystalparms.editdipole = 3;
    Dipole& d = dipole(0, 3);
    d.Cp = 5e-12, d.Ls = 0.05, d.Cs = 2e-14, d.Rs = 25;
    s.run("> crystalparms: crystalchoice(2)\n> Getdata: accept\n");
    crystalparms_show();
    crystalparms.editingdipole = false;
    // The rows showed Fs and Fp of the dipole's crystal, Fp in the 1 + Cs/Cp form.
    const double ws = 1 / std::sqrt(0.05 * 2e-14);
    EXPECT_EQ(paneltext(1), engformatvalue(ws / 2 / 3.141592654));
    EXPECT_EQ(paneltext(2), engformatvalue(ws * (1 + 2e-14 / 5e-12) / 2 / 3.141592654));
    EXPECT_EQ(paneltext(3), engformatvalue(25));
}

TEST(CrystalSets, ASavedSetIsChosenAgainAfterARestart) {
    std::map<std::string, std::string> settings;
    CrystalSet saved;
    {
        CrystalSession s;
        s.run("> savecrystal: Command2\n> crystalparms: Command4\nsavecrystaldata\n");
        EXPECT_EQ(savecrystal.ctl("Command2").caption, "10.000 MHz");
        EXPECT_EQ(crystalparms.ctl("Command6").caption, "10.000 MHz");
        EXPECT_TRUE(crystalparms.ctl("Frame2").enabled);
        EXPECT_EQ(s.runner.desk.settings.count("filter/crystal/user2"), 1u);
        EXPECT_TRUE(fs::exists(s.userset(2)));
        EXPECT_FALSE(fs::exists(s.userset(2).string() + ".tmp"));
        settings = s.runner.desk.settings;
        saved = designcrystal();
        EXPECT_EQ(s.take(), "");
    }
    CrystalSession s(false); // a new run, the user's files kept: every table back to program start
    s.runner.desk.settings = settings;
    setdesigncrystal(CrystalSet{});
    s.run("> crystalparms: \"10.000 MHz\"\n");
    crystalparms_show();
    const CrystalSet got = designcrystal();
    for (auto [g, w] : {std::pair{got.Cp, saved.Cp}, {got.Ls, saved.Ls}, {got.Cs, saved.Cs}, {got.Rs, saved.Rs},
                        {got.Fp, saved.Fp}, {got.Fs, saved.Fs}, {got.Qx, saved.Qx}, {got.Fbw, saved.Fbw}})
        EXPECT_NEAR(g, w, std::abs(w) * 1e-14);
    EXPECT_TRUE(s.runner.desk.messages.empty());
    // The other sets are still the shipped 5.72 MHz crystal, taken as stored.
    s.run("> crystalparms: Command5\n");
    crystalparms_show();
    EXPECT_EQ(double(slot(0).Fs), 5723998);
    EXPECT_EQ(double(slot(0).Fbw), 57.24);
    EXPECT_EQ(crystalparms.ctl("Command5").caption, "5.72 MHz");
}

TEST(CrystalSets, CancellingTheWindowWhileSavingStillWritesTheOldValues) {
    CrystalSession s;
    s.run("> savecrystal: Command1\n> crystalparms: close\nsavecrystaldata\n");
    EXPECT_EQ(savecrystal.ctl("Command1").caption, "5.724 MHz");
    std::ifstream f(s.userset(1));
    std::string first;
    std::getline(f, first);
    EXPECT_EQ(first, "4.5E-12");
}

TEST(CrystalSets, ADamagedSetReadsAsTheShippedOneAndSaysSoOnce) {
    CrystalSession s;
    fs::create_directories(s.userset(3).parent_path());
    {
        std::ofstream f(s.userset(3));
        f << "4.5E-12\nbroken\n";
    }
    s.run("> crystalparms: Command7\n> crystalparms: Command7\n");
    crystalparms_show();
    EXPECT_EQ(double(slot(0).Fs), 5723998);
    crystalparms_show();
    auto& m = s.runner.desk.messages;
    ASSERT_EQ(m.size(), 1u);
    EXPECT_EQ(m[0].text, "The stored crystal set crystal3.tbl cannot be read.\n"
                         "The default crystal of 5.72 MHz is used in its place.");
    std::ifstream f(s.userset(3));
    std::string all((std::istreambuf_iterator<char>(f)), {});
    EXPECT_EQ(all, "4.5E-12\nbroken\n"); // nothing overwritten
}

TEST(CrystalSets, SetFilesKeepOddValuesAsWritten) {
    CrystalSession s;
    const CrystalSet odd{1.23456789012345e-13, 1e-300, 7e-17, 0, -5, 123456789012345, 1e15, 3.3};
    ASSERT_TRUE(writecrystalset(4, odd));
    CrystalSet back;
    EXPECT_TRUE(readcrystalset(4, back));
    EXPECT_EQ(back.Cp, odd.Cp);
    EXPECT_EQ(back.Ls, odd.Ls);
    EXPECT_EQ(back.Fs, odd.Fs);
    EXPECT_EQ(back.Qx, odd.Qx);
    EXPECT_EQ(back.Fp, -5);
}

TEST(NodalPrompt, AsksAgainUntilTheCoefficientIsBelowOne) {
    test::Session s;
    s.run("> Getdata: 1\n> Getdata: 1.5\n> Getdata: .35\n");
    EXPECT_EQ(getM(), 0.35);
    EXPECT_EQ(getdata.note(), "Enter a coefficient of coupling less than 1");
    EXPECT_EQ(store.help1, "Nodal Capacitor Transform");
    EXPECT_TRUE(s.runner.desk.queue.empty());
}
