// The data panel's hints (a note for the row that takes the focus, another for a click on
// a row's label), its default tables (Restore Defaults, Set as Defaults), and the
// picture presses that step a transform prompt through its dipole choices, the coupling
// modes and the match toggle.
#include <cmath>

#include "core/designstore.h"
#include "core/notation.h"
#include "entry/panel.h"

namespace zelk {

namespace {

// The code of the current slot, or "" when no slot is in hand.
std::string currentcode() {
    if (store.curslot < 0 || store.curslot > MAXSLOT) return "";
    return slot(store.curslot).code;
}

bool endswith(const std::string& s, const std::string& tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

bool oneof(const std::string& s, std::initializer_list<const char*> list) {
    for (const char* x : list)
        if (s == x) return true;
    return false;
}

std::string key2(const std::string& label) { return label.substr(0, 2); }

// The note for a row taking the focus; false when the table holds no note for it.
bool focusnote(int row, const std::string& label, std::string& note) {
    const std::string k = key2(label);
    const std::string code = currentcode();
    Getdata& p = getdata;
    if (k == "Ro") note = "Enter center frequency offset. Values from 1.5 to 5 are recommended.";
    else if (k == "At") note = "enter the desired attenuation in db > the minimum specified";
    else if (k == "L%") {
        note = "enter a tolerance for all inductors in the filter, 0% causes no change.";
        paneldipole(2);
    } else if (k == "C%") {
        note = "enter a tolerance for all capacitors in the filter, 0% causes no change.";
        paneldipole(3);
    } else if (k == "ba") note = "enter the desired filter 3db bandwidth.";
    else if (k == "MA") note = "Click schematic to toggle between L match and tapped C match.";
    else if (k == "R ") note = "Enter the resistance in Ohms";
    else if (k == "L " || k == "La") note = "Enter the inductance in Henrys.";
    else if (k == "Li") note = " Enter a standard inductance => than default shown. ";
    else if (k == "C " || k == "Ca") note = "Enter the capacitance in Farads.";
    else if (k == "Qu" || k == "Qa")
        note = "Enter the unloaded Q u if known, else ideal inductors (lossless) will be assumed.";
    else if (k == "K ")
        note = "Enter the coefficient of coupling, (K < 1), as the ratio of the number of turns "
               "from tap to ground to the total number of turns.";
    else if (k == "Ka") note = "Enter the coefficient of coupling, (K < 1)";
    else if (k == "X ") note = "You will next be prompted to enter the crystals parameters.";
    else if (k == "Co")
        note = "Click to toggle among the coupling options.\nCoupling other than tuned may not "
               "return a usable design.";
    else if (k == "Cp") note = "Enter the crystals parallel capacitance in Farads. Tarvix 4 will measure it.";
    else if (k == "Cs") note = "Enter the crystals equivalent series capacitance in Farads.";
    else if (k == "Ls") note = "Enter the crystals equivalent inductance in Henrys.";
    else if (k == "Qx") note = "Enter the crystals unloaded Q u.";
    else if (k == "Rs") note = "Enter the crystals equivalent series resistance in Ohms.";
    else if (k == "Fp") note = "Enter the crystals parallel resonant frequency in Hertz.";
    else if (k == "Fs") note = "Enter the crystals series resonant frequency.";
    else if (k == "bw") note = "Enter the crystals 3db band-width.";
    else if (k == "BW") note = "Enter the 3db bandwidth.\nThis is F2-F3 in the diagram above.";
    else if (k == "CF") note = "Enter the Center Frequency.\nHalf way between F2 and F3.";
    else if (k == "SF")
        note = "Enter the Shape Factor from Astop to Apass greater than 1.\nThis is F2 / F1 or F4 / F3.\"";
    else if (k == "Zi")
        note = row == 2 ? "Zin and or Zout can be specified different than the default values shown. "
                          "If so, the C Match will be applied."
                        : "Enter the input impedance in Ohms.";
    else if (k == "Zo")
        note = row == 2 ? "Zin and or Zout can be specified less than the default value shown. "
                          "If so, the C Match will be applied."
                        : "Enter the output impedance in Ohms.";
    else if (k == "Z1" || k == "Z2") note = "Enter the range of impedance to be plotted. Zero generates an error.";
    else if (k == "A1" || k == "A2") note = "Enter the range of angles to be plotted.";
    else if (k == "Ap")
        note = code.rfind("B", 0) == 0 ? "Enter the attenuation, in db, at the cutoff frequency."
                                       : "Enter the allowable passband ripple in db.";
    else if (k == "As")
        note = "Enter the minimum Stopband attenuation, in db, at the frequency indicated on the graph "
               "above. You can specify the stopband attenuation or order of the filter, but not both.";
    else if (k == "Or")
        note = endswith(code, "CL") ? "Enter the order of the filter (=number of crystals)."
                                    : "Enter the user specified order of the filter. You can specify "
                                      "the order of the filter or stopband attenuation, but not both.";
    else if (k == "db") {
        if (label.rfind("db1", 0) == 0) {
            note = std::string("Enter the range of attenuation to be plotted.  ") +
                   (p.returnlossflag ? "Both values should be positive for Return Loss plots."
                                     : "One of the two values should be negative as the plots are gain curves.");
        } else {
            p.returnlossflag = false;
            return false;
        }
        p.returnlossflag = false;
    } else if (k == "Fr") note = "Enter the range of frequencies to be plotted.  A value of zero is not allowed.";
    else if (k == "T1") note = "Enter the time magnitude to be plotted in seconds.";
    else if (k == "FM") note = "Enter the maximum frequency of interest beyond which gain is less than -60 db to -80 db.";
    else if (k == "FC")
        note = "Enter the design center frequency for BP and BR filters or cutoff frequency for LP and HP filters.";
    else if (k == "Ti") note = "Enter the time duration, in seconds, to be plotted.";
    else if (k == "N1") note = "Enter the maximum amplitude (usually positive).";
    else if (k == "N2") note = "Enter the minimum amplitude (usually negative).";
    else if (k == "DC") note = "Enter the duty cycle of the pulse (> 10%, < 90%).";
    else if (k == "To") note = "Enter the tone frequency to be used, usually the center frequency of the filter.";
    else if (k == "Ne") {
        std::string last3 = label.size() >= 3 ? label.substr(label.size() - 3) : label;
        if (last3 == "F =") note = "Enter the new design center frequency";
        else if (last3 == "Z =") note = "Enter the new design impedance.";
        else if (last3 == "L<>") {
            std::string l = engformatvalue(p.Lcurrent);
            note = "Enter a New inductance > " + l + "Henries for a step up transformer or < " + l +
                   "Henries for a step down.";
        } else if (last3 == "C<>")
            note = "Enter a New capacitance < the current value for a step up transformer or > current "
                   "value for a step down.";
        else return false;
    } else if (k == "F1") {
        if (oneof(code, {"TLP", "THP", "BLP", "BBR"})) note = "Enter the 3db cutoff frequency F1.";
        else if (oneof(code, {"CCR", "BCR", "TBP", "TBR"})) note = "Enter the lower 3db cutoff frequency F1.";
        else if (oneof(code, {"ELP", "EBR", "CLP", "CBR"}))
            note = "Enter the lower cutoff frequency F1 at the attenuation specified in A pass";
        else if (oneof(code, {"BHP", "CHP", "EHP"})) note = "Enter the stopband frequency F1.";
        else note = "Enter the lower stopband frequency F1.";
    } else if (k == "F2") {
        if (oneof(code, {"CCR", "BCR", "TBP", "TBR", "BHP"})) note = "Enter the upper 3db cutoff frequency F2.";
        else if (oneof(code, {"BLP", "CLP", "ELP"})) note = "Enter the stopband frequency F2.";
        else if (oneof(code, {"EHP", "CHP"}))
            note = "Enter the cutoff frequency F2 at the attenuation specified in A pass.";
        else if (oneof(code, {"BBR", "CBR", "EBR"})) note = "Enter the lower stopband frequency F2.";
        else if (oneof(code, {"EBP", "CBP"}))
            note = "Enter the lower cutoff frequency F2 at the attenuation specified in A pass.";
        else if (code == "BBP") note = "Enter the lower 3db cutoff frequency F2.";
        else return false;
    } else if (k == "F3") {
        note = oneof(code, {"BBP", "EBP", "CBP"})
                   ? "Enter the upper cutoff frequency F3, at the attenuation specified in A pass."
                   : "Enter the upper stopband frequency F3.";
    } else if (k == "F4") {
        note = oneof(code, {"BBR", "EBR", "CBR"})
                   ? "Enter the upper cutoff frequency F4 at the attenuation specified in A pass."
                   : "Enter the upper stopband frequency F4.";
    } else {
        return false;
    }
    return true;
}

// The note for a click on a row's label; false when the table holds none (the keys
// "db1", "db2", "Freq1", "Freq2" of the table never match a two-character key).
bool labelnote(const std::string& label, std::string& note) {
    const std::string k = key2(label);
    const std::string code = currentcode();
    bool lpbr = endswith(code, "LP") || endswith(code, "BR");
    if (k == "At") note = "The desired attenuation of the pad in db.";
    else if (k == "L%") {
        note = "The value of all inductors in the filter is changed to within the specified % of their ideal value.";
        paneldipole(2);
    } else if (k == "C%") {
        note = "The value of all capacitors in the filter is changed to within the specified % of their ideal value.";
        paneldipole(3);
    } else if (k == "ba") note = "The desired bandwidth of the filter in Hz.";
    else if (k == "Ma")
        note = "L match terminates in the design impedance, r0. C match adds impedance matching networks "
               "to the input and output if needed.";
    else if (k == "R ") note = "The value of the resistor in this dipole in ohms.";
    else if (k == "L " || k == "La") note = "The value of the inductor in this dipole in Henrys.";
    else if (k == "Li")
        note = "The standard value of all inductors in the filter. This determines the design impedance, r0.";
    else if (k == "C ") note = "The value of  capacitor C in this dipole in Farads.";
    else if (k == "Ca") note = "The value of the capacitor Ca in this dipole in Farads.";
    else if (k == "Qu" || k == "Qa")
        note = "The unloaded Qu of all inductors in the filter. 0 specifies ideal (lossless) inductors.";
    else if (k == "K ")
        note = "The coefficient of coupling, K, as the ratio of the number of turns from tap to ground to "
               "the total number of turns.";
    else if (k == "X ") note = "You will next be prompted to enter the crystals parameters.";
    else if (k == "Co") note = "Click to toggle among the coupling options.";
    else if (k == "Cp") note = "The crystals holder capacitance in Farads. Tarvix 5 will measure it.";
    else if (k == "Cs") note = "The crystals motional capacitance in Farads.";
    else if (k == "Ls") note = "The crystals motional inductance in Henrys.";
    else if (k == "Qx") note = "The crystals unloaded Qu.";
    else if (k == "Rs") note = "The crystals equivalent series resistance in Ohms.";
    else if (k == "Fp") note = "The crystals parallel resonant frequency in Hertz.";
    else if (k == "Fs") note = "The crystals series resonant frequency in Hertz.";
    else if (k == "bw") note = "The crystals 3db band-width in Hertz.";
    else if (k == "F1") {
        if (lpbr) note = "The cutoff frequency, in Hertz, of low-pass or band reject filters.";
        else if (endswith(code, "CR")) note = "The lower 3db cutoff frequency, in Hertz, of coupled resonator filters.";
        else
            note = "The stopband frequency, in Hertz, of high-pass or bandpass filters, at which the "
                   "attenuation should be Astop.";
    } else if (k == "F2") {
        if (lpbr)
            note = "The stopband frequency, in Hertz, of low-pass or band reject filters where attenuation = Astop.";
        else if (endswith(code, "CR")) note = "The upper 3db cutoff frequency, in Hertz, of coupled resonator filters.";
        else
            note = "The cutoff frequency, in Hertz, at which attenuation = Apass for high-pass and bandpass filters.";
    } else if (k == "F3") {
        note = endswith(code, "BP")
                   ? "The upper cutoff frequency, in Hertz, at which attenuation = Apass for bandpass filters."
                   : "The upper stopband frequency, in Hertz, at which attenuation = Astop for band reject filters.";
    } else if (k == "F4") {
        note = endswith(code, "BP")
                   ? "The upper stopband frequency, in Hertz, at which the attenuation = Astop for bandpass filters."
                   : "The upper cutoff frequency, in Hertz, at which attenuation = Apass for band reject filters.";
    } else if (k == "Zi") note = "The input impedance of the filter in ohms.";
    else if (k == "Zo") note = "The output impedance of the filter in ohms.";
    else if (k == "Z1") note = "The lower impedance of the plot in ohms. Must be greater than 0.";
    else if (k == "Z2") note = "The higher impedance of the plot in ohms.";
    else if (k == "A1") note = "The lower of the phase angle of the plot in degrees. Can be negative.";
    else if (k == "A2") note = "The higher of the pahse angles of the plot in degrees.";
    else if (k == "Ap")
        note = code.rfind("B", 0) == 0 ? "The attenuation, in db, at the cutoff frequency(s)."
                                       : "The allowable passband ripple in db.";
    else if (k == "As")
        note = "The minimum Stopband attenuation, in db. You can specify the stopband attenuation or order "
               "of the filter, but not both.";
    else if (k == "Or") note = "The user specified order of the filter. This will supercede the value of Astop entered.";
    else if (k == "T1" || k == "Ti") note = "The time duration, in seconds, to be plotted.";
    else if (k == "FM")
        note = "The maximum frequency of interest beyond which gain is less than -60db to -80db. Get this "
               "from the gain plots.";
    else if (k == "FC")
        note = "The design center frequency for BP and BR filters or cutoff frequency for LP and HP filters.";
    else if (k == "N1") note = "Enter the maximum normalized amplitude (usually positive ranging from 1 to 5).";
    else if (k == "N2") note = "Enter the minimum normalized amplitude (usually negative from 0 to -1).";
    else if (k == "DC") note = "The duty cycle of the pulse (10% > Duty Cycle > 90%).";
    else return false;
    return true;
}

// A row shows a value and is selected whole.
void showselected(int row, const std::string& text) {
    Control& r = getdata.getvalue(row);
    getdata.setrow(row, text);
    r.selstart = 0;
    r.sellength = static_cast<int>(r.text.size());
}

bool labelis(int row, const char* label) {
    const Control& l = getdata.Label2(row);
    return l.caption == label;
}

} // namespace

void hintonfocus(int row) {
    Getdata& p = getdata;
    if (p.notelock) return;
    p.currentrow = static_cast<short>(row);
    std::string note;
    if (row >= 0 && row < PANELROWS && focusnote(row, p.Label2(row).caption, note)) p.setnote(note);
    // The inductance of a coupled-resonator prompt sets the design impedance as soon as the
    // next row takes the focus.
    if (row == 1 && p.Label2(0).caption == "Li =") {
        DesignSlot& s0 = slot(0);
        double Li = parsevalue(p.getvalue(0).text);
        double w0 = s0.w0, bw = s0.bw;
        s0.r0 = w0 * Li * store.g1term * w0 / bw;
        s0.r0 = parsevalue(roundvalue(s0.r0, true));
        std::string shown = engformatvalue(s0.r0);
        for (int r : {3, 4}) showselected(r, shown);
    }
}

void Label2_Click(int i) {
    if (i < 0 || i >= PANELROWS) return;
    std::string note;
    if (labelnote(getdata.Label2(i).caption, note)) getdata.setnote(note);
}

void restore_Click() {
    Getdata& p = getdata;
    const DesignSlot& s0 = slot(0);
    const std::string& code = s0.code;
    const int cs = store.curslot >= 0 && store.curslot <= MAXSLOT ? store.curslot : 0;
    const DesignSlot& cur = slot(cs);
    const double pi = PI;
    auto rv = [](double v) { return roundvalue(v, false); };
    auto ends = [&](const char* t) { return endswith(code, t); };
    bool tablebands = ends("TBP") || ends("TBR");

    if (labelis(0, "Freq 1 =")) {
        if (ends("CR")) p.setrow(0, engformatvalue(s0.w0 / pi / 4));
        else if (ends("CL")) p.setrow(0, engformatvalue((s0.w0 - 2 * s0.bw) / 2 / pi));
        else if (ends("LP") || ends("HP")) p.setrow(0, rv(s0.w0 / pi / 20));
        else if (ends("BP") || ends("BR")) p.setrow(0, rv(tablebands ? s0.w1 / pi / 10 : s0.w2 / pi / 10));
        else p.setrow(0, rv(s0.w0 / pi / 10));
    }
    if (labelis(0, "FM =")) p.setrow(0, rv(cur.w0 > 0 ? 10 * cur.w0 / 2 / pi : 10000000));
    if (labelis(0, "Zin =") && labelis(1, "Zout =")) {
        std::string z = plainnum(Int(s0.r0));
        p.setrow(0, z);
        p.setrow(1, z);
    }
    if (labelis(1, "Freq 2 =")) {
        if (ends("CR")) p.setrow(1, engformatvalue(s0.w0 / pi));
        else if (ends("CL")) p.setrow(1, engformatvalue((s0.w0 + 2 * s0.bw) / 2 / pi));
        else if (ends("LP") || ends("HP")) p.setrow(1, rv(s0.w2 / pi * 5));
        else if (ends("BP") || ends("BR")) p.setrow(1, rv(tablebands ? s0.w2 / pi * 2.5 : s0.w3 / pi * 2.5));
        else p.setrow(1, rv(s0.w0 / pi * 5));
    }
    if (labelis(1, "Time =")) p.setrow(1, rv(cur.w0 > 0 ? 31.41592654 / cur.w0 : 5e-6));
    if (labelis(2, "db1 =")) p.setrow(2, "0");
    if (labelis(2, "A1 =")) p.setrow(2, "-360");
    if (labelis(2, "Z1 =")) {
        double R = cur.dip(1).R;
        if (R > 0) p.setrow(2, rv(std::pow(10.0, Int(std::log10(R / 10)))));
    }
    if (labelis(2, "N1 =")) p.setrow(2, "2");
    // The delay limit is filled when row 1 carries the label, as the table is written.
    if (labelis(1, "T1 =")) p.setrow(2, "10u");
    if (labelis(3, "db2 =")) {
        if (store.help1.rfind("Return", 0) == 0) p.setrow(3, "240");
        else if (s0.Astop != 0) p.setrow(3, plainnum(-(s0.Astop * 2)));
        else p.setrow(3, "-60");
    }
    if (labelis(3, "A2 =")) p.setrow(3, "360");
    if (labelis(3, "Z2 =")) {
        int last = cur.count();
        if (last >= 0 && last <= MAXDIPOLE) {
            double R = cur.dip(last).R;
            if (R > 0) p.setrow(3, rv(std::pow(10.0, Int(std::log10(R * 10) + 0.99))));
        }
    }
    if (labelis(3, "N2 =")) p.setrow(3, "-2");
    if (labelis(4, "DC%=")) p.setrow(4, "50");
}

void set_Click() {
    Getdata& p = getdata;
    PlotDefaults& d = plotdefaults;
    auto v = [&](int row) { return parsevalue(p.getvalue(row).text); };
    if (labelis(0, "Freq 1 =")) d.defaultfreq1 = v(0);
    if (labelis(1, "Freq 2 =")) d.defaultfreq2 = v(1);
    if (labelis(2, "db1 =")) d.defaultdb1 = v(2);
    if (labelis(3, "db2 =")) d.defaultdb2 = v(3);
    if (labelis(2, "A1 =")) d.defaultangle1 = v(2);
    if (labelis(3, "A2 =")) d.defaultangle2 = v(3);
    if (labelis(2, "Z1 =")) d.defaultz1 = v(2);
    if (labelis(3, "Z2 =")) d.defaultz2 = v(3);
    if (labelis(2, "T1 =")) d.defaultt1 = v(2);
    if (labelis(0, "FM =")) d.defaultfm = v(0);
    if (labelis(1, "Time =")) d.defaulttime = v(1);
    if (labelis(2, "N1 =")) d.defaultn1 = v(2);
    if (labelis(3, "N2 =")) d.defaultn2 = v(3);
    if (labelis(4, "DC%=")) d.defaultdutycycle = v(4);
}

void getdataimage_Click() {
    Getdata& p = getdata;
    struct Step {
        short from, to;
        int row0, row1, row2; // 1 on, 0 off, -1 unchanged
        int focus;
        const char* note;
    };
    static const Step steps[] = {
        {11, 14, 1, 1, -1, 0,
         "This configuration allows a larger inductor and smaller capacitor and avoids leakage inductance. "
         "Enter a new value of L > the default and new C < the default."},
        {14, 11, 1, 0, -1, 0,
         "This configuration allows a larger inductor and smaller capacitor. Enter a new value of inductance "
         "larger than the default."},
        {35, 41, 0, 1, 0, 1,
         "This configuration allows a larger inductor and smaller capacitor. Enter a new value of inductance "
         "larger than the default."},
        {41, 36, 0, 1, 1, 2,
         "This configuration allows a larger inductor, smaller capacitor and avoids leakage inductance. Enter "
         "new values of L greater than the default and C smaller than the default."},
        {36, 55, 1, 0, 0, 0,
         "This configuration causes a step-up of impedance for all following dipoles. Enter a new design "
         "impedance greater than the default."},
        {55, 56, 1, 0, 0, 0,
         "This configuration causes a step-down of impedance for all following dipoles. Enter a new design "
         "impedance less than the default."},
        {56, 65, 1, 0, 1, 0,
         "This configuration causes a step-up of impedance for all following dipoles and avoids leakage "
         "inductance. Enter a new design impedance greater than the default and a new capacitance less than "
         "the default."},
        {65, 66, 1, 0, 1, 0,
         "This configuration causes a step-down of impedance for all following dipoles and avoids leakage "
         "inductance. Enter a new design impedance less than the default and a new capacitance less than the "
         "default."},
        {66, 41, 0, 1, 0, 1,
         "This configuration allows a larger inductor and smaller capacitor. Enter a new value of inductance "
         "larger than the default."},
    };
    for (const Step& s : steps) {
        if (p.dipolechoice != s.from) continue;
        p.dipolechoice = s.to;
        paneldipole(s.to);
        const int states[3] = {s.row0, s.row1, s.row2};
        for (int r = 0; r < 3; ++r)
            if (states[r] >= 0) p.getvalue(r).enabled = states[r] == 1;
        p.focus("getvalue", s.focus);
        p.setnote(s.note);
        return;
    }
    const std::string code = currentcode();
    if (p.Label2(0).caption == "Coupling" && p.Label2(0).visible) {
        static const char* modes[] = {"UC", "UL", "TC", "TL"};
        static const int pictures[] = {21, 22, 23, 24};
        int k = 0;
        for (int i = 0; i < 4; ++i)
            if (p.couplingmode == modes[i]) k = i;
        k = (k + 1) % 4;
        p.couplingmode = modes[k];
        panelimage(pictures[k]);
        const std::string& m = p.couplingmode;
        if (m == "UL" || m == "UC")
            p.setnote("Click to toggle among the coupling options.\nCoupling other than tuned may not return a "
                      "usable design.");
        else if (m == "TL")
            p.setnote(" If Zin and or Zout are specified different from default, C Match will be used at those ports.");
        if (endswith(code, "CL")) {
            bool show = p.Label2(1).visible;
            if (m == "UL") show = false;
            else if (m == "TC" || m == "TL") show = true;
            else if (m == "UC" && (code == "CCL" || code == "BCL")) show = false;
            for (int r : {1, 2}) {
                p.Label2(r).visible = show;
                p.getvalue(r).visible = show;
            }
        }
        return;
    }
    if (p.Label2(2).caption == "MATCH =") {
        if (p.matchmode == "L") {
            p.matchmode = "C";
            panelimage(26);
            p.setnote(" If Zin, Zout or Li are specified different from default, C Match will be used at those ports.");
        } else {
            p.matchmode = "L";
            panelimage(25);
        }
    }
}

void selectT_Click() {
    Getdata& p = getdata;
    short c = p.dipolechoice;
    if (c == 35 || c == 37 || c == 39 || c == 41 || c == 43 || c == 45) {
        p.dipolechoice = static_cast<short>(c + 1);
        p.stepdown = false;
        paneldipole(p.dipolechoice);
        p.setnote("1 > N =< default value\nDefault values eliminates " + p.Tname2);
        p.setrow(0, plainnum(p.TN2));
    } else if (c == 36 || c == 38 || c == 40 || c == 42 || c == 44 || c == 46) {
        p.dipolechoice = static_cast<short>(c - 1);
        p.stepdown = true;
        paneldipole(p.dipolechoice);
        p.setnote("1 > N =< default value\nDefault values eliminates " + p.Tname1);
        p.setrow(0, plainnum(p.TN1));
    } else {
        return;
    }
    Control& r = p.getvalue(0);
    r.selstart = 0;
    r.sellength = static_cast<int>(r.text.size());
    p.focus("getvalue", 0);
}

} // namespace zelk
