// Eigenvalues and Schur form of a Hessenberg matrix.
#pragma once
#include "service/matrix.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl {

/// Options are capitals. See dhseqr and zhseqr in nxl.h.
void nxl_lapack_dhseqr(const char& job, const char& compz, const i64& n, const i64& ilo, const i64& ihi, double* h,
                       const i64& ldh, double* wr, double* wi, double* z, const i64& ldz, double* work,
                       const i64& lwork, i64& info, int job_length = 1, int compz_length = 1);
void nxl_lapack_zhseqr(const char& job, const char& compz, const i64& n, const i64& ilo, const i64& ihi, zcomplex* h,
                       const i64& ldh, zcomplex* w, zcomplex* z, const i64& ldz, zcomplex* work, const i64& lwork,
                       i64& info, int job_length = 1, int compz_length = 1);

/// The same of views: H is Hessenberg in rows first .. end - 1, from 0, whatever stands below, and triangular outside.
/// With `whole_form` it becomes the Schur form; z, without rows where it is not wanted, Z times what does that. w: all
/// eigenvalues. Answers 0, or the end of the rows whose eigenvalues have not been found and are NaN.
template <class T>
i64 find_schur_form(const Matrix<T>& h, const Matrix<T>& z, bool whole_form, i64 first, i64 end, zcomplex* w);

/// find(w) finds n eigenvalues, or refuses where w is null; their parts become wr and wi. `find` sets info.
template <class Find>
void find_in_parts(i64 n, i64 lwork, double* wr, double* wi, const i64& info, const Find& find) {
    const i64 count = lwork == -1 ? 0 : std::max(n, i64{0});
    const Scratch<zcomplex> w(count);
    find(w.data());
    for (i64 i = 0; i < count && info >= 0; ++i) {
        wr[i] = w.data()[i].real();
        wi[i] = w.data()[i].imag();
    }
}

} // namespace nxl
