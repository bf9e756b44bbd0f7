// The file commands run as the user runs them: through the menus and the file dialog of
// the scripted desktop, on designs made by the design commands or laid into the store.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "core/commands.h"
#include "core/designflow.h"
#include "core/designstore.h"
#include "design/designfiles.h"
#include "schematic/schematicview.h"
#include "shell/frame.h"
#include "entry/designfilesupport.h"
#include "files.h"
#include "testsupport.h"

using namespace zelk;
using zelk::test::expectsame;
namespace fs = std::filesystem;

namespace {

// The file dialog answered with p, then the line that follows (the command that opens it).
std::string pick(const fs::path& p, const std::string& then) {
    return "> filedialog: \"" + p.string() + "\"\n" + then + "\n";
}

using test::readfile;

// A ladder of n dipoles in slot s whose every field tells its design (tag) and number.
void ladder(int s, int n, int tag) {
    DesignSlot& d = slot(s);
    d.title = "Title " + std::to_string(tag);
    d.designtitle = "Design " + std::to_string(tag);
    d.code = tag % 2 ? "CHP" : "BBP";
    d.order = n - 2;
    d.Zin = 50;
    d.Zout = 75;
    d.w0 = 1e6 * tag;
    d.dipolecount = n;
    for (int k = 1; k <= n; ++k) {
        Dipole& p = d.dip(k);
        p = Dipole{};
        p.type = static_cast<short>(k == 1 ? 1 : k == n ? 31 : (k % 2 ? 4 : 35));
        p.R = tag * 1000 + k;
        p.C = (tag * 100 + k) * 1e-12;
        p.Kspare = tag + k / 100.0;
        p.Lcore = "core " + std::to_string(tag) + "/" + std::to_string(k);
        p.Qx = 1e5 + k;
    }
}

// The tag and number a dipole was made with by ladder().
std::pair<int, int> origin(const Dipole& p) {
    int r = static_cast<int>(p.R);
    return {r / 1000, r % 1000};
}

} // namespace

TEST(DesignFileCommands, EveryDesignRoundTrips) {
    fs::path dir = test::scratch("designfile-roundtrip", true);
    const char* designs[] = {
        "> selfunction: selection(0) \"Accept design\"\n> Getdata: 10M 15M 3 \"\" 5 50 50\n> Getdata: Lossless\nbutterworth\n",
        "> selfunction: selection(1) picture \"Accept design\"\n> Getdata: accept\n> Getdata: 120\nbutterworth\n",
        "> selfunction: selection(2) \"Accept design\"\n> Getdata: accept\n> Getdata: Lossless\nchebyshev\n",
        "> selfunction: selection(3) picture \"Accept design\"\n> Getdata: accept\n> Getdata: 200\nchebyshev\n",
        "> selfunction: selection(0) \"Accept design\"\n>? terminate: \"Use Zin\"\n> Getdata: accept\n>? Getdata: Lossless\nelliptic\n",
    };
    int n = 0;
    for (const char* design : designs) {
        SCOPED_TRACE(design);
        test::Session s;
        std::string name = "design" + std::to_string(n++) + ".sch";
        ASSERT_TRUE(s.ok(">? designtitle: Command1\n" + std::string(design)));
        ASSERT_EQ(store.lastslot, 0);
        ASSERT_GT(slot(0).count(), 2);
        DesignSlot made = slot(0);
        Number wa = store.wA;
        ASSERT_TRUE(s.ok(pick(dir / name, "savefilter") + "newfilter\n"));
        EXPECT_TRUE(frame.designsaved);
        ASSERT_EQ(store.lastslot, -1);
        store.wA = -5;
        flow.previouskind = 9;
        ASSERT_TRUE(s.ok(pick(dir / name, "openfilter")));
        EXPECT_EQ(store.lastslot, 0);
        EXPECT_EQ(store.curslot, 0);
        expectsame(made, wa, slot(0));
        const std::string& code = made.code;
        std::string ending = code.substr(code.size() - 2);
        EXPECT_EQ(flow.previouskind, ending == "LP" ? 0 : ending == "HP" ? 1 : ending == "BP" ? 2 : 3);
        // Saving the opened design again writes the same file.
        std::string first = readfile(dir / name);
        ASSERT_TRUE(s.ok(pick(dir / ("again" + name), "savefilter")));
        EXPECT_EQ(readfile(dir / ("again" + name)), first);
    }
}

