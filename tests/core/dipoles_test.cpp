// The dipole catalogue against the networks it describes: every type's impedance and
// admittance worked out here with complex arithmetic from the network (inductor loss
// wL/Q in series or 1/(wLQ) across, the 1e-06 residuals), at several frequencies, lossy
// and lossless; then the deliberate departures, the transformer steps, the "ANALYSIS
// ERROR" box, and the agreement of the catalogue's records with one another.
#include <gtest/gtest.h>

#include <cctype>
#include <complex>
#include <string>

#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "core/dipoles.h"
#include "testsupport.h"

namespace zelk {
namespace {

using cd = std::complex<double>;

struct Expect {
    cd Z, Y;
};

// Parts shared by the cases: a 1 uH / 1 nF tank (about 5.03 MHz) and its companions.
Dipole parts(int type, double Qu, double Qa) {
    Dipole p;
    p.type = static_cast<short>(type);
    p.R = 47, p.L = 1e-6, p.C = 1e-9, p.La = 2.2e-6, p.Ca = 470e-12, p.K = 0.5;
    p.Qu = Qu, p.Qa = Qa;
    p.Ls = 0.04069, p.Cs = 1.9e-14, p.Cp = 4.5e-12, p.Rs = 14.63, p.Qx = 100000;
    return p;
}

void evaluate(const Dipole& p, double w, int d = 2) {
    dipole(0, d) = p;
    store.wA = w;
    dipoleimmittance(d, 0);
}

void expectnear(const char* what, double got, double want, double scale, int type, double w) {
    EXPECT_NEAR(got, want, 1e-9 * scale + 1e-300)
        << what << " of type " << type << " at wA " << w;
}

void check(const Dipole& p, double w, const Expect& e) {
    evaluate(p, w);
    double zs = std::abs(e.Z), ys = std::abs(e.Y);
    expectnear("Zr", store.Zr, e.Z.real(), zs, p.type, w);
    expectnear("Zi", store.Zi, e.Z.imag(), zs, p.type, w);
    expectnear("Yr", store.Yr, e.Y.real(), ys, p.type, w);
    expectnear("Yi", store.Yi, e.Y.imag(), ys, p.type, w);
    EXPECT_FALSE(store.abortanalysis);
}

// The network of each type, from its description, as complex numbers.
Expect network(const Dipole& p, double w) {
    const cd j(0, 1);
    const cd jw = j * w;
    auto ql = [&](double L, double Q) { return Q > 0 ? w * L / Q : 1e-06; };
    auto pl = [&](double L, double Q) { return Q > 0 ? 1 / (w * L * Q) : 1e-06; };
    auto Zs = [&](double L, double C, double Q) { return ql(L, Q) + jw * L + 1.0 / (jw * C); };
    auto Yt = [&](double L, double C, double Q) { return pl(L, Q) + jw * C + 1.0 / (jw * L); };
    cd Zx = (p.Rs == 0 ? 1e-06 : p.Rs) + jw * p.Ls + 1.0 / (jw * p.Cs);
    double gLa = p.Qa > 0 ? 1 / (w * p.La * p.Qa) : 0;
    double rLa = p.Qa > 0 ? w * p.La / p.Qa : 0;
    double K2 = p.K * p.K;
    auto fromZ = [](cd Z) { return Expect{Z, 1.0 / Z}; };
    auto fromY = [](cd Y) { return Expect{1.0 / Y, Y}; };
    switch (p.type) {
    case 1: case 31: return {p.R, 1 / p.R};
    case 2: case 32: return fromZ(ql(p.L, p.Qu) + jw * p.L);
    case 3: case 33: return {1e-06 + 1.0 / (jw * p.C), 1e-06 + jw * p.C};
    case 4: case 34: return fromZ(Zs(p.L, p.C, p.Qu));
    case 5: case 35: return fromY(Yt(p.L, p.C, p.Qu));
    case 7: case 37: return fromY(1.0 / Zx + jw * p.Cp);
    case 9: case 39: return fromY(1.0 / Zs(p.L, p.C, p.Qu) + jw * p.Ca);
    case 10: case 40: {
        cd Z = 1.0 / Yt(p.L, p.C, p.Qu) + 1.0 / (jw * p.Ca);
        return {Z, cd(1, (1.0 / Z).imag())}; // the 1 siemens of the table
    }
    case 11: case 41:
        return fromY((p.Qu > 0 ? 1 / (w * p.Qu * p.L * K2) : 1e-06) + jw * p.C / K2 +
                     1.0 / (jw * p.L * K2));
    case 14: case 36:
        return fromY((p.Qu > 0 ? 1 / (w * p.Qu * p.L * K2) : 1e-06) +
                     jw * (p.Ca / K2 + p.C) + 1.0 / (jw * p.L * K2));
    case 12: case 42: {
        cd arm = 1.0 / Yt(p.L, p.C, p.Qu) + (p.Qu > 0 ? w * p.L / p.Qu : 0) + jw * p.La;
        return fromY(1.0 / arm + jw * p.Ca);
    }
    case 13: case 43:
        return fromY(1.0 / Zs(p.L, p.C, p.Qu) + gLa + jw * p.Ca + 1.0 / (jw * p.La));
    case 15: case 45: return fromY(1.0 / Zx + jw * (p.C + p.Cp));
    case 16: case 46: return fromZ(1.0 / (1.0 / Zx + jw * p.Cp) + 1.0 / (jw * p.C));
    case 27: {
        cd Z = 1.0 / (1.0 / Zx + jw * (p.C + p.Cp)) + 1.0 / (jw * p.Ca);
        return {Z, cd(1, (1.0 / Z).imag())};
    }
    case 17: case 47: case 29: {
        cd Y = 1.0 / Zs(p.L, p.C, p.Qu) + 1.0 / (rLa + jw * p.La + 1.0 / (jw * p.Ca));
        if (p.type == 29) Y += 1 / p.R;
        return fromY(Y);
    }
    case 18: case 48: case 68: {
        // Only the reactance of the first tank stays.
        cd Z = j * (1.0 / Yt(p.L, p.C, p.Qu)).imag() + 1.0 / (gLa + jw * p.Ca + 1.0 / (jw * p.La));
        if (p.type == 68) Z += p.R;
        return fromZ(Z);
    }
    case 19: case 49:
        return fromZ(1.0 / Yt(p.L, p.C, p.Qu) + rLa + jw * p.La + 1.0 / (jw * p.Ca));
    case 20: case 50: return fromY(1.0 / Zs(p.L, p.C, p.Qu) + gLa + 1.0 / (jw * p.La));
    case 21: case 51: return fromY(Yt(p.L, p.C, p.Qu)); // La and Qa play no part
    case 22: case 52:
        return fromZ(1.0 / (1.0 / Zs(p.L, p.C, p.Qu) + gLa + 1.0 / (jw * p.La)) + 1.0 / (jw * p.Ca));
    case 23: case 53:
        return fromZ(1.0 / (1.0 / Zs(p.L, p.C, p.Qu) + jw * p.Ca) + rLa + jw * p.La);
    case 24: case 54:
        return fromY(1.0 / (1.0 / Yt(p.L, p.C, p.Qu) + 1.0 / (jw * p.Ca)) + gLa + 1.0 / (jw * p.La));
    case 28: // R stands alone for the lossless inductor: no residual here
        return fromZ(p.R + (p.Qu > 0 ? w * p.L / p.Qu : 0) + jw * p.L + 1.0 / (jw * p.C));
    case 67: {
        cd Z = 1.0 / Yt(p.L, p.C, p.Qu) + p.R;
        double b = (1.0 / Z).imag();
        return {Z, cd(-b, b)}; // the reactive part stands in for the conductance too
    }
    case 44: {
        // The transformed arm: its reactance is written (w/L)/K2, not w*L.
        cd Zt(p.R / K2, (w / p.L) / K2 - 1 / (w * p.C * K2));
        double Yr = 1 + (p.Qa > 0 ? K2 / (w * p.La * p.Qa) : 0);
        // and the tap inductance enters as w*((1/w)/La)*K2, that is K2/La.
        double Yi = (1.0 / Zt).imag() + w * (p.Ca + slot(store.curslot).Cp * K2) - K2 / p.La;
        return fromY(cd(Yr, Yi));
    }
    }
    ADD_FAILURE() << "no reference for type " << p.type;
    return {};
}

TEST(DipoleCatalogue, EveryPlainTypeMatchesItsNetwork) {
    test::Session s;
    store.curslot = 0;
    slot(0).Cp = 3.3e-12; // the slot's design crystal, read by type 44 alone
    const int types[] = {1,  31, 2,  32, 3,  33, 4,  34, 5,  35, 7,  37, 9,  39, 10, 40,
                         11, 41, 14, 36, 12, 42, 13, 43, 15, 45, 16, 46, 27, 17, 47, 29,
                         18, 48, 68, 19, 49, 20, 50, 21, 51, 22, 52, 23, 53, 24, 54, 28, 67, 44};
    const double freqs[] = {TWOPI * 1.7e6, TWOPI * 5.1e6, TWOPI * 13.3e6};
    for (int t : types)
        for (double w : freqs)
            for (auto [Qu, Qa] : {std::pair{100.0, 80.0}, std::pair{0.0, 0.0}}) {
                Dipole p = parts(t, Qu, Qa);
                check(p, w, network(p, w));
            }
    // A crystal with no series resistance carries 1e-06 ohm.
    Dipole x = parts(7, 0, 0);
    x.Rs = 0;
    check(x, TWOPI * 3.9e6, network(x, TWOPI * 3.9e6));
}

TEST(DipoleCatalogue, EmptyPlacesResonanceAndZeroResistance) {
    test::Session s;
    store.curslot = 0;
    const double w = TWOPI * 4e6;

    // Types 40, 21, 18/48/68 and 44 depart from their networks as the references above
    // are written (1 siemens, La and Qa ignored, the first tank lossless, the slot's Cp).
    Dipole p;
    // Empty place, open circuit, and the unused numbers that leave the results alone.
    evaluate(parts(6, 0, 0), w);
    EXPECT_EQ(store.Zr, 0.0); EXPECT_EQ(store.Zi, 0.0); EXPECT_EQ(store.Yr, 0.0); EXPECT_EQ(store.Yi, 0.0);
    evaluate(parts(38, 0, 0), w);
    EXPECT_EQ(store.Zr, 1e12); EXPECT_EQ(store.Yr, 0.0); EXPECT_EQ(store.Yi, 0.0);
    for (int t : {25, 26, 30, 63, 64, 74, 0, -3}) {
        store.Zr = 1, store.Zi = 2, store.Yr = 3, store.Yi = 4;
        evaluate(parts(t, 0, 0), w);
        EXPECT_EQ(store.Zr, 1.0); EXPECT_EQ(store.Zi, 2.0);
        EXPECT_EQ(store.Yr, 3.0); EXPECT_EQ(store.Yi, 4.0);
    }

    // A tank at exact resonance: Yi 0 becomes 1e-18 on P, stays 0 on the tapped tank.
    p = parts(5, 0, 0);
    p.L = 1, p.C = 1;
    evaluate(p, 1.0);
    EXPECT_EQ(store.Yi, 1e-18);
    EXPECT_EQ(store.Yr, 1e-06);
    p.type = 11, p.K = 1;
    evaluate(p, 1.0);
    EXPECT_EQ(store.Yi, 0.0);
    EXPECT_DOUBLE_EQ(store.Zr, 1e6);

    // R = 0 on type 28 with a lossless inductor: Zr exactly 0, no fault.
    p = parts(28, 0, 0);
    p.R = 0;
    evaluate(p, w);
    EXPECT_EQ(store.Zr, 0.0);
    EXPECT_TRUE(s.runner.desk.messages.empty());
}

TEST(DipoleCatalogue, TransformersScaleTheWalkersRunningValues) {
    test::Session s;
    const double w = TWOPI * 4e6;
    const cd j(0, 1);
    for (int t : {55, 56, 59, 60, 61, 62, 65, 66}) {
        walk.Rt = 30, walk.Xt = -12, walk.Vratio = 0.4;
        store.Zr = 5, store.Zi = 6, store.Yr = 7, store.Yi = 8;
        store.zscale = 3.0;
        Dipole p = parts(t, 90, 0);
        p.K = 0.25;
        evaluate(p, w);
        const bool down = t == 55 || t == 59 || t == 61 || t == 65;
        const double K2 = 0.0625, f = down ? 1 / K2 : K2;
        SCOPED_TRACE(t);
        EXPECT_DOUBLE_EQ(store.zscale, down ? K2 : 1 / K2); // from 1, not from 3
        EXPECT_DOUBLE_EQ(walk.Rt, 30 * f);
        EXPECT_DOUBLE_EQ(walk.Xt, -12 * f);
        EXPECT_DOUBLE_EQ(walk.Vratio, down ? 0.4 / 0.25 : 0.4 * 0.25);
        cd G = 1.0 / cd(walk.Rt, walk.Xt);
        EXPECT_DOUBLE_EQ(walk.Gt, G.real());
        EXPECT_DOUBLE_EQ(walk.Bt, G.imag());
        cd Y;
        const double pL = 1 / (w * p.L * p.Qu);
        switch (t) {
        case 59: case 60: // the previous results are handed on
            EXPECT_EQ(store.Zr, 5.0); EXPECT_EQ(store.Zi, 6.0);
            EXPECT_EQ(store.Yr, 7.0); EXPECT_EQ(store.Yi, 8.0);
            continue;
        case 55: Y = pL + j * w * p.C + 1.0 / (j * w * p.L); break;
        case 56: Y = pL + j * w * p.C / K2 + 1.0 / (j * w * p.L * K2); break;
        case 65: Y = pL + j * w * (p.Ca + p.C * K2) + 1.0 / (j * w * p.L); break;
        case 66: Y = pL + j * w * (p.Ca / K2 + p.C) + 1.0 / (j * w * p.L * K2); break;
        case 61: Y = 1.0 / (w * p.L / p.Qu + j * w * p.L); break;
        case 62: Y = 1.0 / (w * p.L * K2 / p.Qu + j * w * p.L * K2); break;
        }
        EXPECT_NEAR(store.Yr, Y.real(), 1e-12 * std::abs(Y));
        EXPECT_NEAR(store.Yi, Y.imag(), 1e-12 * std::abs(Y));
        cd Z = 1.0 / Y;
        EXPECT_NEAR(store.Zr, Z.real(), 1e-12 * std::abs(Z));
        EXPECT_NEAR(store.Zi, Z.imag(), 1e-12 * std::abs(Z));
    }
    // Any later plain dipole puts zscale back to 1.
    evaluate(parts(1, 0, 0), w);
    EXPECT_EQ(store.zscale.value(), 1.0);
}

// Queues answers for the coming message boxes.
void answer(test::Session& s, std::initializer_list<const char*> answers) {
    for (const char* a : answers) s.runner.desk.queue.push_back({"msgbox", {a}});
}

TEST(AnalysisError, ZeroPartsBringUpTheBoxWithAbortRetryIgnore) {
    test::Session s;
    auto& msgs = s.runner.desk.messages;
    const double w = TWOPI * 1e6;

    // R = 0 on type 31: a zero divide, Abort.
    answer(s, {"Abort"});
    Dipole p = parts(31, 0, 0);
    p.R = 0;
    store.Yr = 0.125;
    dipoleimmittance(2, 0); // dipole 2 is still empty: no fault
    evaluate(p, w, 4);
    ASSERT_EQ(msgs.size(), 1u);
    EXPECT_EQ(msgs[0].title, "ANALYSIS ERROR");
    EXPECT_EQ(msgs[0].buttons, vbAbortRetryIgnore);
    EXPECT_EQ(msgs[0].text,
              "ERROR 11, Division by zero In DIPOLE 4 of FILTER 1\n"
              "Filter is probably unrealizable due to a component having a negative or zero value.\n"
              "Check the parts list for negative or zero or missing component values.");
    EXPECT_TRUE(store.abortanalysis);
    store.abortanalysis = false;

    // Ignore: the failed statement leaves its target as it was, the next ones run.
    answer(s, {"Ignore"});
    store.Zr = store.Zi = store.Yr = store.Yi = 0.5;
    evaluate(p, w, 4);
    EXPECT_FALSE(store.abortanalysis);
    EXPECT_EQ(store.Zr, 0.0);
    EXPECT_EQ(store.Yr, 0.5);
    EXPECT_EQ(store.Yi, 0.0);

    // Retry runs the statement again: the same fault comes back, then Abort; slot 2
    // reads as FILTER 3.
    answer(s, {"Retry", "Abort"});
    dipole(2, 6) = p;
    store.wA = w;
    dipoleimmittance(6, 2);
    ASSERT_EQ(msgs.size(), 4u);
    EXPECT_EQ(msgs[3].text.substr(0, 50), "ERROR 11, Division by zero In DIPOLE 6 of FILTER 3");
    EXPECT_TRUE(store.abortanalysis);
    store.abortanalysis = false;

    // K = 0 on a transformer, a zero frequency on a capacitor, an overflow.
    for (auto [t, wA, text] : {std::tuple{59, w, "ERROR 11, Division by zero In DIPOLE 3 "},
                               std::tuple{3, 0.0, "ERROR 11, Division by zero In DIPOLE 3 "}}) {
        answer(s, {"Abort"});
        Dipole q = parts(t, 0, 0);
        q.K = 0;
        walk.Rt = 50;
        evaluate(q, wA, 3);
        EXPECT_EQ(msgs.back().text.substr(0, 39), text);
        EXPECT_TRUE(store.abortanalysis);
        store.abortanalysis = false;
    }
    answer(s, {"Ignore"});
    p.R = 1e-310;
    evaluate(p, w, 4);
    EXPECT_EQ(msgs.back().text.substr(0, 19), "ERROR 6, Overflow I");
    // A clean evaluation after all this asks nothing.
    size_t n = msgs.size();
    evaluate(parts(33, 0, 0), w, 4);
    EXPECT_EQ(msgs.size(), n);
    EXPECT_TRUE(s.runner.desk.queue.empty());
}

// The dipole catalogue's records agree with one another: a type the panel asks values
// for is evaluated and has a netlist form or a reason it has none, and the listing and
// the picture name only values the panel asks for.

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
