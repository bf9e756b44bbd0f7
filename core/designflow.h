// The shared work values of the design flow: what the selector, the prompts, the
// prototypes and the realisations hand one another while a design is made.
#pragma once

#include <string>

namespace zelk {

// Work values shared by the selector, the prompts, the prototypes and the transforms.
struct DesignFlow {
    short functionkind = 0;        // 0 low-pass, 1 high-pass, 2 band-pass, 3 band-reject
    short previouskind = 0;        // functionkind of the last accepted selection
    std::string configuration;     // "Pi", "T", "SPPi", "SPT" (and "NODAL" for ellipticrealize)
    std::string termchoice;        // even-order elliptic termination: "Zin", "Zout", "BOTH"
    bool selectorcancelled = false; // the selector was left with CANCEL
    double Qdesign = 0;            // inductor Q given to every inductor; 0 lossless
    double Qratio = 0;             // w0 / pass-band width, for LPtoBP and LPtoBR
    short kmin = 2;                // lowest order of the coupled-resonator prompt
    bool crdefaults = false;       // coupled-resonator prompt shows the start defaults
    bool cldefaults = false;       // crystal ladder prompts show the start defaults
    double r0v3 = 0;               // sideband crystal work value, reset on a change of kind
};
inline DesignFlow flow;

// " Low-Pass", " High-Pass", " Band-Pass", " Band-Reject" for a functionkind.
std::string kindtitle(int kind);
// "LP", "HP", "BP", "BR" for a functionkind.
std::string kindcode(int kind);

} // namespace zelk
