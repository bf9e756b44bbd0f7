#include "analysis/plots.h"

#include <cmath>
#include <ostream>

#include "core/commands.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "schematic/report.h"

namespace zelk {

PlotForm plotPEG("plotPEG", "Power Effective Gain", PlotKind::Gain, Quantity::PEG, TimeKind::Impulse,
                 BUTTON1 | BUTTON2 | BUTTON3, "pPEG", "cPEG");
PlotForm plotPIG("plotPIG", "Power Insertion Gain", PlotKind::Gain, Quantity::PIG, TimeKind::Impulse,
                 BUTTON1 | BUTTON2 | BUTTON3, "pPIG", "cPIG");
PlotForm plotVEG("plotVEG", "Voltage Effective Gain", PlotKind::Gain, Quantity::VEG, TimeKind::Impulse,
                 BUTTON1 | BUTTON2, "pVEG", "cVEG");
PlotForm plotVIG("plotVIG", "Voltage Insertion Gain", PlotKind::Gain, Quantity::VIG, TimeKind::Impulse,
                 BUTTON1 | BUTTON2, "pVIG", "cVIG");
PlotForm plotCEG("plotCEG", "Current Effective Gain", PlotKind::Gain, Quantity::CEG, TimeKind::Impulse,
                 BUTTON1 | BUTTON2, "pCEG", "cCEG");
PlotForm plotCIG("plotCIG", "Current Insertion Gain", PlotKind::Gain, Quantity::CIG, TimeKind::Impulse,
                 BUTTON1 | BUTTON2, "pCIG", "cCIG");
PlotForm plotZin("plotZin", "Input impedance", PlotKind::Impedance, Quantity::InputImpedance,
                 TimeKind::Impulse, BUTTON1 | BUTTON2 | BUTTON3, "pZin", "cZin");
PlotForm plotZout("plotZout", "Output impedance", PlotKind::Impedance, Quantity::OutputImpedance,
                  TimeKind::Impulse, BUTTON1 | BUTTON2 | BUTTON3, "pZout", "cZout");
PlotForm PLOTRL("PLOTRL", "Return Loss", PlotKind::ReturnLoss, Quantity::ReturnLoss, TimeKind::Impulse,
                BUTTON1 | BUTTON2 | BUTTON3, "pRL", "cRL");
PlotForm PLOTPHASE("PLOTPHASE", "Phase", PlotKind::Phase, Quantity::Phase, TimeKind::Impulse,
                   BUTTON1 | BUTTON2 | BUTTON3, "pPhase", "cPhase");
PlotForm PLOTGD("PLOTGD", "Group Delay", PlotKind::Delay, Quantity::GroupDelay, TimeKind::Impulse,
                BUTTON2, "pGD", "cGD");
PlotForm PLOTIR("PLOTIR", "Relative Impulse Response", PlotKind::Time, Quantity::VEG, TimeKind::Impulse,
                BUTTON1, "pIR", "cIR");
PlotForm PLOTSR("PLOTSR", "Step Response", PlotKind::Time, Quantity::VEG, TimeKind::Step, BUTTON1, "pUSR",
                "cUSR");
PlotForm PLOTPR("PLOTPR", "Pulse Response", PlotKind::Time, Quantity::VEG, TimeKind::Pulse, BUTTON1, "pPR",
                "cPR");
PlotForm PLOTTP("PLOTTP", "Tone Pulse Response", PlotKind::Time, Quantity::VEG, TimeKind::TonePulse,
                BUTTON1, "pTPR", "cTPR");

namespace {

PlotForm* const allplots[] = {&plotPEG, &plotPIG, &plotVEG,   &plotVIG, &plotCEG,
                              &plotCIG, &plotZin, &plotZout,  &PLOTRL,  &PLOTPHASE,
                              &PLOTGD,  &PLOTIR,  &PLOTSR,    &PLOTPR,  &PLOTTP};


// Pictures of the plot prompts in the panel's store (after the response sketches and
// configuration pictures, which end at 52).
constexpr int IMAGEGAIN = 60, IMAGEIMPEDANCE = 61, IMAGEPHASE = 62, IMAGEDELAY = 63,
              IMAGEIMPULSE = 64, IMAGESTEP = 65, IMAGEPULSE = 66, IMAGETONE = 67;

std::string codetail(size_t n) {
    const std::string& c = slot(0).code;
    return c.size() >= n ? c.substr(c.size() - n) : c;
}

// The first of the values that is not 0.
double firstset(double a, double b, double fallback) { return a != 0 ? a : b != 0 ? b : fallback; }

// A value as the prompt offers it.
std::string offered(double v) { return engformatvalue(v); }

bool refused() {
    if (!report.valuewarning) return false;
    MsgBox("Negative or zero component values in schematic. Cannot plot!!!", vbOKOnly + vbExclamation,
           "Design Specification Error");
    return true;
}

void zerofrequency() { MsgBox("A frequency of ZERO Hz is not allowed", vbOKOnly + vbExclamation, "WARNING"); }

// The frequency rows 0 and 1 of the gain, impedance and phase prompts.
void frequencyrows(const std::string& tip1, const std::string& tip2) {
    double f1, f2;
    defaultspan(f1, f2);
    panelrow(0, "Freq 1 =", offered(firstset(plotdefaults.defaultfreq1, plotshared.plotfreq1, f1)), tip1);
    panelrow(1, "Freq 2 =", offered(firstset(plotdefaults.defaultfreq2, plotshared.plotfreq2, f2)), tip2);
}

// Draws the plot after its prompt and turns its print and clipboard items on.
void drawplot(PlotForm& p) {
    p.returnloss = false;
    p.leftpressed = false;
    p.open();
    if (!p.redraw()) return;
    p.shown = true;
    setenabled(p.printitem, true);
    setenabled(p.clipitem, true);
    setenabled(exportitem(p.printitem), true);
}

// getplotdata: the gain and return-loss prompt. False when cancelled.
bool getplotdata(PlotForm& p) {
    const bool returnloss = store.help1.rfind("Return", 0) == 0;
    for (;;) {
        panelclear();
        panelimage(IMAGEGAIN);
        frequencyrows("Lower plot frequency", "Upper plot frequency");
        double top = firstset(plotdefaults.defaultdb1, plotshared.plotdb1, 0);
        double astop = slot(0).Astop;
        double bottom = firstset(plotdefaults.defaultdb2, plotshared.plotdb2,
                                 returnloss ? -240 : astop != 0 ? -(astop * 2) : -60);
        panelrow(2, "db1 =", Str(top), "maximum plot gain");
        panelrow(3, "db2 =", Str(bottom), "minimum plot gain");
        panelplotbuttons(true);
        if (!panelshow()) return false;
        double f1 = panelvalue(0), f2 = panelvalue(1), d1 = panelvalue(2), d2 = panelvalue(3);
        if (f1 == 0 || f2 == 0) {
            zerofrequency();
            continue;
        }
        if (d1 > 0 && d2 > 0 && !returnloss) {
            int a = MsgBox("Passive filters have little voltage or current gain\n"
                           "and no power gain.  One of the specified db values\n"
                           "should be negative.  Should I make the larger\n"
                           "of the two values negative?\n",
                           vbYesNo + vbQuestion, "WARNING");
            if (a == vbYes) {
                if (d1 > d2) d1 = -d1;
                else d2 = -d2;
            }
        }
        if (d1 > d2) std::swap(d1, d2);
        p.freq1 = f1, p.freq2 = f2;
        p.db1 = Int(d1), p.db2 = Int(d2);
        return true;
    }
}

// An impedance limit: below 1 cut to one decimal, above to a whole number.
double ohmlimit(double x) { return x < 1 ? Int(x * 10) / 10 : Int(x); }

// Shows the prompt that rows() lays out until neither frequency is zero; then the span
// goes to the plot and the two limits, in order, to a <= b. False when cancelled.
template <class Rows> bool limitsprompt(PlotForm& p, Rows rows, double& a, double& b) {
    for (;;) {
        panelclear();
        rows();
        panelplotbuttons(true);
        if (!panelshow()) return false;
        const double f1 = panelvalue(0), f2 = panelvalue(1);
        if (f1 == 0 || f2 == 0) {
            zerofrequency();
            continue;
        }
        a = panelvalue(2), b = panelvalue(3);
        if (a > b) std::swap(a, b);
        p.freq1 = f1, p.freq2 = f2;
        return true;
    }
}

bool getimpdata(PlotForm& p) {
    double a, b;
    if (!limitsprompt(p, [] {
        panelimage(IMAGEIMPEDANCE);
        frequencyrows("Low plot frequency", "High plot frequency");
        const DesignSlot& s = slot(0);
        double r1 = dipole(0, 1).R;
        int last = s.count();
        double rn = last >= 1 && last <= MAXDIPOLE ? dipole(0, last).R : 0;
        double z1 = r1 > 0 ? std::pow(10.0, Int(log10host(r1 / 10))) : 1;
        double z2 = rn > 0 ? std::pow(10.0, Int(log10host(rn * 10) + 0.99)) : 1000;
        panelrow(2, "Z1 =", offered(firstset(plotdefaults.defaultz1, 0, z1)), "Low plot impedance");
        panelrow(3, "Z2 =", offered(firstset(plotdefaults.defaultz2, 0, z2)), "High plot impedance");
    }, a, b))
        return false;
    p.db1 = ohmlimit(a), p.db2 = ohmlimit(b);
    return true;
}

bool getphasedata(PlotForm& p) {
    double a, b;
    if (!limitsprompt(p, [] {
        panelimage(IMAGEPHASE);
        frequencyrows("Lower plot frequency", "Upper plot frequency");
        panelrow(2, "A1 =", Str(firstset(plotdefaults.defaultangle1, 0, -360)), "minimum plot phase angle");
        panelrow(3, "A2 =", Str(firstset(plotdefaults.defaultangle2, 0, 360)), "maximum plot phase angle");
    }, a, b))
        return false;
    p.db1 = Int(a), p.db2 = Int(b);
    return true;
}

void frequencycommand(PlotForm& p, bool (*prompt)(PlotForm&), const char* h1, const char* h2,
                      const char* h3, const char* h4) {
    if (refused()) return;
    sethelp(h1, h2, h3, h4);
    if (!prompt(p)) return;
    drawplot(p);
}

// ---------------------------------------------------------------------------------------
// Time plots

const DesignSlot& slot0() { return slot(0); }

std::string fmdefault() {
    double w0 = slot0().w0;
    return offered(firstset(plotdefaults.defaultfm, 0, w0 > 0 ? ((10 * w0) / 2) / PI : 10000000));
}

std::string timedefault(double factor) {
    double w0 = slot0().w0;
    double t = factor > 0 && w0 > 0 ? factor / w0 : 5e-06;
    return offered(firstset(plotdefaults.defaulttime, 0, t));
}

std::string leveldefault(double set, double v) { return Str(firstset(set, 0, v)); }

// Shows the time prompt built by rows(); reads FM, Time, N1, N2 (and DC, tone) by label.
bool timeprompt(PlotForm& p, int image, double timefactor) {
    const bool tone = p.timekind == TimeKind::TonePulse;
    const bool duty = p.timekind == TimeKind::Pulse || tone;
    panelclear();
    panelimage(image);
    int r = 0;
    panelrow(r++, "FM =", fmdefault(), "Frequency of interest");
    if (tone) {
        double w0 = slot0().w0;
        panelrow(r++, "Tone =", offered(w0 > 0 ? (w0 / 2) / PI : 10000000), "Frequency of test tone");
    }
    panelrow(r++, "Time =", timedefault(timefactor), "Plot time");
    const char* ntip = p.timekind == TimeKind::Pulse ? "Normalized amplitude" : "Normalized level";
    panelrow(r++, "N1 =", leveldefault(plotdefaults.defaultn1, 2), ntip);
    panelrow(r++, "N2 =", leveldefault(plotdefaults.defaultn2, -2), ntip);
    if (duty) panelrow(r++, "DC%=", leveldefault(plotdefaults.defaultdutycycle, 50), "Duty Cycle in percent");
    panelplotbuttons(true);
    if (!panelshow()) return false;
    r = 0;
    p.FM = panelvalue(r++);
    if (tone) p.tone = panelvalue(r++);
    p.Time = panelvalue(r++);
    double n1 = panelvalue(r++), n2 = panelvalue(r++);
    if (n1 < n2) std::swap(n1, n2);
    p.N1 = n1, p.N2 = n2;
    p.DC = duty ? panelvalue(r++) / 100 : 0;
    if (tone) p.tone = p.tone * 2 * PI;
    return true;
}

void timecommand(PlotForm& p, int image, double timefactor, const char* h1, const char* h2,
                 const char* h3, const char* h4) {
    if (refused()) return;
    sethelp(h1, h2, h3, h4);
    if (!timeprompt(p, image, timefactor)) return;
    if (p.timekind == TimeKind::Step && p.Time == 0) p.Time = 1e-06;
    drawplot(p);
}

const char* const steplines34[2] = {
    "Impulse, Step and Pulse Response of narrow band-pass filters causes them to ring at their center frequency.",
    "Use Tone Pulse Response for testing narrow band-pass filters."};

} // namespace

void resetplots() {
    plotshared = PlotShared{};
    for (PlotForm* p : allplots) {
        p->loaded = p->visible = false;
        p->surface = nullptr; // the desktop that gave it is gone
        p->reset();
    }
}

void PEG_Click() {
    frequencycommand(plotPEG, getplotdata,
                     "Power Effective Gain is defined by the ratio of the power output to the maximum power available from the source.",
                     "Since passive filters have no power gain, Power Effective Gain has a maximum value of zero.", "", "");
}

void PIG_Click() {
    frequencycommand(plotPIG, getplotdata,
                     "Power Insertion Gain is defined by the ratio of the power output, with the filter in the circuit,",
                     "to the power output without the filter in the circuit.",
                     "For the cases where Zin <> Zout Power Insertion Gain can have small values of positive gain.",
                     "This should be interpreted as the filter providing a better impedance match between source and load.");
}

void VEG_Click() {
    frequencycommand(plotVEG, getplotdata,
                     "Voltage Effective Gain is defined by the ratio of the voltage out to the maximum voltage from the source.",
                     "  VEG = 20 Log10(Vout/Vmax)", "", "");
}

void VIG_Click() {
    frequencycommand(plotVIG, getplotdata,
                     "Voltage Insertion Gain is defined by the ratio of the voltage out with the filter in the circuit",
                     "to the voltage out without the filter in the circuit as defined by the voltage dividing action of Zin and Zout, [Vin * Zout / (Zin + Zout)].",
                     "     VIG = 20 * log10(Vout / (Vin * Zout / (Zin + Zout))", "");
}

void CEG_Click() { frequencycommand(plotCEG, getplotdata, "", "", "", ""); }
void CIG_Click() { frequencycommand(plotCIG, getplotdata, "", "", "", ""); }

void inputz_Click() {
    frequencycommand(plotZin, getimpdata,
                     "Input impedance is the shunt impedance seen looking into dipole 2 of the schematic.",
                     "This is the impedance seen by the source.", "The lower limit of impedance plots is 0.1 ohms.",
                     "The upper limit is rounded to an integer.");
}

void outputz_Click() {
    frequencycommand(plotZout, getimpdata,
                     "Output Impedance is the shunt impedance seen looking into the last dipole of the schematic.",
                     "This is the impedance seen by the load, and does not include the impedance of the last dipole.",
                     "The lower limit of impedance plots is 0.1 ohms.", "The upper limit is rounded to an integer.");
}

void RL_Click() { frequencycommand(PLOTRL, getplotdata, "Return Loss", "", "", ""); }
void PHA_Click() { frequencycommand(PLOTPHASE, getphasedata, "", "", "", ""); }

void GD_Click() {
    if (refused()) return;
    sethelp("Filter Group Delay", "Group delay is the rate of change of phase",
            "with respect to the rate of change of frequency.", "d0/dw");
    PlotForm& p = PLOTGD;
    for (;;) {
        // The group delay's own span by the code's last two letters.
        const DesignSlot& s = slot(0);
        const double w0 = s.w0, w2 = s.w2, w4 = s.w4, bw = s.bw;
        std::string k2 = codetail(2), k3 = codetail(3);
        double f1, f2;
        if (k2 == "CR") {
            f1 = (w0 / PI) / 4;
            f2 = w0 / PI;
        } else if (k2 == "CL" || k2 == "SB") {
            f1 = ((w0 - 2 * bw) / 2) / PI;
            f2 = ((w0 + 2 * bw) / 2) / PI;
        } else if (k2 == "BP" || k2 == "BR") {
            f1 = (w2 / PI) / 10;
            f2 = k3 == "TBP" || k3 == "TBR" ? (w0 / PI) / 5 : (w4 / PI) * 2.5;
        } else {
            f1 = (w0 / PI) / 20;
            f2 = (w2 / PI) * 5;
        }
        panelclear();
        panelimage(IMAGEDELAY);
        panelrow(0, "Freq 1 =", offered(firstset(plotdefaults.defaultfreq1, 0, f1)), "Lower plot frequency");
        panelrow(1, "Freq 2 =", offered(firstset(plotdefaults.defaultfreq2, 0, f2)), "Upper plot frequency");
        panelrow(2, "T1 =", plotdefaults.defaultt1 != 0 ? offered(plotdefaults.defaultt1) : "10u",
                 "Upper limit of the delay axis");
        panelplotbuttons(true);
        if (!panelshow()) return;
        double a = panelvalue(0), b = panelvalue(1), t1 = panelvalue(2);
        if (a == 0 || b == 0) {
            zerofrequency();
            continue;
        }
        if (t1 == 0) {
            MsgBox("The values were not properly entered", vbOKOnly + vbExclamation, "WARNING");
            continue;
        }
        p.freq1 = a, p.freq2 = b;
        p.db1 = 0, p.db2 = std::abs(t1);
        break;
    }
    drawplot(p);
}

void IR_Click() {
    timecommand(PLOTIR, IMAGEIMPULSE, 0,
                "Impulse response is the output voltage resulting from an infinite amplitude, zero width pulse.",
                "The spectrum of such a pulse is an infinite number of frequencies of equal amplitude.  The program samples 100 frequencies",
                "between zero and the specified maximum frequency of interest (FM) and integrates the result, then divides by the number of samples",
                "to produce a Relative amplitude. The REAL amplitude is a function of filter bandwidth and could be in the millions.");
}

void USR_Click() {
    timecommand(PLOTSR, IMAGESTEP, 31.41592654,
                "Step Response is the filter output as the result of applying a unit positive step of one volt amplitude.",
                "The displayed value is the actual filter output in volts.", steplines34[0], steplines34[1]);
}

void pr_Click() {
    timecommand(PLOTPR, IMAGEPULSE, 31.41592654,
                "Pulse Response is the filter output resulting from applying a single pulse",
                "of one volt amplitude and specified duty cycle.  The displayed value is the actual filter output in volts.",
                steplines34[0], steplines34[1]);
}

void TPR_Click() {
    timecommand(PLOTTP, IMAGETONE, 314.1592654,
                "Tone Pulse Response is the filter output resulting from applying a pulse of sinewaves",
                "of one volt amplitude and specified duty cycle.  The displayed value is the actual filter output in volts.",
                "Tone Pulse Response is the measure the transient response of band-pass filters",
                "which simply 'ring' when the standard 'pulse' response analysis is used.");
}

// ---------------------------------------------------------------------------------------
// Print and clipboard

void printplot(PlotForm& w) {
    if (!w.loaded) return;
    // The buttons are no part of a printed plot.
    for (const char* n : {"Command1", "Command2", "Command3"})
        if (Control* c = w.find(n)) c->visible = false;
    desktop().printwindow(w);
    for (const char* n : {"Command1", "Command2", "Command3"})
        if (Control* c = w.find(n)) c->visible = true;
}

void clipplot(PlotForm& w) {
    if (!w.loaded) return;
    desktop().clipboardwindow(w);
}

bool dumpcurve(const std::vector<std::string>& args, std::ostream& out) {
    if (args.size() != 1) return false;
    PlotForm* p = findplot(args[0]);
    if (!p) return false;
    for (int s = 0; s < p->passslots; ++s)
        for (int i = 0; i < SWEEPPOINTS; ++i)
            out << s << ' ' << i << ' ' << roundtrip(p->xs[static_cast<size_t>(s)][static_cast<size_t>(i)])
                << ' ' << roundtrip(p->values[static_cast<size_t>(s)][static_cast<size_t>(i)]) << '\n';
    return true;
}

} // namespace zelk
