// Replays the fuzzer's seed corpus and the damaged files kept from fuzzing through the
// same checks as the fuzz target, and pins what the worst of them read as.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <sstream>

#include "batch/runner.h"
#include "fuzz/designfilecheck.h"
#include "files.h"
#include "testsupport.h"

using namespace zelk;
namespace fs = std::filesystem;

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
