// Matrix-vector operations. Options are the letters of the arguments, as in the call: uplo, trans, diag.
#include "bench/rows.hpp"

namespace nxl::bench {
namespace {

template <class T>
using Gemv = void(const char* trans, const int* m, const int* n, const T* alpha, const T* a, const int* lda, const T* x,
                  const int* incx, const T* beta, T* y, const int* incy);
template <class T>
using Symv = void(const char* uplo, const int* n, const T* alpha, const T* a, const int* lda, const T* x,
                  const int* incx, const T* beta, T* y, const int* incy);
template <class T>
using Ger = void(const int* m, const int* n, const T* alpha, const T* x, const int* incx, const T* y, const int* incy,
                 T* a, const int* lda);
template <class T, class Alpha>
using Syr = void(const char* uplo, const int* n, const Alpha* alpha, const T* x, const int* incx, T* a, const int* lda);
template <class T>
using Syr2 = void(const char* uplo, const int* n, const T* alpha, const T* x, const int* incx, const T* y,
                  const int* incy, T* a, const int* lda);
template <class T>
using Trv = void(const char* uplo, const char* trans, const char* diag, const int* n, const T* a, const int* lda, T* x,
                 const int* incx);

template <class T> Work gemv_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const bool transposed = which.options != "N";
    const int inputs = transposed ? m : n, outputs = transposed ? n : m;
    const double entries = double(m) * n;
    return work_in_elements<T>(entries, entries + inputs + outputs, outputs, inputs,
                               {.x = {inputs, 1}, .y = {outputs, 1}, .a = {m, n}});
}

template <class T> Work ger_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const double entries = double(m) * n;
    return work_in_elements<T>(entries, entries + m + n, entries, 1, {.x = {m, 1}, .y = {n, 1}, .a = {m, n}});
}

template <class T> Work symv_work(const Case& which) {
    const int n = which.size.n;
    const double entries = double(n) * n;
    return work_in_elements<T>(entries, entries / 2 + 2 * n, n, n, {.x = {n, 1}, .y = {n, 1}, .a = {n, n}});
}

/// Rank is 1 or 2.
template <class T, int Rank> Work syr_work(const Case& which) {
    const int n = which.size.n;
    const double triangle = double(n) * n / 2;
    return work_in_elements<T>(Rank * triangle, triangle + Rank * n, triangle, 1,
                               {.x = {n, 1}, .y = {n, 1}, .a = {n, n}});
}

template <class T> Work trv_work(const Case& which) {
    const int n = which.size.n;
    const double triangle = double(n) * n / 2;
    return work_in_elements<T>(triangle, triangle + n, n, n, {.x = {n, 1}, .a = {n, n}, .shape = Shape::own_inverse});
}

template <class T> Routine gemv(const char* name) {
    return row<Gemv<T>>(name, gemv_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), &o.size.m, &o.size.n, &alpha<T>, o.a<T>(), &o.lda, o.x<T>(), &one, &beta<T>, o.y<T>(), &one);
    });
}

template <class T> Routine symv(const char* name) {
    return row<Symv<T>>(name, symv_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), &o.size.n, &alpha<T>, o.a<T>(), &o.lda, o.x<T>(), &one, &beta<T>, o.y<T>(), &one);
    });
}

template <class T> Routine ger(const char* name) {
    return row<Ger<T>>(name, ger_work<T>, [](auto* f, Operands& o) {
        f(&o.size.m, &o.size.n, &next(o, alphas_of_both_signs<T>), o.x<T>(), &one, o.y<T>(), &one, o.a<T>(), &o.lda);
    });
}

/// Also the Hermitian update, whose alpha is real.
template <class T> Routine syr(const char* name) {
    return row<Syr<T, double>>(name, syr_work<T, 1>, [](auto* f, Operands& o) {
        f(o.option(0), &o.size.n, &next(o, alphas_of_both_signs<double>), o.x<T>(), &one, o.a<T>(), &o.lda);
    });
}

template <class T> Routine syr2(const char* name) {
    return row<Syr2<T>>(name, syr_work<T, 2>, [](auto* f, Operands& o) {
        f(o.option(0), &o.size.n, &next(o, alphas_of_both_signs<T>), o.x<T>(), &one, o.y<T>(), &one, o.a<T>(), &o.lda);
    });
}

template <class T> Routine trv(const char* name) {
    return row<Trv<T>>(name, trv_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), o.option(2), &o.size.n, o.a<T>(), &o.lda, o.x<T>(), &one);
    });
}

} // namespace

const std::vector<Routine>& level2_routines() {
    static const std::vector<Routine> rows = {
        gemv<double>("dgemv"),  gemv<zcomplex>("zgemv"), symv<double>("dsymv"),   symv<zcomplex>("zhemv"),
        ger<double>("dger"),    ger<zcomplex>("zgeru"),  ger<zcomplex>("zgerc"),  syr<double>("dsyr"),
        syr<zcomplex>("zher"),  syr2<double>("dsyr2"),   syr2<zcomplex>("zher2"), trv<double>("dtrmv"),
        trv<zcomplex>("ztrmv"), trv<double>("dtrsv"),    trv<zcomplex>("ztrsv"),
    };
    return rows;
}

} // namespace nxl::bench
