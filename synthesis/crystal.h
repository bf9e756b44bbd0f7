// Crystal ladder arithmetic: the prototype terms of each family (g1term, gnterm and the
// normalised couplings kcrystal), the Q test of the crystals against the bandwidth, and
// the ladder of identical series crystals with its couplings, trimmers and tapped
// matches. Works on slot curslot; prompts stay with the commands.
#pragma once

#include <array>
#include <string>

namespace zelk {

struct CrystalWork {
    std::array<double, 17> kcrystal{}; // kcrystal[i], i = 1..n-1
    double Cnode = 0;                  // node capacitance of the trimmed capacitor ladder
};
inline CrystalWork crystalwork;

// Prototype terms. Each leaves g1term and gnterm in prototerms (and the store) and the
// couplings in crystalwork.kcrystal.
// Butterworth: the coupled-resonator element list, both ends g[1].
void BCLterms();
// Chebyshev: the shared Chebyshev element values, both ends g[1].
void CCLterms();
// A table record already read into g: ends g[1] and g[n].
void TCLterms();
// Minimum loss: h = 2^(1/n) / 2, ends 1 / h, every coupling h.
void MCLterms();

// The Q test: true when (Qx bw) / Fs is at least 2n.
bool crystalQsufficient();
// The narrowest bandwidth the crystal allows: 2 n Fs / Qx.
double narrowestbandwidth();

// r0 = bw Ls / g1term and w0 = the crystal's series resonance.
void crystaldesignvalues();

// The ladder: source, wire, n crystals, couplings of the mode ("UC", "UL", "TC", "TL"),
// load at r0, then the trimmers of a tuned mode. Qdesign goes to coupling inductors.
void crystalladder(const std::string& mode);

// A tapped match at the source end (t = sqrt(r0 / Zin)) or at the load end (t =
// sqrt(r0 / Zout)), the end crystal's trimmer becoming part of the tap. An end crystal
// without a trimmer has no capacitance to tap: the host's division fault.
void crystaltapinput(double Zin);
void crystaltapoutput(double Zout);

} // namespace zelk
