// Routines of LAPACK beside those of factor_rows.cpp, a line for each: its arguments, and its work, which tells the
// arrays, too. Sizes are m by n, of solutions the order and the right-hand sides; k is the width of a band.
#include "bench/lapack_rows.hpp"
#include <algorithm>

namespace nxl::bench {
namespace {

constexpr int block = 64; // columns of scratch memory; blocks of published routines are not wider

template <class T> Work indefinite_work(const Case& which) {
    const int n = which.size.n;
    return work_on<T>(double(n) * n * n / 6, double(n) * n / 2, n,
                      {.a = {n, n}, .shape = Shape::indefinite, .restored = "a", .pivots = n, .work = i64{n} * block});
}

template <class T> Work indefinite_solution_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(double(m) * m * n, double(m) * m / 2 + double(m) * n, m,
                      {.a = {m, m}, .b = {m, n}, .shape = Shape::indefinite_factors, .restored = "b", .pivots = m});
}

/// Rows of the result are filled in as far as interchanges reach.
template <class T> Work band_lu_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(double(n) * k * (2.0 * k + 1), double(n) * (3.0 * k + 1), k,
                      {.a = {3 * k + 1, n}, .shape = Shape::band_dominated, .restored = "a", .pivots = std::min(m, n)});
}

template <class T> Work band_cholesky_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(double(n) * k * (k + 1.0) / 2, double(n) * (k + 1.0), k,
                      {.a = {k + 1, n}, .shape = Shape::band_positive_definite, .restored = "a"});
}

template <class T> Work band_lu_solution_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(
        double(m) * n * (3.0 * k + 1), double(m) * (3.0 * k + 1 + n), k,
        {.a = {3 * k + 1, m}, .b = {m, n}, .shape = Shape::band_factors, .restored = "b", .pivots = m, .farthest = k});
}

template <class T> Work band_cholesky_solution_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(double(m) * n * (2.0 * k + 1), double(m) * (k + 1.0 + n), k,
                      {.a = {k + 1, m}, .b = {m, n}, .shape = Shape::band_triangle, .restored = "b"});
}

/// As many solutions as the estimate takes with most matrices; with Triangles 1 each of one triangle.
template <class T, int Triangles, Shape Kind> Work condition_work(const Case& which) {
    const int n = which.size.n;
    constexpr double solutions = 5.0;
    return work_on<T>(
        solutions * Triangles / 2.0 * n * n, double(n) * n * Triangles / 2, n,
        {.a = {n, n}, .shape = Kind, .pivots = n, .work = 4 * i64{n}, .real_work = 2 * i64{n}, .integer_work = n});
}

/// Residual, bound and estimate of each right-hand side, once.
template <class T> Work refinement_work(const Case& which) {
    const auto [m, n, k] = which.size;
    constexpr double passes = 7.0;
    return work_on<T>(passes * double(m) * m * n, 2.0 * m * m + 2.0 * m * n, m,
                      {.x = {m, n},
                       .y = {n, 2},
                       .a = {m, m},
                       .b = {m, n},
                       .c = {m, m},
                       .shape = Shape::product_of_factors,
                       .pivots = m,
                       .farthest = 0,
                       .work = 3 * i64{m},
                       .real_work = m,
                       .integer_work = m});
}

/// QR or LQ, the factor's scalars in x.
template <class T> Work orthogonal_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const double shorter = std::min(m, n), longer = std::max(m, n);
    return work_on<T>(shorter * shorter * (longer - shorter / 3), double(m) * n, m,
                      {.x = {std::min(m, n), 1},
                       .a = {m, n},
                       .shape = Shape::dominated,
                       .restored = "a",
                       .work = i64{std::max(m, n)} * block,
                       .integer_work = n}); // the columns' order, none of them being wanted first
}

/// Q of k reflectors, their scalars in x. Any numbers serve that the vectors are not too long with.
template <class T> Work formation_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(
        2.0 * m * n * k - double(m + n) * k * k + 2.0 / 3.0 * k * k * k, double(m) * n, k,
        {.x = {k, 1}, .a = {m, n}, .shape = Shape::factors, .restored = "a", .work = i64{std::max(m, n)} * block});
}

/// The same times c, from the side that the first letter tells.
template <class T> Work application_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const int length = which.options[0] == 'L' ? m : n, others = which.options[0] == 'L' ? n : m;
    return work_in_elements<T>((2.0 * length - k) * others * k, double(length) * k + double(m) * n, double(m) * n, k,
                               {.x = {k, 1},
                                .a = {length, k},
                                .c = {m, n},
                                .shape = Shape::factors,
                                .restored = "c",
                                .work = i64{others} * block});
}

