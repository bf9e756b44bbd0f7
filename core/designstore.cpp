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
    if (schematichooks.resetundo) schematichooks.resetundo();
    updatemenus();
    starthelplines();
}

namespace {
// Walks every requested design value and part value of the store `now` beside the same value
// of `was`, calling f(value, earlier value) for each.
template <class F> void walkvalues(DesignStore& now, const DesignStore& was, F f) {
    static constexpr Number DesignSlot::*numbers[] = {
        &DesignSlot::order, &DesignSlot::Astop, &DesignSlot::Apass, &DesignSlot::Zin, &DesignSlot::Zout,
        &DesignSlot::r0,    &DesignSlot::w0,    &DesignSlot::w1,    &DesignSlot::w2,  &DesignSlot::w3,
        &DesignSlot::w4,    &DesignSlot::bw,    &DesignSlot::Ls,    &DesignSlot::Cs,  &DesignSlot::Cp,
        &DesignSlot::Qx,    &DesignSlot::Rs,    &DesignSlot::Fs,    &DesignSlot::Fp,  &DesignSlot::Fbw,
        &DesignSlot::dipolecount};
    static constexpr double Dipole::*values[] = {
        &Dipole::R,      &Dipole::C,       &Dipole::L,      &Dipole::Qu,      &Dipole::K,      &Dipole::Lform,
        &Dipole::Lawg,   &Dipole::Lturns,  &Dipole::Llength, &Dipole::Ca,     &Dipole::La,     &Dipole::Qa,
        &Dipole::Kspare, &Dipole::Laform,  &Dipole::Laawg,  &Dipole::Laturns, &Dipole::Lalength, &Dipole::Ls,
        &Dipole::Cs,     &Dipole::Cp,      &Dipole::Rs,     &Dipole::Qx};
    for (size_t s = 0; s < now.slots.size(); ++s) {
        DesignSlot& d = now.slots[s];
        const DesignSlot& e = was.slots[s];
        for (auto m : numbers) f(d.*m, e.*m);
        for (size_t k = 0; k < d.dipoles.size(); ++k)
            for (auto m : values) f(d.dipoles[k].*m, e.dipoles[k].*m);
    }
    f(now.wA, was.wA);
    f(now.zscale, was.zscale);
}

double valueof(const Number& n) { return n.value(); }
double valueof(double v) { return v; }
} // namespace

bool storefinite() {
    bool finite = true;
    walkvalues(store, store, [&](auto& now, const auto&) { finite = finite && std::isfinite(valueof(now)); });
    return finite;
}

void restorefinite(const DesignStore& before) {
    walkvalues(store, before, [](auto& now, const auto& was) {
        using T = std::remove_cvref_t<decltype(now)>;
        if (!std::isfinite(valueof(now))) now = std::isfinite(valueof(was)) ? was : T(0.0);
    });
}

void sethelp(std::string_view h1, std::string_view h2, std::string_view h3, std::string_view h4) {
    // Assigned into the lines' storage: a plot sets the same four lines at every redraw.
    store.help1.assign(h1);
    store.help2.assign(h2);
    store.help3.assign(h3);
    store.help4.assign(h4);
    showhelplines();
}

} // namespace zelk
