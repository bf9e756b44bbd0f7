// Part values as they can be bought: the tolerance prompt shared with the statistical
// analysis, rounding every inductor (and, switched on by their own tolerances, every
// resistor and capacitor) to the nearest step of a percentage, and the `standard` window
// that moves values onto a geometric series of a tolerance class.
#pragma once

#include <string>

#include "core/window.h"

namespace zelk {

// Fills the data panel with the four tolerances (percent) and reads them into store.Rtol,
// Ltol, Qtol, Ctol. On cancel the values stay and store.cancelled is set.
void gettolerance();

// Rounds value to the nearest step of percent of its leading digit (a value below 1 is
// first brought up to 1..10, a value of 1 or more is rounded to an absolute step of
// percent/100). A percent of 0, and a value of 0 or below, leave the value as it is.
void Tpercent(double& value, double percent);

// Splits value into a mantissa 1..10 and a power of ten.
void normalizenumber(double value, double& mantissa, int& exponent);

// UTILITIES "Set Part Tolerance".
void tolerance_Click();
// UTILITIES "Set Standard Tolerance": shows the `standard` window.
void standardT_Click();

// The `standard` window: three frames of six exclusive options (R, L, C at .5% to 20%),
// OK applies the series of every group whose option is chosen, Cancel hides.
class Standard : public Window {
  public:
    Standard();
    void reset() override;

    // Group step ratios (0 until an option of the group is chosen) and rounding scales.
    double Rratio = 0, Lratio = 0, Cratio = 0;
    double Lscale = 0, RCscale = 0;
    // The lower neighbour of the series search: a work value of the window that lives
    // across values and presses of OK.
    double lower = 0;

    void Option_Click(int n); // n = 1..18
    void Command1_Click();    // OK
    void Command2_Click();    // Cancel

    // Moves one value onto the series of ratio, rounded by scale (values above 0 only).
    void standardize(double& value, double ratio, double scale);

  private:
    void build();
};

inline Standard standard;

} // namespace zelk
