#include "entry/crystalsets.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/designstore.h"
#include "core/desktop.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "core/paths.h"
#include "entry/panel.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

const char* const APP = "filter";
const char* const SECTION = "crystal";
const char* const DEFAULTCAPTION = "5.72 MHz";

struct BuiltIn {
    const char* caption;
    double Cp, Qx, Rs, Fs;
};
const BuiltIn builtins[4] = {
    {"3.58MHz", 3.35e-12, 50000, 58, 3580000},
    {"5.0 MHz", 2.275e-12, 240000, 12, 5000000},
    {"5.724MHz", 4.5e-12, 100000, 14.6, 5724000},
    {"10MHz", 2.8e-12, 200000, 6.3, 10000000},
};

// The row labels of the five kinds of measured data.
const char* const choicelabels[5][4] = {
    {"Cp =", "Ls =", "Cs =", "Qx ="},
    {"Cp =", "Ls =", "Cs =", "Rs"},
    {"Cp =", "Fs =", "Fp =", "Rs ="},
    {"Cp =", "Fs =", "Fp =", "bw ="},
    {"Cp =", "Fs =", "Rs =", "Q ="},
};
const char* const choicecaptions[5] = {
    "Cp, Ls, Cs,and Q Known", "Cp, Ls, Cs,and Rs Known", "Cp, Fs, Fp,and Rs Known",
    "Cp, Fs, Fp,and bw Known", "Cp, Fs, Rs,and Q Known",
};

std::string setkey(int n) { return "user" + std::to_string(n); }
std::string setliteral(int n) { return "\\tables\\crystal" + std::to_string(n) + ".tbl"; }

DesignSlot& design() { return slot(0); }

// The crystal a slot starts with; the last resort when no set file can be read.
CrystalSet startcrystal() {
    CrystalSet c;
    c.Ls = 0.04069;
    c.Cs = 1.9e-14;
    c.Cp = 4.5e-12;
    c.Qx = 100000;
    c.Rs = 14.63;
    c.Fs = 5723998;
    c.Fp = 5748166;
    c.Fbw = 57.24;
    return c;
}

// A set file's text as eight numbers; false when a line is missing or is not a number,
// or when the values cannot be a crystal (a ladder divides by Ls, Cs and Fs).
bool parseset(const std::string& text, CrystalSet& out) {
    std::istringstream in(text);
    double v[8];
    std::string line;
    for (double& x : v) {
        if (!std::getline(in, line)) return false;
        size_t i = line.find_first_not_of(" \t\r");
        if (i == std::string::npos) return false;
        char c = line[i];
        if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '-' || c == '+' || c == '.')) return false;
        x = Val(line);
        if (!std::isfinite(x)) return false;
    }
    CrystalSet s{v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]};
    if (!(s.Ls > 0 && s.Cs > 0 && s.Cp >= 0 && s.Fs > 0)) return false;
    out = s;
    return true;
}

bool readfile(const fs::path& p, std::string& text) {
    std::error_code ec;
    if (!fs::is_regular_file(p, ec)) return false;
    std::ifstream f(p, std::ios::binary);
    if (!f) return false;
    std::ostringstream ss;
    ss << f.rdbuf();
    text = ss.str();
    return true;
}

void warnonce(int n, const std::string& text) {
    if (crystalfiles.warned[static_cast<size_t>(n)]) return;
    crystalfiles.warned[static_cast<size_t>(n)] = true;
    MsgBox(text, vbOKOnly | vbExclamation, "WARNING");
}

// Why four measured values cannot make a crystal, or "" when they can.
std::string refusal(int choice, double Cp, const std::array<double, 4>& r) {
    if (Cp < 0) return "Cp must be greater than zero.";
    switch (choice) {
    case 0:
    case 1:
        if (!(r[1] > 0)) return "Ls must be greater than zero.";
        if (!(r[2] > 0)) return "Cs must be greater than zero.";
        if (r[3] < 0) return choice == 0 ? "Qx may not be negative." : "Rs may not be negative.";
        break;
    case 2:
    case 3:
        if (!(r[1] > 0)) return "Fs must be greater than zero.";
        if (!(r[2] > r[1])) return "Fp must be greater than Fs.";
        if (choice == 2 && r[3] < 0) return "Rs may not be negative.";
        if (choice == 3 && !(r[3] > 0)) return "bw must be greater than zero.";
        break;
    default:
        if (!(r[1] > 0)) return "Fs must be greater than zero.";
        if (r[2] < 0) return "Rs may not be negative.";
        if (r[3] < 0) return "Q may not be negative.";
        break;
    }
    return {};
}

} // namespace

