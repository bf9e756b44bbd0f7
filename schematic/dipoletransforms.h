// Dipole transforms: a dipole stepped round the circle of its equivalent networks (same
// immittance, other parts), the two impedance matches of the end tanks of a
// coupled-resonator ladder, the direct value panel of one dipole, and "Transform Z or F",
// which moves the whole design to a new impedance and frequency.
#pragma once

namespace zelk {

// EDIT "Transform Dipole": the dipole in hand goes one step round its circle, or an end
// tank of a coupled-resonator ladder gets its impedance match.
void transform_Click();
// For n = first to dipolecount of slot 0: R, L, La times factor; C, Ca divided by it.
void transformdipole(int first, double factor);
// "No transformation available for dipole n." under "TRANSFORMATIONS".
void notransform(int n);
// The direct value panel of dipole n: a row for every one of R, C, L, Qu, Ca, La, Qa
// that is above 0, written back on OK.
void schematictransform(int n);

// The prompts of the matches. getnewZL asks for a lower input impedance or a higher
// inductance of dipole d (both read into newZ, newL); getnewz for a lower output
// impedance; getnewL for a new inductance. Each leaves store.cancelled set on cancel.
void getnewZL(int d, double Zold, double Lold, double& newZ, double& newL);
void getnewz(double Zold, double& newZ);
void getnewL(double Lold, double& newL);

// UTILITIES "Transform Z or F" and its panel. gettransform leaves the two factors.
void tzfm_Click();
void gettransform(double& Zfactor, double& Ffactor);

// The next type of a dipole's circle (the shunt forms 30 above the series forms), or 0
// when the type has no step.
int nexttransformtype(int type);

} // namespace zelk
