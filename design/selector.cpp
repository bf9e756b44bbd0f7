#include "design/selector.h"

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/surface.h"
#include "entry/pictures.h"

namespace zelk {

namespace {

struct Button {
    const char* caption;
    const char* tooltip;
};
constexpr Button buttons[9] = {
    {"LOW-PASS", "Select lowpass filter"},
    {"HIGH-PASS", "Select Highpass filter"},
    {"BAND-PASS", "Select bandpass filter"},
    {"BAND-REJECT", "Select bandreject filter"},
    {"Accept design", ""},
    {"Use Zin", "Use Zin as design impedance"},
    {"Use Zout", "Use Zout as design impedance"},
    {"Use Both", "Try to use both if possible"},
    {"CANCEL", "Abort design"},
};

// Picture sets of the four kinds: LC families, then the elliptic family.
constexpr int setfirst[2][4] = {{1, 3, 5, 7}, {9, 11, 13, 18}};
constexpr int setlast[2][4] = {{2, 4, 6, 8}, {10, 12, 16, 21}};

bool ellipticcode() { return store.curslot >= 0 && slot(store.curslot).code.rfind("E", 0) == 0; }
} // namespace

const char* pictureconfiguration(int picture) {
    switch (picture) {
    case 1: case 3: case 5: case 7: case 9: case 11: case 13: case 18: return "Pi";
    case 2: case 4: case 6: case 8: case 10: case 12: case 14: case 19: return "T";
    case 15: case 20: return "SPPi";
    case 16: case 17: case 21: return "SPT";
    default: return "";
    }
}

SelFunction::SelFunction() : Window("selfunction", "Select Function") { build(); }

void SelFunction::reset() {
    controls.clear();
    // The surface belonged to the desktop of the last run.
    surface = nullptr;
    loaded = visible = false;
    focusname.clear();
    focusindex = -1;
    picturenumber = 1;
    firstpicture = 1;
    lastpicture = 2;
    build();
}

void SelFunction::build() {
    caption = "Select Function";
    draws = true;
    clientwidth = 480;
    clientheight = 300;
    for (int i = 0; i < 9; ++i) {
        Control& b = add(ControlKind::Button, "selection", i, buttons[i].caption);
        b.tooltip = buttons[i].tooltip;
        b.onclick = [this](int k) { selection_Click(k); };
        b.left = 330;
        b.top = 10 + 31 * i;
        b.width = 140;
        b.height = 27;
    }
    Control& p = add(ControlKind::Picture, "picture");
    p.onclick = [this](int) { picture_Click(); };
    p.left = 10;
    p.top = 10;
    p.width = 310;
    p.height = 280;
}

void SelFunction::activate() {
    flow.configuration = "Pi";
    flow.termchoice = "Zin";
    flow.functionkind = 0;
    flow.selectorcancelled = false;
    for (int i = 5; i <= 7; ++i) selection(i).visible = false;
    picturenumber = ellipticcode() ? 9 : 1;
    firstpicture = picturenumber;
    lastpicture = 2;
    // The termination window offers "Use Both" again for the next even-order design.
    if (Window* t = findwindow("terminate"))
        for (auto& c : t->controls)
            if (c->caption == "Use Both" || c->caption == "Use both") c->enabled = true;
    drawpicture();
}

void SelFunction::selection_Click(int i) {
    if (i >= 0 && i <= 3) {
        flow.functionkind = static_cast<short>(i);
        const int e = ellipticcode() ? 1 : 0;
        firstpicture = setfirst[e][i];
        lastpicture = setlast[e][i];
        picturenumber = firstpicture;
        if (i == 2)
            sethelp("NOTE: for elliptic bandpass filters the minimum bandwidth is approximately 'order of the filter' as percent,",
                    "that is, a 7th order filter can produce bandwidths of 7% or wider,",
                    "9th order filter can produce bandwidths of 9% or wider and so on. else negative component values may result.",
                    "");
        drawpicture();
        return;
    }
    switch (i) {
    case 4:
        flow.configuration = pictureconfiguration(picturenumber);
        if (flow.functionkind != flow.previouskind) {
            // A new kind starts from the start values, not from the last design.
            flow.previouskind = flow.functionkind;
            if (store.curslot >= 0) startvalues(store.curslot);
            flow.r0v3 = 0;
            flow.crdefaults = true;
            flow.cldefaults = true;
        }
        hide();
        break;
    case 5: flow.termchoice = "Zin"; break;
    case 6: flow.termchoice = "Zout"; break;
    case 7: flow.termchoice = "BOTH"; break;
    case 8:
        flow.selectorcancelled = true;
        clearall();
        hide();
        break;
    default: break;
    }
}

void SelFunction::picture_Click() {
    ++picturenumber;
    if (picturenumber > lastpicture) picturenumber = firstpicture;
    drawpicture();
}

void SelFunction::drawpicture() {
    if (!surface) return;
    const Control& p = ctl("picture");
    surface->cls();
    drawconfiguration(*surface, picturenumber, p.left, p.top, p.width, p.height);
    refresh();
}

} // namespace zelk
