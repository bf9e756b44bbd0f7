// Pi and T resistive attenuator pads between two impedances. For unequal terminations a
// pad has a minimum loss, which is found by stepping the attenuation up in 0.01 dB steps
// until the last resistor of the pad comes out positive.
#pragma once

namespace zelk {

struct PadWork {
    double padattn = 0;  // attenuation in dB
    double padZin = 0;   // terminations, kept from pad to pad
    double padZout = 0;
    double padratio = 0; // 10^(padattn / 20)
};
inline PadWork pad;

// The resistors of a pad of voltage ratio a between Zi and Zo: r1, r2, r3 from the source.
// T pad: series r1, shunt r2, series r3. Pi pad: shunt r1, series r2, shunt r3.
struct PadResistors {
    double r1 = 0, r2 = 0, r3 = 0;
};
PadResistors tpadresistors(double a, double Zi, double Zo);
PadResistors pipadresistors(double a, double Zi, double Zo);

} // namespace zelk