/// One right-hand side.
template <class T> Work least_squares_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<T>(double(n) * n * (m - n / 3.0), double(m) * n, m,
                      {.a = {m, n},
                       .b = {m, 1},
                       .shape = Shape::dominated,
                       .restored = "ab",
                       .unchecked = "a",
                       .work = i64{m} * block});
}

/// The tridiagonal matrix is another one for every order of operations, with the same eigenvalues.
template <class T> Work reduction_work(const Case& which) {
    const int n = which.size.n;
    return work_on<T>(2.0 / 3.0 * n * n * n, double(n) * n / 2, n,
                      {.x = {n, 1},
                       .y = {n, 1},
                       .a = {n, n},
                       .c = {n, 1},
                       .shape = Shape::positive_definite,
                       .restored = "a",
                       .unchecked = "axyc",
                       .work = i64{n} * block});
}

/// Values in x; vectors, where there are any, in a.
template <int Vectors> Work tridiagonal_work(const Case& which) {
    const int n = which.size.n;
    return work_on<double>(Vectors * 3.0 * n * n * n + 15.0 * n * n, Vectors * double(n) * n + 2.0 * n, n,
                           {.x = {n, 1},
                            .y = {n, 1},
                            .a = {Vectors * n, Vectors * n},
                            .restored = Vectors != 0 ? "xya" : "xy",
                            .unchecked = "ya",
                            .work = 2 * i64{n}});
}

/// What a reduction to bidiagonal form takes, of a triangle where the matrix is tall or wide enough.
double bidiagonal_work(double shorter, double longer) { return 2.0 * shorter * shorter * (longer - shorter / 3.0); }

/// As for the tridiagonal form: d, e, and the scalars of the reflectors.
template <class T> Work bidiagonal_reduction_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const int shorter = std::min(m, n);
    return work_on<T>(bidiagonal_work(shorter, std::max(m, n)), double(m) * n, m,
                      {.x = {shorter, 1},
                       .y = {shorter, 1},
                       .a = {m, n},
                       .b = {shorter, 1},
                       .c = {shorter, 1},
                       .restored = "a",
                       .unchecked = "axybc",
                       .work = i64{m + n} * block});
}

/// Values in x; vectors, where there are any, in b and c, which libraries may turn.
Work decomposition_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const i64 shorter = std::min(m, n), longer = std::max(m, n);
    const double vectors = which.options.find('N') == std::string::npos ? 1.0 : 0.0;
    const double products = vectors * 4.0 * double(longer) * double(shorter) * double(shorter);
    return work_on<double>(bidiagonal_work(double(shorter), double(longer)) + products, double(m) * n, m,
                           {.x = {std::min(m, n), 1},
                            .a = {m, n},
                            .b = {m, m},
                            .c = {n, n},
                            .restored = "a",
                            .unchecked = "abc",
                            .work = 6 * shorter * shorter + (m + n) * i64{block},
                            .integer_work = 8 * shorter});
}

/// Values in x; vectors in a and b.
Work bidiagonal_values_work(const Case& which) {
    const int n = which.size.n;
    return work_on<double>(12.0 * n * n * n, 2.0 * n * n, n,
                           {.x = {n, 1},
                            .y = {n, 1},
                            .a = {n, n},
                            .b = {n, n},
                            .c = {n, 1},
                            .restored = "xyab",
                            .unchecked = "yab",
                            .work = 4 * i64{n}});
}

/// One right-hand side in b, the solution's rows of which are compared by their values in x.
Work svd_solution_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<double>(bidiagonal_work(n, m), double(m) * n, m,
                           {.x = {n, 1},
                            .a = {m, n},
                            .b = {m, 1},
                            .restored = "ab",
                            .unchecked = "a",
                            .work = i64{m + 2 * n} * block,
                            .integer_work = i64{n} * block});
}

} // namespace

