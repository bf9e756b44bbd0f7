// The batch runner: its tokenizer, exit statuses and answer queue, and the inputs found by
// fuzzing it and the design files: each ends in a clear exit status and message, and none
// leaves a value that is not finite in the store.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "batch/scripteddesktop.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/framestate.h"
#include "entry/panel.h"
#include "files.h"
#include "fuzz/batchcheck.h"
#include "testsupport.h"

using namespace zelk;
namespace fs = std::filesystem;

namespace {

const std::string& design = test::lowpass;

bool allslotsfinite() {
    for (int s = 0; s <= MAXSLOT; ++s)
        if (!fuzz::allfinite(s)) return false;
    return true;
}

} // namespace

// Lines whose numbers or indices do not fit, or are no numbers (rows of [unfitting]):
// exit status 1 and a message naming the line, never an exception out of the runner.
TEST(Faults, UnfittingNumbersExitOneNamingTheLine) {
    for (const test::Row& r : test::datarows("batch.txt", "unfitting")) {
        SCOPED_TRACE(r.text(1));
        test::Session s;
        const std::string before = r.text(0) == "plotted" ? design + "> Getdata: 1M 100M -80 10\nPIG\n" : "";
        EXPECT_EQ(s.run(before + r.text(1)), 1);
        EXPECT_NE(s.err.str().find(r.text(2)), std::string::npos) << s.err.str();
        EXPECT_TRUE(allslotsfinite());
    }
}

TEST(Faults, EmptyFileNameIsACancel) {
    test::Session s;
    ASSERT_TRUE(s.ok("> filedialog: \"\"\nopenfilter\n> filedialog: \"\"\ndelete\n"));
    EXPECT_EQ(store.lastslot, -1); // no slot taken
    EXPECT_TRUE(s.runner.desk.unread.empty());
}

// A folder chosen as a design file reads as a file that cannot be opened; the desktop is
// told which and why.
TEST(Faults, FolderChosenAsDesignFile) {
    const fs::path dir = test::scratch("faults-folder", true);
    for (const char* command : {"openfilter", "append", "insert"}) {
        SCOPED_TRACE(command);
        test::Session s;
        ASSERT_TRUE(s.ok(design));
        const std::string title = slot(0).title;
        ASSERT_TRUE(s.ok("> filedialog: \"" + dir.string() + "\"\n>? designtitle: Command1\n" + command + "\n"));
        ASSERT_EQ(s.runner.desk.unread.size(), 1u);
        EXPECT_EQ(s.runner.desk.unread[0].first, dir.string());
        EXPECT_EQ(s.runner.desk.unread[0].second, std::make_error_code(std::errc::is_a_directory).message());
        EXPECT_TRUE(s.runner.desk.messages.empty()); // the logic itself says nothing
        EXPECT_NE(slot(0).title.find(title), std::string::npos);
        EXPECT_TRUE(allslotsfinite());
    }
}

// Values typed or computed beyond the range of a double, pointers far off a plot and a
// linear axis of more divisions than any integer are the golden scripts faults_overflow
// and faults_pointer (and their fuzz regressions replayed below).

// A save that writes nothing says which file and why, keeps the older file, and leaves
// the design unsaved; a save that works marks it saved.
TEST(Faults, FailedSaveSaysWhyAndKeepsTheOlderFile) {
    const fs::path dir = test::scratch("faults-save", true);
    const fs::path readonly = dir / "kept.sch";
    std::ofstream(readonly) << "older\n";
    fs::permissions(readonly, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    struct {
        fs::path chosen, written;
        std::string reason;
    } cases[] = {
        {dir / "missing" / "f.sch", dir / "missing" / "f.sch", std::make_error_code(std::errc::no_such_file_or_directory).message()},
        {readonly, readonly, std::make_error_code(std::errc::permission_denied).message()},
        {dir / "folder.sch", dir / "folder.sch", std::make_error_code(std::errc::is_a_directory).message()},
    };
    fs::create_directories(dir / "folder.sch");
    for (auto& c : cases) {
        SCOPED_TRACE(c.chosen.string());
        test::Session s;
        ASSERT_TRUE(s.ok(design));
        ASSERT_FALSE(frame.designsaved);
        ASSERT_TRUE(s.ok("> filedialog: \"" + c.chosen.string() + "\"\nsavefilter\n"));
        ASSERT_EQ(s.runner.desk.messages.size(), 1u);
        const MessageRecord& m = s.runner.desk.messages[0];
        EXPECT_EQ(m.title, "Save Filter");
        EXPECT_NE(m.text.find(c.written.string()), std::string::npos) << m.text;
        EXPECT_NE(m.text.find(c.reason), std::string::npos) << m.text;
        EXPECT_FALSE(frame.designsaved);
    }
    EXPECT_EQ(test::readfile(readonly), "older\n");
    EXPECT_FALSE(fs::exists(dir / "missing"));
    for (const auto& e : fs::directory_iterator(dir)) EXPECT_EQ(e.path().extension(), ".sch") << e.path();

    test::Session s;
    ASSERT_TRUE(s.ok(design + "> filedialog: \"" + (dir / "new.sch").string() + "\"\nsavefilter\n"));
    EXPECT_TRUE(frame.designsaved);
    EXPECT_TRUE(s.runner.desk.messages.empty());
    EXPECT_EQ(test::readfile(dir / "new.sch").substr(0, 5), "\"Butt");
}

// The program itself: a script that is a folder, and a number beyond any integer, end
// in exit status 1 with a message, not in an abort.
TEST(Faults, BatchProgramExitStatus) {
    const fs::path dir = test::scratch("faults-program", true);
    const fs::path script = dir / "huge.txt";
    std::ofstream(script) << "dump slot 99999999999999999999\n";
    const std::string batch = std::string(ZELK_BINARY_DIR) + "/zelkfilter-batch";
    for (const fs::path& p : {dir, script}) {
        SCOPED_TRACE(p.string());
        const std::string cmd = batch + " " + p.string() + " >/dev/null 2>" + (dir / "err").string();
        const int status = std::system(cmd.c_str());
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 1);
        EXPECT_NE(test::readfile(dir / "err").find("zelkfilter-batch: "), std::string::npos);
    }
}

