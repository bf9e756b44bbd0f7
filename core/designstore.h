// The design store: the process-wide tables of the open filters (slots 0 to 7, dipoles
// 0 to 32 per slot) and the shared work values through which the routines talk to one
// another. There is no document object: every command reads and writes these tables.
#pragma once

#include <array>
#include <string>

#include "core/hostmath.h"

namespace zelk {

// A loosely typed value: never set, an integer, a double, or (when a design file put a
// quoted text into a number field) a text. Arithmetic sees it as a double; an unset
// Number or a text counts as 0.
class Number {
  public:
    enum class Kind : unsigned char { Empty, Integer, Double, Text };
    Number() = default;
    Number(double v) : kind_(Kind::Double), value_(v) {}
    Number(int v) : kind_(Kind::Integer), value_(v) {}
    Number(long v) : kind_(Kind::Integer), value_(static_cast<double>(v)) {}
    static Number integer(double v) {
        Number n;
        n.kind_ = Kind::Integer;
        n.value_ = v;
        return n;
    }
    static Number text(std::string t) {
        Number n;
        n.kind_ = Kind::Text;
        n.text_ = std::move(t);
        return n;
    }
    operator double() const { return value_; }
    double value() const { return value_; }
    Kind kind() const { return kind_; }
    bool empty() const { return kind_ == Kind::Empty; }
    bool istext() const { return kind_ == Kind::Text; }
    const std::string& textvalue() const { return text_; }
    void clear() { *this = Number(); }
    Number& operator+=(double d) { return *this = value_ + d; }
    Number& operator-=(double d) { return *this = value_ - d; }
    Number& operator*=(double d) { return *this = value_ * d; }
    Number& operator/=(double d) { return *this = value_ / d; }

  private:
    Kind kind_ = Kind::Empty;
    double value_ = 0; // 0 for Empty and Text
    std::string text_;
};

// One two-terminal section of a ladder. Fields in design-file order.
struct Dipole {
    short type = 0;
    double R = 0, C = 0, L = 0, Qu = 0, K = 0;
    std::string Lcore;
    double Lform = 0, Lawg = 0, Lturns = 0, Llength = 0;
    double Ca = 0, La = 0, Qa = 0, Kspare = 0;
    std::string Lacore;
    double Laform = 0, Laawg = 0, Laturns = 0, Lalength = 0;
    double Ls = 0, Cs = 0, Cp = 0, Rs = 0, Qx = 0;
};

inline constexpr int MAXSLOT = 7;
inline constexpr int MAXDIPOLE = 32;

// One open filter: what the user asked for and up to 32 dipoles (index 0 is never used).
// Fields in design-file order; `wA` (file field 16) is the shared global below.
struct DesignSlot {
    std::string title, designtitle, code;
    Number order, Astop, Apass, Zin, Zout, r0, w0, w1, w2, w3, w4, bw;
    Number Ls, Cs, Cp, Qx, Rs, Fs, Fp, Fbw;
    Number dipolecount;
    std::array<Dipole, MAXDIPOLE + 1> dipoles;

    // Checked access: a dipole outside 0..32 raises "Subscript out of range".
    Dipole& dip(int d) {
        if (d < 0 || d > MAXDIPOLE) raisefault(9);
        return dipoles[static_cast<size_t>(d)];
    }
    const Dipole& dip(int d) const {
        if (d < 0 || d > MAXDIPOLE) raisefault(9);
        return dipoles[static_cast<size_t>(d)];
    }
    // Dipole count as an integer for loops (a count read from a file may be any number:
    // it saturates rather than overflow the integer).
    int count() const { return clampint(dipolecount.value(), -2147483647 - 1, 2147483647); }
};

// The store and the shared work values of the design core.
struct DesignStore {
    std::array<DesignSlot, MAXSLOT + 1> slots;
    short curslot = -1;
    short lastslot = -1;

    // Prototype work arrays: sixteen arrays of 17 values, shared by the synthesis
    // routines and cleared together by clearall. g is the normalised element list.
    std::array<double, 17> g{}, a{}, b{}, c{}, d{}, e{}, f{}, h{}, p{}, q{}, r{}, s{}, t{}, u{},
        v{}, x{};

    // Shared work values.
    Number wA;                 // analysis frequency, rad/s (also file field 16)
    double Zr = 0, Zi = 0, Yr = 0, Yi = 0;
    bool cancelled = false;
    bool oddorder = false;
    std::string help1, help2, help3, help4;
    bool entering = false;
    bool abortanalysis = false;
    int npoints = 512;
    Number zscale = 1.0;

    // Carry a prototype to the realisations: the end elements and the coupling values.
    double g1term = 0, gnterm = 0, kcoupling = 0, kcrystal = 0;

    // Tolerances of the statistics dialogs, reset by clearall.
    double Rtol = 1, Ltol = 1, Ctol = 1;
    // The inductor Q tolerance: clearall leaves it as it was.
    double Qtol = 0;
    // How many times clearall has run: a long run sees a File New under it.
    long clears = 0;
};

inline DesignStore store;

// Checked slot access: a slot outside 0..7 raises "Subscript out of range".
inline DesignSlot& slot(int s) {
    if (s < 0 || s > MAXSLOT) raisefault(9);
    return store.slots[static_cast<size_t>(s)];
}
inline Dipole& dipole(int s, int d) { return slot(s).dip(d); }
// The slot the design commands work on.
inline DesignSlot& current() { return slot(store.curslot); }

// Writes the start values of a design into slot s (program start, change of kind).
void startvalues(int s);
// Clears dipole d of slot curslot: every part value and both winding records; the type
// and the five crystal fields are kept.
void cleardipole(int d);
// File New and program start: the partial clearing of slots 0 and 1 (see designstore.cpp).
void clearall();
// After a run-time fault: every requested design value and part value of every slot that is
// no longer finite gets back the value it had in `before` (the store as the command
// found it), or 0 when that was not finite either. A fault never leaves an infinite value
// behind to be drawn, saved or offered as a default.
void restorefinite(const DesignStore& before);
// True when every requested design value and part value of every slot is finite.
bool storefinite();
// Sets the four help lines and shows them.
void sethelp(std::string_view h1, std::string_view h2, std::string_view h3, std::string_view h4);

} // namespace zelk
