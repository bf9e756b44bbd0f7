// Dishal sideband crystal filters: ladders of identical crystals whose pass band sits on
// one side of the series resonance, the lower sideband with the crystals in series arms
// and the upper sideband with them in shunt arms. The offset is set by r0v3 (flow.r0v3),
// typed directly or derived from a typed centre frequency for the minimum-loss variants.
// Works on slot curslot with the prototype terms and kcrystal of the crystal ladders.
#pragma once

#include <string>
#include <utility>

namespace zelk {

struct DishalWork {
    double bwhertz = 0;   // bandwidth in hertz as typed
    double cfo = 0;       // typed centre frequency of a minimum-loss design, hertz
    std::string sideband; // "lower" or "normal"; kept with the design work, read by nothing
};
inline DishalWork dishal;

// The usual range of r0v3 is 2..10; outside it a design may carry negative parts.
bool r0v3outsiderange(double r0v3);

// Centre-frequency limits (lo, hi) of the minimum-loss lower sideband design, p = k1 + k2,
// and the r0v3 of a centre frequency cfo.
std::pair<double, double> lowercentrelimits(double Fs, double bwhertz, double p);
double lowerr0v3(double cfo, double Fs, double bwhertz, double p);
// The same for the upper sideband: Fs + 0.75 B .. Fs + 3 B, r0v3 = 2 (cfo - Fs) / B.
std::pair<double, double> uppercentrelimits(double Fs, double bwhertz);
double upperr0v3(double cfo, double Fs, double bwhertz);

// k1 + k2 of the current prototype.
double dishalp();

// The lower sideband ladder: source, wire, n series crystals each with its capacitor
// across (the end and inner ones also with a series trimmer Ca), capacitors to ground
// between them, load. r0, Zin and Zout take the source resistance.
void dishallsbladder();

// The upper sideband ladder: source, shunt crystals each with a capacitor across, series
// capacitors between them, load. True when every shunt capacitor came out at 0 or above.
bool dishalusbladder();

} // namespace zelk
