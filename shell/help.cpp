#include "shell/help.h"

#include <cstdlib>
#include <filesystem>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/surface.h"
#include "shell/frame.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

bool isfile(const fs::path& p) {
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

std::string fileurl(const fs::path& p) { return "file://" + fs::absolute(p).string(); }

// The help folder: the one the user pointed at, else the one installed beside the tables.
fs::path helpfolder() {
    std::string saved = desktop().getsetting("filter", "options", "zkhelplocation", "");
    if (!saved.empty() && isfile(fs::path(saved) / HELPFILE)) return saved;
    fs::path shipped = fs::path(frame.programdir) / "help";
    if (isfile(shipped / HELPFILE)) return shipped;
    return saved;
}

bool openhelppage(const std::string& page) {
    fs::path folder = helpfolder();
    if (folder.empty() || !isfile(folder / page)) return false;
    if (!desktop().openurl(fileurl(folder / page)))
        MsgBox("HTML Help support files missing.\nReinstall program and select the\nhelp pages and a web browser when installing.",
               vbOKOnly | vbExclamation, "HELP");
    return true;
}

} // namespace

std::string helppagepath(const std::string& page) {
    fs::path folder = helpfolder();
    if (folder.empty() || !isfile(folder / page)) return "";
    return fs::absolute(folder / page).string();
}

void update_Click() {
    if (!openhelppage("updates.html")) helper_Click();
}
void homepage_Click() {
    if (!openhelppage("zelk.html")) helper_Click();
}
void installcalc_Click() {
    if (!openhelppage("calculator.html")) helper_Click();
}

// The WINDOW menu: the arrangement chosen carries the only check mark.
void arrange_Click(int code) {
    static const char* const items[] = {"cascade", "tileH", "tileV", "arrangeicons"};
    desktop().arrange(code);
    for (int i = 0; i < 4; ++i) setchecked(items[i], i == code);
    frame.arrangement = code;
}


const std::vector<std::string>& calculatorcandidates() {
    static const std::vector<std::string> c = {"gnome-calculator", "kcalc", "galculator", "qalculate-gtk", "xcalc"};
    return c;
}

std::string findcalculator(const std::string& path) {
    std::vector<std::string> dirs;
    size_t start = 0;
    while (start <= path.size()) {
        size_t colon = path.find(':', start);
        if (colon == std::string::npos) colon = path.size();
        if (colon > start) dirs.push_back(path.substr(start, colon - start));
        start = colon + 1;
    }
    for (const std::string& name : calculatorcandidates())
        for (const std::string& d : dirs) {
            fs::path p = fs::path(d) / name;
            std::error_code ec;
            auto st = fs::status(p, ec);
            if (!ec && fs::is_regular_file(st) &&
                (st.permissions() & (fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec)) !=
                    fs::perms::none)
                return p.string();
        }
    return "";
}

void helper_Click() {
    fs::path folder = helpfolder();
    if (!folder.empty() && isfile(folder / HELPFILE)) {
        openhelppage(HELPFILE);
        return;
    }
    if (MsgBox(std::string("Cannot find HELP file '") + HELPFILE + "', do you want to search for it?",
               vbOKCancel | vbQuestion, "File Not Found") != vbOK)
        return;
    FileDialogRequest r;
    r.title = std::string("Find ") + HELPFILE;
    r.initdir = frame.programdir;
    r.filename = HELPFILE;
    r.filter = std::string("Help File (") + HELPFILE + ")|" + HELPFILE;
    if (!desktop().filedialog(r)) return;
    fs::path chosen(r.filename);
    if (chosen.filename() != HELPFILE || !isfile(chosen)) {
        MsgBox(std::string("The file chosen is not '") + HELPFILE + "'.", vbOKOnly | vbExclamation, "File Not Found");
        return;
    }
    desktop().savesetting("filter", "options", "zkhelplocation", chosen.parent_path().string());
    openhelppage(HELPFILE);
}

void calculator_Click() {
    const char* path = std::getenv("PATH");
    std::string calc = findcalculator(path ? path : "");
    if (calc.empty()) {
        MsgBox("No calculator program was found.\nInstall one of gnome-calculator, kcalc, galculator,\n"
               "qalculate-gtk or xcalc and choose Calculator again.",
               vbOKOnly | vbInformation, "Calculator");
        return;
    }
    if (!desktop().startprogram(calc))
        MsgBox("The calculator " + calc + " could not be started.", vbOKOnly | vbExclamation, "Calculator");
}

