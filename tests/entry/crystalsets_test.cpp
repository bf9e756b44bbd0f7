// The crystal window's sets: the typical series resistance, a dipole's own crystal as
// the start of an edit, the user sets saved across a restart, a damaged set, and the
// nodal coupling prompt.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <fstream>

#include "core/designstore.h"
#include "core/notation.h"
#include "entry/crystalsets.h"
#include "entry/nodalprompt.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;
namespace fs = std::filesystem;

namespace {

// A session whose user folder holds no saved crystal sets.
struct CrystalSession : test::Session {
    explicit CrystalSession(bool fresh = true) {
        if (fresh) fs::remove_all(fs::path(runner.desk.userdatadir_) / "tables");
    }
    fs::path userset(int n) const {
        return fs::path(runner.desk.userdatadir_) / "tables" / ("crystal" + std::to_string(n) + ".tbl");
    }
};

} // namespace

// A built-in crystal, the five forms of measured data with the values worked by hand,
// the data refused as no crystal and a closed data panel are the golden script
// crystal_measured.

TEST(CrystalSets, TypicalSeriesResistanceTakesTheFirstLimitAbove) {
    const std::pair<double, double> cases[] = {{1999999, 750}, {2000000, 500}, {4999999, 55},
                                               {5000000, 50},  {15999999, 25}, {16000000, 20}};
    for (auto [fs, rs] : cases) EXPECT_EQ(typicalRs(fs), rs) << fs;
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
