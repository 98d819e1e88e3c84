// Symmetric eigenproblems. Orders are n by n; k is the width of a band, or how many pairs are asked for.
#include "bench/lapack_rows.hpp"

namespace nxl::bench {
namespace {

constexpr int block = 64; // columns of scratch memory; blocks of published routines are not wider

/// Values in x, vectors in c; n^3 / 3 for the reduction, and about as much again for k vectors.
template <class T> Work full_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const double order = n;
    return work_on<T>(2.0 / 3.0 * order * order * order + 2.0 * order * order * k, order * order / 2, n,
                      {.x = {n, 1},
                       .a = {n, n},
                       .c = {n, n},
                       .shape = Shape::positive_definite,
                       .restored = "a",
                       .unchecked = "ac",
                       .work = i64{n} * block,
                       .real_work = i64{n} * block,
                       .integer_work = 14 * i64{n}});
}

template <class T> Work band_work(const Case& which) {
    const auto [m, n, k] = which.size;
    const double order = n;
    return work_on<T>(6.0 * order * order * order, order * (k + 1.0), n,
                      {.x = {n, 1},
                       .a = {k + 1, n},
                       .c = {n, n},
                       .shape = Shape::band_positive_definite,
                       .restored = "a",
                       .unchecked = "ac",
                       .work = 2 * i64{n} * n + 5 * i64{n} + 1,
                       .real_work = 2 * i64{n} * n + 5 * i64{n} + 1,
                       .integer_work = 5 * i64{n} + 3});
}

/// Diagonal and off-diagonal in x and y, values in b.
Work bisection_work(const Case& which) {
    const auto [m, n, k] = which.size;
    return work_on<double>(100.0 * n * k, 2.0 * n, n,
                           {.x = {n, 1}, .y = {n, 1}, .b = {n, 1}, .work = 4 * i64{n}, .integer_work = 5 * i64{n}});
}

} // namespace

const std::vector<Routine>& eigen_routines() {
    static const std::vector<Routine> rows = {
        lapack(
            "dsyevr", full_work<double>,
            "letter letter letter n a lda nothing unit one k nothing count x c ldc last2 work lwork iwork liwork info"),
        lapack(
            "zheevr", full_work<zcomplex>,
            "letter letter letter n a lda nothing unit one k nothing count x c ldc last2 work lwork rwork lrwork iwork "
            "liwork info"),
        lapack("dsyevx", full_work<double>,
               "letter letter letter n a lda nothing unit one k nothing count x c ldc work lwork iwork last info"),
        lapack("dsbevd", band_work<double>, "letter letter n k a lda x c ldc work lwork iwork liwork info"),
        lapack("zhbevd", band_work<zcomplex>,
               "letter letter n k a lda x c ldc work lwork rwork lrwork iwork liwork info"),
        lapack("dstebz", bisection_work,
               "letter letter n nothing unit one k nothing x y count info b last2 last work iwork info"),
    };
    return rows;
}

} // namespace nxl::bench
