// The auto transformer. The new values are compared with the current ones as the panel
// shows them (engineering text read back), so that accepting a shown value counts as no
// change. A tap ratio that comes out negative or infinite stops the edit with the host's
// run-time error, and the edit command restores the snapshot it took.
#include "schematic/autotransformer.h"

#include <string>

#include "core/designstore.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "schematic/dipoletransforms.h"
#include "schematic/schematicview.h"
#include "schematic/undo.h"

namespace zelk {

namespace {

const char* const inductancetext =
    "The new inductance must be greater than the current inductance.";
const char* const capcurrenttext = "The new capacitance must be less than the current capacitance.";
const char* const capdefaulttext = "The new capacitance must be less than the default capacitance.";
const char* const greatertext = "The new impedance must be greater than the default impedance.";
const char* const lesstext = "The new impedance must be less than the default impedance.";

void refuse(const char* text, const char* title) { MsgBox(text, vbOKOnly, title); }

// A value as the panel's text shows it.
double shown(double v) { return parsevalue(engformatvalue(v)); }

void finish() {
    schem.dipoleselected = false;
    frame.designsaved = false;
    schematicbuild();
}

// A series tank: the tap raises L (key 11), or raises L and moves part of C to the tap
// (key 14).
void seriestank(int d) {
    Getdata& p = getdata;
    Dipole& dp = slot(0).dip(d);
    p.dipolechoice = 11;
    paneldipole(11);
    double L = dp.L, C = dp.C;
    panelrow(0, "New L >", L > 0 ? engformat(L) : "");
    panelrow(1, "New C <", C > 0 ? engformat(C) : "");
    p.setnote(
        "This configuration allows a larger inductor and smaller capacitor. Enter a new value "
        "of L > the default.");
    if (!panelshow()) return;
    const double newL = panelvalue(0), newC = panelvalue(1);
    const double curL = shown(dp.L), curC = shown(dp.C);
    if (p.dipolechoice == 14) {
        if (newC > curC) return refuse(capdefaulttext, "WARNING");
        if (newL > curL) {
            undopush();
            const double K = hsqr(hdiv(dp.L, newL));
            const double Ca = hfinite((dp.C - newC) * K * K);
            dp.K = K;
            dp.L = newL;
            dp.Ca = Ca;
            dp.C = newC;
            dp.type = 14;
            finish();
        } else if (newL < curL) {
            refuse(inductancetext, "ERROR");
        }
        return;
    }
    if (newL > curL) {
        undopush();
        const double K = hsqr(hdiv(dp.L, newL));
        dp.K = K;
        dp.type = 11;
        dp.L = newL;
        dp.C = hfinite(newC * K * K);
        finish();
    } else if (newL < curL) {
        refuse(inductancetext, "ERROR");
    } else if (newC < curC) {
        undopush();
        const double K = hsqr(hdiv(newC, dp.C));
        // L goes through its plain text, as the tap's inductance is written.
        const double L = parsevalue(plainnum(hdiv(hdiv(dp.L, K), K)));
        dp.K = K;
        dp.L = L;
        dp.C = newC;
        dp.type = 11;
        finish();
    } else if (newC > curC) {
        refuse(capcurrenttext, "ERROR");
    }
}

// A shunt inductor: the tap steps the impedance of the dipoles after it up (61) or
// down (62).
void shuntinductor(int d) {
    Getdata& p = getdata;
    DesignSlot& s0 = slot(0);
    p.dipolechoice = 61;
    paneldipole(61);
    double r0 = s0.r0;
    panelrow(0, "New Z<>", engformat(r0));
    if (!panelshow()) return;
    const double newZ = panelvalue(0);
    undopush();
    Dipole& dp = s0.dip(d);
    double K = hsqr(hdiv(s0.r0, newZ));
    if (K > 1) {
        K = hdiv(1, K);
        dp.K = K;
        dp.type = 62;
        s0.r0 = newZ;
        transformdipole(d + 1, K * K);
    } else {
        dp.K = K;
        dp.type = 61;
        s0.r0 = newZ;
        // The step-up side scales from the tapped inductor itself.
        transformdipole(d, hdiv(hdiv(1, K), K));
    }
    finish();
}

// A shunt tank: the picture press chooses among the tapped tanks (41, 36) and the
// impedance steps (55, 56, 65, 66).
void shunttank(int d) {
    Getdata& p = getdata;
    DesignSlot& s0 = slot(0);
    undopush();
    // The design impedance is taken from the load before the prompt.
    s0.r0 = s0.dip(s0.count()).R;
    Dipole& dp = s0.dip(d);
    p.dipolechoice = 35;
    paneldipole(35);
    double r0 = s0.r0, L = dp.L, C = dp.C;
    panelrow(0, "New Z<>", engformat(r0));
    panelrow(1, "New L >", engformat(L));
    panelrow(2, "New C <", engformat(C));
    // No row is open until a configuration is chosen on the picture.
    for (int i = 0; i <= 2; ++i) p.getvalue(i).enabled = false;
    p.setnote("Click picture above to select a new dipole configuration.");
    if (!panelshow()) {
        undopop();
        return;
    }
    const double newZ = panelvalue(0), newL = panelvalue(1), newC = panelvalue(2);
    const double curL = shown(dp.L), curC = shown(dp.C);
    auto fail = [](const char* text, const char* title) {
        refuse(text, title);
        undopop();
    };
    switch (p.dipolechoice) {
    case 36: {
        if (newC > curC) return fail(capdefaulttext, "WARNING");
        if (newL < curL) return fail(inductancetext, "ERROR");
        if (newL > curL) {
            dp.type = 36;
            const double K = hsqr(hdiv(dp.L, newL));
            dp.K = K;
            dp.L = newL;
            dp.Ca = hfinite((dp.C - newC) * K * K);
            dp.C = newC;
            finish();
        }
        return;
    }
    case 41: {
        if (newL < curL) return fail(inductancetext, "ERROR");
        dp.type = 41;
        const double K = hsqr(hdiv(dp.L, newL));
        dp.K = K;
        dp.L = newL;
        dp.C = hfinite(newC * K * K);
        finish();
        return;
    }
    case 55: {
        double K = hsqr(hdiv(newZ, s0.r0));
        if (K <= 1) return fail(greatertext, "WARNING");
        K = hdiv(1, K);
        dp.K = K;
        s0.r0 = newZ;
        dp.type = 55;
        dp.C = hfinite(K * dp.C * K);
        dp.L = hdiv(hdiv(dp.L, K), K);
        transformdipole(d + 1, hdiv(hdiv(1, K), K));
        finish();
        return;
    }
    case 56: {
        const double K = hsqr(hdiv(newZ, s0.r0));
        if (K >= 1) return fail(lesstext, "WARNING");
        dp.K = K;
        s0.r0 = newZ;
        dp.type = 56;
        transformdipole(d + 1, K * K);
        finish();
        return;
    }
    case 65: {
        double K = hsqr(hdiv(newZ, s0.r0));
        if (newC > curC) return fail(capdefaulttext, "WARNING");
        if (K <= 1) return fail(greatertext, "WARNING");
        K = hdiv(1, K);
        dp.K = K;
        s0.r0 = newZ;
        dp.type = 65;
        const double Ca = hfinite(dp.C - newC);
        dp.C = newC;
        dp.Ca = hfinite(Ca * K * K);
        dp.L = hdiv(hdiv(dp.L, K), K);
        transformdipole(d + 1, hdiv(hdiv(1, K), K));
        finish();
        return;
    }
    case 66: {
        const double K = hsqr(hdiv(newZ, s0.r0));
        if (newC > curC) return fail(capdefaulttext, "WARNING");
        if (K >= 1) return fail(lesstext, "WARNING");
        dp.K = K;
        dp.Ca = hfinite(dp.C - newC * K * K);
        dp.C = newC;
        s0.r0 = newZ;
        dp.type = 66;
        transformdipole(d + 1, K * K);
        finish();
        return;
    }
    default:
        // The configuration was not changed: nothing to do, and the snapshot stays.
        return;
    }
}

} // namespace

void auto_Click() {
    sethelp("Autotransforms tap the inductor to step-up or step-down the it's impedance",
            "or the impedance of all following dipoles.  This can be used to adjust",
            "component values or input / output impedance.",
            "You can UNDO this change from the UTILITIES menu.");
    const int d = static_cast<int>(schem.selecteddipole);
    const int t = slot(0).dip(d).type;
    panelclear();
    switch (t) {
    case 5:
        seriestank(d);
        break;
    case 32:
        shuntinductor(d);
        break;
    case 35:
        shunttank(d);
        break;
    default:
        notransform(d);
        break;
    }
}

} // namespace zelk