void aboutfilter_Click() {
    MsgBox("ZELK Filter Design\nPassive LC filter design and analysis\n\nDirectory=" + frame.programdir,
           vbOKOnly | vbInformation, "About ZELK Filter Design");
}

void troubleshoot_Click() {
    trouble.left = (frame.framewidth - trouble.clientwidth) / 2;
    trouble.top = (frame.frameheight - trouble.clientheight) / 2;
    if (trouble.left < 0) trouble.left = 0;
    if (trouble.top < 0) trouble.top = 0;
    trouble.show();
    trouble.draw();
}

Trouble::Trouble() : Window("trouble", "troubleshoot installation") { build(); }

void Trouble::reset() {
    controls.clear();
    surface = nullptr;
    loaded = visible = false;
    build();
}

void Trouble::build() {
    draws = true;
    unit = 1;
    clientwidth = 560;
    clientheight = 420;
    Control& pic = add(ControlKind::Picture, "Picture1");
    pic.left = 0;
    pic.top = 0;
    pic.width = 540;
    pic.height = 420;
    Control& bar = add(ControlKind::Scroll, "VScroll1");
    bar.left = 540;
    bar.top = 0;
    bar.width = 20;
    bar.height = 420;
    bar.onchange = [this](int) { draw(); };
}

std::vector<std::string> Trouble::lines() const {
    std::vector<std::string> out;
    auto found = [](const fs::path& p) { return isfile(p) ? "found" : "MISSING"; };
    fs::path dir = frame.programdir;
    out.push_back("INSTALLATION CHECK");
    out.push_back("");
    out.push_back("Program folder: " + frame.programdir);
    out.push_back("The tables of the program must be in its tables folder:");
    for (const char* t : {"bessel.tbl", "gaussian.tbl", "gauss6.tbl", "gauss12.tbl", "legendre.tbl", "linph05.tbl",
                          "linph5.tbl", "crystal1.tbl", "crystal2.tbl", "crystal3.tbl", "crystal4.tbl",
                          "crystal5.tbl", "crystal6.tbl", "Forms.txt", "awg.txt"})
        out.push_back(std::string("    tables/") + t + "  " + found(dir / "tables" / t));
    out.push_back("");
    std::string user = desktop().userdatadir();
    out.push_back("Your designs and crystal sets are written under:");
    out.push_back("    " + user);
    fs::path help = helpfolder();
    out.push_back("Help pages: " + (help.empty() ? std::string("not found") : help.string()) + "  " +
                  found(help / HELPFILE));
    const char* path = std::getenv("PATH");
    std::string calc = findcalculator(path ? path : "");
    out.push_back("Calculator: " + (calc.empty() ? std::string("none installed") : calc));
    out.push_back("");
    out.push_back("If a table is missing, reinstall the program; a design of the");
    out.push_back("families that read it cannot run until it is back.");
    out.push_back("Options are kept in the settings store 'filter', section 'options'.");
    return out;
}

void Trouble::draw() {
    if (!surface) return;
    Surface& s = *surface;
    s.cls();
    s.setcolour(WHITE);
    s.fillrect(0, 0, s.scalewidth(), s.scaleheight());
    s.setcolour(BLACK);
    std::vector<std::string> text = lines();
    double lh = s.textheight("X") + 2;
    Control& bar = ctl("VScroll1");
    int visiblelines = clampint((clientheight - 20) / lh, -2147483647, 2147483647);
    int maxoffset = static_cast<int>(text.size()) - visiblelines;
    if (maxoffset < 0) maxoffset = 0;
    if (bar.value > maxoffset) bar.value = maxoffset;
    if (bar.value < 0) bar.value = 0;
    double y = 10;
    for (size_t i = static_cast<size_t>(bar.value); i < text.size(); ++i) {
        s.setbold(i == 0);
        s.drawtext(10, y, text[i]);
        y += lh;
    }
    s.setbold(false);
    refresh();
}

} // namespace zelk
