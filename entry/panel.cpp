#include "entry/panel.h"

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/notation.h"

namespace zelk {

// Resets the panel and the plot defaults to program start.
void resetpanel() {
    getdata.reset();
    plotdefaults = PlotDefaults{};
}

Getdata::Getdata() : Window("Getdata", "") { build(); }

void Getdata::reset() {
    controls.clear();
    picturekey.clear();
    currentrow = 0;
    calcsum = calcterm = 0;
    notelock = retryentry = panelloaded = false;
    retryrow = -1;
    dipolechoice = 0;
    stepdown = false;
    couplingmode = "UC";
    matchmode = "L";
    returnlossflag = false;
    Lcurrent = 0;
    Tname1.clear();
    Tname2.clear();
    TN1 = TN2 = 0;
    firstshowing_ = true;
    loaded = visible = false;
    focusname.clear();
    focusindex = -1;
    build();
}

void Getdata::build() {
    clientwidth = 520;
    clientheight = 420;
    for (int i = 0; i < PANELROWS; ++i) {
        Control& l = add(ControlKind::Label, "Label2", i);
        l.visible = false;
        l.onclick = [](int k) { Label2_Click(k); };
        Control& v = add(ControlKind::Text, "getvalue", i);
        v.visible = false;
        v.onchange = [this](int k) { getvalue_Change(k); };
        v.ongotfocus = [this](int k) { getvalue_GotFocus(k); };
    }
    add(ControlKind::Label, "Notes");
    Control& pic = add(ControlKind::Picture, "getdataimage", 0);
    pic.onclick = [](int) { getdataimage_Click(); };
    for (int i = 0; i < 30; ++i) {
        Control& k = add(ControlKind::Button, "keypad", i);
        k.onclick = [](int n) { keypad_Click(n); };
    }
    Control& a = add(ControlKind::Button, "accept", -1, "ENTER");
    a.tooltip = "Enter these values";
    a.onclick = [this](int) { accept_Click(); };
    Control& s = add(ControlKind::Button, "set", -1, "Set as Defaults");
    s.tooltip = "Use these values for future plots";
    s.onclick = [](int) { set_Click(); };
    Control& r = add(ControlKind::Button, "restore", -1, "Restore Defaults");
    r.tooltip = "Enter the system default values";
    r.onclick = [](int) { restore_Click(); };
    Control& t = add(ControlKind::Button, "selectT", -1, "Step-up / Step-down");
    t.tooltip = "Select step up or step down";
    t.visible = false;
    t.onclick = [](int) { selectT_Click(); };
    keypadsetup(*this);
}

std::string Getdata::note() const { return find("Notes")->caption; }
void Getdata::setnote(const std::string& text) { ctl("Notes").caption = text; }

void Getdata::activate() {
    if (firstshowing_) {
        // First showing: row 0 selected whole.
        firstshowing_ = false;
        Control& r0 = getvalue(0);
        r0.selstart = 0;
        r0.sellength = static_cast<int>(r0.text.size());
    }
    panelloaded = true;
    store.cancelled = false;
    retryentry = false;
    for (int i = 0; i < PANELROWS; ++i) {
        Control& r = getvalue(i);
        r.selstart = 0;
        r.sellength = static_cast<int>(r.text.size());
    }
    calcsum = 0;
    calcterm = 0;
    if (getvalue(0).visible) focus("getvalue", 0);
}

void Getdata::deactivate() {
    notelock = false;
    ctl("selectT").visible = false;
}

void Getdata::closebox() {
    // Closing the panel is the cancel: the caller abandons its command.
    store.cancelled = true;
    firstshowing_ = true;
    panelloaded = false;
    unload();
}

void Getdata::accept_Click() {
    for (int i = 0; i <= 7; ++i) {
        if (!Label2(i).visible) break;
        Control& row = getvalue(i);
        for (char& c : row.text)
            if (c == ',') c = '.';
        std::string key = Label2(i).caption.substr(0, 2);
        if (key == "Rs" || key == "Q " || key == "As" || key == "Or") continue;
        const std::string& t = row.text;
        std::string problem;
        if (t.empty()) problem = Label2(i).caption + " is blank.";
        else if (t[0] == '*')
            problem = Label2(i).caption + " multiplication incomplete\nMust hit = key to complete math function.";
        else if (t[0] == '/')
            problem = Label2(i).caption + " division incomplete\nMust hit = key to complete math function.";
        if (!problem.empty()) {
            retryentry = true;
            retryrow = static_cast<short>(i);
            MsgBox("The values were not properly entered\n" + problem, vbOKOnly | vbExclamation,
                   "WARNING");
            return;
        }
    }
    hide();
}

void Getdata::setrow(int i, const std::string& text) {
    getvalue(i).text = text;
    getvalue_Change(i);
}

void Getdata::getvalue_Change(int i) {
    if (i < 1 || i > 8) return;
    Control& row = getvalue(i);
    if (row.text.empty()) return;
    if (Label2(i).caption == "Astop =" && i < 8 && Label2(i + 1).caption == "Order =") {
        getvalue(i + 1).text.clear();
    } else if (Label2(i).caption == "Order =" && Label2(i - 1).caption == "Astop =") {
        getvalue(i - 1).text.clear();
    }
}

void Getdata::getvalue_GotFocus(int i) { hintonfocus(i); }

void panelclear() {
    for (int i = 0; i < PANELROWS; ++i) {
        Control& l = getdata.Label2(i);
        l.visible = false;
        l.caption.clear();
        Control& v = getdata.getvalue(i);
        v.visible = false;
        v.enabled = true;
        v.text.clear();
        v.tooltip.clear();
    }
    getdata.setnote("");
    getdata.notelock = false;
    getdata.ctl("set").visible = false;
    getdata.ctl("restore").visible = false;
    getdata.ctl("selectT").visible = false;
}

void panelrow(int i, const std::string& label, const std::string& text, const std::string& tooltip) {
    Control& l = getdata.Label2(i);
    l.caption = label;
    l.visible = true;
    Control& v = getdata.getvalue(i);
    v.text = text;
    v.tooltip = tooltip;
    v.visible = true;
    v.enabled = true;
}

void panelimage(int index) { getdata.picturekey = "image " + std::to_string(index); }
void paneldipole(int type) { getdata.picturekey = "dipole " + std::to_string(type); }

void panelplotbuttons(bool on) {
    getdata.ctl("set").visible = on;
    getdata.ctl("restore").visible = on;
}

bool panelshow() {
    getdata.showmodal();
    if (store.cancelled) return false;
    // A row typed beyond the range of a double ("1e309", "1e308M") is the host's overflow,
    // raised before the caller stores any row: the store stays as a cancel leaves it.
    for (int i = 0; i < PANELROWS; ++i)
        if (getdata.getvalue(i).visible && !std::isfinite(panelvalue(i))) raisefault(6);
    return true;
}

double panelvalue(int i) { return parsevalue(getdata.getvalue(i).text); }
const std::string& paneltext(int i) { return getdata.getvalue(i).text; }

// The panel's rows, note and picture key, for the batch runner's dump.
bool dumppanel(const std::vector<std::string>&, std::ostream& out) {
    for (int i = 0; i < PANELROWS; ++i) {
        Control& l = getdata.Label2(i);
        Control& v = getdata.getvalue(i);
        out << "row " << i << " label=" << dumptext(l.caption) << " text=" << dumptext(v.text)
            << " visible=" << (v.visible ? 1 : 0) << " enabled=" << (v.enabled ? 1 : 0) << '\n';
    }
    out << "note=" << dumptext(getdata.note()) << '\n';
    out << "picture=" << dumptext(getdata.picturekey) << '\n';
    return true;
}

} // namespace zelk
