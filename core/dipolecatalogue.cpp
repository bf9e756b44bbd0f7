#include "core/dipolecatalogue.h"

#include <array>

namespace zelk {

namespace {

constexpr Place SER = Place::Series, SH = Place::Shunt;
constexpr Fields R = bit(Field::R), L = bit(Field::L), Qu = bit(Field::Qu), C = bit(Field::C),
                 Ca = bit(Field::Ca), La = bit(Field::La), Qa = bit(Field::Qa), K = bit(Field::K),
                 Ka = bit(Field::Ka), X = bit(Field::Crystal);
constexpr Fields LQ = L | Qu, LQC = L | Qu | C, PAIR = L | Qu | C | La | Qa | Ca;

constexpr const char* NOPARTS =
    "is a transformer, composite or unused type with no plain-part form";
constexpr const char* DROPSREAL = "drops the first tank's real part and has no plain-part form";
constexpr const char* IGNORESLA = "ignores La and Qa and has no plain-part form";

using E = Eval;
using S = SpiceForm;
using T = Tuning;
using Pic = Picture;

// The records in the order of DipoleType's members: name, place, panel rows, coils wound,
// evaluation form, K*K first; picture, network, netlist form, why none, listing, tuning.

// The series palette, 0 to 29 (0, 25 and 26 are no types: the icon and CANCEL; 8 is DONE
// there and the open circuit in a loaded ladder).
// clang-format off
constexpr std::array<DipoleType, 30> SERIES{{
    /*  0 */ {.nospice = NOPARTS},
    /*  1 */ {"Resistor", SER, R, 0, E::Resistor, false,
              Pic::None, "R", S::Resistor, nullptr, "R"},
    /*  2 */ {"Inductor", SER, LQ, L, E::Inductor, false,
              Pic::None, "L", S::Inductor, nullptr, "L"},
    /*  3 */ {"Capacitor", SER, C, 0, E::Capacitor, false,
              Pic::None, "C", S::Capacitor, nullptr, "C"},
    /*  4 */ {"Series LC", SER, LQC, L, E::SeriesLC, false,
              Pic::None, "S(L,C)", S::SeriesLC, nullptr, "CL", T::LC},
    /*  5 */ {"Parallel LC tank", SER, LQC, L, E::Tank, false,
              Pic::None, "P(L,C)", S::Tank, nullptr, "CL", T::LC},
    /*  6 */ {"Short circuit: a plain wire", SER, 0, 0, E::Wire, false,
              Pic::Wire, nullptr, S::Wire, nullptr, nullptr},
    /*  7 */ {"Crystal", SER, X, 0, E::Crystal, false,
              Pic::None, "X", S::Crystal, nullptr, "X"},
    /*  8 */ {"", SER, 0, 0, E::Open, false,
              Pic::None, nullptr, S::Open, nullptr, nullptr},
    /*  9 */ {"Series LC across Ca", SER, LQC | Ca, L, E::SeriesLCAcrossCa, false,
              Pic::None, "P(S(L,C),Ca)", S::SeriesLCAcrossCa, nullptr, "CcL", T::LCandLCa},
    /* 10 */ {"Parallel LC in series with Ca", SER, LQC | Ca, L, E::TankThenCa, false,
              Pic::None, "S(P(L,C),Ca)", S::TankThenCa, nullptr, "CcL", T::LCandLCa},
    /* 11 */ {"Tank on a tap", SER, LQC | K, L, E::TapTank, true,
              Pic::TapTank, nullptr, S::TapTank, nullptr, "CL"},
    /* 12 */ {"Tank in series with La, all across Ca", SER, PAIR, L | La, E::TankLaAcrossCa, false,
              Pic::None, "P(S(P(L,C),La),Ca)", S::TankLaAcrossCa, nullptr, "CLcl", T::LCandLaCa},
    /* 13 */ {"Series LC across La and Ca", SER, PAIR, L | La, E::SeriesLCAcrossLaCa, false,
              Pic::None, "P(S(L,C),La,Ca)", S::SeriesLCAcrossLaCa, nullptr, "CLcl", T::LCandLaCa},
    /* 14 */ {"Tank on a tap with Ca at the tap", SER, LQC | Ca | K, L, E::TapTankCa, true,
              Pic::TapTankCa, nullptr, S::TapTankCa, nullptr, "CcL"},
    /* 15 */ {"Crystal with C across it", SER, C | X, 0, E::CrystalAcrossC, false,
              Pic::None, "P(X,C)", S::CrystalAcrossC, nullptr, "CX"},
    /* 16 */ {"Crystal in series with C", SER, C | X, 0, E::CrystalThenC, false,
              Pic::None, "S(X,C)", S::CrystalThenC, nullptr, "CX"},
    /* 17 */ {"Two series LC branches in parallel", SER, PAIR, L | La, E::TwoBranches, false,
              Pic::None, "P(S(L,C),S(La,Ca))", S::TwoBranches, nullptr, "CLcl", T::LCandLaCa},
    /* 18 */ {"Two tanks in series", SER, PAIR, L | La, E::TwoTanks, false,
              Pic::None, "S(P(L,C),P(La,Ca))", S::None, DROPSREAL, "CLcl", T::LCandLaCa},
    /* 19 */ {"Tank, La and Ca all in series", SER, PAIR, L | La, E::TankLaCa, false,
              Pic::None, "S(P(L,C),La,Ca)", S::TankLaCa, nullptr, "CLcl", T::LCandLaCa},
    /* 20 */ {"Series LC across La", SER, LQC | La | Qa, L | La, E::SeriesLCAcrossLa, false,
              Pic::None, "P(S(L,C),La)", S::SeriesLCAcrossLa, nullptr, "CLl", T::LCandLaC},
    /* 21 */ {"Tank in series with La", SER, LQC | La | Qa, L | La, E::TankLa, false,
              Pic::None, "S(P(L,C),La)", S::None, IGNORESLA, "CLl", T::LCandLaC},
    /* 22 */ {"Series LC across La, in series with Ca",
              SER, PAIR, L | La, E::SeriesLCAcrossLaThenCa, false,
              Pic::None, "S(P(S(L,C),La),Ca)",
              S::SeriesLCAcrossLaThenCa, nullptr, "CLcl", T::LCandLaCa},
    /* 23 */ {"Series LC across Ca, in series with La",
              SER, PAIR, L | La, E::SeriesLCAcrossCaThenLa, false,
              Pic::None, "S(P(S(L,C),Ca),La)",
              S::SeriesLCAcrossCaThenLa, nullptr, "CLcl", T::LCandLaCa},
    /* 24 */ {"Tank in series with Ca, across La", SER, PAIR, L | La, E::TankCaAcrossLa, false,
              Pic::None, "P(S(P(L,C),Ca),La)", S::TankCaAcrossLa, nullptr, "CLcl", T::LCandLaCa},
    /* 25 */ {.nospice = NOPARTS},
    /* 26 */ {.nospice = NOPARTS},
    /* 27 */ {"Crystal with C across it, in series with Ca",
              SER, C | Ca | X, 0, E::CrystalAcrossCThenCa, false,
              Pic::None, "S(P(X,C),Ca)", S::CrystalAcrossCThenCa, nullptr, "CcX"},
    /* 28 */ {"Series RLC", SER, LQC | R, 0, E::SeriesRLC, false,
              Pic::None, "S(R,L,C)", S::SeriesRLC, nullptr, "CLR", T::LC},
    /* 29 */ {"Two series LC branches in parallel, with R across",
              SER, PAIR | R, 0, E::TwoBranchesR, false,
              Pic::None, "P(S(L,C),S(La,Ca),R)", S::TwoBranchesR, nullptr, "CLclR", T::LCandLaCa},
}};

// clang-format on

// The same network in a shunt place.
constexpr DipoleType twin(int t) {
    DipoleType d = SERIES[t];
    d.place = SH;
    return d;
}
constexpr DipoleType withreport(DipoleType d, const char* report) {
    d.report = report;
    return d;
}

// The shunt palette, 30 to 73 (30 is CANCEL there; 44, 63 and 64 are not offered).
// clang-format off
constexpr std::array<DipoleType, 44> SHUNT{{
    /* 30 */ {.nospice = NOPARTS},
    /* 31 */ twin(1),
    /* 32 */ twin(2),
    /* 33 */ twin(3),
    /* 34 */ twin(4),
    /* 35 */ twin(5),
    /* 36 */ withreport(twin(14), nullptr), // no block in the listing
    /* 37 */ twin(7),
    /* 38 */ {"Open circuit: nothing", SH, 0, 0, E::Open, false,
              Pic::None, nullptr, S::Open, nullptr, nullptr},
    /* 39 */ twin(9),
    /* 40 */ twin(10),
    /* 41 */ twin(11),
    /* 42 */ twin(12),
    /* 43 */ twin(13),
    /* 44 */ {"", SH, LQC | K | X, L, E::TransformedArm, true,
              Pic::None, nullptr, S::None, "is a transformed arm with no plain-part form"},
    /* 45 */ twin(15),
    /* 46 */ twin(16),
    /* 47 */ twin(17),
    /* 48 */ twin(18),
    /* 49 */ twin(19),
    /* 50 */ twin(20),
    /* 51 */ twin(21),
    /* 52 */ twin(22),
    /* 53 */ twin(23),
    /* 54 */ twin(24),
    /* 55 */ {"Step-down to a tank", SH, LQC | K, L, E::StepDownTank, true,
              Pic::StepDownTank, nullptr, S::None, NOPARTS, "CL"},
    /* 56 */ {"Step-up to a tank", SH, LQC | K, L, E::StepUpTank, true,
              Pic::StepUpTank, nullptr, S::None, NOPARTS, "CL"},
    /* 57 */ {"Input divider: shunt Ca, series C, shunt L", SH, LQC | Ca, L, E::DividerIn, true,
              Pic::DividerIn, nullptr, S::DividerIn, nullptr, "CcL", T::Divider},
    /* 58 */ {"Output divider: shunt L, series C, shunt Ca", SH, LQC | Ca, L, E::DividerOut, true,
              Pic::DividerOut, nullptr, S::DividerOut, nullptr, "CcL", T::Divider},
    /* 59 */ {"Step-down transformer", SH, K, 0, E::StepDown, true,
              Pic::StepDown, nullptr, S::None, NOPARTS},
    /* 60 */ {"Step-up transformer", SH, 0, L, E::StepUp, true,
              Pic::StepUp, nullptr, S::None, NOPARTS},
    /* 61 */ {"Step-down to an inductor", SH, LQ | K, L, E::StepDownCoil, true,
              Pic::StepDownCoil, nullptr, S::None, NOPARTS, "L"},
    /* 62 */ {"Step-up to an inductor", SH, LQ | K, L, E::StepUpCoil, true,
              Pic::StepUpCoil, nullptr, S::None, NOPARTS, "L"},
    /* 63 */ {"", Place::None, 0, 0, E::None, true,
              Pic::None, nullptr, S::None, NOPARTS},
    /* 64 */ {"", Place::None, 0, 0, E::None, true,
              Pic::None, nullptr, S::None, NOPARTS},
    /* 65 */ {"Step-down to a tank with Ca at the tap",
              SH, LQC | Ca | K, L, E::StepDownTankCa, true,
              Pic::StepDownTankCa, nullptr, S::None, NOPARTS, "CcL"},
    /* 66 */ {"Step-up to a tank with Ca", SH, LQC | Ca | K, L, E::StepUpTankCa, true,
              Pic::StepUpTankCa, nullptr, S::None, NOPARTS, "CcL"},
    /* 67 */ {"Tank in series with R", SH, LQC | R, 0, E::TankThenR, false,
              Pic::None, "S(R,P(L,C))", S::TankThenR, nullptr, "CLR", T::LC},
    /* 68 */ {"Two tanks in series, with R in series", SH, PAIR | R, 0, E::TwoTanksR, false,
              Pic::None, "S(P(L,C),P(La,Ca),R)", S::None, DROPSREAL, "CLclR", T::LCandLaCa},
    /* 69 */ {"Coupled coils", SH, PAIR | Ka, L | La, E::Coupled, false,
              Pic::CoupledTuned, nullptr, S::None, NOPARTS, "CLclK"},
    /* 70 */ {"Coupled coils", SH, PAIR | Ka, L | La, E::CoupledThenLC, false,
              Pic::CoupledSeriesTuned, nullptr, S::None, NOPARTS, "CLclK"},
    /* 71 */ {"Coupled coils", SH, LQC | La | Qa | Ka, L | La, E::Coupled, false,
              Pic::CoupledPrimaryTuned, nullptr, S::None, NOPARTS, "CLlK"},
    /* 72 */ {"Coupled coils", SH, PAIR | Ka, 0, E::CoupledLaCa, false,
              Pic::CoupledSecondaryTuned, nullptr, S::None, NOPARTS, "CLcl"},
    /* 73 */ {"Coupled coils", SH, LQC | La | Qa | Ka, 0, E::CoupledLa, false,
              Pic::CoupledUntuned, nullptr, S::None, NOPARTS, "CLl"},
}};
// clang-format on

} // namespace

const DipoleType& dipoletype(int t) {
    if (t > 0 && t < 30) return SERIES[t];
    if (t >= 30 && t <= LASTDIPOLETYPE) return SHUNT[t - 30];
    return SERIES[0];
}

} // namespace zelk
