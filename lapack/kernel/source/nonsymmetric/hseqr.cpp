// dhseqr, zhseqr: the arguments, and matrices that no iteration should see.
#include "lapack/kernel/source/nonsymmetric/hseqr.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/nonsymmetric/schur.hpp"
#include "service/arguments.hpp"
#include <limits>

namespace nxl {
namespace {

/// NaN and infinity would spread over the matrix and converge to nothing.
template <class T> bool is_finite(const Matrix<T>& h, i64 first, i64 end) {
    for (i64 j = first; j < end; ++j)
        if (!(largest_abs1(std::min(j + 2, end) - first, h.at(first, j)) <= std::numeric_limits<double>::max()))
            return false;
    return true;
}

template <class T> void clear_below_subdiagonal(const Matrix<T>& h) {
    for (i64 j = 0; j + 2 < h.rows; ++j) std::fill_n(h.at(j + 2, j), h.rows - j - 2, T{});
}

template <class T> void make_identity(const Matrix<T>& z) {
    for (i64 j = 0; j < z.columns; ++j) {
        std::fill_n(z.at(0, j), z.rows, T{});
        z(j, j) = T(1.0);
    }
}

template <class T> struct HessenbergCall {
    char job, compz;
    i64 n, ilo, ihi;
    T* h;
    i64 ldh;
    T* z;
    i64 ldz;
    T* work;
    i64 lwork;

    /// `shift`: by how many places arguments behind the eigenvalues are further on than for complex matrices.
    void run(zcomplex* w, int shift, i64& info) const {
        constexpr RoutineLetters name = routine<T>("HSEQR");
        const i64 least = std::max(n, i64{1});
        const Workspace<T> space(work, lwork, least, least);
        Arguments arguments(name);
        arguments.letter(1, job, "ES").letter(2, compz, "NIV").size(3, n).expect(4, ilo >= 1 && ilo <= least);
        arguments.expect(5, ihi >= std::min(ilo, n) && ihi <= n).leading(7, ldh, n);
        arguments.leading(10 + shift, ldz, compz == 'N' ? 1 : n).workspace(12 + shift, space);
        if (arguments.refused(info) || space.is_query() || n == 0) return;
        if (!w) return refuse_for_memory(name, info);
        const Matrix<T> vectors{z, compz == 'N' ? 0 : n, n, ldz};
        if (compz == 'I') make_identity(vectors);
        info = find_schur_form(Matrix<T>{h, n, n, ldh}, vectors, job == 'S', ilo - 1, ihi, w);
    }
};

} // namespace

template <class T>
i64 find_schur_form(const Matrix<T>& h, const Matrix<T>& z, bool whole_form, i64 first, i64 end, zcomplex* w) {
    for (i64 i = 0; i < h.rows; ++i)
        if (i < first || i >= end) w[i] = h(i, i);
    std::fill_n(w + first, end - first, zcomplex(std::numeric_limits<double>::quiet_NaN()));
    if (!is_finite(h, first, end)) return end;
    clear_below_subdiagonal(h);
    return iterate_to_schur(SchurIteration<T>{h, z, whole_form, w}, first, end);
}
template i64 find_schur_form(const Matrix<double>&, const Matrix<double>&, bool, i64, i64, zcomplex*);
template i64 find_schur_form(const Matrix<zcomplex>&, const Matrix<zcomplex>&, bool, i64, i64, zcomplex*);

void nxl_lapack_dhseqr(const char& job, const char& compz, const i64& n, const i64& ilo, const i64& ihi, double* h,
                       const i64& ldh, double* wr, double* wi, double* z, const i64& ldz, double* work,
                       const i64& lwork, i64& info, int, int) {
    const HessenbergCall<double> call{job, compz, n, ilo, ihi, h, ldh, z, ldz, work, lwork};
    find_in_parts(n, lwork, wr, wi, info, [&](zcomplex* w) { call.run(w, 1, info); });
}

void nxl_lapack_zhseqr(const char& job, const char& compz, const i64& n, const i64& ilo, const i64& ihi, zcomplex* h,
                       const i64& ldh, zcomplex* w, zcomplex* z, const i64& ldz, zcomplex* work, const i64& lwork,
                       i64& info, int, int) {
    HessenbergCall<zcomplex>{job, compz, n, ilo, ihi, h, ldh, z, ldz, work, lwork}.run(w, 0, info);
}

} // namespace nxl