// The fuzzer's seeds and every script kept from fuzzing run through the fuzz target's
// checks.
TEST(Faults, KeptFuzzScriptsReplay) {
    const fs::path fuzzdir = fs::path(ZELK_SOURCE_DIR) / "fuzz";
    const fs::path here = fs::current_path();
    int scripts = 0;
    for (const char* sub : {"corpus-batch", "regressions"})
        for (const auto& e : fs::directory_iterator(fuzzdir / sub)) {
            if (e.path().extension() != ".txt") continue;
            SCOPED_TRACE(e.path().filename().string());
            EXPECT_TRUE(fuzz::checkbatchscript(test::readfile(e.path())));
            ++scripts;
        }
    fs::current_path(here);
    EXPECT_GE(scripts, 10);
}

namespace {
// A command that asks the panel once and a question box, for the queue rules.
void askboth() {
    panelclear();
    panelrow(0, "F1 =", "1");
    if (!panelshow()) return;
    slot(0).Zin = panelvalue(0);
    int a = MsgBox("Continue?", vbYesNo | vbQuestion, "Question");
    slot(0).Zout = a == vbYes ? 1 : 2;
}
void askpanel() {
    panelclear();
    panelrow(0, "F1 =", "1");
    panelshow();
}
void tell() { MsgBox("Just so you know."); }
const bool r1 = registercommand("testaskboth", askboth);
const bool r2 = registercommand("testaskpanel", askpanel);
const bool r3 = registercommand("testtell", tell);
} // namespace

TEST(Batch, Tokenizer) {
    bool ok;
    auto t = tokenize(R"(> Getdata: 10M "" "a b" Text1="My band-pass" "say ""hi""")", ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(t.size(), 7u);
    EXPECT_EQ(unquote(t[3]), "");
    EXPECT_EQ(unquote(t[4]), "a b");
    EXPECT_EQ(t[5], "Text1=\"My band-pass\"");
    EXPECT_EQ(unquote(t[6]), "say \"hi\"");
    tokenize("\"open", ok);
    EXPECT_FALSE(ok);
    std::string name;
    int index;
    EXPECT_TRUE(splitname("selection(4)", name, index));
    EXPECT_EQ(name, "selection");
    EXPECT_EQ(index, 4);
    EXPECT_TRUE(splitname("accept", name, index));
    EXPECT_EQ(index, -1);
    EXPECT_FALSE(splitname("x(", name, index));
    EXPECT_FALSE(splitname("x(a)", name, index));
}

TEST(Batch, ExitStatuses) {
    for (const test::Row& r : test::datarows("batch.txt", "statuses")) {
        test::Session s;
        EXPECT_EQ(s.run(r.text(0)), r.whole(1)) << r.text(0);
        if (r.text(2) != "-") {
            EXPECT_NE(s.err.str().find(r.text(2)), std::string::npos) << r.text(0);
        }
    }
}

TEST(Batch, AnswersAndMessages) {
    test::Session s;
    ASSERT_TRUE(s.ok("> Getdata: 7\n> msgbox: No\ntestaskboth\ntesttell\ndump messages\n"));
    EXPECT_EQ(slot(0).Zin.value(), 7);
    EXPECT_EQ(slot(0).Zout.value(), 2);
    EXPECT_EQ(s.take(), "msgbox title=\"Question\" buttons=YesNo answer=No text=\"Continue?\"\n"
                        "msgbox title=\"ZELK Filter Design\" buttons=OK answer=OK text=\"Just so you know.\"\n");
}

TEST(Batch, OptionalAnswersAreSkippedAndDropped) {
    test::Session s;
    // An optional answer for a window that does not open is skipped over by the others
    // and dropped when the command after it ends.
    ASSERT_TRUE(s.ok(">? msgbox: No\n> Getdata: 3\ntestaskpanel\n"));
    EXPECT_TRUE(s.runner.desk.queue.empty());
    // A window takes the first answer for it, optional or not.
    ASSERT_TRUE(s.ok(">? msgbox: No\n> Getdata: 4\ntestaskboth\n"));
    EXPECT_EQ(slot(0).Zin.value(), 4);
    EXPECT_EQ(slot(0).Zout.value(), 2);
}

TEST(Batch, PanelBareListFillsVisibleRowsThenAccepts) {
    test::Session s;
    panelclear();
    panelrow(0, "F1 =", "");
    panelrow(2, "F2 =", ""); // row 1 hidden: the texts go to the visible rows in order
    panelrow(3, "Zin =", "");
    s.run("> Getdata: 10M \"\" 50\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(0), "10M");
    EXPECT_EQ(paneltext(1), "");
    EXPECT_EQ(paneltext(2), "");
    EXPECT_EQ(paneltext(3), "50");
    // accept stops at the first hidden label, so the blank F2 below it passes.
    EXPECT_TRUE(s.runner.desk.messages.empty());
}
