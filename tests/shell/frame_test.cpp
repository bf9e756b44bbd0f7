// Start-up, options in the settings store, New and Exit, the right mouse button, the
// design title window, help, calculator and the window arrangements; the menu tree, a
// command the menus disable, and the help lines of a menu title.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "entry/designtitle.h"
#include "entry/panel.h"
#include "shell/frame.h"
#include "shell/help.h"
#include "testsupport.h"

using namespace zelk;
namespace fs = std::filesystem;

namespace {

// A scripted desktop that also records the pop-up menus and arrangements asked for.
struct RecordingDesktop : ScriptedDesktop {
    std::vector<std::string> popups;
    std::vector<int> arrangements;
    void popupmenu(const std::string& m) override { popups.push_back(m); }
    void arrange(int code) override { arrangements.push_back(code); }
};

// Restarts the frame on `d` with its settings as they stand.
void restart(Desktop& d) {
    setdesktop(&d);
    resetall();
    designframe_load();
}

} // namespace

TEST(Frame, StartupWithHelpLineOnAndOff) {
    test::Session s;
    ScriptedDesktop& d = s.runner.desk;
    // No settings at all: every option reads as off and the panel stays hidden.
    d.settings.clear();
    restart(d);
    for (const OptionItem& o : optionitems()) EXPECT_FALSE(menuchecked(o.item)) << o.item;
    EXPECT_FALSE(frame.helppanelshown);
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_EQ(store.curslot, 0);
    EXPECT_EQ(store.npoints, 512);
    EXPECT_TRUE(frame.designsaved);

    // "1" is on; anything else ("yes", "0") is off.
    using Setting = std::pair<const char*, const char*>;
    for (auto [key, value] : {Setting{"helpl", "1"}, Setting{"nano", "1"}, Setting{"showparameters", "1"},
                              Setting{"partslist", "yes"}, Setting{"exacttime", "1"}})
        d.settings[std::string("filter/options/") + key] = value;
    restart(d);
    using Item = std::pair<const char*, bool>;
    for (auto [item, on] : {Item{"helpL", true}, Item{"nano", true}, Item{"sfp", true}, Item{"partslist", false},
                            Item{"showcoil", false}, Item{"exacttime", true}})
        EXPECT_EQ(menuchecked(item), on) << item;
    EXPECT_TRUE(frame.helppanelshown);
    EXPECT_EQ(frame.helplabel[0], "Select a filter response.");
    EXPECT_EQ(frame.helplabel[3], "The default values will create a sample design");

    // A program folder that is the designs folder is cut back to its parent.
    d.programdir_ = "/opt/zelk/designs";
    restart(d);
    EXPECT_EQ(frame.programdir, "/opt/zelk");
}

TEST(Frame, OptionsToggleSaveAndSurviveRestart) {
    test::Session s;
    ScriptedDesktop& d = s.runner.desk;
    EXPECT_TRUE(s.ok("option nano on\noption sfp on\noption helpL on\noption partslist off\n"));
    for (const char* key : {"nano", "showparameters", "helpl"}) EXPECT_EQ(d.settings[std::string("filter/options/") + key], "1");
    // Already off: no click, nothing saved.
    EXPECT_EQ(d.settings.count("filter/options/partslist"), 0u);
    EXPECT_TRUE(frame.helppanelshown);
    EXPECT_TRUE(s.ok("option nano off\n"));
    EXPECT_EQ(d.settings["filter/options/nano"], "0");

    // The same store read by a new start.
    restart(d);
    EXPECT_FALSE(menuchecked("nano"));
    EXPECT_TRUE(menuchecked("sfp"));
    EXPECT_TRUE(menuchecked("helpL"));

    // Help line off: the panel hides and help lines are no longer shown.
    EXPECT_TRUE(s.ok("option helpL off\n"));
    EXPECT_FALSE(frame.helppanelshown);
    std::string before = frame.helplabel[0];
    sethelp("a", "b", "c", "d");
    EXPECT_EQ(frame.helplabel[0], before);
    EXPECT_EQ(store.help1, "a");
    EXPECT_EQ(s.run("option Bogus on\n"), 1);
}

