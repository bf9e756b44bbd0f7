// The fifteen response plots of the ANALYZE menu: the plot forms, their commands with
// prompts, defaults, checks and help lines, and the print and clipboard entries of each.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "analysis/plotframe.h"

namespace zelk {

// The plot forms, by the names the desktop and the scripts know them.
extern PlotForm plotPEG, plotPIG, plotVEG, plotVIG, plotCEG, plotCIG, plotZin, plotZout, PLOTRL,
    PLOTPHASE, PLOTGD, PLOTIR, PLOTSR, PLOTPR, PLOTTP;

// The commands.
void PEG_Click();
void PIG_Click();
void VEG_Click();
void VIG_Click();
void CEG_Click();
void CIG_Click();
void inputz_Click();
void outputz_Click();
void RL_Click();
void PHA_Click();
void GD_Click();
void IR_Click();
void USR_Click();
void pr_Click();
void TPR_Click();

// Prints a plot window with its buttons hidden, and shows them again.
void printplot(PlotForm& w);
// Puts a plot window on the clipboard.
void clipplot(PlotForm& w);
// Resets the plot forms and their shared values to program start.
void resetplots();
// dump curve PLOT: the values of the last pass, one line per point.
bool dumpcurve(const std::vector<std::string>& args, std::ostream& out);

} // namespace zelk
