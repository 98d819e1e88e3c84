// Matrix-matrix operations. Options are the letters of the arguments, as in the call: side, uplo, trans, diag.
#include "bench/rows.hpp"

namespace nxl::bench {
namespace {

template <class T>
using Gemm = void(const char* transa, const char* transb, const int* m, const int* n, const int* k, const T* alpha,
                  const T* a, const int* lda, const T* b, const int* ldb, const T* beta, T* c, const int* ldc);
template <class T>
using Symm = void(const char* side, const char* uplo, const int* m, const int* n, const T* alpha, const T* a,
                  const int* lda, const T* b, const int* ldb, const T* beta, T* c, const int* ldc);
template <class T, class Scalar>
using Syrk = void(const char* uplo, const char* trans, const int* n, const int* k, const Scalar* alpha, const T* a,
                  const int* lda, const Scalar* beta, T* c, const int* ldc);
template <class T, class Beta>
using Syr2k = void(const char* uplo, const char* trans, const int* n, const int* k, const T* alpha, const T* a,
                   const int* lda, const T* b, const int* ldb, const Beta* beta, T* c, const int* ldc);
template <class T>
using Trm = void(const char* side, const char* uplo, const char* trans, const char* diag, const int* m, const int* n,
                 const T* alpha, const T* a, const int* lda, T* b, const int* ldb);

Extent stored_as(char trans, int rows, int columns) {
    return trans == 'N' ? Extent{rows, columns} : Extent{columns, rows};
}

template <class T> Work gemm_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const double result = double(m) * n;
    return work_in_elements<T>(
        result * k, double(m) * k + double(k) * n + result, result, k,
        {.a = stored_as(which.options[0], m, k), .b = stored_as(which.options[1], k, n), .c = {m, n}});
}

template <class T> Work symm_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const int order = which.options[0] == 'L' ? m : n;
    const double result = double(m) * n;
    return work_in_elements<T>(result * order, double(order) * order / 2 + 2 * result, result, order,
                               {.a = {order, order}, .b = {m, n}, .c = {m, n}});
}

/// Products is 1, or 2 with the matrix b.
template <class T, int Products> Work syrk_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const Extent input = stored_as(which.options[1], n, k);
    const double triangle = double(n) * n / 2;
    return work_in_elements<T>(Products * triangle * k, Products * double(n) * k + triangle, triangle, k,
                               {.a = input, .b = Products == 2 ? input : Extent{}, .c = {n, n}});
}

template <class T> Work trm_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const int order = which.options[0] == 'L' ? m : n;
    const double result = double(m) * n;
    return work_in_elements<T>(result * order / 2, double(order) * order / 2 + result, result, order,
                               {.a = {order, order}, .b = {m, n}, .shape = Shape::own_inverse});
}

template <class T> Routine gemm(const char* name) {
    return row<Gemm<T>>(name, gemm_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), &o.size.m, &o.size.n, &o.size.k, &alpha<T>, o.a<T>(), &o.lda, o.b<T>(), &o.ldb,
          &beta<T>, o.c<T>(), &o.ldc);
    });
}

template <class T> Routine symm(const char* name) {
    return row<Symm<T>>(name, symm_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), &o.size.m, &o.size.n, &alpha<T>, o.a<T>(), &o.lda, o.b<T>(), &o.ldb, &beta<T>,
          o.c<T>(), &o.ldc);
    });
}

/// The Hermitian update has real scalars.
template <class T, class Scalar> Routine syrk(const char* name) {
    return row<Syrk<T, Scalar>>(name, syrk_work<T, 1>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), &o.size.n, &o.size.k, &next(o, alphas_of_both_signs<Scalar>), o.a<T>(), &o.lda,
          &beta<Scalar>, o.c<T>(), &o.ldc);
    });
}

template <class T, class Beta> Routine syr2k(const char* name) {
    return row<Syr2k<T, Beta>>(name, syrk_work<T, 2>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), &o.size.n, &o.size.k, &next(o, alphas_of_both_signs<T>), o.a<T>(), &o.lda, o.b<T>(),
          &o.ldb, &beta<Beta>, o.c<T>(), &o.ldc);
    });
}

template <class T> Routine trm(const char* name) {
    return row<Trm<T>>(name, trm_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), o.option(2), o.option(3), &o.size.m, &o.size.n, &next(o, doubling_and_halving<T>),
          o.a<T>(), &o.lda, o.b<T>(), &o.ldb);
    });
}

} // namespace

const std::vector<Routine>& level3_routines() {
    static const std::vector<Routine> rows = {
        gemm<double>("dgemm"),
        gemm<zcomplex>("zgemm"),
        symm<double>("dsymm"),
        symm<zcomplex>("zsymm"),
        symm<zcomplex>("zhemm"),
        syrk<double, double>("dsyrk"),
        syrk<zcomplex, zcomplex>("zsyrk"),
        syrk<zcomplex, double>("zherk"),
        syr2k<double, double>("dsyr2k"),
        syr2k<zcomplex, zcomplex>("zsyr2k"),
        syr2k<zcomplex, double>("zher2k"),
        trm<double>("dtrmm"),
        trm<zcomplex>("ztrmm"),
        trm<double>("dtrsm"),
        trm<zcomplex>("ztrsm"),
    };
    return rows;
}

} // namespace nxl::bench
