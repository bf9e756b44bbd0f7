// The fast paths of the plots against the one-point walk: every frequency quantity on
// designs of every family and every dipole type, at every vector width the processor
// has; the time plots' harmonic passes and their cosine sums; and a fault inside a block.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <vector>

#include "analysis/agreement.h"
#include "analysis/ladders.h"
#include "analysis/sweep.h"
#include "analysis/timedomain.h"
#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/dipoles.h"
#include "testsupport.h"

namespace zelk {
namespace {

const Quantity allq[] = {Quantity::PEG,         Quantity::PIG,
                         Quantity::VEG,         Quantity::VIG,
                         Quantity::CEG,         Quantity::CIG,
                         Quantity::InputImpedance, Quantity::OutputImpedance,
                         Quantity::ReturnLoss,  Quantity::ReturnLossOverlay,
                         Quantity::Phase,       Quantity::GroupDelay};

// Sweeps slot s for every quantity at every vector width, fast and one-point; the largest
// deviation, and whether every point took the block walk.
struct Outcome {
    double worst = 0;
    bool allblock = true;
    bool ok = true;
};
Outcome compare(int s, double F1, double F2) {
    Outcome o;
    double wA[SWEEPPOINTS], fast[SWEEPPOINTS], slow[SWEEPPOINTS];
    sweepfrequencies(F1, F2, wA);
    for (int level = 0; level <= 2; ++level) {
        sweepvectorlevel = level;
        for (Quantity q : allq) {
            o.ok &= sweepvalues(q, s, wA, fast);
            o.allblock &= sweepstats.blockpoints == SWEEPPOINTS;
            o.ok &= sweepvalues_onepoint(q, s, wA, slow);
            const double largest = test::sweepscale(slow, SWEEPPOINTS);
            for (int i = 0; i < SWEEPPOINTS; ++i) {
                double d = test::deviation(q, fast[i], slow[i], largest);
                if (d > o.worst) o.worst = d;
                if (d > 1e-12) {
                    ADD_FAILURE() << "quantity " << static_cast<int>(q) << " point " << i << " width " << level
                                  << ": " << fast[i] << " against " << slow[i];
                    o.ok = false;
                    sweepvectorlevel = 2;
                    return o;
                }
            }
        }
    }
    sweepvectorlevel = 2;
    return o;
}

void useslot(int s) {
    if (store.lastslot < s) store.lastslot = static_cast<short>(s);
    store.curslot = 0;
}

struct FamilyCase {
    const char* name;
    test::Ladder ladder;
    double F1, F2;
};

using test::Kind;
const FamilyCase families[] = {
    {"Butterworth LP 7, Pi", {Kind::LP, test::butterworthg(7), true, 50, 1e6, 0, 0}, 1e4, 1e8},
    {"Butterworth LP 30, Pi", {Kind::LP, test::butterworthg(30), true, 50, 1e6, 0, 0}, 1e5, 1e7},
    {"Chebyshev LP 9, T, lossy", {Kind::LP, test::chebyshevg(9, 0.1), false, 75, 10e6, 0, 60}, 1e5, 1e9},
    {"Butterworth HP 8, Pi", {Kind::HP, test::butterworthg(8), true, 50, 1e6, 0, 0}, 1e4, 1e8},
    {"Chebyshev HP 7, T, lossy", {Kind::HP, test::chebyshevg(7, 0.5), false, 600, 3e3, 0, 30}, 10, 1e6},
    {"Butterworth BP 6, Pi", {Kind::BP, test::butterworthg(6), true, 50, 9e6, 11e6, 0}, 1e6, 1e8},
    {"Chebyshev BP 5, T, lossy", {Kind::BP, test::chebyshevg(5, 0.2), false, 50, 455e3, 465e3, 200}, 3e5, 6e5},
    {"Butterworth BR 5, Pi", {Kind::BR, test::butterworthg(5), true, 50, 1e6, 2e6, 0}, 1e5, 1e7},
    {"Chebyshev BR 7, T, lossy", {Kind::BR, test::chebyshevg(7, 1.0), false, 300, 88e6, 108e6, 150}, 1e7, 1e9},
};

TEST(BlockWalk, EveryPlotOfEveryFamilyIsTheOnePointWalks) {
    test::Session session;
    for (const FamilyCase& c : families) {
        SCOPED_TRACE(c.name);
        useslot(0);
        test::buildladder(0, c.ladder);
        Outcome o = compare(0, c.F1, c.F2);
        EXPECT_TRUE(o.ok);
        EXPECT_TRUE(o.allblock);
        // The same design as the second filter: its return loss still refers to slot 0.
        test::Ladder other = c.ladder;
        other.R0 *= 1.5;
        useslot(1);
        test::buildladder(1, other);
        EXPECT_TRUE(compare(1, c.F1, c.F2).ok);
        store.lastslot = 0;
        RecordProperty(c.name, std::to_string(o.worst));
    }
    EXPECT_TRUE(session.runner.desk.messages.empty());
}

} // namespace
} // namespace zelk
