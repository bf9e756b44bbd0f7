// The crystal set windows. `crystalparms` fills the design crystal of slot 0 (Ls, Cs, Cp,
// Qx, Rs, Fs, Fp, Fbw) from one of four built-in crystals, one of six user sets kept in
// files, or measured data of five kinds from which the rest is derived. `savecrystal`
// replaces a user set with a crystal entered through `crystalparms`.
#pragma once

#include <array>
#include <string>

#include "core/window.h"

namespace zelk {

inline constexpr int USERSETS = 6;

// The eight values of a crystal set, in the order of a set file.
struct CrystalSet {
    double Cp = 0, Ls = 0, Cs = 0, Rs = 0, Fp = 0, Fs = 0, Qx = 0, Fbw = 0;
};

class CrystalParms : public Window {
  public:
    CrystalParms();
    void reset() override;

    // Command1..Command4: built-in crystals; Command5..Command10: user sets 1 to 6;
    // crystalchoice(0..4): the five kinds of measured data.
    void Command_Click(int n);
    void crystalchoice_Click(int choice);

    // Set by the dipole prompt while a crystal dipole is edited: the measured-data prompts
    // then start from that dipole's crystal.
    bool editingdipole = false;
    int editdipole = 0;

  private:
    void build();
};
inline CrystalParms crystalparms;

class SaveCrystal : public Window {
  public:
    SaveCrystal();
    void reset() override;
    // Command1..Command6: replace user set n.
    void Command_Click(int n);

  private:
    void build();
};
inline SaveCrystal savecrystal;

// Per-run state of the set files: which sets have already said that their file could not
// be read (the message is given once).
struct CrystalFiles {
    std::array<bool, USERSETS + 1> warned{};
};
inline CrystalFiles crystalfiles;

// Shows `crystalparms` modally; the user set captions are read from the settings store
// when the window loads.
void crystalparms_show();
// UTILITIES "enter user crystal parameters".
void savecrystaldata_Click();
// Resets both windows and the per-run file state to program start.
void resetcrystalsets();

// The arithmetic, on the design crystal of slot 0.
// A built-in crystal from Cp, Qx, Rs and Fs.
void builtincrystal(double Cp, double Qx, double Rs, double Fs);
// The typical series resistance of a crystal at Fs, for an Rs left at 0.
double typicalRs(double Fs);
// Measured data of kind `choice` (0 to 4) from the four row values, substitutions
// included. Returns "" when the values make a crystal (the design crystal is then
// written), else the reason they cannot (nothing is written).
std::string measuredcrystal(int choice, std::array<double, 4> rows);

// User set n (1 to 6). The file in the user's data folder wins over the shipped one; a
// file that cannot be read as a set gives the shipped set (or, failing that, the start
// crystal) and says so once per run. False when a fallback was used.
bool readcrystalset(int n, CrystalSet& out);
// Writes user set n into the user's data folder through a temporary file and a rename,
// so that an interrupted write never leaves a half set behind. False when it failed.
bool writecrystalset(int n, const CrystalSet& set);
// The design crystal of slot 0 as a set, and back.
CrystalSet designcrystal();
void setdesigncrystal(const CrystalSet& set);
// The caption of a user set made from Fs: "5.724 MHz".
std::string crystalcaption(double Fs);

} // namespace zelk