// With two filters open (slot 1 the current one, the shared wA from the last file read)
// saving, where it can be reached, writes slot 0; a cancelled dialog writes nothing, and
// no file is left half-written beside the designs.
TEST(DesignFileCommands, SaveWritesSlotZeroOnly) {
    fs::path dir = test::scratch("designfile-save", true);
    test::Session s;
    ladder(0, 8, 1);
    store.wA = 111;
    ASSERT_TRUE(writedesignfile((dir / "a.sch").string(), 0));
    ladder(0, 6, 2);
    store.wA = 222;
    ASSERT_TRUE(writedesignfile((dir / "b.sch").string(), 0));
    ASSERT_TRUE(s.ok("newfilter\n" + pick(dir / "a.sch", "openfilter") + pick(dir / "b.sch", "openfilter")));
    ASSERT_EQ(store.lastslot, 1);
    EXPECT_EQ(store.curslot, 1);
    EXPECT_EQ(slot(1).count(), 6);
    EXPECT_EQ(store.wA.value(), 222);
    setenabled("savefilter", true);
    ASSERT_TRUE(s.ok(pick(dir / "bp.sch", "savefilter") + "> filedialog: cancel\nsavefilter\n"));
    std::string a = readfile(dir / "a.sch");
    a.replace(a.find("\r\n111\r\n"), 7, "\r\n222\r\n");
    EXPECT_EQ(readfile(dir / "bp.sch"), a);
    int files = 0;
    for (auto& e : fs::directory_iterator(dir)) files += e.path().extension() == ".sch" ? 1 : 100;
    EXPECT_EQ(files, 3);
}

TEST(DesignFileCommands, SavingNeverDestroysTheEarlierFile) {
    fs::path dir = test::scratch("designfile-safe", true);
    test::Session s;
    ladder(0, 4, 3);
    ASSERT_TRUE(writedesignfile((dir / "keep.sch").string(), 0));
    std::string before = readfile(dir / "keep.sch");
    // A save that cannot write its temporary file leaves the old file whole.
    fs::create_directories(dir / ".keep.sch.saving" / "busy");
    ladder(0, 8, 4);
    EXPECT_FALSE(writedesignfile((dir / "keep.sch").string(), 0));
    EXPECT_EQ(readfile(dir / "keep.sch"), before);
    fs::remove_all(dir / ".keep.sch.saving");
    // A save that can write replaces it whole.
    EXPECT_TRUE(writedesignfile((dir / "keep.sch").string(), 0));
    EXPECT_EQ(readfile(dir / "keep.sch"), designfiletext(0));
    EXPECT_FALSE(fs::exists(dir / ".keep.sch.saving"));
    // A folder that does not exist: nothing, and no fault.
    EXPECT_FALSE(writedesignfile((dir / "no" / "such.sch").string(), 0));
}

TEST(DesignFileCommands, OpenLeavesFieldsOnAMissingFileAndStopsOnCancel) {
    fs::path dir = test::scratch("designfile-open", true);
    test::Session s;
    // Cancel: no slot is taken.
    ASSERT_TRUE(s.ok("> filedialog: cancel\nopenfilter\n"));
    EXPECT_EQ(store.lastslot, -1);
    // A file that is not there: the slot is taken, nothing is read, no message.
    slot(0).title = "as it was";
    store.wA = 7;
    ASSERT_TRUE(s.ok(">? designtitle: Command1\n" + pick(dir / "missing.sch", "openfilter")));
    EXPECT_EQ(store.lastslot, 0);
    EXPECT_EQ(slot(0).title, "as it was");
    EXPECT_EQ(store.wA.value(), 7);
    EXPECT_TRUE(s.runner.desk.messages.empty());
    // A file of another kind: what converts stays, no message, the program goes on.
    {
        std::ofstream junk(dir / "junk.sch", std::ios::binary);
        junk << "\x7f" "ELF\x02\x01\x01,,,\"\r\n33\r\n-1\r\n\0\0\0";
    }
    ASSERT_TRUE(s.ok("newfilter\n>? designtitle: Command1\n" + pick(dir / "junk.sch", "openfilter")));
    EXPECT_EQ(store.lastslot, 0);
    EXPECT_TRUE(s.runner.desk.messages.empty());
    // A count beyond the tables: 32 dipoles are read, the drawing stops at the fault
    // without a word, and the window keeps the caption it took from the title.
    ladder(0, 8, 5);
    std::string big = designfiletext(0);
    big.replace(big.find("\r\n8\r\n1\r\n"), 5, "\r\n40\r\n");
    {
        std::ofstream(dir / "big.sch", std::ios::binary) << big;
    }
    ASSERT_TRUE(s.ok("newfilter\n>? designtitle: Command1\n" + pick(dir / "big.sch", "openfilter")));
    EXPECT_EQ(slot(0).dipolecount.value(), 40);
    EXPECT_EQ(origin(slot(0).dip(8)), std::make_pair(5, 8));
    EXPECT_EQ(schematicwindow(0).caption, "Title 5");
    EXPECT_TRUE(s.runner.desk.messages.empty());
}

TEST(DesignFileCommands, DeleteAsksFirst) {
    fs::path dir = test::scratch("designfile-delete", true);
    test::Session s;
    ladder(0, 4, 1);
    ASSERT_TRUE(writedesignfile((dir / "x.sch").string(), 0));
    ASSERT_TRUE(s.ok(pick(dir / "x.sch", "> msgbox: Cancel") + "delete\n"));
    EXPECT_TRUE(fs::exists(dir / "x.sch"));
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    const MessageRecord& m = s.runner.desk.messages[0];
    EXPECT_EQ(m.title, "Should I Really");
    EXPECT_EQ(m.text, "Do you really want to delete\r" + (dir / "x.sch").string());
    EXPECT_EQ(m.buttons & 7, vbOKCancel);
    ASSERT_TRUE(s.ok(pick(dir / "x.sch", "> msgbox: OK") + "delete\n"));
    EXPECT_FALSE(fs::exists(dir / "x.sch"));
    EXPECT_EQ(slot(0).count(), 4); // the design in memory is not touched
}

