// The DESIGN > Coupled Resonator commands: Butterworth and Chebyshev in closed form, the
// table families from their files, the three prompts and the realisation with its
// capacitive end match.
#pragma once

#include <string>

namespace zelk {

// The first prompt: centre, bandwidth, order (and ripple for a Chebyshev code),
// with its checks. Sets store.cancelled on a cancel.
void getdesignCRa();
// The resonator inductance and Q; the typed inductance may not be below the one shown.
void getLC();
// The terminations; a termination below r0 is matched by a capacitor.
void getZCR();

// The realisation from g1term, gnterm and kcoupling: prompts, layout, schematic.
void CRrealize();
// The tapped-inductor variant (no menu item leads to it).
void CRrealizea();

void BCR_Click();
void CCR_Click();
void BesselCR_Click();
void GaussianCR_Click();
void LegendreCR_Click();
void LP05CR_Click();
void LP5CR_Click();
void Gaussian6CR_Click();
void gaussian12CR_Click();

} // namespace zelk
