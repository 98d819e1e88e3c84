// dsyevx, zheevx, dsyevr, zheevr, dsbevx, zhbevx: reduction, then selected_pairs.hpp.
#include "lapack/kernel/source/eigen/syevx.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/eigen/sbtrd.hpp"
#include "lapack/kernel/source/eigen/selected_pairs.hpp"
#include "lapack/kernel/source/eigen/symmetric_names.hpp"
#include "lapack/kernel/source/eigen/two_stage.hpp"
#include "lapack/kernel/source/eigen/xsytrd.hpp"
#include "lapack/kernel/source/eigen/xsytrd_omp.hpp"
#include "lapack/kernel/source/orthogonal/orgtr.hpp"
#include "lapack/kernel/source/orthogonal/ormtr.hpp"

namespace nxl {
namespace {

/// A triangle multiplied by a power of two that keeps squares in the range; returns that.
template <class T> double bring_into_range(char uplo, const Matrix<T>& a) {
    const Columns<T> triangle = triangle_of(uplo, a);
    const double largest = symmetric_norm<T>('M', triangle, true, nullptr);
    const double scale = block_scale(&largest, nullptr, 1);
    for (i64 j = 0; j < a.columns && scale != 1.0; ++j) // a diagonal's imaginary part stays beside the real one
        for (i64 i = triangle.first(j); i < triangle.end(j); ++i) a(i, j) *= scale;
    return scale;
}

/// How a full matrix is best reduced. How many vectors there are in a range of values is not known beforehand.
bool takes_two_stages(const PairSelection& wanted) {
    if (!wanted.vectors()) return wanted.n >= two_stage_order;
    return wanted.n >= two_stage_order_for_vectors && wanted.range == 'I' &&
           two_stage_share * (wanted.iu - wanted.il + 1) <= wanted.n;
}

template <class T>
i64 solve_in_two_stages(const PairSelection& wanted, char uplo, double scale, const Matrix<T>& a, double* d, double* e,
                        const Pairs<T>& pairs) {
    const TwoStageReduction<T> reduction(uplo, a, two_stage_width, wanted.vectors());
    if (!reduction.reduce(d, e)) return -1000;
    const auto form_q = [](const Matrix<T>&) { return false; }; // for QL with all vectors
    const auto multiply = [&](const Matrix<T>& vectors) { return reduction.multiply(vectors); };
    return find_pairs<T>(wanted, scale, d, e, pairs, form_q, multiply);
}

/// What the drivers for full matrices share, behind their checks. Returns info, -1000 when there was no memory.
template <class T>
i64 solve_full(const PairSelection& wanted, char uplo, const Matrix<T>& a, const Pairs<T>& pairs, T* work, i64 lwork) {
    const i64 n = wanted.n;
    const Scratch<double> tridiagonal(2 * n);
    const Scratch<T> scalars(n);
    if (!tridiagonal.data() || !scalars.data()) return -1000;
    double *const d = tridiagonal.data(), *const e = d + n;
    const double scale = bring_into_range(uplo, a);
    if (takes_two_stages(wanted)) return solve_in_two_stages(wanted, uplo, scale, a, d, e, pairs);
    i64 info = 0;
    sytrd(uplo, n, a.data, a.ld, d, e, scalars.data(), work, lwork, info);
    const auto form_q = [&](const Matrix<T>& q) {
        const Columns<T> from = triangle_of(uplo, a);
        for (i64 j = 0; j < n; ++j) std::copy(from.start(j), from.start(j) + from.count(j), q.at(from.first(j), j));
        i64 status = 0;
        orgtr(uplo, n, q.data, q.ld, scalars.data(), work, lwork, status);
        return status == 0;
    };
    const auto multiply = [&](const Matrix<T>& vectors) {
        i64 status = 0;
        ormtr('L', uplo, 'N', n, vectors.columns, a.data, a.ld, scalars.data(), vectors.data, vectors.ld, work, lwork,
              status);
        return status == 0;
    };
    return find_pairs<T>(wanted, scale, d, e, pairs, form_q, multiply);
}

/// The elements that the work of a full matrix is best done with.
template <class T> i64 best_length(i64 n, i64 least) { return std::max(least, (tridiagonal_sizes<T>.block + 3) * n); }

} // namespace

template <class T>
void syevx(const char& jobz, const char& range, const char& uplo, const i64& n, T* a, const i64& lda, const double& vl,
           const double& vu, const i64& il, const i64& iu, const double& abstol, i64& m, double* w, T* z,
           const i64& ldz, T* work, const i64& lwork, i64* ifail, i64& info) {
    constexpr i64 vectors_of_n = is_complex_scalar<T> ? 2 : 8; // that the published workspace has at least
    const i64 least = n <= 1 ? 1 : vectors_of_n * n;
    const Workspace<T> space{work, lwork, least, best_length<T>(n, least)};
    const PairSelection wanted{jobz, range, n, vl, vu, il, iu, abstol};
    Arguments arguments(symmetric_routine<T>("EVX"));
    arguments.letter(1, jobz, "NV").letter(2, range, "AVI").letter(3, uplo, "UL").size(4, n).leading(6, lda, n);
    wanted.check(arguments, 8);
    if (arguments.leading(15, ldz, jobz == 'V' ? n : 1).workspace(17, space).refused(info)) return;
    if (space.is_query()) return;
    m = 0;
    if (n == 0) return;
    info = solve_full<T>(wanted, uplo, {a, n, n, lda}, {m, w, {z, n, n, ldz}, ifail}, work, lwork);
    if (info < 0) refuse_for_memory(symmetric_routine<T>("EVX"), info);
}

template <class T>
void syevr(const char& jobz, const char& range, const char& uplo, const i64& n, T* a, const i64& lda, const double& vl,
           const double& vu, const i64& il, const i64& iu, const double& abstol, i64& m, double* w, T* z,
           const i64& ldz, i64* isuppz, T* work, const i64& lwork, const RealWorkspace& real, i64* iwork,
           const i64& liwork, i64& info) {
    constexpr bool real_work = is_complex_scalar<T>;
    const auto at_least = [&](i64 vectors) { return std::max(vectors * n, i64{1}); }; // as published
    const i64 least = at_least(real_work ? 2 : 26), least_real = at_least(24), least_integers = at_least(10);
    const bool query = lwork == -1 || liwork == -1 || (real_work && real.length == -1);
    const i64 best = best_length<T>(n, least);
    const PairSelection wanted{jobz, range, n, vl, vu, il, iu, abstol, true};
    Arguments arguments(symmetric_routine<T>("EVR"));
    arguments.letter(1, jobz, "NV").letter(2, range, "AVI").letter(3, uplo, "UL").size(4, n).leading(6, lda, n);
    wanted.check(arguments, 8);
    arguments.leading(15, ldz, jobz == 'V' ? n : 1).expect(18, query || lwork >= least);
    if (real_work) arguments.expect(20, query || real.length >= least_real);
    if (arguments.expect(real_work ? 22 : 20, query || liwork >= least_integers).refused(info)) return;
    const auto tell_lengths = [&] {
        work[0] = T(static_cast<double>(best));
        if (real_work) real.work[0] = static_cast<double>(least_real);
        iwork[0] = least_integers;
    };
    tell_lengths();
    if (query) return;
    m = 0;
    if (n == 0) return;
    info = solve_full<T>(wanted, uplo, {a, n, n, lda}, {m, w, {z, n, n, ldz}, nullptr, isuppz}, work, lwork);
    tell_lengths();
    if (info < 0) refuse_for_memory(symmetric_routine<T>("EVR"), info);
}

template <class T>
void sbevx(const char& jobz, const char& range, const char& uplo, const i64& n, const i64& kd, const T* ab,
           const i64& ldab, T* q, const i64& ldq, const double& vl, const double& vu, const i64& il, const i64& iu,
           const double& abstol, i64& m, double* w, T* z, const i64& ldz, i64* ifail, i64& info) {
    constexpr RoutineLetters name = is_complex_scalar<T> ? RoutineLetters("ZHBEVX") : RoutineLetters("DSBEVX");
    const PairSelection wanted{jobz, range, n, vl, vu, il, iu, abstol};
    const i64 rows = wanted.vectors() ? n : 1;
    Arguments arguments(name);
    arguments.letter(1, jobz, "NV").letter(2, range, "AVI").letter(3, uplo, "UL").size(4, n).size(5, kd);
    arguments.expect(7, ldab >= kd + 1).expect(9, !wanted.vectors() || ldq >= std::max(n, i64{1}));
    wanted.check(arguments, 11);
    if (arguments.leading(18, ldz, rows).refused(info)) return;
    m = 0;
    if (n == 0) return;
    const Matrix<T> orthogonal{q, n, n, ldq};
    const Scratch<double> tridiagonal(2 * n);
    const HermitianBand<T> a{uplo, n, kd, ab, ldab};
    const double largest = a.largest(), scale = block_scale(&largest, nullptr, 1);
    double *const d = tridiagonal.data(), *const e = d + n;
    if (!d || !sbtrd(a, scale, d, e, wanted.vectors(), orthogonal)) return refuse_for_memory(name, info);
    const auto form_q = [&](const Matrix<T>& to) {
        for (i64 j = 0; j < n; ++j) std::copy(orthogonal.at(0, j), orthogonal.at(0, j) + n, to.at(0, j));
        return true;
    };
    const auto multiply = [&](const Matrix<T>& vectors) {
        const Scratch<T> copy(n * vectors.columns);
        if (!copy.data()) return false;
        const Matrix<T> of_t{copy.data(), n, vectors.columns, n};
        for (i64 j = 0; j < vectors.columns; ++j) std::copy(vectors.at(0, j), vectors.at(0, j) + n, of_t.at(0, j));
        gemm('N', 'N', 1.0, orthogonal, of_t, 0.0, vectors);
        return true;
    };
    info = find_pairs<T>(wanted, scale, d, e, {m, w, {z, n, n, ldz}, ifail}, form_q, multiply);
    if (info < 0) refuse_for_memory(name, info);
}

template void syevx<double>(const char&, const char&, const char&, const i64&, double*, const i64&, const double&,
                            const double&, const i64&, const i64&, const double&, i64&, double*, double*, const i64&,
                            double*, const i64&, i64*, i64&);
template void syevx<zcomplex>(const char&, const char&, const char&, const i64&, zcomplex*, const i64&, const double&,
                              const double&, const i64&, const i64&, const double&, i64&, double*, zcomplex*,
                              const i64&, zcomplex*, const i64&, i64*, i64&);
template void syevr<double>(const char&, const char&, const char&, const i64&, double*, const i64&, const double&,
                            const double&, const i64&, const i64&, const double&, i64&, double*, double*, const i64&,
                            i64*, double*, const i64&, const RealWorkspace&, i64*, const i64&, i64&);
template void syevr<zcomplex>(const char&, const char&, const char&, const i64&, zcomplex*, const i64&, const double&,
                              const double&, const i64&, const i64&, const double&, i64&, double*, zcomplex*,
                              const i64&, i64*, zcomplex*, const i64&, const RealWorkspace&, i64*, const i64&, i64&);
template void sbevx<double>(const char&, const char&, const char&, const i64&, const i64&, const double*, const i64&,
                            double*, const i64&, const double&, const double&, const i64&, const i64&, const double&,
                            i64&, double*, double*, const i64&, i64*, i64&);
template void sbevx<zcomplex>(const char&, const char&, const char&, const i64&, const i64&, const zcomplex*,
                              const i64&, zcomplex*, const i64&, const double&, const double&, const i64&, const i64&,
                              const double&, i64&, double*, zcomplex*, const i64&, i64*, i64&);

} // namespace nxl
