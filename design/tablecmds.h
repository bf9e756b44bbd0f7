// The table family commands (Bessel, Gaussian, transitional Gaussian, Legendre, linear
// phase).
#pragma once

#include <string>

namespace zelk {

// One table family command: help line 1, the file and the base title.
void tablecommand(const std::string& helpline, const std::string& file, const std::string& basetitle);

void Bessel_Click();
void gaussian1_Click();
void Gaussian6_Click();
void gaussian12_Click();
void legendre_Click();
void linearphase05_Click();
void linearphase5_Click();

} // namespace zelk