TEST(Frame, NewExitAndRightClick) {
    test::Session s;
    RecordingDesktop d;
    restart(d);
    frame_rightclick();
    store.lastslot = 0;
    frame_rightclick();
    EXPECT_EQ(d.popups, (std::vector<std::string>{"design", "edit"}));

    // New: every open child window closes, the design is cleared and saved.
    getdata.loaded = getdata.visible = true;
    trouble.show();
    EXPECT_TRUE(trouble.loaded);
    designtitlewindow.loaded = true;
    frame.designsaved = false;
    store.lastslot = 0;
    slot(0).title = "Something";
    runcommand(*findcommand("newfilter"));
    EXPECT_FALSE(getdata.loaded);
    EXPECT_FALSE(designtitlewindow.loaded);
    EXPECT_TRUE(frame.designsaved);
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_EQ(slot(0).title, "");
    EXPECT_TRUE(menuenabled("design"));
    EXPECT_FALSE(frame.ending);

    // Exit and the close box run New and end the program.
    frame.designsaved = false;
    frame_close();
    EXPECT_TRUE(frame.ending);
    EXPECT_TRUE(frame.designsaved);

    // The WINDOW menu: one check mark, on the last arrangement chosen.
    frame.ending = false;
    runcommand(*findcommand("tileV"));
    runcommand(*findcommand("cascade"));
    EXPECT_EQ(d.arrangements, (std::vector<int>{2, 0}));
    EXPECT_TRUE(menuchecked("cascade"));
    EXPECT_FALSE(menuchecked("tileV"));
    EXPECT_FALSE(menuchecked("tileH"));
    setdesktop(&s.runner.desk);
}

TEST(Frame, DesignTitleWindow) {
    test::Session s;
    ScriptedDesktop& d = s.runner.desk;
    store.curslot = 0;
    slot(0).title = "Butterworth Low-Pass";
    // Accepted as offered: "(date) title".
    d.queue.push_back({"designtitle", {"Command1"}, false, 0, 1});
    designtitle_show();
    EXPECT_EQ(slot(0).designtitle, "(" + d.date() + ") Butterworth Low-Pass");
    EXPECT_FALSE(designtitlewindow.isup);
    EXPECT_FALSE(designtitlewindow.loaded);
    // The offer is selected whole, so that typing replaces it.
    const Control& t = designtitlewindow.ctl("Text1");
    EXPECT_EQ(t.selstart, 0);
    EXPECT_EQ(t.sellength, static_cast<int>(t.text.size()));
    // Typed text is stored; the close box stores nothing.
    d.queue.push_back({"designtitle", {"Text1=\"My band-pass\"", "Command1"}, false, 0, 1});
    designtitle_show();
    EXPECT_EQ(slot(0).designtitle, "My band-pass");
    d.queue.push_back({"designtitle", {"Text1=Other", "close"}, false, 0, 1});
    designtitle_show();
    EXPECT_EQ(slot(0).designtitle, "My band-pass");
}

