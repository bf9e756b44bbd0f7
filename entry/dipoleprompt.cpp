// The data panel for the values of one dipole: rows by type, preset with the present
// values, stored back in row order when the user accepts.
#include <cmath>
#include <vector>

#include "core/designstore.h"
#include "core/dipoles.h"
#include "entry/dipoleprompt.h"
#include "core/notation.h"
#include "entry/panel.h"
#include "core/framestate.h"

namespace zelk {

namespace {

enum class Field { R, L, Qu, C, Ca, K, La, Qa, Ka };

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
    }
    return dp.K;
}

struct PromptPlan {
    std::vector<Field> rows;
    bool krule = false;
    bool crystal = false;
    bool prompt = true; // false: the type has no prompt at all
};

PromptPlan planfor(int type) {
    using F = Field;
    switch (type) {
    case 1:
    case 31: return {{F::R}};
    case 2:
    case 32: return {{F::L, F::Qu}};
    case 3:
    case 33: return {{F::C}};
    case 4:
    case 5:
    case 34:
    case 35: return {{F::L, F::Qu, F::C}};
    case 9:
    case 10:
    case 39:
    case 40:
    case 57:
    case 58: return {{F::L, F::Qu, F::C, F::Ca}};
    case 11:
    case 41:
    case 55:
    case 56: return {{F::L, F::Qu, F::C, F::K}, true};
    case 14:
    case 36:
    case 65:
    case 66: return {{F::L, F::Qu, F::C, F::Ca, F::K}, true};
    case 61:
    case 62: return {{F::L, F::Qu, F::K}, true};
    case 59: return {{F::K}, true};
    case 12:
    case 13:
    case 17:
    case 18:
    case 19:
    case 22:
    case 23:
    case 24:
    case 42:
    case 43:
    case 47:
    case 48:
    case 49:
    case 52:
    case 53:
    case 54: return {{F::L, F::Qu, F::C, F::La, F::Qa, F::Ca}};
    case 29:
    case 68: return {{F::L, F::Qu, F::C, F::La, F::Qa, F::Ca, F::R}};
    case 20:
    case 21:
    case 50:
    case 51: return {{F::L, F::Qu, F::C, F::La, F::Qa}};
    case 28:
    case 67: return {{F::L, F::Qu, F::C, F::R}};
    case 44: return {{F::L, F::Qu, F::C, F::K}, true, true};
    case 69:
    case 70:
    case 72: return {{F::L, F::Qu, F::C, F::La, F::Qa, F::Ca, F::Ka}};
    case 71:
    case 73: return {{F::L, F::Qu, F::C, F::La, F::Qa, F::Ka}};
    case 7:
    case 37: return {{}, false, true};
    case 15:
    case 16:
    case 45:
    case 46: return {{F::C}, false, true};
    case 27: return {{F::C, F::Ca}, false, true};
    default: return {{}, false, false, false}; // 6, 8, 38, 60 and the unused numbers
    }
}

std::string presettext(double v, Field f) {
    if ((f == Field::Qu || f == Field::Qa) && v <= 0) return "Lossless";
    if (v <= 0) return "";
    if (f == Field::Ka) return plainnum(v);
    return engformatvalue(v);
}

} // namespace

void dipoleprompt(int d, int type, const std::string& note) {
    const PromptPlan plan = planfor(type);
    if (!plan.prompt) return;

    Dipole& dp = dipole(0, d);
    if (store.entering) {
        dp.R = 50;
        dp.L = dp.La = 1e-4;
        dp.C = dp.Ca = 1e-10;
        dp.K = 0.4;
    }

    if (plan.rows.size() > 0) {
        panelclear();
        panelplotbuttons(false);
        getdata.ctl("set").enabled = false;
        getdata.ctl("restore").enabled = false;
        paneldipole(type);
        if (!note.empty()) getdata.setnote(note);
        int i = 0;
        for (Field f : plan.rows) {
            RowText r = rowtext(f);
            panelrow(i++, r.label, presettext(fieldof(dp, f), f), r.tooltip);
        }
        if (!panelshow()) return;

        cleardipole(d);
        i = 0;
        for (Field f : plan.rows) {
            double v = panelvalue(i++);
            fieldof(dp, f) = std::isfinite(v) ? v : 0;
        }
        // K rule: a tap ratio typed as 1 or more is kept as its reciprocal.
        if (plan.krule && dp.K >= 1) dp.K = 1 / dp.K;
    }
    if (plan.crystal) crystalpanel(d);
    frame.designsaved = false;
}

} // namespace zelk