// ---------------------------------------------------------------------------------------
// Arithmetic

CrystalSet designcrystal() {
    const DesignSlot& s = design();
    return {s.Cp, s.Ls, s.Cs, s.Rs, s.Fp, s.Fs, s.Qx, s.Fbw};
}

void setdesigncrystal(const CrystalSet& c) {
    DesignSlot& s = design();
    s.Cp = c.Cp;
    s.Ls = c.Ls;
    s.Cs = c.Cs;
    s.Rs = c.Rs;
    s.Fp = c.Fp;
    s.Fs = c.Fs;
    s.Qx = c.Qx;
    s.Fbw = c.Fbw;
}

std::string crystalcaption(double Fs) { return Format(Fs / 1000000, "##.000") + " MHz"; }

void builtincrystal(double Cp, double Qx, double Rs, double Fs) {
    DesignSlot& s = design();
    s.Cp = Cp;
    s.Qx = Qx;
    s.Rs = Rs;
    s.Fs = Fs;
    const double w = TWOPI * Fs;
    const double Ls = hdiv(Qx * Rs, w);
    const double Cs = hdiv(hdiv(hdiv(1, w), w), Ls);
    s.Ls = Ls;
    s.Cs = Cs;
    // The parallel resonance in the form w^2 (1 + Cs / Cp).
    s.Fp = hsqr(w * w * (1 + hdiv(Cs, Cp))) / 2 / PI;
    s.Fbw = hdiv(Fs, Qx);
}

double typicalRs(double Fs) {
    static const std::pair<double, double> rows[] = {
        {2000000, 750}, {2400000, 500}, {3000000, 300}, {3200000, 200}, {3700000, 120},
        {4200000, 100}, {4900000, 70},  {5000000, 55},  {6000000, 50},  {8000000, 40},
        {10000000, 35}, {12500000, 30}, {16000000, 25},
    };
    for (const auto& [below, rs] : rows)
        if (Fs < below) return rs;
    return 20;
}

std::string measuredcrystal(int choice, std::array<double, 4> r) {
    double Cp = r[0];
    if (Cp == 0) Cp = 3.5e-12;
    if (std::string why = refusal(choice, Cp, r); !why.empty()) return why;
    DesignSlot& s = design();
    s.Cp = Cp;
    switch (choice) {
    case 0:
    case 1: {
        const double Ls = r[1], Cs = r[2];
        const double ws = hdiv(1, hsqr(Ls * Cs));
        // The parallel resonance in its exact series-parallel form.
        const double wp = hdiv(1, hsqr(hdiv(Cp * Cs * Ls, Cs + Cp)));
        const double Fs = ws / 2 / PI;
        s.Ls = Ls;
        s.Cs = Cs;
        s.Fp = wp / 2 / PI;
        s.Fs = Fs;
        if (choice == 0) {
            const double Qx = r[3] == 0 ? 100000 : r[3];
            s.Qx = Qx;
            s.Fbw = hdiv(Fs, Qx);
            s.Rs = hdiv(ws * Ls, Qx);
        } else {
            const double Rs = r[3] == 0 ? typicalRs(Fs) : r[3];
            s.Rs = Rs;
            const double Qx = hdiv(ws * Ls, Rs);
            s.Qx = Qx;
            s.Fbw = hdiv(Fs, Qx);
        }
        break;
    }
    case 2:
    case 3: {
        const double Fs = r[1], Fp = r[2];
        const double Cs = hdiv(2 * (Fp - Fs) * Cp, Fs);
        const double Ls = hdiv(1, 4 * std::pow(PI, 2) * std::pow(Fs, 2) * Cs);
        s.Fs = Fs;
        s.Fp = Fp;
        s.Cs = Cs;
        s.Ls = Ls;
        if (choice == 2) {
            const double Rs = r[3] == 0 ? typicalRs(Fs) : r[3];
            s.Rs = Rs;
            const double Qx = hdiv(hdiv(Ls, hsqr(Ls * Cs)), Rs);
            s.Qx = Qx;
            s.Fbw = hdiv(Fs, Qx);
        } else {
            s.Fbw = r[3];
            const double Qx = hdiv(Fs, r[3]);
            s.Qx = Qx;
            s.Rs = hdiv(hdiv(Ls, hsqr(Ls * Cs)), Qx);
        }
        break;
    }
    default: {
        const double Fs = r[1];
        const double Rs = r[2] == 0 ? typicalRs(Fs) : r[2];
        const double Qx = r[3] == 0 ? 100000 : r[3];
        const double w = TWOPI * Fs;
        const double Ls = hdiv(Qx * Rs, w);
        const double Cs = hdiv(hdiv(hdiv(1, w), w), Ls);
        s.Fs = Fs;
        s.Rs = Rs;
        s.Qx = Qx;
        s.Ls = Ls;
        s.Cs = Cs;
        s.Fp = hdiv(1, hsqr(hdiv(Cp * Cs * Ls, Cs + Cp))) / 2 / PI;
        s.Fbw = hdiv(Fs, Qx);
        break;
    }
    }
    return {};
}

