// The second independent reference: ngspice run on a deck of the SPICE writer, its
// voltage at the load compared with the program's Power Effective Gain and phase.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/response.h"
#include "analysis/spiceexport.h"
#include "core/designstore.h"
#include "testsupport.h"

namespace zelk::test {

inline bool havengspice() { return std::system("ngspice --version > /dev/null 2>&1") == 0; }

struct SpiceRow {
    double f, vm, vp;
};

// Runs a deck in batch mode and reads the rows of its .print table.
inline std::vector<SpiceRow> runngspice(const std::filesystem::path& deck) {
    auto out = deck;
    out.replace_extension(".out");
    std::string cmd = "ngspice -b \"" + deck.string() + "\" > \"" + out.string() + "\" 2>&1";
    EXPECT_EQ(std::system(cmd.c_str()), 0) << cmd;
    std::ifstream in(out);
    std::vector<SpiceRow> rows;
    for (std::string line; std::getline(in, line);) {
        std::istringstream ls(line);
        long index;
        SpiceRow r;
        if (ls >> index >> r.f >> r.vm >> r.vp) rows.push_back(r);
    }
    return rows;
}

// Compares slot 0 with ngspice over the deck's sweep from F1 to F2 where the response is
// above -100 dB; returns the number of points compared.
inline int crosscheck(const std::string& name, double F1, double F2) {
    std::ostringstream deck;
    std::string why;
    EXPECT_TRUE(spicenetlist(0, deck, why, F1, F2)) << name << ": " << why;
    // The table prints twelve digits rather than six: at crystal-filter slopes the
    // frequency rounded to six digits alone moves the level by hundredths of a dB.
    std::string text = deck.str();
    if (const auto end = text.rfind(".end"); end != std::string::npos)
        text.insert(end, ".control\nset numdgt=12\n.endc\n");
    auto file = scratch("spice") / (name + ".cir");
    std::ofstream(file) << text;
    const std::vector<SpiceRow> rows = runngspice(file);
    EXPECT_GE(rows.size(), 500u) << name;
    const double Z1 = dipole(0, 1).R, ZL = dipole(0, slot(0).count()).R;
    int points = 0;
    for (const SpiceRow& r : rows) {
        const double spicepeg = 20 * std::log10(2 * r.vm) + 10 * std::log10(Z1 / ZL);
        if (spicepeg < -100) continue;
        store.wA = TWOPI * r.f;
        const double peg = response(Quantity::PEG, 0);
        store.wA = TWOPI * r.f;
        // The program's phase is a sum of principal-value arctangents: it equals the true
        // phase modulo 180 degrees.
        const double dphase = std::remainder(response(Quantity::Phase, 0) - r.vp * 180 / M_PI, 180.0);
        ++points;
        EXPECT_NEAR(peg, spicepeg, 0.01) << name << " at " << r.f << " Hz";
        EXPECT_NEAR(dphase, 0, 0.1) << name << " at " << r.f << " Hz";
    }
    return points;
}

} // namespace zelk::test
