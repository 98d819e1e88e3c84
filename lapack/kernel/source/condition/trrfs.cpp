// dtrrfs, ztrrfs: error bounds of solutions of triangular systems, which are accurate enough to need no refinement.
#include "lapack/kernel/source/condition/trrfs.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/condition/error_bounds.hpp"
#include "lapack/kernel/source/condition/moduli.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

template <class T> struct TriangularSystem {
    char uplo, trans, diag;
    Matrix<const T> a;

    /// The operation C stands for the adjoint of op(A). Of a transpose it is taken for its conjugate's, which has the
    /// same norms.
    void solve(char op, T* y) const {
        const bool plain = trans == 'N';
        trsv(uplo, (op == 'N') == plain ? 'N' : 'C', diag, a, y);
    }

    /// r = op(A) x - b
    void residual(const T* x, const T* b, T* r) const {
        copy(a.rows, x, 1, r, 1);
        trmv(uplo, trans, diag, a, r);
        axpy(a.rows, -1.0, b, 1, r, 1);
    }

    /// w = |op(A)| |x| + |b|
    void sizes(const T* x, const T* b, double* w) const {
        const Columns<const T> stored = triangle_of(uplo, a);
        set_moduli(a.rows, b, w);
        if (diag == 'U') add_moduli(a.rows, 1.0, x, w);
        add_product(trans, diag == 'U' ? stored.off_diagonal() : stored, x, w);
    }
};

template <class T> struct Right {
    const T* b;
    i64 ldb;
    const T* x;
    i64 ldx;
    i64 count;
};

template <class T>
bool refused(const TriangularSystem<T>& system, const Right<T>& right, i64& info) {
    Arguments arguments(routine<T>("TRRFS"));
    const i64 n = system.a.rows;
    arguments.letter(1, system.uplo, "UL").letter(2, system.trans, "NTC").letter(3, system.diag, "UN");
    arguments.size(4, n).size(5, right.count).leading(7, system.a.ld, n);
    return arguments.leading(9, right.ldb, n).leading(11, right.ldx, n).refused(info);
}

/// `r`, `v`, `w`: n elements each.
template <class T>
void bound_errors(const TriangularSystem<T>& system, const Right<T>& right, double* ferr, double* berr, T* r, T* v,
                  double* w) {
    const i64 n = system.a.rows;
    const ErrorBounds<T> bounds{n, n + 1};
    for (i64 k = 0; k < right.count; ++k) {
        const T* const x = right.x + k * right.ldx;
        const T* const b = right.b + k * right.ldb;
        ferr[k] = berr[k] = 0.0;
        if (n == 0) continue;
        system.residual(x, b, r);
        system.sizes(x, b, w);
        berr[k] = bounds.backward(r, w);
        ferr[k] = bounds.forward(r, w, v, x, [&](char op, T* y) { system.solve(op, y); });
    }
}

} // namespace

void nxl_lapack_dtrrfs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs,
                       const double* a, const i64& lda, const double* b, const i64& ldb, const double* x,
                       const i64& ldx, double* ferr, double* berr, double* work, i64*, i64& info, int, int, int) {
    const TriangularSystem<double> system{uplo, trans, diag, {a, n, n, lda}};
    const Right<double> right{b, ldb, x, ldx, nrhs};
    if (refused(system, right, info)) return;
    Sections<double> parts(work);
    double *const w = parts.take(n), *const r = parts.take(n);
    bound_errors(system, right, ferr, berr, r, parts.take(n), w);
}

void nxl_lapack_ztrrfs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs,
                       const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex* x,
                       const i64& ldx, double* ferr, double* berr, zcomplex* work, double* rwork, i64& info, int, int,
                       int) {
    const TriangularSystem<zcomplex> system{uplo, trans, diag, {a, n, n, lda}};
    const Right<zcomplex> right{b, ldb, x, ldx, nrhs};
    if (refused(system, right, info)) return;
    Sections<zcomplex> parts(work);
    zcomplex* const r = parts.take(n);
    bound_errors(system, right, ferr, berr, r, parts.take(n), rwork);
}

} // namespace nxl
