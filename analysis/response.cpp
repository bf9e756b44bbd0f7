#include "analysis/response.h"

#include <cmath>

#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/hostmath.h"

namespace zelk {

namespace {

// A division as the host does it: x/0 is "Division by zero", 0/0 is "Overflow".
double hostdiv(double a, double b) {
    if (b == 0) raisefault(a == 0 ? 6 : 11);
    return a / b;
}

double dB20(double x) { return 20 * log10host(x); }
double dB10(double x) { return 10 * log10host(x); }

// Input impedance walk: zscale to 1 ahead of the walk, the backward walk, then the
// impedance scale of the last dipole evaluated applied twice.
void inputwalk(int s) {
    store.zscale = 1.0;
    backwardwalk(s);
    double zs = store.zscale;
    walk.Rt = walk.Rt * zs * zs;
    walk.Xt = walk.Xt * zs * zs;
}

} // namespace

double sweepfrequency(double F1, double F2, int i, int npoints) {
    return (TWOPI * F1) * std::pow(F2 / F1, static_cast<double>(i) / npoints);
}

const char* responsename(Quantity q) {
    switch (q) {
    case Quantity::PEG: return "Power Effective Gain";
    case Quantity::PIG: return "Power Insertion Gain";
    case Quantity::VEG: return "Voltage Effective Gain";
    case Quantity::VIG: return "Voltage Insertion Gain";
    case Quantity::CEG: return "Current Effective Gain";
    case Quantity::CIG: return "Current Insertion Gain";
    case Quantity::InputImpedance: return "Input Impedance";
    case Quantity::OutputImpedance: return "Output Impedance";
    case Quantity::ReturnLoss: return "Return Loss";
    case Quantity::ReturnLossOverlay: return "Return Loss";
    case Quantity::Phase: return "Phase";
    case Quantity::GroupDelay: return "Group Delay";
    }
    return "";
}

double response(Quantity q, int s) {
    GroupDelayState gd;
    return response(q, s, gd);
}

double response(Quantity q, int s, GroupDelayState& gd) {
    if (q == Quantity::InputImpedance || q == Quantity::ReturnLoss || q == Quantity::ReturnLossOverlay) {
        // The reference of the return loss is always slot 0's, also for a second filter.
        inputwalk(s);
        if (store.abortanalysis) return 0;
        return responsefrominput(q, walk.Rt, walk.Xt);
    }
    forwardwalk(s);
    if (store.abortanalysis) return 0;
    return responsefromwalk(q, gd);
}

double responsefrominput(Quantity q, double Rt, double Xt) {
    if (q == Quantity::InputImpedance) return std::sqrt(Xt * Xt + Rt * Rt);
    double R1 = q == Quantity::ReturnLoss ? dipole(0, 1).R : slot(0).Zin.value();
    if (q == Quantity::ReturnLoss && Rt == R1) return 120;
    double B = std::sqrt((R1 - Rt) * (R1 - Rt) + (-Xt) * (-Xt));
    double A = std::sqrt((R1 + Rt) * (R1 + Rt) + Xt * Xt);
    return -dB20(hostdiv(A, B));
}

double responsefromwalk(Quantity q, GroupDelayState& gd) {
    const double Z1 = walk.Zmag1, ZL = walk.Zdmag, V = walk.Vratio;
    switch (q) {
    case Quantity::PEG: return dB10(hostdiv(V * V * 4 * Z1, ZL));
    case Quantity::PIG: return dB10(hostdiv(hostdiv((ZL + Z1) * V * V * (ZL + Z1), ZL), ZL));
    case Quantity::VEG: return dB20(V);
    case Quantity::VIG:
    case Quantity::CIG: return dB20(hostdiv((ZL + Z1) * V, ZL));
    case Quantity::CEG: return dB20(hostdiv(Z1 * V, ZL));
    case Quantity::OutputImpedance: return walk.Zmag;
    case Quantity::Phase: return (180 / PI) * walk.Vphase;
    case Quantity::GroupDelay: {
        double w = store.wA;
        double tg = std::abs(hostdiv(walk.Vphase - gd.Vphaseprev, w - gd.wAprev));
        gd.Vphaseprev = walk.Vphase;
        gd.wAprev = w;
        return tg;
    }
    default: return 0;
    }
}

} // namespace zelk
