// Replays the fuzzer's seed corpus and the damaged files kept from fuzzing through the
// same checks as the fuzz target, and pins what the worst of them read as.
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

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

TEST(DesignFileCorpus, WorstInputsReadAsTheHostWould) {
    test::Session s;
    auto open = [](const char* name) {
        store = DesignStore{};
        readdesign(readfile(fuzzdir / "regressions" / name), 0);
        return slot(0);
    };
    DesignSlot d = open("count33.sch");
    EXPECT_EQ(d.dipolecount.value(), 33);
    EXPECT_EQ(d.dip(1).type, 1);
    EXPECT_EQ(d.count(), 33);
    d = open("count-huge.sch");
    EXPECT_EQ(d.count(), std::numeric_limits<int>::max());
    d = open("count-minus1.sch");
    EXPECT_EQ(d.dipolecount.value(), -1);
    EXPECT_EQ(d.dip(1).type, 0); // no dipoles read
    d = open("count-text.sch");
    EXPECT_EQ(d.dipolecount.textvalue(), "many");
    EXPECT_EQ(d.dip(1).type, 0);
    d = open("count-overflow.sch");
    EXPECT_TRUE(d.dipolecount.empty()); // the overflow leaves the field as it was
    d = open("count-fraction.sch");
    EXPECT_EQ(d.dip(2).type, 33);
    EXPECT_EQ(d.dip(3).type, 0);
    d = open("extreme-values.sch");
    EXPECT_EQ(d.dip(1).R, std::numeric_limits<double>::max());
    EXPECT_EQ(d.dip(1).C, -std::numeric_limits<double>::max());
    EXPECT_GT(d.dip(1).L, 0);
    EXPECT_EQ(d.dip(1).Qu, 0);
    d = open("bad-dipole-fields.sch");
    EXPECT_EQ(d.dip(1).type, 0); // 40000 does not fit 16 bits
    EXPECT_EQ(d.dip(1).R, 0);    // a quoted text, skipped
    EXPECT_EQ(d.dip(1).C, 0);    // "inf" and "nan" are no numbers
    EXPECT_EQ(d.dip(1).L, 0);
    EXPECT_EQ(d.dip(2).type, 33); // the next group is read in its place
}
