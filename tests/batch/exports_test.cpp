// The export verbs of the batch runner: every picture format of a schematic and a plot,
// the refusals, and a write that fails leaving the older file whole.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "files.h"
#include "testsupport.h"

namespace zelk {
namespace {

namespace fs = std::filesystem;

const char* const design = R"(> selfunction: "LOW-PASS" "Accept design"
> Getdata: 10M 20M 3 "" 5 50 200
> Getdata: Lossless
>? designtitle: Text1="Export low-pass" Command1
butterworth
> Getdata: accept
PEG
)";

TEST(ExportVerbs, PicturesOfSchematicAndPlotCarryTheirFormat) {
    test::Session s;
    ASSERT_TRUE(s.ok(design));
    struct Case {
        const char* format;
        std::string magic;
    };
    const Case cases[] = {{"svg", "<?xml"}, {"pdf", "%PDF-"}, {"png", "\x89PNG\r\n"}};
    for (const char* window : {"schematic", "plotPEG"}) {
        for (const Case& c : cases) {
            fs::path file = test::scratch("export") / (std::string(window) + "." + c.format);
            fs::remove(file);
            int status = s.run(std::string("export ") + c.format + " " + window + " \"" + file.string() + "\"\n");
            if (status != 0 && s.err.str().find("without cairo") != std::string::npos) continue;
            ASSERT_EQ(status, 0) << window << ' ' << c.format << ": " << s.err.str();
            std::string bytes = test::readfile(file);
            EXPECT_EQ(bytes.substr(0, c.magic.size()), c.magic) << window << ' ' << c.format;
            // The drawing is in it: the plot's caption text, the schematic's title.
            if (std::string(c.format) == "svg") {
                EXPECT_NE(bytes.find(std::string(window) == "plotPEG" ? "Power Effective Gain" : "Export low-pass"),
                          std::string::npos);
            }
            EXPECT_GT(bytes.size(), 1000u);
        }
    }
}

TEST(ExportVerbs, RefusalsSayWhy) {
    test::Session s;
    for (const test::Row& r : test::datarows("batch.txt", "exports")) {
        s.err.str("");
        EXPECT_EQ(s.run(r.text(0) + "\n"), 1) << r.text(0);
        EXPECT_NE(s.err.str().find(r.text(1)), std::string::npos) << r.text(0) << ": " << s.err.str();
    }
}

TEST(ExportVerbs, FailedWriteLeavesTheOlderFile) {
    test::Session s;
    ASSERT_TRUE(s.ok(design));
    const fs::path dir = test::scratch("export") / "failing";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const char* const verbs[][2] = {{"touchstone", "old.s2p"}, {"csv plotPEG", "old.csv"}, {"spice", "old.cir"},
                                    {"svg plotPEG", "old.svg"}, {"png schematic", "old.png"}};
    for (auto& [verb, name] : verbs) {
        const fs::path target = dir / name;
        std::ofstream(target) << "older file\n";
        // The temporary file cannot be made: a folder stands in its place.
        fs::create_directories(dir / ("." + std::string(name) + ".writing"));
        s.err.str("");
        EXPECT_EQ(s.run(std::string("export ") + verb + " \"" + target.string() + "\"\n"), 1) << verb;
        EXPECT_NE(s.err.str().find("cannot write"), std::string::npos) << verb << ": " << s.err.str();
        EXPECT_EQ(test::readfile(target), "older file\n") << verb;
        fs::remove_all(dir / ("." + std::string(name) + ".writing"));
        // And with the way clear the same verb replaces it.
        EXPECT_TRUE(s.ok(std::string("export ") + verb + " \"" + target.string() + "\"\n"));
        EXPECT_NE(test::readfile(target), "older file\n") << verb;
        EXPECT_FALSE(fs::exists(dir / ("." + std::string(name) + ".writing"))) << verb;
    }
    // A missing folder is a failure too, with no file left anywhere.
    s.err.str("");
    EXPECT_EQ(s.run("export touchstone \"" + (dir / "missing" / "x.s2p").string() + "\"\n"), 1);
    EXPECT_NE(s.err.str().find("cannot write"), std::string::npos);
}

// That an export leaves the store as it found it is the golden script
// export_touchstone_store.

} // namespace
} // namespace zelk
