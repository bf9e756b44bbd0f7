// The plot frame: every response is shown in its own plot form with the same frame, a
// black grid on a white surface, axis labels, a read-out in the caption, a red bar that
// follows the mouse, sweep expansion with the two mouse buttons, and up to three buttons
// in the bottom strip. The forms draw only through their surface (twips).
#pragma once

#include <array>
#include <string>

#include "analysis/response.h"
#include "analysis/sweep.h"
#include "analysis/timedomain.h"
#include "core/designstore.h"
#include "core/window.h"

namespace zelk {

enum class PlotKind { Gain, Impedance, ReturnLoss, Phase, Delay, Time };

// Shared by all plot forms.
struct PlotShared {
    // The remembered plot limits offered by the next prompts (0: not set).
    double plotfreq1 = 0, plotfreq2 = 0, plotdb1 = 0, plotdb2 = 0;
    // The cascade offset of the next new plot form, twips.
    double plotstagger = 0;
    // True while a redraw keeps the limits instead of re-running the automatic ranging.
    bool fixedscale = false;
    // The main frame's client area, twips (the desktop binding may set it).
    double frameclientwidth = 15360, frameclientheight = 11520;
    // The form name of the last frequency plot drawn to the end; the Touchstone export
    // sweeps its span while it is open.
    std::string lastfrequencyplot;
};
inline PlotShared plotshared;

// Buttons of a plot form, as a bit set.
inline constexpr int BUTTON1 = 1, BUTTON2 = 2, BUTTON3 = 4;

class PlotForm : public Window {
  public:
    PlotForm(std::string formname, std::string plotname, PlotKind kind, Quantity quantity,
             TimeKind timekind, int buttons, std::string printitem, std::string clipitem);

    const std::string plotname; // the caption when no read-out stands
    const PlotKind kind;
    const Quantity quantity;
    const TimeKind timekind;
    const int buttons;
    const std::string printitem, clipitem;

    // Limits. Frequency plots: freq1, freq2 in hertz and db1 (lower), db2 (upper) in the
    // plot's unit (ohms, degrees, seconds for the delay). Time plots: Time, N1 (top), N2.
    double freq1 = 0, freq2 = 0, db1 = 0, db2 = 0;
    double Time = 0, FM = 0, N1 = 0, N2 = 0, DC = 0, tone = 0;
    // Frame geometry, twips: left edge, top, width and height of the grid.
    double horzcent = 0, frametop = 0, framewidth = 0, vertsize = 0;

    // Automatic ranging of the last pass.
    double runmax = -240;               // gain plots: running maximum
    double zlow = 1000, zhigh = 0;      // impedance plots: tracked magnitudes
    double measlow = 0, meashigh = 0;   // rounded measured limits (0: none measured)
    double anglelow = -10, anglehigh = 10; // phase and return loss extremes
    bool exactmatch = false;            // a return-loss point with Rt = R1
    double delaymax = 0;                // group delay: the automatic upper limit
    double autoN1 = 0, autoN2 = 0;      // time plots: the automatic limits
    bool tracked = false;               // time plots: an extreme has been tracked
    bool returnloss = false;            // power gain plots: the overlay is on

    bool loading = false; // a load is under way: the resize event leaves the drawing alone
    bool shown = false;   // the plot has been drawn and its menu items are on

    // Cursor: a left press remembers its frequency for the right press.
    bool leftpressed = false;
    double leftfreq = 0;

    // The last pass: x (hertz or seconds) and value per slot and point. Left to the
    // zeros of static storage (the plot forms are the program's globals) rather than
    // cleared by the constructor: a megabyte over the fifteen forms that the start would
    // otherwise write page by page.
    int passslots = 0;
    std::array<std::array<double, SWEEPPOINTS>, MAXSLOT + 1> xs, values;

    bool timeplot() const { return kind == PlotKind::Time; }

    // Load on first use: size, stagger, buttons. Shows the form, or clears it when shown.
    void open();
    // Clears and draws everything: frame, then the pass of each open slot. False when a
    // sweep was aborted (the form is then unloaded).
    bool redraw();
    // Adds the curve of slot s to the plot as it stands, without erasing (the passes of
    // the statistical analysis). False when the sweep was aborted.
    bool addpass(int s);
    // Lays the buttons out in the bottom strip and sets the frame geometry.
    void layout();

    void resized() override;
    void deactivate() override;
    void reset() override;

    // Events.
    void frame_MouseMove(double x, double y);
    void frame_MouseDown(int button, double x, double y);
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();

    // The frequency defaults of the kind (the first default span of the code's table),
    // and the restore button's span (wider for coupled resonators on impedance plots).
    void setplotdefaults();

  private:
    // The sweep frequencies of the span, rad/s and hertz, made when the span or the point
    // count has changed since the last pass: every slot's pass, the overlay and a redraw
    // at the same span take them as they stand.
    struct SweepGrid {
        bool made = false;
        double f1 = 0, f2 = 0;
        int npoints = 0;
        std::uint64_t stamp = 0; // new each time the frequencies are made
        std::array<double, SWEEPPOINTS> w, iw, hz; // rad/s, their reciprocals, hertz
    };
    SweepGrid grid;
    const SweepGrid& sweepgrid();
    // What each slot's values of the plot's own quantity came from: a redraw of an
    // unchanged ladder at the same span keeps them instead of sweeping again (a new
    // scale, a resize, the overlay switched).
    std::array<SweepKey, MAXSLOT + 1> kept;
    // The curve points' places across the frame, made again when the frame or the point
    // count changes.
    struct CurvePlaces {
        bool made = false;
        double horzcent = 0, framewidth = 0;
        int npoints = 0;
        std::array<double, SWEEPPOINTS> x; // written when made
    };
    CurvePlaces places;
    const double* curveplaces();

    bool frequencypass(int s, Quantity q, long colour);
    bool timepass(int s);
    void drawaxes();
    void finishranging();
    double valueat(double wA, Quantity q);
    double yof(double value) const; // from the frame top
    // The curve of the pass v: from (x0, y0) through the points first .. SWEEPPOINTS-1.
    void drawcurve(const double* v, int first, double x0, double y0);
};

// The frame routines, one per axis kind.
void dbaxis(PlotForm& p);
void frequencyaxis(PlotForm& p);
void impedanceaxis(PlotForm& p);
void delayaxis(PlotForm& p);
void phaseaxis(PlotForm& p);
void timeaxis(PlotForm& p);
void amplitudeaxis(PlotForm& p);

// The dB division and major division for a range (the table of the dB axis).
void dbdivision(double range, double& division, double& major);

// The default plot span of slot 0's code in hertz (the table of default plot
// frequencies); widecr gives the restore button's wider span of the impedance plots.
void defaultspan(double& f1, double& f2, bool widecr = false);

// All plot forms, for the commands, the dump and File New.
PlotForm* findplot(std::string_view formname);

} // namespace zelk
