// Butterworth and Chebyshev low-pass prototypes: the normalised element list g[1..n] at
// 1 rad/s and 1 ohm, with the order estimated from Apass/Astop when it is 0, and the
// stop-band attenuation replaced by what the order achieves.
#pragma once

#include <array>

namespace zelk {

// Values a prototype hands on to the coupled-resonator and crystal realisations.
struct PrototypeTerms {
    double g1term = 0;                 // g[1]
    double gnterm = 0;                 // g[n]
    std::array<double, 17> kcoupling{}; // kcoupling[i] = 1 / sqrt(g[i+1] g[i]), i = 1..n-1
};
inline PrototypeTerms prototerms;

// Both work on slot curslot; on a refused order they set store.cancelled.
void butterworthproto();
void chebyshevproto();

// Stores g1term, gnterm and kcoupling from g[1..order].
void storeprototerms(int order);

} // namespace zelk
