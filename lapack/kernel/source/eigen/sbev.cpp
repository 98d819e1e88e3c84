// dsbev, zhbev, dsbevd, zhbevd: to tridiagonal form, then QL, or divide and conquer.
#include "lapack/kernel/source/eigen/sbev.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/eigen/band_to_tridiagonal.hpp"
#include "lapack/kernel/source/eigen/sbtrd.hpp"
#include "lapack/kernel/source/eigen/stedc.hpp"
#include "lapack/kernel/source/eigen/steqr.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"

namespace nxl {
namespace {

constexpr i64 no_memory = -1000;

/// The checks that all forms share.
template <class T>
void check(Arguments& arguments, char jobz, const HermitianBand<T>& a, i64 ldz) {
    arguments.letter(1, jobz, "NV").letter(2, a.uplo, "UL").size(3, a.n).size(4, a.kd);
    arguments.expect(6, a.ldab >= a.kd + 1).leading(9, ldz, jobz == 'V' ? a.n : 1);
}

template <class T>
void solve(const RoutineLetters& name, char jobz, const HermitianBand<T>& a, double* w, T* z, i64 ldz, i64& info) {
    const i64 n = a.n;
    if (n == 0) return;
    const Scratch<double> e(n);
    const double largest = a.largest(), scale = block_scale(&largest, nullptr, 1);
    if (!e.data() || !sbtrd(a, scale, w, e.data(), jobz == 'V', {z, n, n, ldz})) return refuse_for_memory(name, info);
    steqr<T>(jobz, n, w, e.data(), z, jobz == 'V' ? ldz : 1, nullptr, info, 1);
    for (i64 i = 0; i < n; ++i) w[i] /= scale;
}

/// All pairs of scale A by divide and conquer; `multiply` makes its vectors of the vectors z of T.
template <class T, class Multiply>
i64 divide_tridiagonal(const HermitianBand<T>& a, double scale, double* w, double* e, const Matrix<T>& z,
                       const Multiply& multiply) {
    const i64 info = stedc(a.n, w, e, z);
    for (i64 i = 0; i < a.n; ++i) w[i] /= scale;
    return info == 0 && !multiply() ? no_memory : info;
}

/// A band that is tridiagonal has a diagonal Q, which turns rows alone.
template <class T> i64 divide(const HermitianBand<T>& a, double* w, const Matrix<T>& z) {
    const i64 n = a.n;
    const Scratch<double> e(n);
    const double largest = a.largest(), scale = block_scale(&largest, nullptr, 1);
    if (!e.data()) return no_memory;
    if (a.kd <= 1) {
        const Scratch<T> turns(n);
        if (!turns.data()) return no_memory;
        tridiagonal_band(a, scale, w, e.data(), turns.data());
        return divide_tridiagonal(a, scale, w, e.data(), z, [&] {
            for (i64 j = 0; j < n && is_complex_scalar<T>; ++j)
                for (i64 i = 0; i < n; ++i) z(i, j) *= turns.data()[i];
            return true;
        });
    }
    const BandReduction<T> reduction(n, a.width(), true);
    if (!reduction.is_ready()) return no_memory;
    a.copy_lower(scale, reduction.band());
    reduction.reduce(w, e.data());
    return divide_tridiagonal(a, scale, w, e.data(), z, [&] { return reduction.multiply(z); });
}

/// The forms with D.
template <class T>
void solve_or_divide(const RoutineLetters& name, char jobz, const HermitianBand<T>& a, double* w, T* z, i64 ldz,
                     i64& info) {
    if (jobz == 'N') return solve(name, jobz, a, w, z, ldz, info);
    if (a.n > 0) info = divide(a, w, {z, a.n, a.n, ldz});
    if (info < 0) refuse_for_memory(name, info);
}

/// What the forms with D ask of the caller: workspaces that divide and conquer fills.
struct Lengths {
    i64 real, integer;
};
constexpr Lengths lengths(char jobz, i64 n, i64 values_alone) {
    if (n <= 1) return {1, 1};
    return jobz == 'V' ? Lengths{1 + 5 * n + 2 * n * n, 3 + 5 * n} : Lengths{values_alone * n, 1};
}

} // namespace

void nxl_lapack_dsbev(const char& jobz, const char& uplo, const i64& n, const i64& kd, const double* ab,
                      const i64& ldab, double* w, double* z, const i64& ldz, double*, i64& info, int, int) {
    Arguments arguments("DSBEV ");
    const HermitianBand<double> a{uplo, n, kd, ab, ldab};
    check(arguments, jobz, a, ldz);
    if (!arguments.refused(info)) solve("DSBEV ", jobz, a, w, z, ldz, info);
}

void nxl_lapack_zhbev(const char& jobz, const char& uplo, const i64& n, const i64& kd, const zcomplex* ab,
                      const i64& ldab, double* w, zcomplex* z, const i64& ldz, zcomplex*, double*, i64& info, int,
                      int) {
    Arguments arguments("ZHBEV ");
    const HermitianBand<zcomplex> a{uplo, n, kd, ab, ldab};
    check(arguments, jobz, a, ldz);
    if (!arguments.refused(info)) solve("ZHBEV ", jobz, a, w, z, ldz, info);
}

void nxl_lapack_dsbevd(const char& jobz, const char& uplo, const i64& n, const i64& kd, const double* ab,
                       const i64& ldab, double* w, double* z, const i64& ldz, double* work, const i64& lwork,
                       i64* iwork, const i64& liwork, i64& info, int, int) {
    Arguments arguments("DSBEVD");
    const HermitianBand<double> a{uplo, n, kd, ab, ldab};
    const Lengths least = lengths(jobz, n, 2);
    const bool query = lwork == -1 || liwork == -1;
    check(arguments, jobz, a, ldz);
    arguments.expect(11, query || lwork >= least.real).expect(13, query || liwork >= least.integer);
    if (arguments.refused(info)) return;
    work[0] = static_cast<double>(least.real);
    iwork[0] = least.integer;
    if (!query) solve_or_divide("DSBEVD", jobz, a, w, z, ldz, info);
}

void nxl_lapack_zhbevd(const char& jobz, const char& uplo, const i64& n, const i64& kd, const zcomplex* ab,
                       const i64& ldab, double* w, zcomplex* z, const i64& ldz, zcomplex* work, const i64& lwork,
                       double* rwork, const i64& lrwork, i64* iwork, const i64& liwork, i64& info, int, int) {
    Arguments arguments("ZHBEVD");
    const HermitianBand<zcomplex> a{uplo, n, kd, ab, ldab};
    const Lengths least = lengths(jobz, n, 1);
    const i64 complex_least = n <= 1 ? 1 : jobz == 'V' ? 2 * n * n : n;
    const bool query = lwork == -1 || lrwork == -1 || liwork == -1;
    check(arguments, jobz, a, ldz);
    arguments.expect(11, query || lwork >= complex_least).expect(13, query || lrwork >= least.real);
    if (arguments.expect(15, query || liwork >= least.integer).refused(info)) return;
    work[0] = static_cast<double>(complex_least);
    rwork[0] = static_cast<double>(least.real);
    iwork[0] = least.integer;
    if (!query) solve_or_divide("ZHBEVD", jobz, a, w, z, ldz, info);
}

} // namespace nxl
