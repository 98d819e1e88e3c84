// Factorisations, and what is done with their factors. Options are the letters of the arguments, as in the call: uplo,
// trans, diag. Every call finds its input restored. Hidden lengths of characters stand behind the arguments, in a size
// that serves callees which expect fewer bits as well.
#include "bench/rows.hpp"
#include <cstddef>

namespace nxl::bench {
namespace {

template <class T> using Getrf = void(const int* m, const int* n, T* a, const int* lda, int* ipiv, int* info);
template <class T>
using Getrs = void(const char* trans, const int* n, const int* nrhs, const T* a, const int* lda, const int* ipiv, T* b,
                   const int* ldb, int* info, std::size_t trans_length);
template <class T>
using Getri = void(const int* n, T* a, const int* lda, const int* ipiv, T* work, const int* lwork, int* info);
template <class T> // potrf, potri
using Potr = void(const char* uplo, const int* n, T* a, const int* lda, int* info, std::size_t uplo_length);
template <class T>
using Potrs = void(const char* uplo, const int* n, const int* nrhs, const T* a, const int* lda, T* b, const int* ldb,
                   int* info, std::size_t uplo_length);
template <class T>
using Trtrs = void(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs, const T* a,
                   const int* lda, T* b, const int* ldb, int* info, std::size_t uplo_length, std::size_t trans_length,
                   std::size_t diag_length);
template <class T>
using Trtri = void(const char* uplo, const char* diag, const int* n, T* a, const int* lda, int* info,
                   std::size_t uplo_length, std::size_t diag_length);

constexpr double cube(int n) { return double(n) * n * n; }

/// Work in place on a square matrix, or with Share 2 on half of it.
template <class T, int Share> Work square_work(double multiply_adds, int n, Layout layout) {
    const double elements = double(n) * n / Share;
    layout.a = {n, n};
    layout.restored = "a";
    return work_in_elements<T>(multiply_adds, elements, elements, n, layout);
}

/// Sizes are m by n; a matrix with more rows than columns is random.
template <class T> Work getrf_work(const Case& which) {
    const auto [m, n, k] = which.size;
    if (m == n) return square_work<T, 1>(cube(n) / 3, n, {.shape = Shape::dominated, .pivots = n});
    const double elements = double(m) * n;
    return work_in_elements<T>(double(n) * n * (m - n / 3.0) / 2, elements, elements, n,
                               {.a = {m, n}, .restored = "a", .pivots = n});
}

template <class T> Work potrf_work(const Case& which) {
    return square_work<T, 2>(cube(which.size.n) / 6, which.size.n, {.shape = Shape::positive_definite});
}

template <class T> Work getri_work(const Case& which) {
    const int n = which.size.n;
    constexpr int columns = 64; // of scratch memory; blocks of published routines are not wider
    return square_work<T, 1>(2 * cube(n) / 3, n, {.shape = Shape::factors, .pivots = n, .work = i64{n} * columns});
}

template <class T> Work potri_work(const Case& which) {
    return square_work<T, 2>(cube(which.size.n) / 3, which.size.n, {.shape = Shape::factors});
}

template <class T> Work trtri_work(const Case& which) {
    return square_work<T, 2>(cube(which.size.n) / 6, which.size.n, {.shape = Shape::factors});
}

/// Sizes are m by n, the right-hand sides; both triangles are read, or one, Triangles times in all.
template <class T, int Triangles> Work solution_work(const Case& which, int pivots) {
    const auto [m, n, k] = which.size;
    const double result = double(m) * n, share = Triangles / 2.0;
    const Layout layout = {.a = {m, m}, .b = {m, n}, .shape = Shape::factors, .restored = "b", .pivots = pivots};
    return work_in_elements<T>(share * result * k, share * (double(m) * m + result), share * result, k, layout);
}

template <class T> Work getrs_work(const Case& which) { return solution_work<T, 2>(which, which.size.m); }
template <class T, int Triangles> Work triangles_work(const Case& which) {
    return solution_work<T, Triangles>(which, 0);
}

template <class T> Routine getrf(const char* name) {
    return row<Getrf<T>>(name, getrf_work<T>,
                         [](auto* f, Operands& o) { f(&o.size.m, &o.size.n, o.a<T>(), &o.lda, o.pivots(), &o.info); });
}

template <class T> Routine getrs(const char* name) {
    return row<Getrs<T>>(name, getrs_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), &o.size.m, &o.size.n, o.a<T>(), &o.lda, o.pivots(), o.b<T>(), &o.ldb, &o.info, 1);
    });
}

template <class T> Routine potrs(const char* name) {
    return row<Potrs<T>>(name, triangles_work<T, 2>, [](auto* f, Operands& o) {
        f(o.option(0), &o.size.m, &o.size.n, o.a<T>(), &o.lda, o.b<T>(), &o.ldb, &o.info, 1);
    });
}

template <class T> Routine trtrs(const char* name) {
    return row<Trtrs<T>>(name, triangles_work<T, 1>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), o.option(2), &o.size.m, &o.size.n, o.a<T>(), &o.lda, o.b<T>(), &o.ldb, &o.info, 1,
          1, 1);
    });
}

template <class T> Routine getri(const char* name) {
    return row<Getri<T>>(name, getri_work<T>, [](auto* f, Operands& o) {
        f(&o.size.n, o.a<T>(), &o.lda, o.pivots(), o.work<T>(), &o.lwork, &o.info);
    });
}

template <class T> Routine potr(const char* name, Work (*work)(const Case&)) {
    return row<Potr<T>>(name, work,
                        [](auto* f, Operands& o) { f(o.option(0), &o.size.n, o.a<T>(), &o.lda, &o.info, 1); });
}

template <class T> Routine trtri(const char* name) {
    return row<Trtri<T>>(name, trtri_work<T>, [](auto* f, Operands& o) {
        f(o.option(0), o.option(1), &o.size.n, o.a<T>(), &o.lda, &o.info, 1, 1);
    });
}

} // namespace

const std::vector<Routine>& factor_routines() {
    static const std::vector<Routine> rows = {
        getrf<double>("dgetrf"),
        getrf<zcomplex>("zgetrf"),
        getrs<double>("dgetrs"),
        getrs<zcomplex>("zgetrs"),
        potrs<double>("dpotrs"),
        potrs<zcomplex>("zpotrs"),
        trtrs<double>("dtrtrs"),
        trtrs<zcomplex>("ztrtrs"),
        getri<double>("dgetri"),
        getri<zcomplex>("zgetri"),
        potr<double>("dpotrf", potrf_work<double>),
        potr<zcomplex>("zpotrf", potrf_work<zcomplex>),
        potr<double>("dpotri", potri_work<double>),
        potr<zcomplex>("zpotri", potri_work<zcomplex>),
        trtri<double>("dtrtri"),
        trtri<zcomplex>("ztrtri"),
    };
    return rows;
}

} // namespace nxl::bench
