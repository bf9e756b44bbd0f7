// The design file format: the exact lines written, the round trip to 15 significant
// digits, the two header forms and the reading rules for damaged files, with the inputs
// kept from fuzzing the reader and what the worst of them read as.
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <filesystem>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "batch/runner.h"
#include "core/designstore.h"
#include "design/designfiles.h"
#include "entry/designfilesupport.h"
#include "files.h"
#include "fuzz/designfilecheck.h"
#include "testsupport.h"

using namespace zelk;
using zelk::test::expectsame;
using zelk::test::fifteen;
namespace fs = std::filesystem;

namespace {

// A two-dipole ladder with values whose text form is known by hand.
void smalldesign() {
    DesignSlot& d = slot(0);
    d.title = "Butterworth Low-Pass";
    d.designtitle = "My low-pass";
    d.code = "BLP";
    for (auto [m, v] : std::initializer_list<std::pair<Number DesignSlot::*, Number>>{
             {&DesignSlot::order, 5}, {&DesignSlot::Astop, 60}, {&DesignSlot::Apass, 0.25},
             {&DesignSlot::Zin, 50}, {&DesignSlot::Zout, 75.5}, {&DesignSlot::w0, 62831853.08},
             {&DesignSlot::w1, 1.5e-5}, {&DesignSlot::w2, 2e15}, {&DesignSlot::w3, -0.001},
             {&DesignSlot::w4, 123456789012345678.0}, {&DesignSlot::Ls, 0.04069}, {&DesignSlot::Cs, 1.9e-14},
             {&DesignSlot::Cp, 4.5e-12}, {&DesignSlot::Qx, 100000}, {&DesignSlot::Rs, 14.63},
             {&DesignSlot::Fs, 5723998}, {&DesignSlot::Fp, 5748166}, {&DesignSlot::Fbw, 57.24},
             {&DesignSlot::dipolecount, 2}})
        d.*m = v;
    d.r0.clear();
    d.bw.clear();
    store.wA = 3.5;
    Dipole& a = d.dip(1);
    a = Dipole{};
    a.type = 1;
    a.R = 50;
    a.Lcore = "T50-6";
    a.Lacore = "air";
    a.Ls = 0.1;
    Dipole& b = d.dip(2);
    b = Dipole{};
    b.type = 31;
    b.R = 1.0 / 3.0;
    b.C = 1e-10;
}

} // namespace

// The file of the small design, written out by hand in tests/data/smalldesign.sch: texts
// quoted, numbers in the host's plain form to 15 significant digits (an exponent for the
// very small and the very large), an empty number an empty line, every line ended by CR LF.
TEST(DesignFile, WritesTheExactLines) {
    test::Session s;
    smalldesign();
    EXPECT_EQ(designfiletext(0), test::datafile("smalldesign.sch"));
}

TEST(DesignFile, RoundTripKeepsFifteenDigitsTextsAndEmptyNumbers) {
    test::Session s;
    DesignSlot& d = slot(0);
    d.title = "Chebyshev Band-Pass";
    d.designtitle = "(01-02-2024) Chebyshev, with a comma";
    d.code = "CBP";
    for (auto [m, v] : std::initializer_list<std::pair<Number DesignSlot::*, Number>>{
             {&DesignSlot::order, 7}, {&DesignSlot::Astop, 61.123456789012345}, {&DesignSlot::Zin, 50},
             {&DesignSlot::Zout, 1.0 / 7.0}, {&DesignSlot::r0, -2.5e-300}, {&DesignSlot::w0, 6.283185308e8 / 3},
             {&DesignSlot::w2, 1.7976931348623157e308}, {&DesignSlot::w3, 0.1 + 0.2},
             {&DesignSlot::w4, 94247779.62}, {&DesignSlot::bw, 2.0 / 3.0}, {&DesignSlot::Ls, 0.04069},
             {&DesignSlot::Cs, 1.9e-14}, {&DesignSlot::Qx, 100000}, {&DesignSlot::Rs, 14.63},
             {&DesignSlot::Fs, 5723998}, {&DesignSlot::Fp, 5748166}, {&DesignSlot::Fbw, 57.24},
             {&DesignSlot::dipolecount, 32}})
        d.*m = v;
    d.Apass.clear();
    d.w1 = 1e-310; // below the normal range
    store.wA = 12345.678901234567;
    d.Cp.clear();
    for (int k = 1; k <= 32; ++k) {
        Dipole& p = d.dip(k);
        p.type = static_cast<short>(k == 1 ? 1 : k == 32 ? 31 : (k % 2 ? 4 : 35));
        double base = std::sqrt(static_cast<double>(k)) / 3.0;
        double* fields[] = {&p.R, &p.C, &p.L, &p.Qu, &p.K, &p.Lform, &p.Lawg, &p.Lturns, &p.Llength,
                            &p.Ca, &p.La, &p.Qa, &p.Kspare, &p.Laform, &p.Laawg, &p.Laturns,
                            &p.Lalength, &p.Ls, &p.Cs, &p.Cp, &p.Rs, &p.Qx};
        int i = 0;
        for (double* f : fields) *f = base * std::pow(10.0, (i++ % 9) * 3 - 12) * (k % 3 ? 1 : -1);
        p.Lcore = k % 2 ? "air" : "T68-2";
        p.Lacore = k == 5 ? "error" : "";
    }
    std::string text = designfiletext(0);

    // Read back into slot 1 after spoiling what the file will overwrite.
    slot(1) = DesignSlot{};
    slot(1).designtitle = "stale";
    store.wA = -1;
    readdesign(text, 1);
    const DesignSlot& e = slot(1);
    expectsame(d, Number(12345.678901234567), e, 32);
    // A second pass writes the very same text: nothing drifts.
    EXPECT_EQ(designfiletext(1), text);
}

