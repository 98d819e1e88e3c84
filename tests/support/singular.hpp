// Singular values by one name for both scalars, matrices that are hard on them, and an oracle for bidiagonal ones.
#pragma once
#include "tests/support/orthogonal.hpp"

namespace nxl_test {

template <class T> struct Singular;
template <> struct Singular<double> {
    static constexpr auto gebrd = dgebrd;
    static constexpr auto bdsqr = dbdsqr;
    static constexpr auto gesvd = dgesvd;
    static constexpr auto gesdd = dgesdd;
    static constexpr auto gelss = dgelss;
    static constexpr auto gelsd = dgelsd;
    static constexpr auto orgbr = dorgbr;
};
template <> struct Singular<zcomplex> {
    static constexpr auto gebrd = zgebrd;
    static constexpr auto bdsqr = zbdsqr;
    static constexpr auto gesvd = zgesvd;
    static constexpr auto gesdd = zgesdd;
    static constexpr auto gelss = zgelss;
    static constexpr auto gelsd = zgelsd;
    static constexpr auto orgbr = zungbr;
};

/// short_rank: two thirds of the full one. tiny, huge: random near the ends of the range.
enum class Given { random, zero, unit, short_rank, graded, near_singular, tiny, huge };
inline constexpr Given all_given[] = {Given::random, Given::zero,          Given::unit, Given::short_rank,
                                      Given::graded, Given::near_singular, Given::tiny, Given::huge};

template <class T> LapackMatrix<T> given_matrix(Given given, int m, int n) {
    const MatrixKind kind = given == Given::graded          ? MatrixKind::graded
                            : given == Given::near_singular ? MatrixKind::near_singular
                                                            : MatrixKind::random;
    LapackMatrix<T> a = matrix_of<T>(kind, m, n);
    const int rank = std::min(m, n) * 2 / 3;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) {
            T& element = a.at(i, j);
            if (given == Given::zero) element = T{};
            if (given == Given::unit) element = i == j ? 1.0 : 0.0;
            if (given == Given::tiny) element *= 0x1p-1015;
            if (given == Given::huge) element *= 0x1p1015;
            if (given != Given::short_rank || rank == 0) continue;
            if (m >= n && j >= rank) element = a.at(i, j % rank) * 0.5 - a.at(i, 0);
            if (m < n && i >= rank) element = a.at(i % rank, j) * 0.5 - a.at(0, j);
        }
    return a;
}

/// Singular values of an upper bidiagonal matrix, descending, each to its last digits: bisection by the counts of the
/// matrix [0 B^T; B 0] in its tridiagonal order, in extended precision. Demmel and Kahan, SIAM J. Sci. Stat. Comput. 11
/// (1990), section 4.
inline std::vector<double> bisected_values(const std::vector<double>& d, const std::vector<double>& e) {
    const std::size_t n = d.size();
    const auto below = [&](long double x) { // eigenvalues below x, of which n are below 0
        long double pivot = -x;
        std::size_t count = pivot < 0 ? 1 : 0;
        for (std::size_t i = 0; i + 1 < 2 * n; ++i) {
            const long double off = i % 2 == 0 ? d[i / 2] : e[i / 2];
            if (pivot == 0.0L) pivot = std::numeric_limits<long double>::min();
            pivot = -x - off / pivot * off;
            if (pivot < 0) ++count;
        }
        return count - n;
    };
    std::vector<double> values(n);
    for (std::size_t k = 0; k < n; ++k) {
        long double low = 0x1p-1080L, high = 0x1p1025L;
        for (int step = 0; step < 90; ++step) {
            const long double middle = step < 12 ? std::sqrt(low) * std::sqrt(high) : (low + high) / 2;
            (below(middle) > n - 1 - k ? high : low) = middle;
        }
        values[k] = low <= 0x1p-1079L ? 0.0 : static_cast<double>(high);
    }
    return values;
}

} // namespace nxl_test
