// Independent references for the elliptic tests: Jacobi's elliptic sine by the
// arithmetic-geometric mean (Abramowitz and Stegun 16.4), the complete integral, the
// textbook Cauer low-pass quantities. Nothing here uses the program's own synthesis.
#pragma once

#include <cmath>
#include <vector>

#include "reference.h"

namespace zelk::test {

// Complete elliptic integral of the first kind of modulus k, by the AGM.
inline double ellipK(double k) {
    double a = 1, b = std::sqrt(1 - k * k);
    for (int i = 0; i < 60 && std::fabs(a - b) > 1e-16 * a; ++i) {
        const double an = (a + b) / 2;
        b = std::sqrt(a * b);
        a = an;
    }
    return pi / (2 * a);
}

// sn(u, k) by the descending AGM sequence.
inline double jacobisn(double u, double k) {
    std::vector<double> a{1}, c{k};
    double b = std::sqrt(1 - k * k);
    while (std::fabs(c.back()) > 1e-17 && a.size() < 60) {
        const double an = (a.back() + b) / 2;
        const double cn = (a.back() - b) / 2;
        b = std::sqrt(a.back() * b);
        a.push_back(an);
        c.push_back(cn);
    }
    const size_t N = a.size() - 1;
    double phi = std::ldexp(1.0, static_cast<int>(N)) * a[N] * u;
    for (size_t n = N; n >= 1; --n) phi = (phi + std::asin(c[n] / a[n] * std::sin(phi))) / 2;
    return std::sin(phi);
}

// The textbook odd-order Cauer low-pass with pass-band edge 1 and stop-band edge ws.
struct Cauer {
    int n;
    double Apass, ws, k, K, eps2;
    Cauer(int order, double ap, double stopedge)
        : n(order), Apass(ap), ws(stopedge), k(1 / stopedge), K(ellipK(1 / stopedge)),
          eps2(std::pow(10, ap / 10) - 1) {}
    // Transmission zeros, i = 1 .. (n-1)/2.
    double zero(int i) const { return 1 / (k * jacobisn(2 * i * K / n, k)); }
    // Loss zeros and ripple peaks in the pass band.
    double losszero(int i) const { return jacobisn(2 * i * K / n, k); }
    double peak(int i) const { return jacobisn((2 * i + 1) * K / n, k); }
    // Discrimination k1 by the degree equation, and the least stop-band attenuation.
    double k1() const {
        double p = std::pow(k, n);
        for (int i = 1; i <= (n - 1) / 2; ++i) p *= std::pow(jacobisn((2 * i - 1) * K / n, k), 4);
        return p;
    }
    double Astop() const { return 10 * std::log10(1 + eps2 / (k1() * k1())); }
    // The nome q = exp(-pi K'/K).
    double nome() const { return std::exp(-pi * ellipK(std::sqrt(1 - k * k)) / K); }
};

} // namespace zelk::test
