// The time-domain responses by Fourier synthesis: the filter's response is sampled with
// the forward walk (the sweep's block walk) at 100 harmonics of the plot time, and the cosine series of the test
// signal (impulse, unit step, pulse, tone pulse) is summed at each of the 513 time points.
// The signal is periodic with the plot time as its period: these are not simulations.
#pragma once

namespace zelk {

enum class TimeKind { Impulse, Step, Pulse, TonePulse };

inline constexpr int HARMONICS = 100;

// One slot's harmonics: hw (rad/s), hamp (amplitude), hph (phase, radians), index 0 to
// HARMONICS. A pass starts from zeros, as a freshly dimensioned array.
struct Harmonics {
    double hw[HARMONICS + 1];
    double hamp[HARMONICS + 1];
    double hph[HARMONICS + 1];
};

// The harmonic pass for slot s. T is the plot time in seconds, D the duty cycle as a
// fraction (pulse and tone pulse), wT the tone in rad/s (tone pulse). A duty cycle of 0
// faults in the division by the harmonic's angle, as the host does. Returns false when
// the walk ended with abortanalysis set: the harmonics from that one on stay as they were.
bool harmonicpass(TimeKind kind, int s, double T, double D, double wT, Harmonics& h);

// The value drawn at time t for impulse, pulse and tone pulse; for the step the scaled
// impulse term u of the running sum. The direct sum of cosines: the reference of the
// recurrence that timevalues uses.
double harmonicseries(TimeKind kind, const Harmonics& h, double t);

// The drawn values at the n time points t = T*i/512 (the step as its running sum), the
// harmonic sums by a rotation recurrence within 1e-12 of the direct sums.
void timevalues(TimeKind kind, const Harmonics& h, double T, double* out, int n = 513);

} // namespace zelk
