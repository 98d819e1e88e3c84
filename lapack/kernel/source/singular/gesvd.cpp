// dgesvd, zgesvd, dgesdd, zgesdd: arguments, and how long the published workspaces are.
#include "lapack/kernel/source/singular/gesvd.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/singular/decomposition.hpp"
#include "service/arguments.hpp"
#include "service/scalars.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

template <class T>
void gesvd(char jobu, char jobvt, i64 m, i64 n, T* a, i64 lda, double* s, T* u, i64 ldu, T* vt, i64 ldvt, T* work,
           i64 lwork, double* off, i64& info) {
    constexpr RoutineLetters name = routine<T>("GESVD");
    const i64 order = std::min(m, n), longer = std::max(m, n);
    const i64 least = is_complex_scalar<T> ? 2 * order + longer : std::max(3 * order + longer, 5 * order);
    const Workspace<T> space(work, lwork, std::max(least, i64{1}), std::max(least, i64{1}));
    Arguments arguments(name);
    arguments.letter(1, jobu, "ASON").expect(2, is_one_of(jobvt, "ASON") && !(jobu == 'O' && jobvt == 'O'));
    arguments.size(3, m).size(4, n).leading(6, lda, m);
    arguments.leading(9, ldu, is_one_of(jobu, "AS") ? m : 1);
    arguments.leading(11, ldvt, jobvt == 'A' ? n : jobvt == 'S' ? order : 1);
    if (arguments.workspace(13, space).refused(info) || space.is_query() || order == 0) return;
    const Decomposition<T> wanted{DiagonalBy::qr, jobu, jobvt, {a, m, n, lda}, s, u, ldu, vt, ldvt, off};
    info = wanted.run();
    if (info < 0) refuse_for_memory(name, info);
}

/// What jobz asks for: the shorter side's vectors replace the matrix with O, all of the other side's are formed.
struct Letters {
    char left, right;
};
Letters letters_of(char jobz, bool tall) {
    if (jobz != 'O') return {jobz, jobz};
    return tall ? Letters{'O', 'A'} : Letters{'A', 'O'};
}

/// The smallest of the lengths that published versions ask for.
template <class T> i64 least_for_division(char jobz, i64 order, i64 longer) {
    if constexpr (is_complex_scalar<T>) {
        switch (jobz) {
        case 'N': return 2 * order + longer;
        case 'O': return 2 * order * order + 2 * order + longer;
        case 'S': return std::min(order * order + 3 * order, order * order + 2 * order + longer);
        default: return order * order + 2 * order + longer;
        }
    } else {
        switch (jobz) {
        case 'N': return 3 * order + std::max(longer, 7 * order);
        case 'O': return 3 * order + std::max(longer, 5 * order * order + 4 * order);
        case 'S': return 4 * order * order + 7 * order;
        default:
            return std::min(4 * order * order + 6 * order + longer,
                            3 * order + std::max(longer, 4 * order * order + 4 * order));
        }
    }
}

} // namespace

void nxl_lapack_dgesvd(const char& jobu, const char& jobvt, const i64& m, const i64& n, double* a, const i64& lda,
                       double* s, double* u, const i64& ldu, double* vt, const i64& ldvt, double* work,
                       const i64& lwork, i64& info, int, int) {
    gesvd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, work + 1, info);
}
void nxl_lapack_zgesvd(const char& jobu, const char& jobvt, const i64& m, const i64& n, zcomplex* a, const i64& lda,
                       double* s, zcomplex* u, const i64& ldu, zcomplex* vt, const i64& ldvt, zcomplex* work,
                       const i64& lwork, double* rwork, i64& info, int, int) {
    gesvd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, rwork, info);
}

template <class T>
void gesdd(const char& jobz, const i64& m, const i64& n, T* a, const i64& lda, double* s, T* u, const i64& ldu, T* vt,
           const i64& ldvt, T* work, const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GESDD");
    const i64 order = std::min(m, n), least = std::max(least_for_division<T>(jobz, order, std::max(m, n)), i64{1});
    const Workspace<T> space(work, lwork, least, least);
    const auto [left, right] = letters_of(jobz, m >= n);
    Arguments arguments(name);
    arguments.letter(1, jobz, "ASON").size(2, m).size(3, n).leading(5, lda, m);
    arguments.leading(8, ldu, is_one_of(left, "AS") ? m : 1);
    arguments.leading(10, ldvt, right == 'A' ? n : right == 'S' ? order : 1);
    if (arguments.workspace(12, space).refused(info) || space.is_query() || order == 0) return;
    const Matrix<T> matrix{a, m, n, lda};
    if (std::isnan(largest_modulus<T>(matrix))) {
        info = -4; // as published, without a report
        return;
    }
    info = Decomposition<T>{DiagonalBy::division, left, right, matrix, s, u, ldu, vt, ldvt}.run();
    if (info < 0) refuse_for_memory(name, info);
}
template decltype(gesdd<double>) gesdd<double>;
template decltype(gesdd<zcomplex>) gesdd<zcomplex>;

} // namespace nxl
