// The undo store. A snapshot copies a fixed set of fields: the design's r0, w0 to w3, bw
// and dipolecount, and per dipole its type, part values, Q, crystal values and the
// winding record of the L inductor. w4, Zin, Zout, the texts, the slot's crystal and the
// La winding record are not copied, so they keep the newer values across an undo.
#include "schematic/undo.h"

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/notation.h"
#include "core/window.h"
#include "schematic/report.h"
#include "schematic/schematicview.h"

namespace zelk {

namespace {

void copyslot(const DesignSlot& from, DesignSlot& to) {
    to.r0 = from.r0;
    to.w0 = from.w0;
    to.w1 = from.w1;
    to.w2 = from.w2;
    to.w3 = from.w3;
    to.w3 = from.w3; // the copy line stands twice; w4 is not copied
    to.bw = from.bw;
    // Zin and Zout are copied onto themselves: they keep their values.
    to.dipolecount = from.dipolecount;
}

void copydipole(const Dipole& f, Dipole& t) {
    t.type = f.type;
    t.R = f.R;
    t.C = f.C;
    t.Ca = f.Ca;
    t.L = f.L;
    t.Qu = f.Qu;
    t.K = f.K;
    t.Qa = f.Qa;
    t.Kspare = f.Kspare;
    t.La = f.La;
    t.Ls = f.Ls;
    t.Cs = f.Cs;
    t.Cp = f.Cp;
    t.Rs = f.Rs;
    t.Qx = f.Qx;
    t.Lcore = f.Lcore;
    t.Lform = f.Lform;
    t.Lawg = f.Lawg;
    t.Lturns = f.Lturns;
    t.Llength = f.Llength;
}

void setcaption() {
    if (MenuItem* m = findmenu("undo"))
        m->caption = undostate.undodepth == 0 ? "Undo" : "Undo " + numtext(undostate.undodepth);
}

} // namespace

void undopush() {
    if (undostate.undodepth < UNDOMAX) ++undostate.undodepth;
    for (int j = undostate.undodepth; j >= 1; --j) {
        DesignSlot& to = slot(j);
        copyslot(slot(j - 1), to);
        // The bound is the count just copied into the target.
        for (int n = 1; n <= to.count(); ++n) {
            copydipole(slot(j - 1).dip(n), to.dip(n));
            // Every pass clears the live design's winding record of dipole n: an edit
            // destroys the inductor designs, and a snapshot taken below depth 1 has
            // already lost them.
            Dipole& live = dipole(0, n);
            live.Lcore.clear();
            live.Lform = live.Lawg = live.Lturns = live.Llength = 0;
        }
    }
    undostate.snapshottaken = true;
    setenabled("undo", true);
    setcaption();
}

void undopop() {
    if (undostate.undodepth == 0) return;
    for (int j = 0; j <= undostate.undodepth - 1; ++j) {
        DesignSlot& to = slot(j);
        copyslot(slot(j + 1), to);
        for (int n = 1; n <= to.count(); ++n) copydipole(slot(j + 1).dip(n), to.dip(n));
    }
    --undostate.undodepth;
    if (undostate.undodepth == 0) setenabled("undo", false);
    setcaption();
}

void undo_Click() {
    report.valuewarning = false;
    schematicclear();
    undopop();
    schematicbuild();
    if (store.entering) {
        // Hand entry goes on with the palette of the next place: the series palette
        // after an even count, the shunt palette after an odd one.
        bool even = slot(0).count() % 2 == 0;
        Window* h = findwindow("dipolesH");
        Window* v = findwindow("dipolesV");
        if (h && v) {
            Window& show = even ? *h : *v;
            Window& hide = even ? *v : *h;
            hide.hide();
            show.show();
            if (Control* done = h->find("Hdipole", 8)) done->visible = true;
        }
    }
}

void undoreset() {
    undostate = UndoState{};
    setenabled("undo", false);
    setcaption();
}

void undobeginedit() { undostate.snapshottaken = false; }

void undorestoreafterfault() {
    if (!undostate.snapshottaken) return;
    undostate.snapshottaken = false;
    undopop();
    schematicbuild();
}

} // namespace zelk
