// Symmetric tridiagonal matrices that are hard on eigensolvers, and how good their eigenvalues and vectors are.
#pragma once
#include "tests/support/lapack_matrices.hpp"
#include "tests/support/reference_blas.hpp"

namespace nxl_test {

struct Tridiagonal {
    std::vector<double> d, e; // e has one element more than is used

    explicit Tridiagonal(int n) : d(static_cast<std::size_t>(n)), e(static_cast<std::size_t>(std::max(n, 1))) {}
    int order() const { return static_cast<int>(d.size()); }
    double norm() const {
        double largest = 0.0;
        for (std::size_t i = 0; i < d.size(); ++i) largest = std::max({largest, std::abs(d[i]), std::abs(e[i])});
        return largest;
    }
};

/// wilkinson: pairs of close values. glued: copies of W21+ held together by 1e-14. graded: over 600 orders. tiny, huge:
/// at the ends of the range. laplacian: 2 - 2 cos(k pi / (n + 1)). steep: the rows of a graded positive definite one.
enum class Kind { zero, identity, random, laplacian, wilkinson, glued, clustered, graded, tiny, huge, split, steep };
inline constexpr Kind all_kinds[] = {Kind::zero,      Kind::identity, Kind::random,    Kind::laplacian,
                                     Kind::wilkinson, Kind::glued,    Kind::clustered, Kind::graded,
                                     Kind::tiny,      Kind::huge,     Kind::split,     Kind::steep};

inline Tridiagonal tridiagonal_of(Kind kind, int n) {
    Tridiagonal t(n);
    Generator generator(static_cast<unsigned long>(n) + 3);
    for (int i = 0; i < n; ++i) {
        double &d = t.d[static_cast<std::size_t>(i)], &e = t.e[static_cast<std::size_t>(i)];
        d = random_value<double>(generator);
        e = random_value<double>(generator);
        switch (kind) {
        case Kind::zero: d = e = 0.0; break;
        case Kind::identity: d = 1.0, e = 0.0; break;
        case Kind::random: break;
        case Kind::laplacian: d = 2.0, e = -1.0; break;
        case Kind::wilkinson: d = std::abs(i - (n - 1) / 2), e = 1.0; break;
        case Kind::glued: d = std::abs(i % 21 - 10), e = i % 21 == 20 ? 1e-14 : 1.0; break;
        case Kind::clustered: d = 1.0 + 1e-12 * d, e *= 1e-13; break;
        case Kind::graded:
            d *= std::pow(10.0, 300.0 - 600.0 * i / n), e *= std::pow(10.0, 299.0 - 600.0 * i / n);
            break;
        case Kind::tiny: d *= 1e-308, e *= 3e-308; break;
        case Kind::huge: d *= 8e307, e *= 4e307; break;
        case Kind::split: e = i % 3 == 0 ? 0.0 : e; break;
        case Kind::steep: d = std::pow(2.0, -i), e = 0.4 * std::pow(2.0, -i - 0.5); break;
        }
    }
    if (n > 0) t.e[static_cast<std::size_t>(n) - 1] = 0.0;
    return t;
}

/// The largest error of T Z = Z diag(w) and, for orthonormal Z, of Z^H Z = I, in units of eps and the norm: for each
/// column of z, which belongs to the value of the same number.
template <class T> struct Quality {
    double residual = 0.0, orthogonality = 0.0;
};

template <class T>
Quality<T> quality_of(const Tridiagonal& t, const std::vector<double>& w, const LapackMatrix<T>& z, int count) {
    Quality<T> result;
    const int n = t.order();
    const double scale =
        t.norm() > 0.0 ? std::ldexp(1.0, -std::max(std::ilogb(t.norm()), -1000)) : 1.0; // so that nothing overflows
    const auto worse = [](double& worst, double value) { worst = value <= worst ? worst : value; }; // NaN stays
    const auto at = [](const std::vector<double>& v, int i) { return v[static_cast<std::size_t>(i)]; };
    for (int j = 0; j < count; ++j) {
        for (int i = 0; i < n; ++i) {
            T sum = z.at(i, j) * (scale * at(t.d, i) - scale * at(w, j));
            if (i > 0) sum += z.at(i - 1, j) * (scale * at(t.e, i - 1));
            if (i + 1 < n) sum += z.at(i + 1, j) * (scale * at(t.e, i));
            worse(result.residual, std::abs(sum) / (n * eps));
        }
        for (int k = 0; k <= j; ++k) {
            T sum = k == j ? T{-1.0} : T{};
            for (int i = 0; i < n; ++i) sum += conjugate(z.at(i, k)) * z.at(i, j);
            worse(result.orthogonality, std::abs(sum) / (n * eps));
        }
    }
    return result;
}

/// The eigenvalues by the reference's bisection, ascending, to the last few digits relative to the largest.
inline std::vector<double> reference_values(Tridiagonal t) {
    using Stebz = void(const char*, const char*, const int*, const double*, const double*, const int*, const int*,
                       const double*, const double*, const double*, int*, int*, double*, int*, int*, double*, int*,
                       int*, std::size_t, std::size_t);
    const int n = t.order();
    const std::size_t room = static_cast<std::size_t>(n) + 1;
    std::vector<double> w(room), work(4 * room);
    std::vector<int> iblock(room), isplit(room), iwork(3 * room);
    int m = 0, parts = 0, info = -1;
    const double zero = 0.0;
    const int power = t.norm() > 0.0 ? std::ilogb(t.norm()) : 0; // the reference squares what it is given
    for (double& element : t.d) element = std::ldexp(element, -power);
    for (double& element : t.e) element = std::ldexp(element, -power);
    reference<Stebz>("dstebz_")("A", "E", &n, &zero, &zero, &n, &n, &zero, t.d.data(), t.e.data(), &m, &parts, w.data(),
                                iblock.data(), isplit.data(), work.data(), iwork.data(), &info, 1, 1);
    w.resize(static_cast<std::size_t>(n));
    for (double& value : w) value = std::ldexp(value, power);
    return w;
}

inline std::string name_of(Kind kind, int n) {
    return "kind " + std::to_string(static_cast<int>(kind)) + " n " + std::to_string(n);
}

} // namespace nxl_test
