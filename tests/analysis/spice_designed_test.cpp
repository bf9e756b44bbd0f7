// Designed filters, made through the batch runner as a user would, analysed and checked
// against ngspice: the Butterworth corner at -3.01 dB and the Chebyshev pass-band ripple.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "analysis/response.h"
#include "core/designstore.h"
#include "testsupport.h"

namespace zelk {
namespace {

namespace fs = std::filesystem;

TEST(DesignedFilters, ButterworthCornerChebyshevRippleAndNgspice) {
    const bool ngspice = std::system("ngspice --version > /dev/null 2>&1") == 0;
    struct Case {
        const char* name;
        const char* script;
        double fc, ripple;
    };
    const Case cases[] = {
        {"designed-blp", "> selfunction: selection(0) \"Accept design\"\n"
                         "> Getdata: 10M 15M 3 \"\" 5 50 50\n> Getdata: Lossless\n"
                         ">? designtitle: Text1=\"LP\" Command1\nbutterworth\n",
         10e6, 3.0}, // the corner is designed at Apass = 3 dB, not at 10log(2)
        {"designed-clp", "> selfunction: \"LOW-PASS\" \"Accept design\"\n"
                         "> Getdata: 10M 15M .5 60 5 50 50\n> Getdata: Lossless\n"
                         ">? designtitle: Text1=\"CLP\" Command1\nchebyshev\n",
         10e6, 0.5},
    };
    for (const Case& c : cases) {
        test::Session s;
        ASSERT_EQ(s.run(c.script), 0) << c.name << s.err.str();
        ASSERT_GE(slot(0).count(), 6) << c.name;
        // Pass band: between 0 and -ripple, the ripple reached, the corner at -ripple.
        double lo = 0, hi = -100;
        for (int i = 0; i <= 512; ++i) {
            store.wA = sweepfrequency(1e6, c.fc, i);
            double v = response(Quantity::PEG, 0);
            lo = std::min(lo, v), hi = std::max(hi, v);
        }
        EXPECT_NEAR(lo, -c.ripple, 0.01) << c.name;
        EXPECT_NEAR(hi, 0, 0.005) << c.name;
        store.wA = TWOPI * c.fc;
        EXPECT_NEAR(response(Quantity::PEG, 0), -c.ripple, 0.01) << c.name;

        if (!ngspice) continue;
        fs::path dir = fs::temp_directory_path() / ("zelk-spice-test-" + std::to_string(::getpid()));
        fs::create_directories(dir);
        fs::path deck = dir / (std::string(c.name) + ".cir");
        ASSERT_EQ(s.run("export spice \"" + deck.generic_string() + "\" 1M 100M\n"), 0) << s.err.str();
        fs::path out = dir / (std::string(c.name) + ".out");
        std::string cmd = "ngspice -b \"" + deck.string() + "\" > \"" + out.string() + "\" 2>&1";
        ASSERT_EQ(std::system(cmd.c_str()), 0);
        std::ifstream in(out);
        std::string line;
        int points = 0;
        while (std::getline(in, line)) {
            std::istringstream ls(line);
            long index;
            double f, vm, vp;
            if (!(ls >> index >> f >> vm >> vp)) continue;
            double spicepeg = 20 * std::log10(2 * vm);
            if (spicepeg < -100) continue;
            store.wA = TWOPI * f;
            EXPECT_NEAR(response(Quantity::PEG, 0), spicepeg, 0.01) << c.name << " at " << f;
            store.wA = TWOPI * f;
            double d = std::remainder(response(Quantity::Phase, 0) - vp * 180 / M_PI, 180.0);
            EXPECT_NEAR(d, 0, 0.1) << c.name << " at " << f;
            ++points;
        }
        EXPECT_GT(points, 300) << c.name;
    }
}

} // namespace
} // namespace zelk
