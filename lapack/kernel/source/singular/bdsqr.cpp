// dbdsqr, zbdsqr. Rows of VT and C are turned as columns of their adjoints.
#include "lapack/kernel/source/singular/bdsqr.hpp"
#include "lapack/kernel/source/common/adjoint.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/singular/bidiagonal_qr.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"

namespace nxl {

template <class T>
void bdsqr(const char& uplo, const i64& n, const i64& ncvt, const i64& nru, const i64& ncc, double* d, double* e, T* vt,
           const i64& ldvt, T* u, const i64& ldu, T* c, const i64& ldc, double*, i64& info, int) {
    constexpr RoutineLetters name = routine<T>("BDSQR");
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).size(3, ncvt).size(4, nru).size(5, ncc);
    arguments.leading(9, ldvt, ncvt > 0 ? n : 0).leading(11, ldu, nru).leading(13, ldc, ncc > 0 ? n : 0);
    if (arguments.refused(info) || n == 0) return;
    const Scratch<T> memory((ncvt + ncc) * n);
    if (!memory.data() && ncvt + ncc > 0) return refuse_for_memory(name, info);
    const Matrix<T> rows_of_vt{vt, n, ncvt, ldvt}, rows_of_c{c, n, ncc, ldc};
    const Matrix<T> right{memory.data(), ncvt, n, std::max(ncvt, i64{1})};
    const Matrix<T> other{memory.data() + ncvt * n, ncc, n, std::max(ncc, i64{1})};
    copy_adjoint<T>(rows_of_vt, right);
    copy_adjoint<T>(rows_of_c, other);
    info = bidiagonal_qr<T>(uplo, n, d, e, {right, {u, nru, n, ldu}, other});
    if (info < 0) return refuse_for_memory(name, info);
    copy_adjoint<T>(right, rows_of_vt);
    copy_adjoint<T>(other, rows_of_c);
}
template decltype(bdsqr<double>) bdsqr<double>;
template decltype(bdsqr<zcomplex>) bdsqr<zcomplex>;

} // namespace nxl
