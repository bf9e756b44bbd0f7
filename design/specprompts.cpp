#include "design/specprompts.h"
#include "core/hostmath.h"

#include <cmath>
#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/notation.h"
#include "entry/panel.h"

namespace zelk {

namespace {


// A frequency in rad/s shown in hertz, with the program's truncated pi.
std::string hertz(double w) { return engformatvalue(w / 2 / 3.141592654); }
std::string positive(double v, const std::string& otherwise) {
    return v > 0 ? engformatvalue(v) : otherwise;
}
std::string hertzif(double w) { return w > 0 ? hertz(w) : std::string(); }

bool butterworthcode() { return current().code.rfind("B", 0) == 0; }

void warn(const std::string& lines) {
    MsgBox("The following must be true\n" + lines, vbOKOnly | vbExclamation, "WARNING");
}

// The Apass default of the band prompts: "3" for Butterworth, else the value when above
// 0, else the row keeps the text it had.
std::string bandapass(const std::string& before) {
    if (butterworthcode()) return "3";
    if (current().Apass > 0) return engformatvalue(current().Apass);
    return before;
}

} // namespace

void getdesign2() {
    DesignSlot& s = current();
    panelclear();
    panelrow(0, "F1 =", hertzif(s.w1), "Cutoff Frequency");
    panelrow(1, "F2 =", hertzif(s.w2), "Stopband Frequency");
    panelrow(2, "Apass =", butterworthcode() ? std::string("3") : positive(s.Apass, ".1"), "passband ripple");
    panelrow(3, "Astop =", positive(s.Astop, "See Notes"), "Stopband attenuation");
    panelrow(4, "Order =", positive(s.order, "5"), "Order of the filter");
    panelrow(5, "Zin =", positive(s.Zin, "50"), "input impedance");
    panelrow(6, "Zout =", positive(s.Zout, "50"), "output impedance");
    for (;;) {
        if (!panelshow()) return;
        s.w1 = panelvalue(0) * 6.283185308;
        s.w2 = panelvalue(1) * 6.283185308;
        s.Apass = std::fabs(panelvalue(2));
        s.Astop = std::fabs(panelvalue(3));
        s.order = panelvalue(4);
        s.Zin = panelvalue(5);
        s.Zout = panelvalue(6);
        if (!(s.w1 > s.w2 || (s.Apass > s.Astop && s.order == 0))) return;
        warn("F1 < F2\nApass < Astop or order > 0");
    }
}

void getdesign4() {
    DesignSlot& s = current();
    const std::string apassbefore = getdata.getvalue(4).text;
    panelclear();
    panelrow(0, "F1 =", hertzif(s.w1), "Low stopband frequency");
    panelrow(1, "F2 =", hertzif(s.w2), "Low cutoff frequency");
    panelrow(2, "F3 =", hertzif(s.w3), "High cutoff frequency");
    panelrow(3, "F4 =", hertzif(s.w4), "High stopband frequency");
    panelrow(4, "Apass =", bandapass(apassbefore), "Passband ripple");
    panelrow(5, "Astop =", positive(s.Astop, "See Notes"), "Stopband attenuation");
    panelrow(6, "Order =", positive(s.order, "See Notes"), "Order of the filter");
    panelrow(7, "Zin =", positive(s.Zin, "50"), "Input Impedance");
    panelrow(8, "Zout =", positive(s.Zout, "50"), "Output Impedance");
    for (;;) {
        if (!panelshow()) return;
        s.w1 = panelvalue(0) * 6.283185308;
        s.w2 = panelvalue(1) * 6.283185308;
        s.w3 = panelvalue(2) * 6.283185308;
        s.w4 = panelvalue(3) * 6.283185308;
        s.Apass = panelvalue(4);
        s.Astop = panelvalue(5);
        s.order = panelvalue(6);
        s.Zin = panelvalue(7);
        s.Zout = panelvalue(8);
        const bool bad = s.w1 == 0 || s.w1 >= s.w2 || s.w2 >= s.w3 || s.w3 >= s.w4 ||
                         (s.Astop == 0 && s.order < 2) || s.Apass <= 0;
        if (!bad) return;
        warn("0 < F1 < F2 < F3 < F4\nApass > 0\nAstop > 0 or Order > 1");
    }
}

void getdesign4b() {
    DesignSlot& s = current();
    sethelp("Enter the center frequency and bandwidth.", "Enter the shape factor from Apass to Astop.",
            "It is defined as the ratio of Frequency at Astop divided by Frequency at Apass.", "");
    const std::string apassbefore = getdata.getvalue(3).text;
    const bool corners = s.w2 > 0 && s.w3 > 0;
    const double w2 = s.w2, w3 = s.w3;
    panelclear();
    panelrow(0, "CF =", corners ? engformatvalue((w2 + (w3 - w2) / 2) / 3.141592654 / 2) : "",
             "Center Frequency");
    panelrow(1, "BW =", corners ? engformatvalue(((w3 - w2) / 2) / 3.141592654) : "", "Bandwidth");
    panelrow(2, "SF =", s.w3 > 0 ? engformatvalue(s.w4 / s.w3) : "", "Shape Factor");
    panelrow(3, "Apass =", bandapass(apassbefore), "Passband ripple");
    panelrow(4, "Astop =", positive(s.Astop, "60"), "Stopband attenuation");
    panelrow(5, "Order =", "", "Order of the filter");
    panelrow(6, "Zin =", positive(s.Zin, "50"), "Input impedance");
    panelrow(7, "Zout =", positive(s.Zout, "50"), "Output Impedance");
    for (;;) {
        if (!panelshow()) return;
        const double CF = panelvalue(0);
        const double BW = panelvalue(1);
        double SF = panelvalue(2);
        // A shape factor below 1 is taken the other way up.
        if (SF < 1) SF = hdiv(1, SF);
        s.Apass = panelvalue(3);
        s.Astop = panelvalue(4);
        s.order = panelvalue(5);
        s.Zin = panelvalue(6);
        s.Zout = panelvalue(7);
        s.w2 = 6.283185308 * (CF - BW / 2);
        s.w3 = 6.283185308 * (CF + BW / 2);
        s.w0 = 6.283185308 * CF;
        s.w1 = s.w2 / SF;
        s.w4 = s.w3 * SF;
        if (!((s.Astop == 0 && s.order < 2) || s.Apass <= 0)) return;
        warn("Apass > 0\nAstop > 0 or Order > 1");
    }
}

void getdesign2a() {
    DesignSlot& s = current();
    panelclear();
    panelrow(0, "F1 =", hertzif(s.w1), "Cutoff frequency");
    panelrow(1, "Order", positive(s.order, "3"), "Order of the filter");
    panelrow(2, "Zin =", positive(s.Zin, "50"), "Input Impedance");
    panelrow(3, "Zout =", positive(s.Zout, "50"), "Output Impedance");
    for (;;) {
        if (!panelshow()) return;
        s.w1 = panelvalue(0) * 6.283185308;
        s.order = panelvalue(1);
        s.Zin = panelvalue(2);
        s.Zout = panelvalue(3);
        if (!(s.w1 == 0 || s.order == 0)) return;
        warn("F1 > 0, Order > 0");
    }
}

void getdesign4a() {
    DesignSlot& s = current();
    panelclear();
    panelrow(0, "F1 =", hertzif(s.w1), "Low Cutoff frequency");
    panelrow(1, "F2 =", hertzif(s.w2), "Low cutoff frequency");
    panelrow(2, "Order =", positive(s.order, "See Notes"), "Order of filter");
    panelrow(3, "Zin =", positive(s.Zin, "50"), "Input impedance");
    panelrow(4, "Zout =", positive(s.Zout, "50"), "Output Impedance");
    for (;;) {
        if (!panelshow()) return;
        s.w1 = panelvalue(0) * 6.283185308;
        s.w2 = panelvalue(1) * 6.283185308;
        s.order = panelvalue(2);
        s.Zin = panelvalue(3);
        s.Zout = panelvalue(4);
        if (!(s.w1 == 0 || s.w1 > s.w2 || s.order == 0 || s.Zin <= 0 || s.Zout <= 0)) return;
        warn("0 < F1 < F2\norder > 0\nZin/Zout > 0");
    }
}

void getdesign4c() {
    DesignSlot& s = current();
    sethelp("Enter the center frequency and bandwidth.", "", "", "");
    const double w1 = s.w1, w2 = s.w2;
    panelclear();
    panelrow(0, "CF =", engformatvalue((w1 + (w2 - w1) / 2) / 3.141592654 / 2), "Center Frequency");
    panelrow(1, "BW =", engformatvalue(((w2 - w1) / 2) / 3.141592654), "Bandwidth");
    panelrow(2, "Order =", positive(s.order, "See Notes"), "Order of the filter");
    panelrow(3, "Zin =", positive(s.Zin, "50"), "Input impedance");
    panelrow(4, "Zout =", positive(s.Zout, "50"), "Output impedance");
    for (;;) {
        if (!panelshow()) return;
        const double CF = panelvalue(0);
        const double BW = panelvalue(1);
        s.order = panelvalue(2);
        s.Zin = panelvalue(3);
        s.Zout = panelvalue(4);
        // Corners geometric about the centre.
        const double h = hdiv(BW / 2, CF);
        s.w1 = CF * (std::sqrt(1 + h * h) - h) * 2 * 3.141592654;
        s.w2 = CF * (std::sqrt(1 + h * h) + h) * 2 * 3.141592654;
        s.w0 = 2 * CF * 3.141592654;
        if (!(s.Zin <= 0 || s.Zout <= 0)) return;
        warn("Zin/Zout > 0");
    }
}

void getQu() {
    panelclear();
    panelrow(0, "Qu =", "Lossless", "Inductor Q");
    paneldipole(2);
    if (!panelshow()) return;
    flow.Qdesign = panelvalue(0);
}

} // namespace zelk
