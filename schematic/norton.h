// The Norton transform: an ideal transformer of turns ratio N inserted beside the selected
// dipole and absorbed into it and its two neighbours, so that every dipole to its right is
// scaled by N squared and no transformer is left in the circuit. At the default N the
// neighbour on the reduced side vanishes, which removes an element.
#pragma once

#include <string>

namespace zelk {

struct NortonWork {
    bool stepup = false;       // the case now chosen: impedances to the right go up
    double Nup = 1, Ndown = 1; // the defaults of the two cases
    double N = 1;              // the turns ratio entered
    // The element each default eliminates, "L 3", "C 5".
    std::string eliminatesup, eliminatesdown;
    // The panel pictures of the two cases (odd: step-up, the next even: step-down).
    short keyup = 0, keydown = 0;
};
inline NortonWork norton;

// EDIT "Norton Transform" on the selected dipole.
void norton_Click();
// The turns-ratio prompt; leaves norton.N and store.cancelled, and norton.stepup as the
// picture the user left the panel on.
void getN();
// For n = first to dipolecount of slot 0: step-up multiplies R, L, La by N^2 and divides
// C, Ca by it; step-down the other way round.
void transformN(int first);
// "N must be less than the default, try again" under "Norton ERROR".
void nonortonUP();
void nonortonDWN();

} // namespace zelk