// Append and insert through the menus are the golden script file_join's.
TEST(DesignFileCommands, VersionOneFileJoinsWithAnEmptyDesignTitle) {
    test::Session s;
    ladder(0, 6, 2);
    std::string v1 = designfiletext(0);
    v1.erase(v1.find("\"Design 2\"\r\n"), 12);
    ladder(0, 8, 1);
    ladder(1, 1, 9); // a marker in slot 1 that the join must not touch
    store.curslot = 0;
    appenddesign(v1);
    EXPECT_EQ(slot(0).designtitle, "Design 1+");
    EXPECT_EQ(slot(0).count(), 12);
    EXPECT_EQ(origin(slot(0).dip(10)), std::make_pair(2, 4));
    EXPECT_EQ(slot(1).title, "Title 9");
}

TEST(DesignFileCommands, JoinsBeyondTheTablesEndQuietly) {
    test::Session s;
    // 30 + 30 - 2 dipoles do not fit: the reading stops at dipole 32 and nothing faults.
    ladder(0, 30, 1);
    std::string thirty = designfiletext(0);
    store.curslot = 0;
    appenddesign(thirty);
    EXPECT_EQ(slot(0).count(), 58);
    EXPECT_EQ(origin(slot(0).dip(32)), std::make_pair(1, 4));
    ladder(0, 30, 1);
    insertdesign(thirty);
    EXPECT_EQ(slot(0).count(), 58);
    EXPECT_EQ(origin(slot(0).dip(32)), std::make_pair(1, 4)); // moved up from 4 by 28
    EXPECT_EQ(origin(slot(0).dip(29)), std::make_pair(1, 29));
    // Counts of -1, 33 and 1e300 in either design end in the partial read.
    for (double count : {-1.0, 33.0, 1e300, -1e300, 0.5}) {
        SCOPED_TRACE(count);
        ladder(0, 8, 1);
        slot(0).dipolecount = count;
        appenddesign(thirty);
        insertdesign(thirty);
        ladder(0, 8, 1);
        std::string odd = designfiletext(0);
        odd.replace(odd.find("\r\n8\r\n1\r\n"), 5, "\r\n" + Str(count) + "\r\n");
        appenddesign(odd);
        insertdesign(odd);
        readdesign(odd, 0);
    }
}

TEST(DesignFileCommands, ExamplesReachANewUsersFolder) {
    fs::path dir = test::scratch("designfile-examples", true);
    test::Session s;
    fs::create_directories(dir / "program" / "designs");
    {
        std::ofstream(dir / "program" / "designs" / "example.sch") << "\"Example\"\r\n";
        std::ofstream(dir / "program" / "designs" / "notes.txt") << "not a design";
    }
    s.runner.desk.programdir_ = (dir / "program").string();
    s.runner.desk.userdatadir_ = (dir / "user").string();
    fs::path mine = userdesigns();
    EXPECT_EQ(mine, dir / "user" / "designs");
    EXPECT_TRUE(fs::exists(mine / "example.sch"));
    EXPECT_FALSE(fs::exists(mine / "notes.txt"));
    // Once the folder exists, what the user deleted stays deleted.
    fs::remove(mine / "example.sch");
    userdesigns();
    EXPECT_FALSE(fs::exists(mine / "example.sch"));
}

TEST(DesignFileCommands, TwoOpenFiltersAreBothPlotted) {
    fs::path dir = test::scratch("designfile-twoplots", true);
    test::Session s;
    ASSERT_TRUE(s.ok(test::lowpass + pick(dir / "low.sch", "savefilter") +
                     "newfilter\n>? designtitle: Command1\n"
                     "> selfunction: selection(1) \"Accept design\"\n> Getdata: accept\n> Getdata: Lossless\n"
                     "chebyshev\n" +
                     pick(dir / "high.sch", "savefilter") + "newfilter\n" + pick(dir / "low.sch", "openfilter") +
                     pick(dir / "high.sch", "openfilter")));
    ASSERT_EQ(store.lastslot, 1);
    ASSERT_TRUE(s.ok("> Getdata: accept\nPEG\n"));
    int points[2] = {0, 0};
    double lowest[2] = {0, 0};
    for (const auto& p : test::curve(s, "plotPEG")) {
        ++points[p.slot];
        if (p.index == 0) lowest[p.slot] = p.value;
    }
    EXPECT_GT(points[0], 500);
    EXPECT_EQ(points[1], points[0]);
    // At the lowest frequency the low-pass passes and the high-pass stops.
    EXPECT_GT(lowest[0], -1);
    EXPECT_LT(lowest[1], -20);
}