const std::vector<Routine>& lapack_routines() {
    static const std::vector<Routine> rows = {
        lapack("dsytrf", indefinite_work<double>, "letter n a lda ipiv work lwork info"),
        lapack("zsytrf", indefinite_work<zcomplex>, "letter n a lda ipiv work lwork info"),
        lapack("zhetrf", indefinite_work<zcomplex>, "letter n a lda ipiv work lwork info"),
        lapack("dsytrs", indefinite_solution_work<double>, "letter m n a lda ipiv b ldb info"),
        lapack("zsytrs", indefinite_solution_work<zcomplex>, "letter m n a lda ipiv b ldb info"),
        lapack("zhetrs", indefinite_solution_work<zcomplex>, "letter m n a lda ipiv b ldb info"),
        lapack("dgbtrf", band_lu_work<double>, "m n k k a lda ipiv info"),
        lapack("zgbtrf", band_lu_work<zcomplex>, "m n k k a lda ipiv info"),
        lapack("dpbtrf", band_cholesky_work<double>, "letter n k a lda info"),
        lapack("zpbtrf", band_cholesky_work<zcomplex>, "letter n k a lda info"),
        lapack("dgbtrs", band_lu_solution_work<double>, "letter m k k n a lda ipiv b ldb info"),
        lapack("zgbtrs", band_lu_solution_work<zcomplex>, "letter m k k n a lda ipiv b ldb info"),
        lapack("dpbtrs", band_cholesky_solution_work<double>, "letter m k n a lda b ldb info"),
        lapack("zpbtrs", band_cholesky_solution_work<zcomplex>, "letter m k n a lda b ldb info"),
        lapack("dgecon", condition_work<double, 2, Shape::factors>, "letter n a lda unit value work iwork info"),
        lapack("zgecon", condition_work<zcomplex, 2, Shape::factors>, "letter n a lda unit value work rwork info"),
        lapack("dpocon", condition_work<double, 2, Shape::factors>, "letter n a lda unit value work iwork info"),
        lapack("zpocon", condition_work<zcomplex, 2, Shape::factors>, "letter n a lda unit value work rwork info"),
        lapack("dtrcon", condition_work<double, 1, Shape::factors>,
               "letter letter letter n a lda value work iwork info"),
        lapack("ztrcon", condition_work<zcomplex, 1, Shape::factors>,
               "letter letter letter n a lda value work rwork info"),
        lapack("dsycon", condition_work<double, 2, Shape::indefinite_factors>,
               "letter n a lda ipiv unit value work iwork info"),
        lapack("zhecon", condition_work<zcomplex, 2, Shape::indefinite_factors>,
               "letter n a lda ipiv unit value work info"),
        lapack("dgerfs", refinement_work<double>, "letter m n a lda c ldc ipiv b ldb x ldx y y2 work iwork info"),
        lapack("zgerfs", refinement_work<zcomplex>, "letter m n a lda c ldc ipiv b ldb x ldx y y2 work rwork info"),
        lapack("dporfs", refinement_work<double>, "letter m n a lda c ldc b ldb x ldx y y2 work iwork info"),
        lapack("zporfs", refinement_work<zcomplex>, "letter m n a lda c ldc b ldb x ldx y y2 work rwork info"),
        lapack("dgeqrf", orthogonal_work<double>, "m n a lda x work lwork info"),
        lapack("zgeqrf", orthogonal_work<zcomplex>, "m n a lda x work lwork info"),
        lapack("dgelqf", orthogonal_work<double>, "m n a lda x work lwork info"),
        lapack("dgeqp3", orthogonal_work<double>, "m n a lda iwork x work lwork info"),
        lapack("dorgqr", formation_work<double>, "m n k a lda x work lwork info"),
        lapack("zungqr", formation_work<zcomplex>, "m n k a lda x work lwork info"),
        lapack("dormqr", application_work<double>, "letter letter m n k a lda x c ldc work lwork info"),
        lapack("zunmqr", application_work<zcomplex>, "letter letter m n k a lda x c ldc work lwork info"),
        lapack("dgels", least_squares_work<double>, "letter m n one a lda b ldb work lwork info"),
        lapack("dsytrd", reduction_work<double>, "letter n a lda x y c work lwork info"),
        lapack("zhetrd", reduction_work<zcomplex>, "letter n a lda x y c work lwork info"),
        lapack("dsterf", tridiagonal_work<0>, "n x y info"),
        lapack("dsteqr", tridiagonal_work<1>, "letter n x y a lda work info"),
        lapack("dgebrd", bidiagonal_reduction_work<double>, "m n a lda x y b c work lwork info"),
        lapack("zgebrd", bidiagonal_reduction_work<zcomplex>, "m n a lda x y b c work lwork info"),
        lapack("dbdsqr", bidiagonal_values_work, "letter n n n zero x y a lda b ldb c ldc work info"),
        lapack("dgesvd", decomposition_work, "letter letter m n a lda x b ldb c ldc work lwork info"),
        lapack("dgesdd", decomposition_work, "letter m n a lda x b ldb c ldc work lwork iwork info"),
        lapack("dgelss", svd_solution_work, "m n one a lda b ldb x value count work lwork info"),
        lapack("dgelsd", svd_solution_work, "m n one a lda b ldb x value count work lwork iwork info"),
    };
    return rows;
}

} // namespace nxl::bench
