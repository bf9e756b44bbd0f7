// The data panel for the values of one dipole: rows by type, preset with the present
// values, stored back in row order when the user accepts.
#include <cmath>
#include <vector>

#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "entry/dipoleprompt.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "core/framestate.h"

namespace zelk {

namespace {

struct RowText {
    const char* label;
    const char* tooltip;
};

RowText rowtext(Field f) {
    switch (f) {
    case Field::R: return {"R =", "Resistance"};
    case Field::L: return {"L =", "Inductance"};
    case Field::Qu: return {"Qu=", "Inductor Q"};
    case Field::C: return {"C =", "Capacitance"};
    case Field::Ca: return {"Ca=", "Capacitance"};
    case Field::K: return {"K =", "Transformer tap ratio"};
    case Field::La: return {"La=", "Inductance"};
    case Field::Qa: return {"Qa=", "Inductor Q"};
    case Field::Ka: return {"Ka=", ""};
    case Field::Crystal: break;
    }
    return {"", ""};
}

double& fieldof(Dipole& dp, Field f) {
    switch (f) {
    case Field::R: return dp.R;
    case Field::L: return dp.L;
    case Field::Qu: return dp.Qu;
    case Field::C: return dp.C;
    case Field::Ca: return dp.Ca;
    case Field::La: return dp.La;
    case Field::Qa: return dp.Qa;
    case Field::K:
    case Field::Ka: return dp.K;
    case Field::Crystal: break;
    }
    return dp.K;
}

std::string presettext(double v, Field f) {
    if ((f == Field::Qu || f == Field::Qa) && v <= 0) return "Lossless";
    if (v <= 0) return "";
    if (f == Field::Ka) return plainnum(v);
    return engformatvalue(v);
}

} // namespace

void dipoleprompt(int d, int type, const std::string& note) {
    // The rows in the panel's order, from the type's record.
    const Fields fields = dipoletype(type).fields;
    if (fields == 0) return; // no prompt at all
    std::vector<Field> rows;
    for (int f = 0; f < static_cast<int>(Field::Crystal); ++f)
        if (has(fields, static_cast<Field>(f))) rows.push_back(static_cast<Field>(f));

    Dipole& dp = dipole(0, d);
    if (store.entering) {
        dp.R = 50;
        dp.L = dp.La = 1e-4;
        dp.C = dp.Ca = 1e-10;
        dp.K = 0.4;
    }

    if (rows.size() > 0) {
        panelclear();
        panelplotbuttons(false);
        getdata.ctl("set").enabled = false;
        getdata.ctl("restore").enabled = false;
        paneldipole(type);
        if (!note.empty()) getdata.setnote(note);
        int i = 0;
        for (Field f : rows) {
            RowText r = rowtext(f);
            panelrow(i++, r.label, presettext(fieldof(dp, f), f), r.tooltip);
        }
        if (!panelshow()) return;

        cleardipole(d);
        i = 0;
        for (Field f : rows) {
            double v = panelvalue(i++);
            fieldof(dp, f) = std::isfinite(v) ? v : 0;
        }
        // K rule: a tap ratio typed as 1 or more is kept as its reciprocal.
        if (has(fields, Field::K) && dp.K >= 1) dp.K = 1 / dp.K;
    }
    if (has(fields, Field::Crystal)) crystalpanel(d);
    frame.designsaved = false;
}

} // namespace zelk
