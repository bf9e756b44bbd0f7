#include "synthesis/pads.h"

#include <cmath>

namespace zelk {

PadResistors tpadresistors(double a, double Zi, double Zo) {
    PadResistors r;
    const double P = std::sqrt(Zi * Zo);
    if (Zi == Zo) {
        r.r1 = ((a - 1) / (a + 1)) * Zi;
        r.r3 = r.r1;
        r.r2 = ((a / (a * a - 1)) * 2) * Zi;
    } else {
        r.r1 = Zi * ((a * a + 1) / (a * a - 1)) - 2 * P * (a / (a * a - 1));
        r.r2 = 2 * P * (a / (a * a - 1));
        r.r3 = Zo * ((a * a + 1) / (a * a - 1)) - 2 * P * (a / (a * a - 1));
    }
    return r;
}

PadResistors pipadresistors(double a, double Zi, double Zo) {
    PadResistors r;
    const double P = std::sqrt(Zi * Zo);
    if (Zi == Zo) {
        r.r1 = Zi * ((a + 1) / (a - 1));
        r.r2 = ((Zi / 2) * (a * a - 1)) / a;
        r.r3 = r.r1;
    } else {
        r.r1 = Zi * ((a * a - 1) / ((a * a - 2 * a * std::sqrt(Zi / Zo)) + 1));
        r.r2 = ((P / 2) * (a * a - 1)) / a;
        r.r3 = (Zo * (a * a - 1)) / ((a * a - (2 * a) / std::sqrt(Zi / Zo)) + 1);
    }
    return r;
}

} // namespace zelk
