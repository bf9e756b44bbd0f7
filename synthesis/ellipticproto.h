// The elliptic (Cauer) low-pass prototype: elliptic functions by their nome series, the
// transfer polynomials, and the ladder extracted element by element by zero shifting at
// the transmission zeros. `ellipticrealize` lays the result out as dipoles.
#pragma once

#include <array>
#include <string>

namespace zelk {

// The work values of the elliptic synthesis, shared with the realisation.
struct EllipticWork {
    double rho = 0;   // reflection magnitude at cut-off
    double kmod = 0;  // selectivity, 1 / wA
    double nome = 0;  // the nome q of kmod
    double sigma = 0; // real pole parameter sigma0
    double scale = 0; // final frequency scale of the elements
    int halforder = 0;
    std::string termmode;   // "Maxvoltage", "Maxcurrent" or "Maxpower"
    bool fromoutput = false; // build the ladder from the load end (outlives its design)
    std::string designtype; // "a" odd order; "b", "c" even order
    // Elliptic sines and their type "b" and "c" transforms, index 1 to n.
    std::array<double, 17> sn{}, snb{}, snc{}, snd{};
    // Index of the transmission zero used by extraction step k (into sn, snc or snd).
    std::array<int, 17> zeroat{};
    // Output, index 1 to n: elemA holds the shunt or series element (odd index) and the
    // first part of a trap (even index); elemB the second part of the trap.
    std::array<double, 17> elemA{}, elemB{};
};

inline EllipticWork elliptic;

// The prototype of slot curslot from Apass, Astop, order, Zin, Zout, wA, configuration
// and termchoice, in two halves so that the command can ask how to terminate an even
// order between them. The first finds the modulus, nome and order (it may change order;
// it sets cancelled when the order is refused) and the parity; the second the attenuation
// reached, the terminations (may change Zin, Zout, w2; writes r0) and the elements.
void ellipticprotoorder();
void ellipticprotoelements();

} // namespace zelk
