#include "core/designstore.h"

#include <vector>

#include "core/framestate.h"

namespace zelk {

namespace {
void cleardipoleof(int s, int d) {
    Dipole& p = dipole(s, d);
    p.R = p.C = p.Ca = p.L = p.Qu = p.K = 0;
    p.Lform = p.Lawg = p.Lturns = p.Llength = 0;
    p.La = p.Qa = p.Kspare = 0;
    p.Laform = p.Laawg = p.Laturns = p.Lalength = 0;
    p.Lcore.clear();
    p.Lacore.clear();
}
} // namespace

void startvalues(int s) {
    DesignSlot& d = slot(s);
    d.w0 = 62831853.08;
    d.w1 = 62831853.08;
    d.w2 = 94247779.62;
    d.w3 = 100530964.928;
    d.w4 = 131946891.468;
    d.order = 5;
    d.Apass = 1;
    d.Astop = 60;
    d.Ls = 0.04069;
    d.Cs = 1.9e-14;
    d.Cp = 4.5e-12;
    d.Qx = 100000;
    d.Rs = 14.63;
    d.Fs = 5723998;
    d.Fp = 5748166;
    d.Fbw = 57.24;
}

void cleardipole(int d) { cleardipoleof(store.curslot, d); }

void clearall() {
    ++store.clears;
    if (schematichooks.clear) {
        schematichooks.clear(1);
        schematichooks.clear(0);
    }
    DesignSlot& s0 = slot(0);
    s0.title.clear();
    s0.designtitle.clear();
    s0.code.clear();
    store.wA = 0;
    s0.dipolecount = 0;
    slot(1).dipolecount = 0;
    for (int d = 0; d <= 16; ++d) cleardipoleof(0, d);
    for (auto* arr : {&store.g, &store.a, &store.b, &store.c, &store.d, &store.e, &store.f,
                      &store.h, &store.p, &store.q, &store.r, &store.s, &store.t, &store.u,
                      &store.v, &store.x})
        arr->fill(0);
    store.lastslot = -1;
    store.curslot = -1;
    store.Rtol = store.Ltol = store.Ctol = 1;
    updatemenus();
    starthelplines();
}

void sethelp(std::string h1, std::string h2, std::string h3, std::string h4) {
    store.help1 = std::move(h1);
    store.help2 = std::move(h2);
    store.help3 = std::move(h3);
    store.help4 = std::move(h4);
    showhelplines();
}

} // namespace zelk