TEST(Frame, HelpAboutCalculatorAndTroubleshoot) {
    test::Session s;
    ScriptedDesktop& d = s.runner.desk;
    d.programdir_ = test::scratch("nohelp").string();
    restart(d);
    // No help pages: the search offer, declined.
    EXPECT_TRUE(s.ok("> msgbox: Cancel\nhelper\n"));
    ASSERT_EQ(d.messages.size(), 1u);
    EXPECT_EQ(d.messages[0].title, "File Not Found");
    EXPECT_EQ(d.messages[0].text, "Cannot find HELP file 'zkhelp.html', do you want to search for it?");
    EXPECT_EQ(d.messages[0].buttons, vbOKCancel);
    EXPECT_TRUE(d.opened.empty());
    // Searched for and found: the folder is remembered and the page opened.
    std::string page = std::string(ZELK_SOURCE_DIR) + "/docs/help/zkhelp.html";
    ASSERT_TRUE(fs::exists(page));
    EXPECT_TRUE(s.ok("> msgbox: OK\n> filedialog: \"" + page + "\"\nhelper\n"));
    EXPECT_EQ(d.settings["filter/options/zkhelplocation"], fs::path(page).parent_path().string());
    ASSERT_EQ(d.opened.size(), 1u);
    EXPECT_EQ(d.opened[0], "file://" + page);
    // Next time it opens at once.
    EXPECT_TRUE(s.ok("helper\n"));
    EXPECT_EQ(d.opened.size(), 2u);
    EXPECT_EQ(d.messages.size(), 2u);

    // About names the program folder.
    EXPECT_TRUE(s.ok("aboutfilter\n"));
    EXPECT_NE(d.messages.back().text.find("\nDirectory=" + d.programdir_), std::string::npos);

    // The calculator search walks PATH in order of preference.
    fs::path dir = test::scratch("calc");
    fs::create_directories(dir / "a");
    fs::create_directories(dir / "b");
    EXPECT_EQ(findcalculator((dir / "a").string() + ":" + (dir / "b").string()), "");
    for (auto [sub, name] : {std::pair{"a", "xcalc"}, std::pair{"b", "galculator"}}) {
        std::ofstream(dir / sub / name) << "#!/bin/sh\n";
        fs::permissions(dir / sub / name, fs::perms::owner_all);
    }
    std::ofstream(dir / "a" / "kcalc") << "not executable\n";
    fs::permissions(dir / "a" / "kcalc", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(findcalculator((dir / "a").string() + ":" + (dir / "b").string()), (dir / "b" / "galculator").string());
    EXPECT_EQ(findcalculator("::" + (dir / "a").string()), (dir / "a" / "xcalc").string());
    fs::remove_all(dir);

    // The installation check reports the missing tables of this empty program folder.
    EXPECT_TRUE(s.ok("troubleshoot\n"));
    EXPECT_TRUE(trouble.loaded);
    auto lines = trouble.lines();
    bool missing = false;
    for (auto& l : lines) missing = missing || l.find("tables/bessel.tbl  MISSING") != std::string::npos;
    EXPECT_TRUE(missing);
    ASSERT_NE(trouble.surface, nullptr);
    auto* rec = dynamic_cast<RecordingSurface*>(trouble.surface);
    ASSERT_NE(rec, nullptr);
    EXPECT_EQ(rec->texts().front(), "INSTALLATION CHECK");
    // Scrolling moves the report up and stops at its end.
    trouble.ctl("VScroll1").value = 2;
    trouble.draw();
    EXPECT_EQ(rec->texts().front(), lines[2]);
    trouble.ctl("VScroll1").value = 1000;
    trouble.draw();
    int top = trouble.ctl("VScroll1").value;
    ASSERT_LT(top, static_cast<int>(lines.size()));
    EXPECT_EQ(rec->texts().front(), lines[static_cast<size_t>(top)]);
    EXPECT_EQ(rec->texts().back(), lines.back());
}

namespace {

std::vector<std::string> childrenof(const std::string& parent) {
    std::vector<std::string> out;
    for (const MenuItem& m : menuitems())
        if (m.parent == parent) out.push_back(m.name);
    return out;
}

} // namespace

TEST(Menus, TreeInMenuOrderWithCaptions) {
    test::Session s;
    // The seven top menus of the bar, in order, and the edit pop-up; the design menu in
    // the order the families are offered.
    EXPECT_EQ(childrenof(""),
              (std::vector<std::string>{"file", "utilities", "analysis", "design", "options", "window", "about", "edit"}));
    EXPECT_EQ(childrenof("design"), (std::vector<std::string>{"butterworth", "chebyshev", "elliptic", "Bessel",
                                                              "linearphase", "gaussian1", "legendre",
                                                              "GaussianChebyshev", "coupled", "crystal", "attn"}));
    EXPECT_EQ(childrenof("printfilter").size(), 16u);
    EXPECT_EQ(childrenof("clip").size(), 15u);
    // Only the edit tree is a pop-up; every name is unique.
    std::set<std::string> seen;
    for (const MenuItem& m : menuitems()) {
        EXPECT_TRUE(seen.insert(m.name).second) << "twice: " << m.name;
        bool inedit = m.name == "edit" || m.parent == "edit" || m.parent == "ungroup";
        EXPECT_EQ(m.popup, inedit) << m.name;
    }
    // A reset rebuilds the model from nothing (captions changed by a command come back).
    findmenu("fordipole")->caption = "For Dipole  3";
    resetall();
    ASSERT_NE(findmenu("fordipole"), nullptr);
    EXPECT_EQ(findmenu("fordipole")->caption, "For Dipole");
}

// The enabled states of the blocks (nothing open, one design, two designs) are the
// golden scripts menus_blocks and file_twofilters.

TEST(Menus, DisabledCommandRefused) {
    // A command the menus disable cannot be run from a script either.
    test::Session t;
    EXPECT_EQ(t.run("PEG\n"), 1);
}

TEST(Menus, MenuTitleHelpLines) {
    test::Session s;
    EXPECT_TRUE(s.ok("option helpL on\n"));
    EXPECT_TRUE(menutitle_Click("file"));
    EXPECT_EQ(frame.helplabel[0], "Open an existing filter file.");
    EXPECT_TRUE(menutitle_Click("options"));
    EXPECT_EQ(store.help3, "");
    EXPECT_TRUE(menutitle_Click("analysis"));
    // A menu without help lines leaves the last ones standing.
    EXPECT_FALSE(menutitle_Click("window"));
    EXPECT_EQ(store.help4, "Plotting parameters can be changed by re-selecting the analysis type.");
}
