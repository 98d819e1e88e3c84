// Nonsymmetric eigenproblems. Real eigenvalues have their parts in the columns of x, complex ones stand in the first.
#include "bench/lapack_rows.hpp"
#include <string>

namespace nxl::bench {
namespace {

constexpr int block = 64; // columns of scratch memory; blocks of published routines are not wider

double cube(double n) { return n * n * n; }

/// Libraries choose the signs of the form.
template <class T> Work hessenberg_work(const Case& which) {
    const int n = which.size.n;
    return work_on<T>(5.0 / 3.0 * cube(n), double(n) * n, n,
                      {.x = {n, 1}, .a = {n, n}, .restored = "a", .unchecked = "ax", .work = i64{n} * block});
}

/// Values come in any order: that they are all there is what is checked. 5 n^3 for them, 12.5 n^3 for form and vectors.
template <class T> Work schur_work(const Case& which) {
    const int n = which.size.n;
    const bool form = which.options[0] == 'S';
    return work_on<T>((form ? 12.5 : 5.0) * cube(n), double(n) * n, n,
                      {.x = {n, 2},
                       .a = {n, n},
                       .c = {n, n},
                       .shape = Shape::hessenberg,
                       .restored = "a",
                       .unchecked = "xac",
                       .work = i64{n} * block});
}

template <class T> Work driver_work(const Case& which) {
    const int n = which.size.n;
    const bool vectors = which.options.find('V') != std::string::npos;
    return work_on<T>((vectors ? 13.0 : 5.0) * cube(n), double(n) * n, n,
                      {.x = {n, 2},
                       .a = {n, n},
                       .b = {n, n},
                       .c = {n, n},
                       .restored = "a",
                       .unchecked = "xabc",
                       .work = i64{n} * block,
                       .real_work = 2 * i64{n}});
}

/// Of the form in a, times what c holds. Libraries may turn left vectors of pairs in the complex plane.
template <class T> Work vectors_work(const Case& which) {
    const int n = which.size.n;
    return work_on<T>(2.0 / 3.0 * cube(n), double(n) * n, n,
                      {.a = {n, n},
                       .c = {n, n},
                       .shape = Shape::schur_form,
                       .restored = "ac",
                       .unchecked = which.options[0] == 'L' ? "c" : "",
                       .work = 3 * i64{n},
                       .real_work = n});
}

/// A X + X A = C
template <class T> Work sylvester_work(const Case& which) {
    const int n = which.size.n;
    return work_on<T>(cube(n), 2.0 * n * n, n, {.a = {n, n}, .c = {n, n}, .shape = Shape::schur_form, .restored = "c"});
}

} // namespace

const std::vector<Routine>& nonsymmetric_routines() {
    static const std::vector<Routine> rows = {
        lapack("dgehrd", hessenberg_work<double>, "n one n a lda x work lwork info"),
        lapack("zgehrd", hessenberg_work<zcomplex>, "n one n a lda x work lwork info"),
        lapack("dhseqr", schur_work<double>, "letter letter n one n a lda x x2 c ldc work lwork info"),
        lapack("zhseqr", schur_work<zcomplex>, "letter letter n one n a lda x c ldc work lwork info"),
        lapack("dgeev", driver_work<double>, "letter letter n a lda x x2 b ldb c ldc work lwork info"),
        lapack("zgeev", driver_work<zcomplex>, "letter letter n a lda x b ldb c ldc work lwork rwork info"),
        lapack("dtrevc", vectors_work<double>, "letter letter one n a lda c ldc c ldc n count work info"),
        lapack("ztrevc", vectors_work<zcomplex>, "letter letter one n a lda c ldc c ldc n count work rwork info"),
        lapack("dtrsyl", sylvester_work<double>, "letter letter one n n a lda a lda c ldc value info"),
        lapack("ztrsyl", sylvester_work<zcomplex>, "letter letter one n n a lda a lda c ldc value info"),
    };
    return rows;
}

} // namespace nxl::bench
