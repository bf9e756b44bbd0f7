// Inductor design: the window that turns each inductor of the design in slot 0 into a
// winding (a toroid core or an air-wound form, a wire gauge, turns and a length) and
// stores it in the dipole's winding record for the design report.
#pragma once

#include <string>
#include <vector>

#include "core/window.h"

namespace zelk {

// One toroid core of the forms table: its name (the first letter picks the turns
// formula), inner diameter in inches, inductance factor as written, frequency range.
struct CoreForm {
    std::string name;
    double formsize = 0;
    std::string AL;
    std::string range;
};

// One wire of the gauge table: the gauge as listed and enamelled turns per inch.
struct WireGauge {
    std::string gauge;
    double turnsperinch = 0;
};

// An air-wound winding: turns in half-turn steps, layers, winding length and mean
// radius, in inches.
struct AirWinding {
    double turns = 0;
    int layers = 0;
    double coillength = 0;
    double coilradius = 0;
};

// The layer loop for a target in microhenries on a form of `diameter` inches. A target of
// 0 or below gives no turns; a winding of less than one whole turn stops at one layer,
// since further layers cannot lengthen it.
AirWinding airwinding(double target, double diameter, double turnsperinch);
// Toroid turns for L henries on a core of inductance factor AL, by the core name's
// first letter (F and P: AL per 1000 turns in millihenries; L: per 100 turns in
// microhenries, derated to 90%; any other: per 100 turns in microhenries). A value of 0
// or below, or an AL of 0 or below, gives 0 turns.
double toroidturns(const std::string& core, double L, double AL);

// The rows of "Inductor for dipole" for slot 0: "L" + numtext(n) and "La" + numtext(n).
std::vector<std::string> inductorlist();

// The tables, read from \tables\Forms.txt and \tables\awg.txt. A file that is missing or
// cannot be read to its end leaves the rows read so far and returns a message naming it.
std::string readforms(std::vector<CoreForm>& out);
std::string readgauges(std::vector<WireGauge>& out);

class InductorsWindow : public Window {
  public:
    InductorsWindow();
    void reset() override;

    // Work values.
    bool airwound = false;
    std::string core;
    double formsize = 0;
    std::string gauge;
    double turnsperinch = 0;
    double turns = 0;
    int layers = 0;
    double coillength = 0, coilradius = 0;
    int inductornumber = 0;
    // The row chosen in each list, and in List1 per form type, so that a toggle comes
    // back to the same row.
    int toroidrow = -1, airrow = -1;
    std::vector<CoreForm> forms;
    std::vector<WireGauge> gauges;

    void open();
    void List1_Click();
    void List2_Click();
    void List3_Click();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();

  private:
    void build();
    void fillforms();
    void filldiameters();
    void compute();
};
inline InductorsWindow inductorswindow;

// UTILITIES > Design Inductors.
void dinductor_Click();

} // namespace zelk
