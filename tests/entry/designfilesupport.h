// Checks shared by the design-file tests: what a file keeps of a slot.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include "core/designstore.h"

namespace zelk::test {

// The value a file keeps: the double rounded to 15 significant digits, worked out with
// the C library in the "C" locale (an independent route from the program's own). The
// largest doubles round beyond the range and come back as the largest.
inline double fifteen(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", v);
    double r = std::strtod(buf, nullptr);
    return std::isinf(r) ? std::copysign(std::numeric_limits<double>::max(), v) : r;
}

// Slot b holds what slot a held, to the 15 digits of the file.
inline void expectsame(const DesignSlot& a, const Number& wa, const DesignSlot& b, int dipoles = -1) {
    EXPECT_EQ(b.title, a.title);
    EXPECT_EQ(b.designtitle, a.designtitle);
    EXPECT_EQ(b.code, a.code);
    const Number DesignSlot::*numbers[] = {
        &DesignSlot::order, &DesignSlot::Astop, &DesignSlot::Apass, &DesignSlot::Zin, &DesignSlot::Zout,
        &DesignSlot::r0,    &DesignSlot::w0,    &DesignSlot::w1,    &DesignSlot::w2,  &DesignSlot::w3,
        &DesignSlot::w4,    &DesignSlot::bw,    &DesignSlot::Ls,    &DesignSlot::Cs,  &DesignSlot::Cp,
        &DesignSlot::Qx,    &DesignSlot::Rs,    &DesignSlot::Fs,    &DesignSlot::Fp,  &DesignSlot::Fbw,
        &DesignSlot::dipolecount};
    int i = 0;
    for (auto m : numbers) {
        SCOPED_TRACE("header number " + std::to_string(i++));
        EXPECT_EQ((b.*m).empty(), (a.*m).empty());
        EXPECT_EQ((b.*m).value(), fifteen((a.*m).value()));
    }
    EXPECT_EQ(store.wA.empty(), wa.empty());
    EXPECT_EQ(store.wA.value(), fifteen(wa.value()));
    if (dipoles < 0) dipoles = a.count();
    for (int k = 1; k <= dipoles; ++k) {
        SCOPED_TRACE("dipole " + std::to_string(k));
        const Dipole& p = a.dip(k);
        const Dipole& r = b.dip(k);
        EXPECT_EQ(r.type, p.type);
        EXPECT_EQ(r.Lcore, p.Lcore);
        EXPECT_EQ(r.Lacore, p.Lacore);
        const double Dipole::*fields[] = {&Dipole::R,      &Dipole::C,       &Dipole::L,      &Dipole::Qu,
                                          &Dipole::K,      &Dipole::Lform,   &Dipole::Lawg,   &Dipole::Lturns,
                                          &Dipole::Llength, &Dipole::Ca,     &Dipole::La,     &Dipole::Qa,
                                          &Dipole::Kspare, &Dipole::Laform,  &Dipole::Laawg,  &Dipole::Laturns,
                                          &Dipole::Lalength, &Dipole::Ls,    &Dipole::Cs,     &Dipole::Cp,
                                          &Dipole::Rs,     &Dipole::Qx};
        for (auto f : fields) EXPECT_EQ(r.*f, fifteen(p.*f));
    }
}

} // namespace zelk::test