TEST(DesignFile, NumbersIgnoreTheLocale) {
    test::Session s;
    smalldesign();
    std::string before = designfiletext(0);
    // A locale whose decimal separator is a comma, for the C library where the system has
    // one and for the C++ streams always.
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    std::locale oldcpp = std::locale::global(std::locale(std::locale::classic(), new Comma));
    std::string oldc = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE"})
        if (std::setlocale(LC_ALL, name)) break;
    std::string during = designfiletext(0);
    slot(1) = DesignSlot{};
    readdesign(during, 1);
    double zout = slot(1).Zout.value(), apass = slot(1).Apass.value();
    double r = slot(1).dip(2).R;
    std::setlocale(LC_ALL, oldc.c_str());
    std::locale::global(oldcpp);
    EXPECT_EQ(during, before);
    EXPECT_EQ(zout, 75.5);
    EXPECT_EQ(apass, 0.25);
    EXPECT_EQ(r, fifteen(1.0 / 3.0));
}

TEST(DesignFile, VersionOneFileHasNoDesignTitle) {
    test::Session s;
    slot(0) = DesignSlot{};
    slot(0).designtitle = "held before";
    slot(0).dip(2).type = 77;
    readdesign(test::datafile("version1.sch"), 0);
    // The slot as tests/data/version1.dump lists it by hand: the header read into the
    // fields after the title, and the file's end leaving the rest, dipole 2 among them,
    // as they were.
    std::ostringstream dump;
    dumpslot(0, dump);
    EXPECT_EQ(dump.str(), test::datafile("version1.dump"));

    // A version 1 file whose code is longer than 3 letters takes it for a title.
    slot(0) = DesignSlot{};
    readdesign("\"Butterworth Dishal Lower Sideband filter\"\r\n\"DLSB\"\r\n4\r\n60\r\n", 0);
    EXPECT_EQ(slot(0).designtitle, "DLSB");
    EXPECT_EQ(slot(0).code, "4");
    EXPECT_EQ(slot(0).order.value(), 60);
}

