// dgbrfs, zgbrfs, dpbrfs, zpbrfs: refinement of solutions of band systems.
#include "lapack/kernel/source/band/band_refinement.hpp"
#include "lapack/kernel/source/band/band_cholesky.hpp"
#include "lapack/kernel/source/band/band_lu.hpp"
#include "lapack/kernel/source/band/narrow_columns.hpp"
#include "lapack/kernel/source/condition/moduli.hpp"
#include "lapack/kernel/source/condition/refinement.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

template <class T> struct BandSystem {
    char trans;
    Columns<const T> band;
    BandLu<T> factors;

    i64 order() const { return factors.order(); }
    i64 terms() const { return std::min(band.above + band.below + 2, order() + 1); }
    void residual(const T* x, const T* b, T* r) const {
        copy(order(), b, 1, r, 1);
        for (i64 j = 0; j < order(); ++j) {
            const i64 first = band.first(j), count = band.count(j);
            if (trans == 'N') subtract_multiple(count, x[j], band.start(j), r + first);
            else r[j] -= column_dot(trans == 'C', count, band.start(j), x + first);
        }
    }
    void sizes(const T* x, const T* b, double* w) const {
        set_moduli(order(), b, w);
        add_product(trans, band, x, w);
    }
    void solve(char op, T* y) const { factors.solve(applied(op, trans), y); }
};

template <class T> struct PositiveDefiniteBand {
    char uplo;
    Columns<const T> triangle, factor;

    i64 order() const { return triangle.a.rows; }
    i64 terms() const { return std::min(2 * (triangle.above + triangle.below) + 2, order() + 1); }
    void residual(const T* x, const T* b, T* r) const {
        const Columns<const T> off = triangle.off_diagonal();
        copy(order(), b, 1, r, 1);
        for (i64 j = 0; j < order(); ++j) {
            const i64 first = off.first(j), count = off.count(j);
            subtract_multiple(count, x[j], off.start(j), r + first);
            r[j] -= std::real(triangle.a(j, j)) * x[j] + column_dot(true, count, off.start(j), x + first);
        }
    }
    void sizes(const T* x, const T* b, double* w) const {
        set_moduli(order(), b, w);
        add_symmetric_product(triangle, true, x, w);
    }
    void solve(char, T* y) const { // A is its own adjoint
        solve_band_cholesky(uplo, factor, Matrix<T>{y, order(), 1, order()});
    }
};

} // namespace

template <class T>
void gbrfs(const char& trans, const i64& n, const i64& kl, const i64& ku, const i64& nrhs, const T* ab, const i64& ldab,
           const T* afb, const i64& ldafb, const i64* ipiv, const T* b, const i64& ldb, T* x, const i64& ldx,
           double* ferr, double* berr, T* work, Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("GBRFS"));
    arguments.letter(1, trans, "NTC").size(2, n).size(3, kl).size(4, ku).size(5, nrhs).leading(7, ldab, kl + ku + 1);
    if (arguments.leading(9, ldafb, 2 * kl + ku + 1).leading(12, ldb, n).leading(14, ldx, n).refused(info)) return;
    const BandSystem<T> system{trans, band_of(ab, ldab, n, n, kl, ku), BandLu<T>::of(afb, ldafb, n, kl, ku, ipiv)};
    refine<T>(system, {{b, n, nrhs, ldb}, {x, n, nrhs, ldx}, ferr, berr}, estimate_space(n, work, spare));
}
template decltype(gbrfs<double>) gbrfs<double>;
template decltype(gbrfs<zcomplex>) gbrfs<zcomplex>;

template <class T>
void pbrfs(const char& uplo, const i64& n, const i64& kd, const i64& nrhs, const T* ab, const i64& ldab, const T* afb,
           const i64& ldafb, const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work,
           Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("PBRFS"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, kd).size(4, nrhs).leading(6, ldab, kd + 1);
    if (arguments.leading(8, ldafb, kd + 1).leading(10, ldb, n).leading(12, ldx, n).refused(info)) return;
    const PositiveDefiniteBand<T> system{uplo, triangular_band_of(uplo, ab, ldab, n, kd),
                                         triangular_band_of(uplo, afb, ldafb, n, kd)};
    refine<T>(system, {{b, n, nrhs, ldb}, {x, n, nrhs, ldx}, ferr, berr}, estimate_space(n, work, spare));
}
template decltype(pbrfs<double>) pbrfs<double>;
template decltype(pbrfs<zcomplex>) pbrfs<zcomplex>;

} // namespace nxl
