// The dipole catalogue: one record per type number (1 to 29 series, 31 to 73 shunt and
// transformer types), read by the evaluation, the value panel, the pictures, the parts
// listing, the netlist writer and the sweep instead of each keeping its own list.
#pragma once

namespace zelk {

// Where a type stands in the ladder: a series arm or a shunt arm (the transformer and
// coupled-coil types count as shunt types: they sit in the shunt palette).
enum class Place : unsigned char { None, Series, Shunt };

// The values a type's panel asks for, in the panel's row order; Crystal is the crystal
// panel that follows the rows. K is a tap ratio (one typed as 1 or more is kept as its
// reciprocal); Ka is a coupling factor, kept as typed (both are the dipole's K).
enum class Field : unsigned char { L, Qu, C, La, Qa, Ca, K, Ka, R, Crystal };
using Fields = unsigned short;
constexpr Fields bit(Field f) { return static_cast<Fields>(1u << static_cast<unsigned>(f)); }
constexpr bool has(Fields s, Field f) { return (s & bit(f)) != 0; }

// How the immittance is worked out: one form per distinct arithmetic. The evaluation
// runs them in families (plain parts, series LC and tank pairs, tanks on taps,
// transformers, crystals, composites); the sweep's block walk takes the plain parts and
// the crystals.
// clang-format off
enum class Eval : unsigned char {
    None, // no results: those of the previous dipole stand
    // plain parts
    Resistor, Inductor, Capacitor, SeriesLC, Tank, Wire, Open, SeriesRLC,
    // series LC and tank pairs
    SeriesLCAcrossCa,       // 9
    TankThenCa,             // 10: 1 siemens on purpose
    TankLaAcrossCa,         // 12
    SeriesLCAcrossLaCa,     // 13
    TwoBranches,            // 17
    TwoBranchesR,           // 29
    TwoTanks,               // 18: the first tank's real part dropped on purpose
    TwoTanksR,              // 68
    TankLaCa,               // 19
    SeriesLCAcrossLa,       // 20
    TankLa,                 // 21: La and Qa without effect, as always
    SeriesLCAcrossLaThenCa, // 22
    SeriesLCAcrossCaThenLa, // 23
    TankCaAcrossLa,         // 24
    TankThenR,              // 67: the reactance taken for the conductance on purpose
    // tanks on taps
    TapTank, TapTankCa,
    TransformedArm, // 44
    // transformers
    StepDown, StepUp, StepDownTank, StepUpTank, StepDownTankCa, StepUpTankCa, StepDownCoil,
    StepUpCoil,
    // crystals
    Crystal, CrystalAcrossC, CrystalThenC, CrystalAcrossCThenCa,
    // composites on the walker's running values
    DividerIn,     // 57: shunt Ca, series C, shunt L
    DividerOut,    // 58: shunt L, series C, shunt Ca
    Coupled,       // 69, 71: C on the L side
    CoupledThenLC, // 70: and the series LC after it
    CoupledLaCa,   // 72: tuned on the La side
    CoupledLa,     // 73: untuned
};
// clang-format on

// The drawings that are not a plain series-parallel network (those are `network`).
// clang-format off
enum class Picture : unsigned char {
    None, Wire, TapTank, TapTankCa, StepDown, StepUp, StepDownTank, StepUpTank, StepDownTankCa,
    StepUpTankCa, StepDownCoil, StepUpCoil, DividerIn, DividerOut, CoupledTuned, CoupledSeriesTuned,
    CoupledPrimaryTuned, CoupledSecondaryTuned, CoupledUntuned
};
// clang-format on

// The netlist form of a type as plain parts; None with a reason in `nospice`.
// clang-format off
enum class SpiceForm : unsigned char {
    None, Resistor, Inductor, Capacitor, SeriesLC, Tank, Wire, Crystal, Open, SeriesLCAcrossCa,
    TankThenCa, TapTank, TapTankCa, TankLaAcrossCa, SeriesLCAcrossLaCa, SeriesLCAcrossLa,
    CrystalAcrossC, CrystalThenC, CrystalAcrossCThenCa, TwoBranches, TwoBranchesR, TankLaCa,
    SeriesLCAcrossLaThenCa, TankCaAcrossLa, SeriesLCAcrossCaThenLa, SeriesRLC, TankThenR, DividerIn,
    DividerOut
};
// clang-format on

// The resonances the listing's tuning data names for a type; Neighbours: a single part
// that tunes with the dipoles beside it.
enum class Tuning : unsigned char { Neighbours, LC, LCandLCa, LCandLaCa, LCandLaC, Divider };

struct DipoleType {
    const char* name = ""; // the palette's tool tip
    Place place = Place::None;
    Fields fields = 0; // the value panel's rows (none: no panel at all)
    Fields coils = 0;  // the inductors the coil tables wind: L, La
    Eval eval = Eval::None;
    bool squaresK = false; // forms K*K before its evaluation
    Picture picture = Picture::None;
    const char* network = nullptr; // the picture's network: R L C La Ca X in S(..) and P(..)
    SpiceForm spice = SpiceForm::None;
    const char* nospice = nullptr; // why a type has no plain-part form
    // The parts listing, one letter a block of lines in order: R, C, c (Ca), L, l (La),
    // X (the crystal), K (the coupling); nullptr: the type gets no block at all.
    const char* report = "";
    Tuning tuning = Tuning::Neighbours;
};

// The record of type t; a number outside the catalogue reads as the empty record of 0.
const DipoleType& dipoletype(int t);

inline constexpr int LASTDIPOLETYPE = 73;

} // namespace zelk
