// Structural edits. The dipole in hand is d = schem.selecteddipole of slot 0. Every edit
// that takes an undo snapshot is undone by a run-time fault (the command table restores
// the snapshot); a store index beyond dipole 32 is such a fault, so an edit that would
// grow a full ladder ends in the host's "Subscript out of range" box with the design as
// it was.
#include "schematic/structuraledits.h"

#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/dipoles.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "core/window.h"
#include "entry/dipoleprompt.h"
#include "entry/panel.h"
#include "schematic/dipoletransforms.h"
#include "schematic/schematicview.h"
#include "schematic/undo.h"

namespace zelk {

namespace {

int selected() { return static_cast<int>(schem.selecteddipole); }

// Two capacitors in series, two inductors in parallel.
double ser(double x, double y) { return hdiv(x * y, x + y); }

// The end of every structural edit: nothing selected, the design changed, redrawn. The
// edits that explain themselves set their help lines after this, over the schematic's.
void finishedit() {
    schem.dipoleselected = false;
    frame.designsaved = false;
    schematicbuild();
}

// Grouping across a shunt blank (38): l and r are series dipoles in series. The writes
// read the old values of both. Returns false for a pair that has no merged form.
bool groupseries(Dipole& l, const Dipole& r) {
    const Dipole o = l;
    auto settype = [&l](int t) { l.type = static_cast<short>(t); };
    switch (o.type * 100 + r.type) {
    case 202: l.L = r.L + o.L; break;
    case 203: settype(4), l.C = r.C; break;
    case 204: settype(4), l.C = r.C, l.L = r.L + o.L; break;
    case 205: settype(21), l.La = o.L, l.C = r.C, l.L = r.L; break;
    case 209: settype(23), l.La = o.L, l.C = r.C, l.L = r.L, l.Ca = r.Ca; break;
    case 302: settype(4), l.L = r.L; break;
    case 303: l.C = ser(o.C, r.C); break;
    case 304: settype(4), l.C = ser(o.C, r.C), l.L = r.L; break;
    case 320: settype(22), l.La = r.La, l.C = r.C, l.L = r.L, l.Ca = o.C; break;
    case 402: l.L = r.L + o.L; break;
    case 403: l.C = ser(o.C, r.C); break;
    // The left inductance is dropped, not added: the merged dipole keeps the right one.
    case 404: l.C = ser(o.C, r.C), l.L = r.L; break;
    case 405: settype(19), l.La = o.L, l.Ca = o.C, l.C = r.C, l.L = r.L; break;
    case 502: settype(21), l.La = r.L; break;
    case 504: settype(19), l.La = r.L, l.Ca = r.C; break;
    case 505: settype(18), l.La = r.L, l.Ca = r.C; break;
    case 602:
    case 603:
    case 604:
    case 605: settype(r.type), l.L = r.L, l.C = r.C; break;
    case 902: settype(23), l.La = r.L; break;
    case 2003: settype(22), l.Ca = r.C; break;
    default: return false;
    }
    return true;
}

// Grouping across a series blank (6): l and r are shunt dipoles in parallel.
bool groupshunt(Dipole& l, const Dipole& r) {
    const Dipole o = l;
    auto settype = [&l](int t) { l.type = static_cast<short>(t); };
    switch (o.type * 100 + r.type) {
    case 3232: l.L = ser(o.L, r.L); break;
    case 3233: settype(35), l.C = r.C; break;
    case 3234: settype(50), l.La = o.L, l.C = r.C, l.L = r.L; break;
    case 3332: settype(35), l.L = r.L; break;
    case 3333: l.C = r.C + o.C; break;
    case 3334: settype(39), l.Ca = o.C, l.C = r.C, l.L = r.L; break;
    case 3350: settype(43), l.Ca = o.C, l.La = r.La, l.C = r.C, l.L = r.L; break;
    case 3351: settype(42), l.Ca = o.C, l.La = r.La, l.C = r.C, l.L = r.L; break;
    case 3432: settype(50), l.La = r.L; break;
    case 3433: settype(39), l.Ca = r.C; break;
    case 3434: settype(47), l.La = r.L, l.Ca = r.C; break;
    case 5033: settype(43), l.Ca = r.C; break;
    case 5133: settype(42), l.Ca = r.C; break;
    default: return false;
    }
    return true;
}

// Ungroup "Left to Right": the types of d and d + 2 and the writes, strictly in the
// order given; on 39, 42, 43 and 50 a value is copied after it was overwritten, so the
// original C or L is gone and Undo is the way back.
bool ungroupleft(Dipole& a, Dipole& b) {
    auto types = [&a, &b](int ta, int tb) {
        a.type = static_cast<short>(ta);
        b.type = static_cast<short>(tb);
    };
    switch (a.type) {
    case 4: types(2, 3), b.C = a.C; break;
    case 18: types(5, 5), b.C = a.Ca, b.L = a.La, a.La = 0; break;
    case 19: types(5, 4), b.C = a.Ca, b.L = a.La, a.La = 0; break;
    case 21: types(5, 2), b.L = a.La, a.La = 0; break;
    case 22: types(20, 3), b.C = a.Ca; break;
    case 23: types(9, 2), b.L = a.La, a.La = 0; break;
    case 35:
        types(33, 32);
        b.L = a.L, b.Qu = a.Qu, b.K = a.K;
        b.Lcore = a.Lcore, b.Lform = a.Lform, b.Lawg = a.Lawg, b.Lturns = a.Lturns,
        b.Llength = a.Llength;
        break;
    case 39: types(33, 34), a.C = a.Ca, b.C = a.C, b.L = a.L, a.L = 0; break;
    case 42: types(33, 51), a.C = a.Ca, b.C = a.C, b.L = a.L, b.La = a.La, a.L = 0, a.La = 0; break;
    case 43: types(33, 50), a.C = a.Ca, b.C = a.C, b.L = a.L, b.La = a.La, a.L = 0, a.La = 0; break;
    case 47: types(34, 34), b.C = a.Ca, b.L = a.La, a.La = 0; break;
    case 50: types(32, 34), a.L = a.La, b.C = a.C, b.L = a.L, a.La = 0; break;
    default: return false;
    }
    return true;
}

// Ungroup "Right to Left", in the order given (on 21 the inductance copied to d + 2 is
// the one just overwritten by La).
bool ungroupright(Dipole& a, Dipole& b) {
    auto types = [&a, &b](int ta, int tb) {
        a.type = static_cast<short>(ta);
        b.type = static_cast<short>(tb);
    };
    switch (a.type) {
    case 4: types(3, 2), b.L = a.L, a.L = 0; break;
    case 18: types(5, 5), b.C = a.C, b.L = a.L, a.C = a.Ca, a.L = a.La, a.La = 0; break;
    case 19: types(4, 5), b.C = a.C, b.L = a.L, a.C = a.Ca, a.L = a.La, a.La = 0; break;
    case 21: types(2, 5), a.L = a.La, b.C = a.C, b.L = a.L, a.La = 0; break;
    case 22: types(3, 20), b.La = a.La, b.C = a.C, b.L = a.L, a.C = a.Ca; break;
    case 23: types(2, 9), b.C = a.C, b.L = a.L, b.Ca = a.Ca, a.L = a.La, a.La = 0; break;
    case 35: types(32, 33), b.C = a.C; break;
    case 39: types(34, 33), b.C = a.Ca; break;
    case 42: types(51, 33), b.C = a.Ca; break;
    case 43: types(50, 33), b.C = a.Ca; break;
    case 47: types(34, 34), b.C = a.C, b.L = a.L, a.C = a.Ca, a.L = a.La, a.La = 0; break;
    case 50: types(32, 34), b.L = a.La, a.La = 0; break;
    default: return false;
    }
    return true;
}

void ungroup(bool lefttoright) {
    const int d = selected();
    DesignSlot& s0 = slot(0);
    const int t = s0.dip(d).type;
    if (!ungroupable(t)) {
        notransform(d);
        return;
    }
    undopush();
    shiftright2(d);
    Dipole& a = s0.dip(d);
    Dipole& b = s0.dip(d + 2);
    if (lefttoright)
        ungroupleft(a, b);
    else
        ungroupright(a, b);
    // The place between takes the blank of its arm and keeps its stale values.
    s0.dip(d + 1).type = t < 30 ? 38 : 6;
    finishedit();
}

} // namespace

bool ungroupable(int t) { return among(t, {4, 18, 19, 21, 22, 23, 35, 39, 42, 43, 47, 50}); }

void shiftright2(int first) {
    DesignSlot& s0 = slot(0);
    for (int n = s0.count(); n >= first; --n) {
        Dipole moved = s0.dip(n);
        s0.dip(n + 2) = std::move(moved);
    }
    schematicclear();
    s0.dipolecount = s0.count() + 2;
}

void shiftleft2(int first) {
    DesignSlot& s0 = slot(0);
    const int count = s0.count();
    for (int n = first; n <= count; ++n) {
        Dipole moved = s0.dip(n + 2);
        s0.dip(n) = std::move(moved);
    }
    s0.dip(count).type = 0;
    s0.dipolecount = count - 2;
}

void insertdipoles_Click() {
    const int d = selected();
    undopush();
    DesignSlot& s0 = slot(0);
    if (d % 2 == 0) {
        shiftright2(d);
        cleardipole(d);
        cleardipole(d + 1);
        s0.dip(d).type = 38;
        s0.dip(d + 1).type = 6;
    } else {
        // On a series dipole the blanks take d and d + 1: the dipole in hand is cleared.
        shiftright2(d + 1);
        cleardipole(d);
        cleardipole(d + 1);
        s0.dip(d).type = 6;
        s0.dip(d + 1).type = 38;
    }
    finishedit();
    sethelp("This has inserted an OPEN CIRCUIT shunt dipole",
            "and a SHORT CIRCUIT series dipole in the filter.",
            "You can then use the REPLACE DIPOLE function to",
            "replace either or both with a different type of dipole.");
}

void replace_Click() {
    const int d = selected();
    sethelp("Replaces dipole" + numtext(d) + " with a different configuration.",
            "Ment to correct errors made during ENTER DESIGN.",
            "It will work on any schematic but results are unpredictable.",
            "Select replacement dipole for the list at left.");
    Window* h = findwindow("dipolesH");
    Window* v = findwindow("dipolesV");
    if (h && v) {
        Window& show = d % 2 == 0 ? *v : *h;
        Window& hide = d % 2 == 0 ? *h : *v;
        hide.hide();
        show.show();
    }
    structural.replacing = true;
}

void replacedipole(int type) {
    const int d = selected();
    // The palette of the other arm is hidden; a type of the wrong arm is never written.
    if ((type < 30) != (d % 2 == 1)) return;
    undopush();
    slot(store.curslot).dip(d).type = static_cast<short>(type);
    dipoleprompt(d, type);
    structural.replacing = false;
    finishedit();
}

void equamp_Click() {
    const int d = selected();
    sethelp("Insert amplitude equalization network in dipole " + numtext(d),
            "To compensate for rounding of the filter corner due to inadequate Qu.", "", "");
    const bool lowpass = flow.previouskind == 0 || flow.previouskind == 1;
    int type;
    if (d % 2 == 0)
        type = lowpass ? 68 : 67;
    else
        type = lowpass ? 29 : 28;
    slot(0).dip(d).type = static_cast<short>(type);
    dipoleprompt(d, type);
    finishedit();
}

void split_Click() {
    const int d = selected();
    DesignSlot& s0 = slot(0);
    const int t = s0.dip(d).type;
    if (!among(t, {2, 3, 32, 33})) return; // the entry is disabled for other types
    undopush();
    shiftright2(d);
    Dipole& a = s0.dip(d);
    Dipole& b = s0.dip(d + 2);
    s0.dip(d + 1).type = t < 30 ? 38 : 6;
    switch (t) {
    case 2: a.L = b.L = a.L / 2, b.Qu = a.Qu; break;
    case 3: a.C = b.C = a.C + a.C; break;
    case 32: a.L = b.L = a.L + a.L; break;
    case 33: a.C = b.C = a.C / 2; break;
    }
    finishedit();
    sethelp("Dipole" + numtext(d) + " has been split into two equal parts.",
            "This allows insertion of a step-up or step-down Norton Transformer.", "",
            "You can UNDO this change from the UTILITIES menu.");
}

void splitC_Click() {
    const int d = selected();
    DesignSlot& s0 = slot(0);
    undopush();
    const double C0 = s0.dip(d).C;
    dipoleprompt(d, 3, "Enter a series capacitance greater than the default shown.");
    if (store.cancelled) return;
    const double Cn = s0.dip(d).C;
    if (Cn <= C0) {
        MsgBox("Capacitance must be GREATER THAN  the default, try again", vbOKOnly,
               "Transform Error");
        s0.dip(d).C = C0;
        return;
    }
    const double Cs = hdiv((Cn * Cn) - ((2 * C0) * Cn), C0);
    const double e = hfinite(hdiv((Cs + Cn) * Cn, (Cs + Cn) + Cn) - C0);
    shiftright2(d);
    s0.dip(d + 2).type = 3;
    s0.dip(d + 2).C = Cn;
    s0.dip(d).C = Cn;
    s0.dip(d + 1).type = 33;
    s0.dip(d + 1).C = Cs;
    s0.dip(d - 1).C -= e;
    s0.dip(d + 3).C -= e;
    finishedit();
}

void swap_Click() {
    const int d = selected();
    DesignSlot& s0 = slot(0);
    Dipole& l = s0.dip(d - 1);
    Dipole& r = s0.dip(d + 1);
    const short rtype = r.type;
    const double rL = r.L, rQu = r.Qu, rC = r.C;
    // Every other field of d + 1 is lost; d - 1 keeps its own.
    cleardipole(d + 1);
    r.type = l.type, r.L = l.L, r.Qu = l.Qu, r.C = l.C;
    l.type = rtype, l.L = rL, l.Qu = rQu, l.C = rC;
    finishedit();
    sethelp("Dipole" + numtext(d - 1) + " and " + numtext(d + 1),
            "have been swapped. This can provide the optimium configuration for inserting",
            "a Norton transformer between them.", "You can UNDO this by swapping them back.");
}

void group_Click() {
    const int d = selected();
    DesignSlot& s0 = slot(0);
    const int blank = s0.dip(d).type;
    Dipole& l = s0.dip(d - 1);
    const Dipole& r = s0.dip(d + 1);
    if (blank == 38 && r.type == 6) {
        // Two blanks side by side go without a snapshot; a fault while moving puts the
        // ladder back as it was.
        const DesignSlot before = s0;
        try {
            schematicclear();
            schem.skipclear = true;
            shiftleft2(d);
        } catch (const RuntimeFault&) {
            s0.dipoles = before.dipoles;
            s0.dipolecount = before.dipolecount;
            schem.skipclear = false;
            throw;
        }
    } else {
        // A pair with no merged form changes nothing.
        auto merge = [blank](Dipole& into, const Dipole& right) {
            return blank == 38 ? groupseries(into, right)
                               : blank == 6 ? groupshunt(into, right) : false;
        };
        Dipole probe = l;
        if (!merge(probe, r)) {
            notransform(d);
            schem.dipoleselected = false;
            return;
        }
        undopush();
        merge(l, r);
        schematicclear();
        schem.skipclear = true;
        shiftleft2(d);
    }
    finishedit();
    sethelp("You have grouped two dipoles into a single dipole.",
            "This function changes nothing except to make the", "schematic more compact.",
            "You can UNDO this change from the UTILITIES menu.");
}

void ungroup_Click() {
    sethelp("This will seperate the dipole into seperate inductors and capacitors",
            "to facilitate use of the Norton transform.", "",
            "You can UNDO this change from the UTILITIES menu.");
}

void ungroupL_Click() { ungroup(true); }
void ungroupR_Click() { ungroup(false); }

} // namespace zelk