// ---------------------------------------------------------------------------------------
// Set files

bool readcrystalset(int n, CrystalSet& out) {
    const std::string rel = setliteral(n);
    const fs::path user = mappath(rel, true);
    const fs::path shipped = fs::path(desktop().programdir()) / "tables" / user.filename();
    std::string text;
    CrystalSet c;
    const bool hasuser = readfile(user, text);
    if (hasuser && parseset(text, c)) {
        out = c;
        return true;
    }
    std::string shippedtext;
    const bool shippedok = readfile(shipped, shippedtext) && parseset(shippedtext, c);
    if (!hasuser && shippedok) {
        // No set saved yet: the shipped set is the one to use.
        out = c;
        return true;
    }
    const std::string name = "crystal" + std::to_string(n) + ".tbl";
    if (!shippedok) c = startcrystal();
    warnonce(n, std::string(hasuser ? "The stored crystal set " + name + " cannot be read."
                                    : "The crystal set " + name + " is missing.") +
                    "\nThe default crystal of " + DEFAULTCAPTION + " is used in its place.");
    out = c;
    return false;
}

bool writecrystalset(int n, const CrystalSet& c) {
    const fs::path target = mappath(setliteral(n), true);
    fs::path temp = target;
    temp += ".tmp";
    {
        std::ofstream f(temp, std::ios::binary | std::ios::trunc);
        if (!f) return false;
        for (double v : {c.Cp, c.Ls, c.Cs, c.Rs, c.Fp, c.Fs, c.Qx, c.Fbw}) f << plainnum(v) << "\n";
        f.flush();
        if (!f) {
            f.close();
            std::error_code ec;
            fs::remove(temp, ec);
            return false;
        }
    }
    std::error_code ec;
    fs::rename(temp, target, ec);
    if (ec) {
        fs::remove(temp, ec);
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------------------
// crystalparms

CrystalParms::CrystalParms() : Window("crystalparms", "Crystal Parameters") { build(); }

void CrystalParms::reset() {
    controls.clear();
    loaded = visible = false;
    editingdipole = false;
    editdipole = 0;
    build();
}

void CrystalParms::build() {
    clientwidth = 420;
    clientheight = 330;
    Control& f1 = add(ControlKind::Frame, "Frame1", -1, "Use default values for");
    f1.left = 10, f1.top = 10, f1.width = 190, f1.height = 150;
    for (int i = 0; i < 4; ++i) {
        Control& b = add(ControlKind::Button, "Command" + std::to_string(i + 1), -1, builtins[i].caption);
        b.left = 20, b.top = 30 + 30.0 * i, b.width = 170, b.height = 26;
        b.onclick = [this, i](int) { Command_Click(i + 1); };
    }
    Control& f2 = add(ControlKind::Frame, "Frame2", -1, "Use one of your set of stored crystal parameters");
    f2.left = 210, f2.top = 10, f2.width = 200, f2.height = 210;
    for (int i = 0; i < USERSETS; ++i) {
        Control& b = add(ControlKind::Button, "Command" + std::to_string(i + 5), -1, "User " + std::to_string(i + 1));
        b.left = 220, b.top = 30 + 30.0 * i, b.width = 180, b.height = 26;
        b.onclick = [this, i](int) { Command_Click(i + 5); };
    }
    for (int i = 0; i < 5; ++i) {
        Control& o = add(ControlKind::Option, "crystalchoice", i, choicecaptions[i]);
        o.left = 10, o.top = 170 + 30.0 * i, o.width = 190, o.height = 24;
        o.onclick = [this](int k) { crystalchoice_Click(k); };
    }
}

void CrystalParms::Command_Click(int n) {
    if (n >= 1 && n <= 4) {
        const BuiltIn& b = builtins[n - 1];
        builtincrystal(b.Cp, b.Qx, b.Rs, b.Fs);
        unload();
        return;
    }
    if (n < 5 || n > 10) return;
    // A disabled frame of stored sets (while a set is being replaced) takes no click.
    if (!ctl("Frame2").enabled || !ctl("Command" + std::to_string(n)).enabled) return;
    CrystalSet c;
    readcrystalset(n - 4, c);
    setdesigncrystal(c);
    unload();
}

void CrystalParms::crystalchoice_Click(int choice) {
    if (choice < 0 || choice > 4) return;
    DesignSlot& s = design();
    panelclear();
    store.cancelled = false;
    paneldipole(25);
    if (editingdipole) {
        const Dipole& d = dipole(0, editdipole);
        s.Cp = d.Cp;
        s.Ls = d.Ls;
        s.Cs = d.Cs;
        s.Rs = d.Rs;
        const double ws = hdiv(1, hsqr(d.Ls * d.Cs));
        const double wp = ws * (1 + hdiv(d.Cs, d.Cp));
        s.Fp = wp / 2 / PI;
        s.Fs = ws / 2 / PI;
        s.Qx = hdiv(ws * d.Ls, d.Rs);
        s.Fbw = hdiv(double(s.Fs), double(s.Qx));
    }
    const double shown[5][4] = {
        {s.Cp, s.Ls, s.Cs, s.Qx}, {s.Cp, s.Ls, s.Cs, s.Rs}, {s.Cp, s.Fs, s.Fp, s.Rs},
        {s.Cp, s.Fs, s.Fp, s.Fbw}, {s.Cp, s.Fs, s.Rs, s.Qx},
    };
    for (int i = 0; i < 4; ++i) panelrow(i, choicelabels[choice][i], engformatvalue(shown[choice][i]));
    for (;;) {
        if (!panelshow()) {
            unload();
            return;
        }
        std::array<double, 4> r{};
        for (int i = 0; i < 4; ++i) r[static_cast<size_t>(i)] = panelvalue(i);
        const std::string why = measuredcrystal(choice, r);
        if (why.empty()) break;
        MsgBox("These values cannot describe a crystal.\n" + why, vbOKOnly | vbExclamation, "WARNING");
    }
    unload();
}

void crystalparms_show() {
    CrystalParms& w = crystalparms;
    if (!w.loaded) {
        for (int i = 1; i <= USERSETS; ++i)
            w.ctl("Command" + std::to_string(i + 4)).caption =
                desktop().getsetting(APP, SECTION, setkey(i), DEFAULTCAPTION);
    }
    w.showmodal();
}

// ---------------------------------------------------------------------------------------
// savecrystal

SaveCrystal::SaveCrystal() : Window("savecrystal", "Save Crystal Parameters") { build(); }

void SaveCrystal::reset() {
    controls.clear();
    loaded = visible = false;
    build();
}

void SaveCrystal::build() {
    clientwidth = 220;
    clientheight = 210;
    for (int i = 0; i < USERSETS; ++i) {
        Control& b = add(ControlKind::Button, "Command" + std::to_string(i + 1), -1, "User " + std::to_string(i + 1));
        b.left = 20, b.top = 10 + 32.0 * i, b.width = 180, b.height = 28;
        b.onclick = [this, i](int) { Command_Click(i + 1); };
    }
}

void SaveCrystal::Command_Click(int n) {
    if (n < 1 || n > USERSETS) return;
    CrystalParms& parms = crystalparms;
    auto setframe = [&parms](bool on) {
        parms.ctl("Frame2").enabled = on;
        for (int i = 5; i <= 10; ++i) parms.ctl("Command" + std::to_string(i)).enabled = on;
    };
    setframe(false);
    CrystalSet old;
    readcrystalset(n, old);
    setdesigncrystal(old);
    crystalparms_show();
    const std::string caption = crystalcaption(design().Fs);
    ctl("Command" + std::to_string(n)).caption = caption;
    desktop().savesetting(APP, SECTION, setkey(n), caption);
    parms.ctl("Command" + std::to_string(n + 4)).caption = caption;
    if (!writecrystalset(n, designcrystal()))
        MsgBox("The crystal set could not be saved in\n" + mappath(setliteral(n), true), vbOKOnly | vbExclamation,
               "WARNING");
    setframe(true);
    unload();
}

void savecrystaldata_Click() {
    sethelp("Save a set of crystal parameters from your collection of crystals.", "Six sets of parameters can be saved.",
            "You can edit or replace a set of your parameters.", "");
    SaveCrystal& w = savecrystal;
    for (int i = 1; i <= USERSETS; ++i)
        w.ctl("Command" + std::to_string(i)).caption = desktop().getsetting(APP, SECTION, setkey(i), DEFAULTCAPTION);
    w.showmodal();
}

void resetcrystalsets() {
    crystalparms.reset();
    savecrystal.reset();
    crystalfiles = CrystalFiles{};
}

} // namespace zelk