TEST(DesignFile, DamagedFilesEndInAPartialRead) {
    test::Session s;
    auto header = [](const std::string& count) {
        return "\"T\"\r\n\"Design\"\r\n\"BLP\"\r\n5\r\n60\r\n1\r\n50\r\n50\r\n\r\n1\r\n2\r\n3\r\n4\r\n5\r\n"
               "6\r\n7\r\n8\r\n9\r\n10\r\n11\r\n12\r\n13\r\n14\r\n15\r\n" + count + "\r\n";
    };
    auto group = [](int type, const std::string& r) {
        std::string g = std::to_string(type) + "\r\n" + r + "\r\n";
        for (int i = 3; i <= 25; ++i) g += (i == 7 || i == 16) ? "\"\"\r\n" : std::to_string(i) + "\r\n";
        return g;
    };

    // A quoted item read into a number field of a dipole is consumed and skipped.
    slot(0) = DesignSlot{};
    slot(0).dip(1).R = 99;
    readdesign(header("1") + group(1, "\"fifty\""), 0);
    EXPECT_EQ(slot(0).dip(1).R, 99);
    EXPECT_EQ(slot(0).dip(1).C, 3); // the next item went to the next field

    // A count beyond the tables, negative or not a number: the fuzzing regressions count33,
    // count-minus1 and count-text of the corpus test.

    // Several values may share a line, separated by commas; blanks around them go.
    slot(0) = DesignSlot{};
    readdesign("\"T\",\"Long title\", \"CBP\" , 7 ,  1.5e3,2.5D-1\n", 0);
    EXPECT_EQ(slot(0).designtitle, "Long title");
    EXPECT_EQ(slot(0).code, "CBP");
    EXPECT_EQ(slot(0).order.value(), 7);
    EXPECT_EQ(slot(0).Astop.value(), 1500);
    EXPECT_EQ(slot(0).Apass.value(), 0.25);
    EXPECT_EQ(slot(0).Zin.kind(), Number::Kind::Empty); // untouched

    // Numbers too large to hold, a type outside 16 bits, and texts in number places.
    slot(0) = DesignSlot{};
    slot(0).dip(1).type = 5;
    slot(0).dip(1).L = 7;
    slot(0).Astop = 3;
    readdesign(header("1").replace(header("1").find("60"), 2, "1e999") +
                   "40000\r\n1e-999\r\nabc\r\n1e400\r\n",
               0);
    EXPECT_EQ(slot(0).Astop.value(), 3);
    EXPECT_EQ(slot(0).dip(1).type, 5);
    EXPECT_EQ(slot(0).dip(1).R, 0);
    EXPECT_EQ(slot(0).dip(1).C, 0);
    EXPECT_EQ(slot(0).dip(1).L, 7);
    EXPECT_TRUE(std::isfinite(slot(0).dip(1).Qu));

    // An unclosed quote takes the rest of the text; nothing at all changes nothing.
    slot(0) = DesignSlot{};
    slot(0).title = "before";
    readdesign("", 0);
    EXPECT_EQ(slot(0).title, "before");
    readdesign("\"never closed\r\n5\r\n", 0);
    EXPECT_EQ(slot(0).title, "never closed\r\n5\r\n");
    EXPECT_EQ(slot(0).code, "");
}

// The fuzzer's seed corpus and the damaged files kept from fuzzing, replayed through the
// same checks as the fuzz target.
namespace {
using test::readfile;
const fs::path fuzzdir = fs::path(ZELK_SOURCE_DIR) / "fuzz";
} // namespace

TEST(DesignFileCorpus, EveryKeptInputEndsInAPartialRead) {
    test::Session s;
    int files = 0;
    for (const char* sub : {"corpus", "regressions"})
        for (const auto& e : fs::directory_iterator(fuzzdir / sub)) {
            SCOPED_TRACE(e.path().filename().string());
            EXPECT_TRUE(fuzz::checkdesignfile(readfile(e.path())));
            ++files;
        }
    EXPECT_GE(files, 15);
}

// The worst of them, each read into a fresh store: the slot it leaves is compared whole with
// tests/data/corpus/NAME.dump, checked by hand against the file. A count beyond the
// tables reads 32 dipoles (the dump shows the 32 there are), a count of -1 or a text
// reads none, an overflowing count leaves the field as it was, the largest doubles stay
// and "inf" and "nan" are no numbers, a type of 40000 does not fit 16 bits and a quoted
// text in a number's place is skipped, the next group read in its place.
TEST(DesignFileCorpus, WorstInputsReadAsTheHostWould) {
    test::Session s;
    for (const char* name : {"count33", "count-huge", "count-minus1", "count-text", "count-overflow",
                             "count-fraction", "extreme-values", "bad-dipole-fields"}) {
        SCOPED_TRACE(name);
        store = DesignStore{};
        readdesign(readfile(fuzzdir / "regressions" / (std::string(name) + ".sch")), 0);
        std::ostringstream dump;
        dumpslot(0, dump);
        EXPECT_EQ(dump.str(), test::datafile("corpus/" + std::string(name) + ".dump"));
        // Nothing is read past the count.
        if (const int n = slot(0).count(); n < MAXDIPOLE) {
            EXPECT_EQ(slot(0).dip(std::max(n, 0) + 1).type, 0);
        }
        if (std::string(name) == "count-huge") {
            EXPECT_EQ(slot(0).count(), std::numeric_limits<int>::max());
        }
    }
}
