// Positive definite matrices, symmetric or Hermitian, and how well a factor or a solution belongs to one.
#pragma once
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/scalars.hpp"

namespace nxl_test {

/// How a matrix is made: random; the same with rows and columns scaled over ten decimal orders; of rank 1 but for a
/// small multiple of I; 1/(i+j+1) with such a multiple.
enum class Spectrum { random, graded, nearly_singular, hilbert };

template <class T> class PositiveDefinite {
    int n_;
    std::vector<T> values_; // both triangles

  public:
    PositiveDefinite(int n, Spectrum spectrum, unsigned seed)
        : n_(n),
          values_(static_cast<std::size_t>(n) * static_cast<std::size_t>(n)) {
        Generator generator(seed);
        const std::vector<T> v = random_values<T>(n, seed + 1);
        const auto element = [&](int i, int j) -> T {
            const T outer = v[static_cast<std::size_t>(i)] * conjugate(v[static_cast<std::size_t>(j)]);
            const T plain = i == j ? T(n + 1.0) : random_value<T>(generator);
            switch (spectrum) {
            case Spectrum::random: return plain;
            case Spectrum::graded: return plain * std::pow(10.0, 5.0 * std::sin(i) + 5.0 * std::sin(j));
            case Spectrum::nearly_singular: return outer + (i == j ? 1e-8 : 0.0);
            case Spectrum::hilbert: return 1.0 / (i + j + 1.0) + (i == j ? 1e-10 : 0.0);
            }
            return {};
        };
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i) {
                const T value = i == j ? T(std::real(element(i, i))) : element(i, j);
                at(i, j) = value;
                at(j, i) = conjugate(value);
            }
    }

    int n() const { return n_; }
    T& at(int i, int j) { return values_[static_cast<std::size_t>(i + std::int64_t{j} * n_)]; }
    const T& at(int i, int j) const { return values_[static_cast<std::size_t>(i + std::int64_t{j} * n_)]; }

    /// The triangle as a routine gets it; NaN elsewhere, in the imaginary parts of the diagonal too.
    GuardedMatrix<T> triangle(char uplo, int lda) const {
        const Part part = uplo == 'U' || uplo == 'u' ? Part::upper : Part::lower;
        return {MatrixShape{n_, n_, lda, part, Diagonal::real}, Flush::end, [&](int i, int j) { return at(i, j); }};
    }

    /// |A x - y| / (n eps |A| |x|), element by element, with sqrt(a_ii a_jj) as the size of a_ij: the bound for a
    /// factorisation without pivoting (Higham, Accuracy and Stability, 2nd ed., theorem 10.5), the same for all grades.
    double residual(const T* x, const T* y) const {
        std::vector<T> ax(static_cast<std::size_t>(n_));
        double size = 0.0, worst = 0.0;
        for (int j = 0; j < n_; ++j) {
            size += std::sqrt(std::real(at(j, j))) * std::abs(x[j]);
            for (int i = 0; i < n_; ++i) ax[static_cast<std::size_t>(i)] += at(i, j) * x[j];
        }
        for (int i = 0; i < n_; ++i) {
            const double error = std::abs(ax[static_cast<std::size_t>(i)] - y[i]) / std::sqrt(std::real(at(i, i)));
            if (!(error <= worst)) worst = error; // a NaN stays
        }
        return worst == 0.0 ? 0.0 : worst / (size * n_ * eps);
    }

    /// The residual of the factor L, or U = L^H, on a vector that gives all columns the same weight.
    double factor_residual(char uplo, const T* factor, int lda) const {
        const bool upper = uplo == 'U' || uplo == 'u';
        const auto l = [&](int i, int j) {
            return upper ? conjugate(factor[j + std::int64_t{i} * lda]) : factor[i + std::int64_t{j} * lda];
        };
        std::vector<T> x = random_values<T>(n_, 99), z(x.size()), y(x.size());
        T *const px = x.data(), *const pz = z.data(), *const py = y.data();
        for (int i = 0; i < n_; ++i) px[i] /= std::sqrt(std::real(at(i, i)));
        for (int j = 0; j < n_; ++j)
            for (int i = j; i < n_; ++i) pz[j] += conjugate(l(i, j)) * px[i];
        for (int j = 0; j < n_; ++j)
            for (int i = j; i < n_; ++i) py[i] += l(i, j) * pz[j];
        return residual(px, py);
    }
};

} // namespace nxl_test
