// Attenuator pads: the T and Pi layouts against the textbook pad values and the chain
// matrix, and a value left over from before in the search.
#include <gtest/gtest.h>

#include <string>

#include "core/designstore.h"
#include "synthesis/pads.h"
#include "reference.h"
#include "tests/testsupport.h"

namespace zelk {
namespace {

std::string padscript(const std::string& command, const std::string& terms, const std::string& attn) {
    return "> Getdata: " + terms + "\n> Getdata: " + attn + "\n>? designtitle: Text1=\"Pad\" Command1\n" +
           command + "\n";
}

TEST(Pads, TenDecibelPadsAtFiftyOhms) {
    // Textbook values: T pad 25.97 / 35.14 ohm, Pi pad 96.25 / 71.15 ohm.
    test::Session s;
    ASSERT_TRUE(s.ok(padscript("attnt", "50 50", "10")));
    EXPECT_NEAR(pad.padattn, 10, 1e-12);
    const DesignSlot& t = slot(0);
    EXPECT_EQ(t.code, "PAD");
    EXPECT_EQ(t.title, "Attenuator Pad");
    EXPECT_EQ(t.count(), 6);
    const int ttypes[] = {1, 38, 1, 31, 1, 31};
    for (int d = 1; d <= 6; ++d) EXPECT_EQ(t.dip(d).type, ttypes[d - 1]) << d;
    EXPECT_NEAR(t.dip(3).R, 25.97, 0.005);
    EXPECT_NEAR(t.dip(4).R, 35.14, 0.005);
    EXPECT_NEAR(t.dip(5).R, 25.97, 0.005);
    EXPECT_NEAR(test::insertionloss(0, 1000), 10, 1e-6); // by the chain matrix

    test::Session p;
    ASSERT_TRUE(p.ok(padscript("attnp", "50 50", "10")));
    const DesignSlot& q = slot(0);
    const int ptypes[] = {1, 31, 1, 31, 6, 31};
    for (int d = 1; d <= 6; ++d) EXPECT_EQ(q.dip(d).type, ptypes[d - 1]) << d;
    EXPECT_NEAR(q.dip(2).R, 96.25, 0.005);
    EXPECT_NEAR(q.dip(3).R, 71.15, 0.005);
    EXPECT_NEAR(q.dip(4).R, 96.25, 0.005);
    EXPECT_NEAR(test::insertionloss(0, 1000), 10, 1e-6);
}

// The minimum search, the minimum check and the refusal of terminations that are not
// positive are the golden script pad_minimum. A positive value left in the tested
// dipole ends the search at once at 0 dB, and the prompt then offers 10.
TEST(Pads, LeftoverValueEndsTheSearchAtOnce) {
    test::Session f;
    dipole(0, 5).R = 12;
    ASSERT_TRUE(f.ok(padscript("attnt", "50 50", "accept")));
    EXPECT_NEAR(pad.padattn, 10, 1e-12);
}

} // namespace
} // namespace zelk
