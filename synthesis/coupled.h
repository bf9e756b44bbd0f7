// Coupled-resonator band-pass arithmetic: the closed-form Butterworth and Chebyshev
// element values (the Chebyshev list rescaled so that the band edges fall at 3 dB, shared
// with the crystal ladders), the centre and bandwidth of a design, and the two layouts of
// a chain of equal-inductor parallel resonators joined by series capacitors.
#pragma once

#include <string>

namespace zelk {

// Work values of a coupled-resonator design.
struct CoupledWork {
    double Lres = 0; // resonator inductance, henries
    double Cres = 0; // total node capacitance, farads
    double Qf = 0;   // w0 / bw
};
inline CoupledWork coupled;

// Butterworth element values g[0..n+1] into store.g for n = order of slot curslot, and
// the prototype terms (g1term, gnterm, kcoupling).
void butterworthCRproto();

// Chebyshev element values g[0..n+1] for order and Apass of slot curslot, with oddorder,
// scaled so that the attenuation at the band edge is 3 dB rather than Apass. The caller
// takes g1term, gnterm and kcoupling from g as its family needs them.
void chebyshevelements();

// w0 and bw of slot curslot from w1 and w2: the centre is (w1 + w2) - sqrt((w2 - w1)^2 +
// w1 w2), the program's own centre rather than the geometric mean. Then the first
// estimate of Lres from r0.
void crcentre();

// The order of the current slot as a loop bound, 0..most; beyond, "Subscript out of range".
int ordercount(int most);

// The inductance the inductor prompt shows: 10 / w0.
double crdefaultinductance();

// Accepts a typed inductance and Q: Lres, r0 of slot curslot, Qdesign (0 reads 1000).
void craccept(double Li, double Qu);

// The ladder of CRrealize from Lres, Qdesign, g1term, gnterm, kcoupling, Zin and Zout:
// source, wire, resonators (type 35) joined by series capacitors, load, with a capacitive
// match at an end whose termination is more than one ohm below r0.
void crlayout();

// The tapped-inductor layout of CRrealizea: the end resonators become types 57 and 58
// where a termination is more than one ohm below r0.
void crlayouttapped();

} // namespace zelk
