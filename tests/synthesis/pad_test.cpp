// Attenuator pads: the minimum search (last resistor alone, from below in 0.01 dB steps),
// the formulas against the textbook pad values, the layouts, the minimum check and the
// bounded search.
#include <gtest/gtest.h>

#include <cmath>
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
    ASSERT_EQ(s.run(padscript("attnt", "50 50", "10")), 0);
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
    ASSERT_EQ(p.run(padscript("attnp", "50 50", "10")), 0);
    const DesignSlot& q = slot(0);
    const int ptypes[] = {1, 31, 1, 31, 6, 31};
    for (int d = 1; d <= 6; ++d) EXPECT_EQ(q.dip(d).type, ptypes[d - 1]) << d;
    EXPECT_NEAR(q.dip(2).R, 96.25, 0.005);
    EXPECT_NEAR(q.dip(3).R, 71.15, 0.005);
    EXPECT_NEAR(q.dip(4).R, 96.25, 0.005);
    EXPECT_NEAR(test::insertionloss(0, 1000), 10, 1e-6);
}

TEST(Pads, MinimumSearch) {
    // Command, terminations, the attenuation the search stops on. Equal terminations:
    // the first step already gives a positive last resistor. 75 to 50 ohms: the minimum
    // loss of a matching pad is 20 log(sqrt(k) + sqrt(k - 1)), k = 1.5, which is
    // 5.7195 dB; the search stops on the 0.01 dB step above it. 50 to 75 ohms: only the
    // last resistor is tested, so the T pad stops at once with the first resistor
    // negative; the Pi pad behaves the other way about.
    const struct {
        const char *command, *terms;
        double attn;
    } cases[] = {{"attnt", "50 50", 0.01}, {"attnt", "75 50", 5.72}, {"attnt", "50 75", 0.01},
                 {"attnp", "75 50", 0.01}, {"attnp", "50 75", 5.72}};
    for (const auto& c : cases) {
        test::Session s;
        ASSERT_EQ(s.run(padscript(c.command, c.terms, "accept")), 0);
        EXPECT_NEAR(pad.padattn, c.attn, 1e-6) << c.command << " " << c.terms;
        if (std::string(c.command) == "attnt" && c.attn > 1) {
            EXPECT_GT(slot(0).dip(3).R, 0);
        }
        if (std::string(c.terms) == "50 75" && c.attn < 1) {
            EXPECT_LT(slot(0).dip(3).R, 0);
        }
    }
    // A positive value left in the tested dipole ends the search at once at 0 dB, and
    // the prompt then offers 10.
    test::Session f;
    dipole(0, 5).R = 12;
    ASSERT_EQ(f.run(padscript("attnt", "50 50", "accept") + "dump messages\n"), 0);
    EXPECT_NEAR(pad.padattn, 10, 1e-12);
}

TEST(Pads, MinimumCheckAndBadImpedances) {
    // Below the minimum: the box, and the prompt again; the minimum itself is taken.
    test::Session a;
    ASSERT_EQ(a.run("> Getdata: 75 50\n> Getdata: 3\n> Getdata: 5.72\n>? designtitle: Text1=\"Pad\" Command1\n"
                    "attnt\ndump messages\n"),
              0);
    const std::string out = a.take();
    EXPECT_NE(out.find("The attenuation MUST be greater than the MINIMUM shown."), std::string::npos);
    EXPECT_NEAR(pad.padattn, 5.72, 1e-9);
    // A cancel at the attenuation makes the pad with the minimum.
    test::Session b;
    ASSERT_EQ(b.run("> Getdata: 75 50\n> Getdata: close\n>? designtitle: Text1=\"Pad\" Command1\nattnt\n"), 0);
    EXPECT_NEAR(pad.padattn, 5.72, 1e-9);
    EXPECT_EQ(slot(0).code, "PAD");
    // A non-positive impedance: the search is bounded, ends in a message, takes no slot
    // and leaves the dipoles as they were.
    for (const char* terms : {"-50 50", "50 0", "0 0"}) {
        test::Session c;
        ASSERT_EQ(c.run(std::string("> Getdata: ") + terms + "\nattnp\ndump messages\n"), 0) << terms;
        EXPECT_NE(c.take().find("No pad can be made between these impedances."), std::string::npos) << terms;
        EXPECT_EQ(store.lastslot, -1);
        for (int d = 2; d <= 4; ++d) EXPECT_EQ(dipole(0, d).R, 0) << terms;
    }
    // Cancel at the terminations: no search, no design.
    test::Session d;
    ASSERT_EQ(d.run("> Getdata: close\nattnt\n"), 0);
    EXPECT_EQ(store.lastslot, -1);
}

} // namespace
} // namespace zelk
