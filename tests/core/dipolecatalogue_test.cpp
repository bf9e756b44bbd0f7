// The dipole catalogue's records agree with one another: a type the panel asks values
// for is evaluated and has a netlist form or a reason it has none, and the listing and
// the picture name only values the panel asks for.
#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "core/dipolecatalogue.h"

namespace zelk {
namespace {

// The field a listing letter or a picture part stands for.
Field fieldof(const std::string& part) {
    if (part == "R") return Field::R;
    if (part == "L") return Field::L;
    if (part == "C") return Field::C;
    if (part == "La" || part == "l") return Field::La;
    if (part == "Ca" || part == "c") return Field::Ca;
    if (part == "K") return Field::Ka;
    return Field::Crystal; // X
}

TEST(DipoleTypeRecords, AgreeWithOneAnother) {
    for (int t = -1; t <= LASTDIPOLETYPE + 1; ++t) {
        const DipoleType& d = dipoletype(t);
        SCOPED_TRACE("type " + std::to_string(t));
        EXPECT_TRUE(d.fields == 0 || d.eval != Eval::None) << "asked for values, not evaluated";
        EXPECT_TRUE(d.spice != SpiceForm::None || d.nospice) << "no netlist form and no reason";
        EXPECT_TRUE(!d.network || d.picture == Picture::None) << "two pictures";
        for (const char* k = d.report; k && *k; ++k)
            EXPECT_TRUE(has(d.fields, fieldof(std::string(1, *k)))) << "listing " << *k;
        const std::string f = d.network ? d.network : "";
        for (size_t i = 0, j = 0; i<f.size(); i = j> i ? j : i + 1) {
            for (j = i; j < f.size() && std::isalpha(static_cast<unsigned char>(f[j]));) ++j;
            const bool part = j > i && (j == f.size() || f[j] != '(');
            EXPECT_TRUE(!part || has(d.fields, fieldof(f.substr(i, j - i)))) << "picture " << f;
        }
    }
}

} // namespace
} // namespace zelk
