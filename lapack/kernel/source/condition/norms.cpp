// Norms column by column, as the matrix lies in memory.
#include "lapack/kernel/source/condition/norms.hpp"
#include "blas/calls.hpp"
#include <algorithm>
#include <cmath>
#include <complex>

namespace nxl {
namespace {

double sum_of_moduli(i64 n, const double* x) { return asum(n, x, 1); }
double sum_of_moduli(i64 n, const zcomplex* x) {
    double sum = 0.0;
    for (i64 i = 0; i < n; ++i) sum += std::abs(x[i]);
    return sum;
}

/// A NaN wins and stays.
void take_larger(double& largest, double value) {
    if (!(value <= largest) && !std::isnan(largest)) largest = value;
}

/// Calls body(j, first, end) with the stored rows of each column, the diagonal being left out when it counts as ones.
template <class T, class Body>
void for_each_column(char uplo, char diag, const Matrix<const T>& a, const Body& body) {
    const i64 apart = diag == 'U' ? 1 : 0;
    for (i64 j = 0; j < a.columns; ++j)
        if (uplo == 'U') body(j, i64{0}, std::min(j + 1 - apart, a.rows));
        else body(j, std::min(j + apart, a.rows), a.rows);
}

} // namespace

template <class T>
double triangle_norm(char norm, char uplo, char diag, const Matrix<const T>& a, double* row_sums) {
    const double unit = diag == 'U' ? 1.0 : 0.0;
    double largest = 0.0;
    if (norm != 'I') {
        for_each_column(uplo, diag, a, [&](i64 j, i64 first, i64 end) {
            take_larger(largest, unit + sum_of_moduli(end - first, a.at(first, j)));
        });
        return largest;
    }
    std::fill_n(row_sums, a.rows, unit);
    for_each_column(uplo, diag, a, [&](i64 j, i64 first, i64 end) {
        for (i64 i = first; i < end; ++i) row_sums[i] += std::abs(a(i, j));
    });
    for (i64 i = 0; i < a.rows; ++i) take_larger(largest, row_sums[i]);
    return largest;
}

template double triangle_norm(char, char, char, const Matrix<const double>&, double*);
template double triangle_norm(char, char, char, const Matrix<const zcomplex>&, double*);

} // namespace nxl
