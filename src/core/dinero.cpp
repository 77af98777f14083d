#include "core/dinero.h"

#include <cmath>
#include <cstdint>

double redondear2(double x) {
    if (!std::isfinite(x)) return x;
    const double magnitud = std::fabs(x);
    // From 2^46 on, a double is spaced at least 1/64 from its neighbours, so the nearest double
    // to any value within half a cent of x is x itself.
    if (magnitud >= 0x1p46) return x;

    // magnitud = m * 2^-s exactly, with m a 53-bit integer. The exact value of magnitud * 100 is
    // then (100 m) / 2^s, and 100 m < 2^60 fits in 64 bits: the rounding decision is taken on
    // integers, with nothing lost to the binary product x * 100.
    int exponente = 0;
    const double fraccion = std::frexp(magnitud, &exponente); // magnitud = fraccion * 2^exponente
    const auto m = static_cast<std::uint64_t>(std::ldexp(fraccion, 53));
    const int s = 53 - exponente; // >= 7 because magnitud < 2^46
    const std::uint64_t producto = m * 100u;
    std::uint64_t centimos = 0;
    if (s < 62) {
        centimos = producto >> s;
        const std::uint64_t resto = producto & ((std::uint64_t{1} << s) - 1);
        const std::uint64_t mitad = std::uint64_t{1} << (s - 1);
        if (resto > mitad || (resto == mitad && (centimos & 1u) != 0)) ++centimos;
    }
    // Otherwise 100 m < 2^60 <= 2^(s-2): less than a quarter of a cent, which rounds to zero.
    if (centimos == 0) return 0.0;
    // centimos < 100 * 2^46 < 2^53 is exact; the division is correctly rounded.
    const double resultado = static_cast<double>(centimos) / 100.0;
    return x < 0 ? -resultado : resultado;
}

bool mismoImporte(double a, double b) {
    return redondear2(a) == redondear2(b);
}

bool menorImporte(double a, double b) {
    // Both are the doubles nearest to their cents, which keep the cents' order.
    return redondear2(a) < redondear2(b);
}

bool importeNulo(double x) {
    return redondear2(x) == 0.0;
}
